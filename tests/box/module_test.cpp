// The driver's modules, loaded and unloaded by kmod's tools, which know nothing about the
// box.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <cerrno>

#include "inside.h"
#include "watch.h"

static const std::string kDirectory = "/lib/modules/wifi/";

static bool has_interface(int n) {
  return access(("/sys/class/net/ra" + std::to_string(n)).c_str(), F_OK) == 0;
}

static int interfaces() {
  int count = 0;
  for (int n = 0; n < 20; ++n)
    count += has_interface(n);
  return count;
}

static int error_of(long result) {
  return result < 0 ? errno : 0;
}

static int load(const std::string& image, const char* params) {
  return error_of(syscall(SYS_init_module, image.data(), image.size(), params));
}

static int unload(const char* name) {
  return error_of(syscall(SYS_delete_module, name, O_NONBLOCK | O_EXCL));
}

TEST(Module, RmmodMakesTheInterfacesOfItsRadioVanish) {
  run_result removed = run("rmmod mt7603e_ap.ko");
  EXPECT_EQ(removed.status, 0) << removed.output;
  EXPECT_EQ(interfaces(), 8);
  EXPECT_FALSE(has_interface(0));
  EXPECT_FALSE(has_interface(7));
  EXPECT_TRUE(has_interface(8));
  EXPECT_NE(run("iwpriv ra0 set A=1").status, 0);
  EXPECT_EQ(run("ls /sys/module").output, "mt7612e_ap\n");
}

TEST(Module, RmmodOfOneThatIsNotLoadedFails) {
  EXPECT_EQ(run("rmmod mt7612e_ap.ko").status, 0);
  run_result again = run("rmmod mt7612e_ap.ko");
  EXPECT_NE(again.status, 0);
  EXPECT_NE(again.output.find("not currently loaded"), std::string::npos) << again.output;
  EXPECT_EQ(interfaces(), 8);
}

TEST(Module, InsmodBringsTheInterfacesBackAndDown) {
  EXPECT_EQ(run("ip link set ra8 up && rmmod mt7612e_ap").status, 0);
  EXPECT_EQ(interfaces(), 8);
  run_result loaded = run("insmod " + kDirectory + "mt7612e_ap.ko mode=ap channels=3");
  EXPECT_EQ(loaded.status, 0) << loaded.output;
  EXPECT_EQ(interfaces(), 16);
  EXPECT_NE(run("ip -o link show ra8").output.find("state DOWN"), std::string::npos);
  EXPECT_EQ(set_text("ra8", "A=1"), 0);
}

TEST(Module, TheJournalTellsModuleAndParameters) {
  ASSERT_EQ(run("rmmod mt7603e_ap").status, 0);
  auto removed = journal_entries().back();
  EXPECT_EQ(removed["name"], "delete_module");
  EXPECT_EQ(removed["module"], "mt7603e_ap");
  EXPECT_EQ(removed["comm"], "rmmod");
  EXPECT_EQ(removed["result"], 0);
  EXPECT_FALSE(removed.contains("interface"));
  ASSERT_EQ(run("insmod " + kDirectory + "mt7603e_ap.ko debug=2").status, 0);
  auto loaded = journal_entries().back();
  EXPECT_EQ(loaded["name"], "finit_module");
  EXPECT_EQ(loaded["module"], "mt7603e_ap");
  EXPECT_EQ(loaded["params"], "debug=2");
  EXPECT_EQ(loaded["comm"], "insmod");
}

TEST(Module, TheKernelsErrors) {
  run_result twice = run("insmod " + kDirectory + "mt7603e_ap.ko");
  EXPECT_NE(twice.output.find("File exists"), std::string::npos) << twice.output;
  run_result wrong_board = run("insmod " + kDirectory + "mt7615_ap.ko");
  EXPECT_NE(wrong_board.output.find("No such device"), std::string::npos) << wrong_board.output;
  run_result junk = run("insmod /etc/passwd");
  EXPECT_NE(junk.output.find("Invalid module format"), std::string::npos) << junk.output;
  EXPECT_EQ(interfaces(), 16);
}

