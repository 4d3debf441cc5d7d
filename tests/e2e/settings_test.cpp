#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/wire.h"

static constexpr uint32_t kSetKeyPassphrase = 65;
static constexpr uint32_t kGetBssHncService = 0x0100009E;
static constexpr uint32_t kSetLedEnable = 0x01000082;

static int32_t set_ssid(uint32_t bss, const std::string& ssid) {
  return call_for_code(kSetSsid, xdr_word(bss) + xdr_text(ssid));
}

// The profile with one line replaced.
static std::string with_line(std::string profile, const std::string& key,
                             const std::string& value) {
  const std::string begin = "\n" + key + "=";
  const size_t start = profile.find(begin);
  EXPECT_NE(start, profile.npos) << key;
  const size_t end = profile.find('\n', start + 1);
  return profile.replace(start, end - start, begin + value);
}

TEST(SetSsid, RewritesItsLineAndTheMirrorAndNothingElse) {
  start_daemon();
  const std::string before = read_file(kProfile24);
  const std::string other = read_file(kProfile5);
  EXPECT_EQ(set_ssid(3, "Living room"), 0);
  EXPECT_EQ(read_file(kProfile24), with_line(before, "SSID3", "Living room"));
  EXPECT_EQ(read_file("/tmp/mt76xx_24.dat.hnc"), read_file(kProfile24));
  EXPECT_EQ(read_file(kProfile5), other);
  EXPECT_EQ(run("ls /tmp/wifitemp.* 2>/dev/null"), "");
}

TEST(SetSsid, FromBssNineOnIsTheFiveGigahertzProfile) {
  start_daemon();
  const std::string before = read_file(kProfile5);
  EXPECT_EQ(set_ssid(11, "Upstairs"), 0);
  EXPECT_EQ(read_file(kProfile5), with_line(before, "SSID3", "Upstairs"));
  EXPECT_EQ(read_file("/tmp/mt76xx_5.dat.hnc"), read_file(kProfile5));
}

TEST(SetSsid, TwiceTheSameAnswersZeroTwiceAndSparesTheMirror) {
  start_daemon();
  EXPECT_EQ(set_ssid(1, "Same"), 0);
  write_file("/tmp/mt76xx_24.dat.hnc", "untouched");
  EXPECT_EQ(set_ssid(1, "Same"), 0);
  EXPECT_EQ(read_file("/tmp/mt76xx_24.dat.hnc"), "untouched");
  EXPECT_NE(daemon_errors().find("no change\n"), std::string::npos);
}

TEST(SetSsid, IndexWithoutAKeyFails) {
  start_daemon();
  const std::string before = read_file(kProfile24);
  const uint32_t odd[] = {0, 17, 0xFFFFFFFB, 0x80000000, 0x7FFFFFFF};
  for (const uint32_t bss : odd)
    EXPECT_EQ(set_ssid(bss, "x"), -1) << bss;
  EXPECT_EQ(read_file(kProfile24), before);
  EXPECT_NE(daemon_errors().find("wlan_setSSID failed to update wifi profile, ret:0\n"),
            std::string::npos)
      << daemon_errors();
}

TEST(SetSsid, NoTextAddsALineOrIsCut) {
  start_daemon();
  const std::string before = read_file(kProfile24);
  EXPECT_EQ(set_ssid(1, "a\nAuthMode=OPEN"), -1);
  EXPECT_EQ(set_ssid(1, "a\rb"), -1);
  EXPECT_EQ(set_ssid(1, std::string(1568, 'a')), -1);
  EXPECT_EQ(set_ssid(1, std::string(8000, 'a')), -1);
  EXPECT_EQ(read_file(kProfile24), before);
  EXPECT_FALSE(exists("/tmp/mt76xx_24.dat.hnc"));
  EXPECT_EQ(set_ssid(1, std::string(1567, 'a')), 0);
  EXPECT_EQ(read_file(kProfile24), with_line(before, "SSID1", std::string(1567, 'a')));
}

TEST(SetSsid, TextWithANulInsideIsGarbage) {
  start_daemon();
  const std::string before = read_file(kProfile24);
  reply_message reply = {};
  const std::string text("ab\0c", 4);
  ASSERT_TRUE(call(kSetSsid, xdr_word(1) + xdr_text(text), &reply));
  EXPECT_EQ(reply.accept_status, kGarbageArguments);
  EXPECT_EQ(read_file(kProfile24), before);
}

TEST(SetSsid, ShellAndFormatCharactersAreJustText) {
  start_daemon();
  write_file("/tmp/wlandbg", "");
  const std::string before = read_file(kProfile24);
  const std::string text = "%s%n $(touch /tmp/pwned) `id` '\";|&";
  EXPECT_EQ(set_ssid(2, text), 0);
  EXPECT_EQ(read_file(kProfile24), with_line(before, "SSID2", text));
  EXPECT_FALSE(exists("/tmp/pwned"));
}

