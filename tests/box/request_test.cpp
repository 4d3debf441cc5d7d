// Right and wrong requests that programs make through ioctl(2).
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>

#include <thread>

#include "inside.h"

TEST(Request, OperatingClassPerBand) {
  for (auto [interface, expected] : {std::pair{"ra0", 81u}, {"ra7", 81u}, {"ra8", 115u}}) {
    uint32_t value = 0;
    request_frame frame = make_frame(interface, &value, sizeof value, 0x06B2);
    EXPECT_EQ(request(0x8BE1, frame), 0);
    EXPECT_EQ(value, expected) << interface;
    EXPECT_EQ(frame.length, sizeof value);
  }
}

TEST(Request, NeverWritesMoreThanAnnounced) {
  unsigned char buffer[8];
  memset(buffer, 0xEE, sizeof buffer);
  request_frame frame = make_frame("ra8", buffer, 3, 0x06B2);
  EXPECT_EQ(request(0x8BE1, frame), 0);
  EXPECT_EQ(frame.length, 3);
  EXPECT_EQ(buffer[0], 115);
  for (int i = 3; i < 8; ++i)
    EXPECT_EQ(buffer[i], 0xEE) << i;
}

TEST(Request, TooSmallABufferIsRefusedAndLeftAlone) {
  unsigned char buffer[4] = {0xEE, 0xEE, 0xEE, 0xEE};
  request_frame frame = make_frame("ra0", buffer, 2, 0x06B2);
  EXPECT_EQ(request(0x8BE1, frame), EMSGSIZE);
  frame = make_frame("ra0", buffer, 3, 0x0751);
  EXPECT_EQ(request(0x8BE1, frame), EMSGSIZE);
  for (unsigned char byte : buffer)
    EXPECT_EQ(byte, 0xEE);
  auto entry = journal_entries().back();
  EXPECT_EQ(entry["name"], "query");
  EXPECT_EQ(entry["sub"], "0x0751");
  EXPECT_EQ(entry["length"], 3);
  EXPECT_EQ(entry["error"], "EMSGSIZE");
  EXPECT_EQ(entry["result"], -EMSGSIZE);
}

TEST(Request, WpsStatusIsIdle) {
  int32_t status = -1;
  request_frame frame = make_frame("ra0", &status, sizeof status, 0x0751);
  EXPECT_EQ(request(0x8BE1, frame), 0);
  EXPECT_EQ(status, 0);
}

TEST(Request, UnknownOnesAreNotSupported) {
  char buffer[64] = "";
  request_frame frame = make_frame("ra0", buffer, sizeof buffer, 0x7001);
  EXPECT_EQ(request(0x8BE1, frame), EOPNOTSUPP);
  frame = make_frame("ra0", buffer, 4, 0x8000 | 0x06B2);
  EXPECT_EQ(request(0x8BE1, frame), EOPNOTSUPP);
  EXPECT_EQ(journal_entries().back()["name"], "object_set");
  EXPECT_EQ(journal_entries().back()["sub"], "0x06B2");
  frame = make_frame("ra0", buffer, sizeof buffer, 0);
  EXPECT_EQ(request(0x8BFE, frame), EOPNOTSUPP);
  EXPECT_EQ(journal_entries().back()["name"], "unknown");
}

TEST(Request, PrivateListTellsHowMuchRoomItNeeds) {
  struct {
    uint32_t request;
    uint16_t set, get;
    char name[16];
  } entries[2] = {};
  request_frame frame = make_frame("ra0", entries, 1, 0);
  EXPECT_EQ(request(0x8B0D, frame), E2BIG);
  EXPECT_EQ(frame.length, 2);
  EXPECT_EQ(request(0x8B0D, frame), 0);
  EXPECT_EQ(entries[0].request, 0x8BE2u);
  EXPECT_STREQ(entries[0].name, "set");
  EXPECT_EQ(entries[1].request, 0x8BE7u);
  EXPECT_STREQ(entries[1].name, "e2p");
}

TEST(Request, InterfaceMustBeARadioThatExists) {
  EXPECT_EQ(set_text("ra16", "A=1"), ENODEV);
  EXPECT_EQ(set_text("ra", "A=1"), ENODEV);
  EXPECT_EQ(set_text("ra01", "A=1"), ENODEV);
  EXPECT_EQ(set_text("eth0", "A=1"), ENODEV);
  EXPECT_EQ(set_text("ra7", "A=1"), 0);
  ASSERT_EQ(run("ip link delete ra7").status, 0);
  EXPECT_EQ(set_text("ra7", "A=1"), ENODEV);
  EXPECT_EQ(journal_entries().back()["error"], "ENODEV");
}

