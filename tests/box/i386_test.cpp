// 32-bit programs have their own call numbers and frame layout. A 64-bit program can make
// such calls through interrupt 0x80, with all data below 4 GB.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>

#include "inside.h"

struct frame_32 {
  char name[16];
  uint32_t pointer;
  uint16_t length;
  uint16_t flags;
  char rest[8];
};
static_assert(sizeof(frame_32) == 32);

static constexpr int kI386Getpid = 20;
static constexpr int kI386Ioctl = 54;
static constexpr int kI386InitModule = 128;
static constexpr int kI386DeleteModule = 129;

static long call_32(long number, long first, long second, long third) {
  long result = number;
  asm volatile("int $0x80"
               : "+a"(result)
               : "b"(first), "c"(second), "d"(third)
               : "memory", "r8", "r9", "r10", "r11");
  return static_cast<int32_t>(result);
}

// A kernel without 32-bit support kills a process that tries.
static bool kernel_runs_32_bit_calls() {
  pid_t child = fork();
  if (child == 0) _exit(call_32(kI386Getpid, 0, 0, 0) == getpid() ? 0 : 1);
  int status = 0;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

struct low_page {
  frame_32 frame;
  char buffer[256];
};

static low_page* map_low_page() {
  void* page =
      mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_32BIT, -1, 0);
  return page == MAP_FAILED ? nullptr : static_cast<low_page*>(page);
}

static long request_32(low_page* page, uint32_t number, uint16_t length, uint16_t flags) {
  strcpy(page->frame.name, "ra8");
  page->frame.pointer = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(page->buffer));
  page->frame.length = length;
  page->frame.flags = flags;
  int fd = socket(AF_INET, SOCK_DGRAM, 0);
  long result = call_32(kI386Ioctl, fd, number, reinterpret_cast<intptr_t>(&page->frame));
  close(fd);
  return result;
}

TEST(I386, SetAndQuery) {
  if (!kernel_runs_32_bit_calls()) GTEST_SKIP() << "this kernel runs no 32-bit programs";
  low_page* page = map_low_page();
  ASSERT_NE(page, nullptr);
  strcpy(page->buffer, "LEDEnable=1");
  EXPECT_EQ(request_32(page, 0x8BE2, 12, 0), 0);
  EXPECT_EQ(journal_entries().back()["text"], "LEDEnable=1");
  EXPECT_EQ(journal_entries().back()["interface"], "ra8");

  uint32_t operating_class = 0;
  memset(page->buffer, 0xEE, sizeof page->buffer);
  EXPECT_EQ(request_32(page, 0x8BE1, 4, 0x06B2), 0);
  memcpy(&operating_class, page->buffer, sizeof operating_class);
  EXPECT_EQ(operating_class, 115u);
  EXPECT_EQ(page->frame.length, 4);
  EXPECT_EQ(page->frame.flags, 0x06B2);
  EXPECT_EQ(static_cast<unsigned char>(page->buffer[4]), 0xEE);
}

TEST(I386, Failures) {
  if (!kernel_runs_32_bit_calls()) GTEST_SKIP() << "this kernel runs no 32-bit programs";
  low_page* page = map_low_page();
  ASSERT_NE(page, nullptr);
  EXPECT_EQ(request_32(page, 0x8BE1, 2, 0x06B2), -EMSGSIZE);
  EXPECT_EQ(request_32(page, 0x8B0D, 0, 0), -E2BIG);
  EXPECT_EQ(page->frame.length, 2);
}

TEST(I386, ModulesAndVlans) {
  if (!kernel_runs_32_bit_calls()) GTEST_SKIP() << "this kernel runs no 32-bit programs";
  low_page* page = map_low_page();
  ASSERT_NE(page, nullptr);
  strcpy(page->buffer, "mt7612e_ap");
  long name = reinterpret_cast<intptr_t>(page->buffer);
  EXPECT_EQ(call_32(kI386DeleteModule, name, 0, 0), 0);
  EXPECT_EQ(call_32(kI386DeleteModule, name, 0, 0), -ENOENT);
  EXPECT_EQ(journal_entries().back()["module"], "mt7612e_ap");
  EXPECT_EQ(call_32(kI386InitModule, name, 200, name), -ENOEXEC);

  struct {
    int32_t command;
    char device[24];
    int32_t id;
    char rest[24];
  } vlan = {0, "eth0", 9, ""};
  memcpy(page->buffer, &vlan, sizeof vlan);
  int fd = socket(AF_INET, SOCK_DGRAM, 0);
  EXPECT_EQ(call_32(kI386Ioctl, fd, 0x8983, name), 0);
  EXPECT_EQ(call_32(kI386Ioctl, fd, 0x8983, name), -EEXIST);
  close(fd);
}