TEST(SetSsid, MissingProfileFailsWithItsMessage) {
  start_daemon();
  ASSERT_EQ(unlink(kProfile24), 0);
  EXPECT_EQ(set_ssid(1, "x"), -1);
  EXPECT_NE(daemon_errors().find("_wifiprofile_updateParam 1 open /tmp/mt76xx_24.dat error"
                                 "open file: No such file or directory\n"),
            std::string::npos)
      << daemon_errors();
  EXPECT_FALSE(exists(kProfile24));
}

TEST(SetSsid, IsTracedWithItsTextByTheHandler) {
  start_daemon();
  write_file("/tmp/wlandbg", "");
  EXPECT_EQ(set_ssid(3, "Traced"), 0);
  const std::string trace =
      "\033[1;32;40m[RPC] wlan_set_ssid_1_svc\033[0m  WLAN RPC server : [ssid=Traced]\n";
  EXPECT_NE(daemon_output().find(trace), std::string::npos) << daemon_output();
  EXPECT_NE(daemon_output().find("_wifiprofile_updateParam: param:SSID3[0]=Traced\n"),
            std::string::npos);
}

TEST(SetKeyPassphrase, WritesItsKeyWhateverTheKeyIndex) {
  start_daemon();
  const std::string before = read_file(kProfile5);
  const std::string arguments = xdr_word(16) + xdr_word(4711) + xdr_text("correct horse");
  EXPECT_EQ(call_for_code(kSetKeyPassphrase, arguments), 0);
  EXPECT_EQ(read_file(kProfile5), with_line(before, "WPAPSK8", "correct horse"));
}

TEST(Backhaul, HostIsToldOfABackhaulBssOnlyAndWithTheKindOfSetting) {
  const std::string profile = with_line(read_file(kProfile24), "BSSHNCService", "0;7;3;0;0;0;0;0");
  write_file(kProfile24, profile);
  start_daemon({"LD_LIBRARY_PATH=" + host_library_directory()});
  EXPECT_EQ(set_ssid(1, "front"), 0);
  EXPECT_EQ(set_ssid(3, "other"), 0);
  EXPECT_FALSE(exists("/tmp/host_calls"));
  EXPECT_EQ(set_ssid(2, "hidden link"), 0);
  EXPECT_EQ(call_for_code(kSetKeyPassphrase, xdr_word(2) + xdr_word(1) + xdr_text("secret")), 0);
  EXPECT_EQ(read_file("/tmp/host_calls"), "2 1 hidden link\n2 0 secret\n");
}

TEST(Backhaul, WithoutTheHostsLibraryTheSettingIsWrittenAllTheSame) {
  write_file(kProfile24, with_line(read_file(kProfile24), "BSSHNCService", "0;7;3;0;0;0;0;0"));
  start_daemon();
  EXPECT_EQ(set_ssid(2, "hidden link"), 0);
  EXPECT_NE(read_file(kProfile24).find("\nSSID2=hidden link\n"), std::string::npos);
}

TEST(BssHncService, AnswersTheFieldOfTheBss) {
  write_file(kProfile24, with_line(read_file(kProfile24), "BSSHNCService", "1;2;3;4;5;6;7;8"));
  start_daemon();
  reply_message reply = {};
  ASSERT_TRUE(call(kGetBssHncService, xdr_word(7), &reply));
  EXPECT_EQ(reply.payload, xdr_word(0) + xdr_word(4) + xdr_word(7) + xdr_word(0) + xdr_word(0) +
                               xdr_word(0) + xdr_word(0));
}

TEST(BssHncService, FailureAnswersMinusOneAndZero) {
  start_daemon();
  reply_message reply = {};
  ASSERT_TRUE(call(kGetBssHncService, xdr_word(0), &reply));
  EXPECT_EQ(static_cast<int32_t>(word_at(reply.payload, 0)), -1);
  EXPECT_EQ(word_at(reply.payload, 8), 0u);
  EXPECT_EQ(reply.payload.size(), 28u);
  EXPECT_NE(daemon_errors().find("wlan_getBSSHNCService failed to update wifi profile, ret:0\n "),
            std::string::npos);
}

TEST(Led, ReachesTheDriverOfBothRadios) {
  start_daemon();
  EXPECT_EQ(call_for_code(kSetLedEnable, xdr_word(5)), 0);
  EXPECT_EQ(call_for_code(kSetLedEnable, xdr_word(0)), 0);
  EXPECT_EQ(run("jq -r 'select(.text) | .interface + \" \" + .text' /run/gwbox/journal.jsonl"),
            "ra0 LEDEnable=1\nra8 LEDEnable=1\nra0 LEDEnable=0\nra8 LEDEnable=0\n")
      << read_file("/run/gwbox/journal.jsonl");
}

TEST(Led, SecondRadioIsTriedWhenTheFirstFails) {
  start_daemon();
  run("ip link del ra0");
  EXPECT_EQ(call_for_code(kSetLedEnable, xdr_word(1)), -1);
  EXPECT_NE(daemon_errors().find("wlan_setLedEnable wlan_setLedEnable WIFI24 ioctl failed "),
            std::string::npos);
  EXPECT_EQ(daemon_errors().find("WIFI50"), std::string::npos);
  EXPECT_NE(read_file("/run/gwbox/journal.jsonl").find("\"ra8\""), std::string::npos);
}
