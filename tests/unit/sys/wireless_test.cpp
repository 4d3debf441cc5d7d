#include "sys/wext.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <climits>
#include <cstring>

#include "unit_support.h"

TEST(Wireless, RateAndFrequencyComeFromTheInterface) {
  run("ip link set ra0 up; ip link set ra8 up");
  int32_t rate = 0;
  EXPECT_EQ(wireless_get_rate(9, &rate), wireless_result::kDone);
  EXPECT_EQ(rate / 100000, 8666);
  wireless_frequency frequency = {};
  run("gwbox set radio ra8 channel=44");
  EXPECT_EQ(wireless_get_frequency(9, &frequency), wireless_result::kDone);
  EXPECT_EQ(frequency.mantissa, 44);
  EXPECT_EQ(frequency.exponent, 0);
}

TEST(Wireless, RefusalIsSilentAndLeavesTheValue) {
  const int before = open_descriptors();
  int32_t rate = 77;
  wireless_frequency frequency = {77, 7};
  EXPECT_EQ(errors_of([&] {
              for (const int bss : {1, 0, 17, -5, INT_MIN, INT_MAX}) {
                EXPECT_EQ(wireless_get_rate(bss, &rate), wireless_result::kRefused) << bss;
                EXPECT_EQ(wireless_get_frequency(bss, &frequency), wireless_result::kRefused);
              }
            }),
            "");
  EXPECT_EQ(rate, 77);
  EXPECT_EQ(frequency.mantissa, 77);
  EXPECT_EQ(open_descriptors(), before);
}

TEST(Wireless, ObjectsAreSetInOrderUntilOneIsRefused) {
  const int before = open_descriptors();
  const wireless_object objects[] = {
      {.flags = 0x894A, .length = 3, .record = "\x02\x00\x01"},
      {.flags = 0xF001, .length = 1, .record = "x"},
      {.flags = 0x894A, .length = 3, .record = "\x02\x00\x00"},
  };
  const int sock = wireless_open();
  EXPECT_EQ(wireless_set_objects(sock, 1, objects, 3), 1);
  EXPECT_EQ(wireless_set_objects(sock, 1, objects + 2, 1), 1);
  EXPECT_EQ(wireless_set_objects(sock, 17, objects, 1), 0);
  EXPECT_EQ(wireless_set_objects(sock, 1, objects, 0), 0);
  wireless_close(sock);
  const auto requests = driver_requests();
  ASSERT_EQ(requests.size(), 4u);
  EXPECT_TRUE(contains(requests[0], "\"bytes\":\"020001\""));
  EXPECT_TRUE(contains(requests[1], "\"bytes\":\"78\""));
  EXPECT_TRUE(contains(requests[2], "\"bytes\":\"020000\""));
  EXPECT_EQ(open_descriptors(), before);
}

TEST(Wireless, NoSocketIsTold) {
  fail_system_call(SYS_socket, EMFILE);
  int32_t rate = 77;
  wireless_frequency frequency = {};
  EXPECT_EQ(errors_of([&] {
              EXPECT_EQ(wireless_get_rate(1, &rate), wireless_result::kNoSocket);
              EXPECT_EQ(wireless_get_frequency(1, &frequency), wireless_result::kNoSocket);
              EXPECT_EQ(wireless_open(), -1);
            }),
            "");
}