TEST(Request, BadPointersFault) {
  void* nowhere = mmap(nullptr, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  request_frame frame = make_frame("ra0", nowhere, 12, 0);
  EXPECT_EQ(request(0x8BE2, frame), EFAULT);
  frame = make_frame("ra0", nowhere, 4, 0x06B2);
  EXPECT_EQ(request(0x8BE1, frame), EFAULT);
  int fd = socket(AF_INET, SOCK_DGRAM, 0);
  EXPECT_EQ(ioctl(fd, 0x8BE2, nowhere), -1);
  EXPECT_EQ(errno, EFAULT);
  close(fd);
  EXPECT_EQ(set_text("ra0", "A=1"), 0);
}

TEST(Request, DescriptorMustBeASocket) {
  request_frame frame = make_frame("ra0", nullptr, 0, 0);
  EXPECT_EQ(ioctl(-1, 0x8BE2, &frame), -1);
  EXPECT_EQ(errno, EBADF);
  int fd = open("/dev/null", O_RDWR);
  EXPECT_EQ(ioctl(fd, 0x8BE2, &frame), -1);
  EXPECT_EQ(errno, ENOTTY);
  close(fd);
}

TEST(Request, TextSetNeedsAKey) {
  EXPECT_EQ(set_text("ra0", "no equals sign"), EINVAL);
  EXPECT_EQ(set_text("ra0", "=value"), EINVAL);
  request_frame empty = make_frame("ra0", nullptr, 0, 0);
  EXPECT_EQ(request(0x8BE2, empty), EINVAL);
  EXPECT_EQ(set_text("ra0", "Key="), 0);
  EXPECT_EQ(set_text("ra0", "K=" + std::string(1533, 'v')), 0);
  EXPECT_EQ(set_text("ra0", "K=" + std::string(1534, 'v')), E2BIG);
}

TEST(Request, TextWithoutTerminatorIsTakenAsAnnounced) {
  char text[] = "LEDEnable=0rubbish";
  request_frame frame = make_frame("ra0", text, 11, 0);
  EXPECT_EQ(request(0x8BE2, frame), 0);
  EXPECT_EQ(journal_entries().back()["text"], "LEDEnable=0");
}

TEST(Request, VlanRequestIsTrapped) {
  struct {
    int command;
    char device[24];
    char rest[28];
  } vlan = {77, "eth0", ""};
  int fd = socket(AF_INET, SOCK_DGRAM, 0);
  EXPECT_EQ(ioctl(fd, 0x8983, &vlan), -1);
  EXPECT_EQ(errno, EOPNOTSUPP);
  close(fd);
  EXPECT_EQ(journal_entries().back()["interface"], "eth0");
  EXPECT_EQ(journal_entries().back()["name"], "vlan");
  EXPECT_EQ(journal_entries().back()["command"], "unknown");
}

TEST(Request, ThreadsAreJournalledUnderTheirProcess) {
  std::thread([] { EXPECT_EQ(set_text("ra0", "FromThread=1"), 0); }).join();
  EXPECT_EQ(journal_entries().back()["pid"], getpid());
}

TEST(Request, ManyCallersAtOnceAllGetThroughInOrder) {
  constexpr int kThreads = 8, kEach = 100;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t] {
      std::string interface = "ra" + std::to_string(t);
      for (int i = 0; i < kEach; ++i) {
        EXPECT_EQ(set_text(interface.c_str(), "Step=" + std::to_string(i)), 0);
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  auto entries = journal_entries();
  ASSERT_EQ(entries.size(), size_t{kThreads * kEach});
  std::map<std::string, int> next;
  for (size_t i = 0; i < entries.size(); ++i) {
    EXPECT_EQ(entries[i]["seq"], i + 1);
    int step = next[entries[i]["interface"]]++;
    EXPECT_EQ(entries[i]["text"], "Step=" + std::to_string(step));
  }
}

TEST(Request, ACallerThatDiesInItsRequestHarmsNobody) {
  ASSERT_EQ(run("gwbox fail 0x8BE2@ra0 delay=200").status, 0);
  ASSERT_EQ(run("gwbox fail 0x8BE2@ra1 delay=250").status, 0);
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  pid_t child = fork();
  if (child == 0) {
    static_cast<void>(!write(ready[1], "x", 1));
    _exit(set_text("ra0", "Doomed=1"));
  }
  char byte;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  // The request is under way when the kernel shows the child asleep in ioctl, number 16.
  std::string state = "grep -q '^16 ' /proc/" + std::to_string(child) + "/syscall";
  for (int i = 0; i < 200 && run(state).status != 0; ++i)
    usleep(1000);
  ASSERT_EQ(run(state).status, 0);
  kill(child, SIGKILL);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFSIGNALED(status));
  // This request is delayed for longer, so by its end the killed one's turn has passed.
  EXPECT_EQ(set_text("ra1", "Alive=1"), 0);
  auto entries = journal_entries();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0]["text"], "Alive=1");
}
