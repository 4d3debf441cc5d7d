#include "wire/reply.h"

#include <gtest/gtest.h>

#include "run_support.h"
#include "wire/lookup.h"

static bool decodes(const char* name, const byte_string& bytes, decoded_reply& reply) {
  std::string error;
  bool decoded = reply_decode(*lookup_name(name), bytes, reply, error);
  EXPECT_EQ(decoded, error.empty()) << name << ": " << error;
  return decoded;
}

TEST(Reply, Code) {
  decoded_reply reply;
  ASSERT_TRUE(decodes("wlan_set_ssid", words({0}), reply));
  EXPECT_EQ(reply.code, 0);
  ASSERT_TRUE(decodes("wlan_set_ssid", words({0xffffffff}), reply));
  EXPECT_EQ(reply.code, -1);
  ASSERT_TRUE(decodes("wlan_set_ssid", words({3}), reply));
  EXPECT_EQ(reply.code, 3);
}

TEST(Reply, IntegerIsTheFirstOfFourWords) {
  decoded_reply reply;
  byte_string bytes = words({0, 4, 0xffffffad, 0xdead, 0xbeef, 1, 0});
  ASSERT_EQ(bytes.size(), 28u);
  ASSERT_TRUE(decodes("wlan_get_channel", bytes, reply));
  EXPECT_EQ(reply.code, 0);
  EXPECT_EQ(reply.value, -83);
  EXPECT_FALSE(decodes("wlan_get_channel", words({0, 0, 0}), reply)) << "no word, no value";
}

TEST(Reply, TextEndsAtItsNul) {
  decoded_reply reply;
  ASSERT_TRUE(decodes("wlan_get_ssid", data_record(0, std::string("abc\0", 4)), reply));
  EXPECT_EQ(reply.text, "abc");
  ASSERT_TRUE(decodes("wlan_get_ssid", data_record(0, std::string("\0", 1)), reply));
  EXPECT_EQ(reply.text, "");
  ASSERT_TRUE(decodes("wlan_get_ssid", data_record(0, ""), reply));
  EXPECT_EQ(reply.text, "");
  ASSERT_TRUE(decodes("wlan_get_ssid", data_record(0, "no end"), reply));
  EXPECT_EQ(reply.text, "no end");
  ASSERT_TRUE(decodes("wlan_get_ssid", data_record(0, std::string("a\0secret", 8)), reply));
  EXPECT_EQ(reply.text, "a");
}

TEST(Reply, OnlyTheMeaningfulWordsAreKept) {
  decoded_reply reply;
  byte_string bytes = words({0, 12});
  for (uint32_t i = 1; i <= 12; ++i)
    xdr_put_word(bytes, i);
  xdr_put_word(bytes, 0);
  ASSERT_TRUE(decodes("wlan_get_channel_statistics", bytes, reply));
  EXPECT_EQ(reply.data, std::string("\1\0\0\0\2\0\0\0\3\0\0\0", 12)) << "low byte first";
  EXPECT_FALSE(decodes("wlan_get_channel_statistics", words({0, 2, 1, 2, 0}), reply));
}

TEST(Reply, RecordAndNothing) {
  decoded_reply reply;
  const std::string record(236, '\1');
  ASSERT_TRUE(decodes("wlan_get_assoc_device", data_record(0, record), reply));
  EXPECT_EQ(reply.data, record);
  EXPECT_FALSE(decodes("wlan_get_assoc_device", data_record(0, record.substr(1)), reply));
  ASSERT_TRUE(decodes("wlan_del_entry", words({0, 0, 0}), reply));
  EXPECT_EQ(reply.code, 0);
}

TEST(Reply, AFailedGetterNeedsNoPayload) {
  decoded_reply reply;
  ASSERT_TRUE(decodes("wlan_get_channel", words({0xffffffff, 0, 0}), reply));
  EXPECT_EQ(reply.code, -1);
}

TEST(Reply, LyingLengths) {
  decoded_reply reply;
  for (uint32_t count : {5u, 0x3fffffffu, 0x40000001u, 0x80000000u, 0xffffffffu})
    EXPECT_FALSE(decodes("wlan_get_channel", words({0, count, 6, 0, 0, 0, 0}), reply)) << count;
  for (uint32_t length : {5u, 8256u, 8257u, 0x7fffffffu, 0xfffffffdu, 0xffffffffu})
    EXPECT_FALSE(decodes("wlan_get_ssid", words({0, 0, length, 0x61626300}), reply)) << length;
  byte_string large = words({0, 0});
  xdr_put_opaque(large, std::string(8257, 'x'));
  EXPECT_FALSE(decodes("wlan_get_ssid", large, reply)) << "more than return_data may have";
}

// Copies exactly the cut length, so that the sanitizers catch a read past the end.
static void expect_refused_when_cut(const char* name, const byte_string& whole) {
  decoded_reply reply;
  ASSERT_TRUE(decodes(name, whole, reply)) << name;
  for (size_t length = 0; length < whole.size(); ++length) {
    byte_string cut(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length));
    cut.shrink_to_fit();
    EXPECT_FALSE(decodes(name, cut, reply)) << name << " cut at " << length;
  }
  byte_string longer = whole;
  longer.push_back(0);
  EXPECT_FALSE(decodes(name, longer, reply)) << name << " with a byte more";
}

TEST(Reply, CutAtEveryByte) {
  expect_refused_when_cut("wlan_set_ssid", words({0}));
  expect_refused_when_cut("wlan_get_channel", words({0, 4, 6, 0, 0, 0, 0}));
  expect_refused_when_cut("wlan_get_ssid", data_record(0, std::string("hello\0", 6)));
  expect_refused_when_cut("wlan_get_assoc_device", data_record(0, std::string(236, 'x')));
  expect_refused_when_cut("wlan_del_entry", words({0, 0, 0}));
}
