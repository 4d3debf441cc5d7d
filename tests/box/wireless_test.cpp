// The real iwconfig and iwpriv with the model's standard and private queries.
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <cerrno>

#include "inside.h"

static bool shows(const std::string& text, const char* word) {
  return text.find(word) != std::string::npos;
}

TEST(Iwconfig, ShowsNameChannelAndRate) {
  ASSERT_EQ(run("ip link set ra0 up && ip link set ra8 up").status, 0);
  run_result low = run("iwconfig ra0"), high = run("iwconfig ra8");
  EXPECT_EQ(low.status, 0);
  EXPECT_TRUE(shows(low.output, "IEEE 802.11bgn")) << low.output;
  EXPECT_TRUE(shows(low.output, "ESSID:\"HomeGateway\"")) << low.output;
  EXPECT_TRUE(shows(low.output, "Mode:Master")) << low.output;
  EXPECT_TRUE(shows(low.output, "Frequency:2.437 GHz")) << low.output;
  EXPECT_TRUE(shows(low.output, "Bit Rate:300 Mb/s")) << low.output;
  EXPECT_TRUE(shows(high.output, "Frequency:5.18 GHz")) << high.output;
  EXPECT_TRUE(shows(high.output, "Bit Rate:866.6 Mb/s")) << high.output;
  ASSERT_EQ(run("iwpriv ra8 set Channel=44").status, 0);
  EXPECT_TRUE(shows(run("iwconfig ra8").output, "Frequency:5.22 GHz"));
}

TEST(Iwconfig, ShowsTheInterfacesOwnAddress) {
  ASSERT_EQ(run("ip link set ra8 up && ip link set ra9 up").status, 0);
  std::string address = run("tr a-f A-F </sys/class/net/ra9/address | tr -d '\\n'").output;
  ASSERT_EQ(address.size(), 17u);
  EXPECT_TRUE(shows(run("iwconfig ra9").output, address.c_str())) << address;
}

TEST(Iwconfig, ADownInterfaceHasItsNameOnly) {
  run_result down = run("iwconfig ra0");
  EXPECT_EQ(down.status, 0);
  EXPECT_TRUE(shows(down.output, "IEEE 802.11bgn")) << down.output;
  EXPECT_FALSE(shows(down.output, "Frequency")) << down.output;
  EXPECT_FALSE(shows(down.output, "Bit Rate")) << down.output;
}

TEST(Iwconfig, FrequencyAndRateStandInTheFrame) {
  ASSERT_EQ(run("ip link set ra8 up").status, 0);
  struct {
    char name[16];
    int32_t value;
    int16_t exponent;
    char rest[10];
  } frame = {"ra8", -1, -1, ""};
  int fd = socket(AF_INET, SOCK_DGRAM, 0);
  EXPECT_EQ(ioctl(fd, 0x8B05, &frame), 0);
  EXPECT_EQ(frame.value, 36);
  EXPECT_EQ(frame.exponent, 0);
  EXPECT_EQ(ioctl(fd, 0x8B21, &frame), 0);
  EXPECT_EQ(frame.value, 866600000);
  frame.name[2] = '0';
  EXPECT_EQ(ioctl(fd, 0x8B05, &frame), -1);
  EXPECT_EQ(errno, ENETDOWN);
  close(fd);
}

TEST(Iwpriv, ReadsAndWritesTheEeprom) {
  EXPECT_TRUE(shows(run("iwpriv ra0 e2p 52").output, "\n[0x0052]:0x0000\n"));
  EXPECT_EQ(run("iwpriv ra0 set ATE=ATESTART").status, 0);
  EXPECT_EQ(run("iwpriv ra0 set ATE=RX2GSELFTEST").status, 0);
  EXPECT_EQ(run("iwpriv ra0 set ATE=ATESTOP").status, 0);
  EXPECT_TRUE(shows(run("iwpriv ra0 e2p 52").output, "\n[0x0052]:0x0002\n"));
  EXPECT_TRUE(shows(run("iwpriv ra8 e2p 52").output, "\n[0x0052]:0x0000\n"));
  EXPECT_TRUE(
      shows(run("iwpriv ra8 e2p 52=beef,54").output, "\n[0x0052]:0xBEEF\n[0x0054]:0x0000\n"));
  EXPECT_TRUE(shows(run("iwpriv ra8 e2p 400").output, "Invalid argument"));
}

TEST(Iwpriv, ListsTheEepromCommand) {
  EXPECT_TRUE(
      shows(run("iwpriv ra0").output, "e2p              (8BE7) : set 1536 char  & get 1536 char"));
}