TEST(Module, FromMemory) {
  std::string image = read_file(kDirectory + "mt7603e_ap.ko");
  EXPECT_EQ(load(image, ""), EEXIST);
  ASSERT_EQ(unload("mt7603e_ap"), 0);
  EXPECT_EQ(unload("mt7603e_ap"), ENOENT);
  EXPECT_EQ(unload("mt7603e_ap.ko"), ENOENT);
  EXPECT_EQ(interfaces(), 8);
  EXPECT_EQ(load(image, "x=1"), 0);
  EXPECT_EQ(interfaces(), 16);
  EXPECT_EQ(journal_entries().back()["name"], "init_module");
  EXPECT_EQ(journal_entries().back()["params"], "x=1");
}

TEST(Module, JunkFromMemory) {
  EXPECT_EQ(load("junk", ""), ENOEXEC);
  EXPECT_EQ(load(std::string(5000, 'x'), ""), ENOEXEC);
  std::string image = read_file(kDirectory + "mt7603e_ap.ko");
  EXPECT_EQ(load(image.substr(0, 100), ""), ENOEXEC);
  EXPECT_EQ(error_of(syscall(SYS_init_module, 16, image.size(), "")), EFAULT);
  EXPECT_EQ(error_of(syscall(SYS_init_module, image.data(), image.size(), 16)), EFAULT);
  EXPECT_EQ(error_of(syscall(SYS_delete_module, 16, 0)), EFAULT);
  EXPECT_EQ(unload(""), ENOENT);
}

TEST(Module, WhatIsNoOpenFile) {
  EXPECT_EQ(error_of(syscall(SYS_finit_module, 999, "", 0)), EBADF);
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  EXPECT_EQ(error_of(syscall(SYS_finit_module, ends[0], "", 0)), EINVAL);
  int fd = open((kDirectory + "mt7603e_ap.ko").c_str(), O_RDONLY);
  EXPECT_EQ(error_of(syscall(SYS_finit_module, fd, "", 0x100)), EINVAL);
  EXPECT_EQ(error_of(syscall(SYS_finit_module, fd, "", 0)), EEXIST);
  close(fd);
}

TEST(Module, FilesCanBeCopiedElsewhereAndLoadedFromThere) {
  ASSERT_EQ(run("rmmod mt7603e_ap && cp " + kDirectory + "mt7603e_ap.ko /nvram/").status, 0);
  EXPECT_EQ(run("insmod /nvram/mt7603e_ap.ko").status, 0);
  EXPECT_EQ(interfaces(), 16);
}

TEST(Module, ModinfoReadsTheFile) {
  EXPECT_EQ(run("modinfo -F name " + kDirectory + "mt7615_ap.ko").output, "mt7615_ap\n");
}

TEST(Module, LsmodListsThem) {
  if (access("/proc/modules", F_OK) != 0) {
    EXPECT_NE(read_file("/run/gwbox/notes").find("/proc/modules"), std::string::npos);
    GTEST_SKIP() << "this kernel has no /proc/modules";
  }
  std::string list = run("lsmod").output;
  EXPECT_NE(list.find("mt7603e_ap"), std::string::npos) << list;
  EXPECT_NE(list.find("mt7612e_ap"), std::string::npos) << list;
  ASSERT_EQ(run("rmmod mt7612e_ap").status, 0);
  EXPECT_EQ(run("lsmod").output.find("mt7612e_ap"), std::string::npos);
}

TEST(Module, CallsCanBeMadeToFail) {
  ASSERT_EQ(run("gwbox fail delete_module EBUSY").status, 0);
  EXPECT_EQ(unload("mt7603e_ap"), EBUSY);
  EXPECT_EQ(interfaces(), 16);
  EXPECT_EQ(journal_entries().back()["injected"], true);
  EXPECT_EQ(unload("mt7603e_ap"), 0);
}

TEST(Module, AFreshDriverForgetsWhatItsFormerSelfWasTold) {
  ASSERT_EQ(run("ip link set ra0 up; iwpriv ra0 set Channel=11").status, 0);
  EXPECT_EQ(run("iwgetid ra0 --freq --raw").output, "11\n");
  ASSERT_EQ(run("rmmod mt7603e_ap && insmod " + kDirectory + "mt7603e_ap.ko").status, 0);
  ASSERT_EQ(run("ip link set ra0 up").status, 0);
  EXPECT_EQ(run("iwgetid ra0 --freq --raw").output, "6\n");
}
