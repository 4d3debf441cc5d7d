// Compares the client's own encoder and decoder with the filters that rpcgen makes from
// wlan_config.x.
#include <gtest/gtest.h>
#include <rpc/rpc.h>

#include <type_traits>

#include "base/text.h"
#include "rpc/column_types.h"
#include "rpc/row_argument.h"
#include "values/argument_check.h"
#include "values/argument_meanings.h"
#include "wire/lookup.h"
#include "wire/reply.h"

// Decodes `in` with the filter and encodes the result again. False if the filter fails or bytes
// are left over.
template <typename T>
static bool through(bool_t (*filter)(XDR*, T*), const byte_string& in, byte_string& out) {
  T object{};
  XDR xdr;
  byte_string copy = in;
  auto size = static_cast<u_int>(in.size());
  xdrmem_create(&xdr, reinterpret_cast<char*>(copy.data()), size, XDR_DECODE);
  if (!filter(&xdr, &object) || xdr_getpos(&xdr) != size) return false;
  out.assign(in.size(), 0xee);
  xdrmem_create(&xdr, reinterpret_cast<char*>(out.data()), size, XDR_ENCODE);
  bool encoded = filter(&xdr, &object) && xdr_getpos(&xdr) == size;
  xdr.x_op = XDR_FREE;
  filter(&xdr, &object);
  return encoded;
}

static bool through(bool_t (*)(), const byte_string& in, byte_string& out) {
  out.clear();
  return in.empty();
}

namespace {

struct filter_row {
  const char* name;
  bool (*round_trip)(const byte_string& in, byte_string& out);
};

}  // namespace

#define FILTER(argument) FILTER_(argument)
#define FILTER_(argument) xdr_##argument
#define PROCEDURE(number, name, stem, topic, members, ...)             \
  {#name, [](const byte_string& in, byte_string& out) {                \
     return through(FILTER(ARGUMENT(stem, FIRST_##members)), in, out); \
   }},

const filter_row kRows[] = {
#include "rpc/procedures.def"
};

TEST(Filters, EveryProceduresArgumentsAreWhatItsFilterReads) {
  ASSERT_EQ(std::size(kRows), table_procedures().size());
  for (const filter_row& row : kRows) {
    const procedure_row& procedure = *lookup_name(row.name);
    std::vector<std::string> given;
    for (const argument_spec& argument : table_arguments(procedure)) {
      const meaning_entry* meaning = meanings_find(procedure, argument.name);
      ASSERT_NE(meaning, nullptr) << row.name
                                  << ": client/values/argument_meanings.cpp has to say what "
                                  << argument.name << " means";
      given.push_back(meaning->example);
    }
    byte_string bytes, again;
    std::string error;
    ASSERT_TRUE(arguments_encode(procedure, given, bytes, error)) << row.name << ": " << error;
    ASSERT_TRUE(row.round_trip(bytes, again)) << row.name;
    EXPECT_EQ(bytes, again) << row.name;
  }
}

// The daemon uses the same filter, so it rejects what is rejected here.
TEST(Filters, TextWithANulInsideDoesNotDecode) {
  for (const char* inside : {"a", "\0"}) {
    byte_string bytes = {0, 0, 0, 3, 0, 0, 0, 3, 'a', static_cast<unsigned char>(*inside), 'b', 0};
    XDR xdr;
    xdrmem_create(&xdr, reinterpret_cast<char*>(bytes.data()), static_cast<u_int>(bytes.size()),
                  XDR_DECODE);
    wlan_set_ssid_1_argument argument = {};
    EXPECT_EQ(xdr_wlan_set_ssid_1_argument(&xdr, &argument), *inside != '\0');
    xdr_free(
        reinterpret_cast<xdrproc_t>(reinterpret_cast<void (*)()>(xdr_wlan_set_ssid_1_argument)),
        &argument);
  }
}

TEST(Filters, CharactersOfARecordKeepTheirSign) {
  byte_string bytes, again;
  std::string error;
  std::vector<std::string> given = {"1", "2", "3", "\xff\x80", "", "", "", "", "", "", "4", "5"};
  const procedure_row& procedure = *lookup_name("hnc_set_hne_table_entry");
  ASSERT_TRUE(arguments_encode(procedure, given, bytes, error)) << error;
  ASSERT_TRUE(through(xdr_hnc_set_supported_hne_table_entry_1_argument, bytes, again));
  // The filter encodes a character as the processor's char, which is unsigned on ARM.
  for (size_t i = 0; i < bytes.size(); ++i) {
    const bool compared = std::is_signed_v<char> || i % 4 == 3;
    EXPECT_TRUE(!compared || bytes[i] == again[i]) << i;
  }
}

static byte_string encoded_result(int code, std::vector<u_int> words, std::string data) {
  wlan_config_result_data_t result{};
  result.return_code = code;
  result.return_words.return_words_len = static_cast<u_int>(words.size());
  result.return_words.return_words_val = words.data();
  result.return_data.return_data_len = static_cast<u_int>(data.size());
  result.return_data.return_data_val = data.data();
  byte_string bytes(16384);
  XDR xdr;
  xdrmem_create(&xdr, reinterpret_cast<char*>(bytes.data()), static_cast<u_int>(bytes.size()),
                XDR_ENCODE);
  EXPECT_TRUE(xdr_wlan_config_result_data_t(&xdr, &result));
  bytes.resize(xdr_getpos(&xdr));
  return bytes;
}

TEST(Filters, ResultsAreReadAsTheFilterWritesThem) {
  decoded_reply reply;
  std::string error;
  byte_string integer = encoded_result(0, {6, 0, 0, 0}, "");
  EXPECT_EQ(integer.size(), 28u);
  ASSERT_TRUE(reply_decode(*lookup_name("wlan_get_channel"), integer, reply, error)) << error;
  EXPECT_EQ(reply.value, 6);
  byte_string text = encoded_result(1, {}, std::string("abc", 4));
  EXPECT_EQ(text.size(), 16u);
  ASSERT_TRUE(reply_decode(*lookup_name("wlan_get_ssid"), text, reply, error)) << error;
  EXPECT_EQ(reply.code, 1);
  EXPECT_EQ(reply.text, "abc");
  std::string largest(WLAN_CONFIG_RETURN_DATA_MAX, 'x');
  byte_string image = encoded_result(0, {}, largest);
  const procedure_row& table = *lookup_name("wlan_get_assoc_devices_table");
  ASSERT_TRUE(reply_decode(table, image, reply, error)) << error;
  EXPECT_EQ(reply.data, largest);
}
