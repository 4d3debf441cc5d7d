#include "commands/options.h"

#include <gtest/gtest.h>

#include "commands/help.h"
#include "wire/lookup.h"

using word_list = std::vector<std::string>;

namespace {

struct options_case {
  word_list arguments;
  word_list words;
  double timeout;
  unsigned port;
  bool json;
};

}  // namespace

TEST(Args, OptionsComeFirstAndTheRestIsVerbatim) {
  const options_case cases[] = {
      {{"ping"}, {"ping"}, 10, 60001, false},
      {{"--timeout", "0.25", "ping"}, {"ping"}, 0.25, 60001, false},
      {{"--timeout=3", "--port=7", "--json", "list", "x"}, {"list", "x"}, 3, 7, true},
      {{"wlan_set_x", "3", "-5"}, {"wlan_set_x", "3", "-5"}, 10, 60001, false},
      {{"wlan_set_x", "--json", "-h"}, {"wlan_set_x", "--json", "-h"}, 10, 60001, false},
      {{"--json", "wlan_set_x", "--timeout", "1"},
       {"wlan_set_x", "--timeout", "1"},
       10,
       60001,
       true},
      {{"wlan_set_x", "", "--", "++", "a=b", "[1]", "{x}"},
       {"wlan_set_x", "", "--", "++", "a=b", "[1]", "{x}"},
       10,
       60001,
       false},
      {{"21"}, {"21"}, 10, 60001, false},
      {{"--json", "--", "wlan_set_x", "--", "-h"}, {"wlan_set_x", "--", "-h"}, 10, 60001, true},
  };
  for (const options_case& c : cases) {
    client_options options;
    std::string error;
    ASSERT_EQ(options_parse(c.arguments, options, error), options_outcome::kRun) << error;
    EXPECT_EQ(options.words, c.words);
    EXPECT_EQ(options.timeout, c.timeout);
    EXPECT_EQ(options.port, c.port);
    EXPECT_EQ(options.json, c.json);
  }
}

TEST(Args, WrongOptionsLeaveThatJsonIsWanted) {
  for (const word_list& words :
       {word_list{"--bogus", "--json", "ping"}, word_list{"--port", "x", "--json"},
        word_list{"--json", "--bogus"}, word_list{"--json"}}) {
    client_options options;
    std::string error;
    EXPECT_EQ(options_parse(words, options, error), options_outcome::kError);
    EXPECT_TRUE(options.json) << error;
  }
}

TEST(Args, DefaultsAreTheDaemonsAddress) {
  client_options options;
  std::string error;
  ASSERT_EQ(options_parse({"ping"}, options, error), options_outcome::kRun);
  EXPECT_EQ(options.host, "192.168.254.254");
  EXPECT_EQ(options.port, 60001);
  EXPECT_EQ(options.timeout, 10);
  ASSERT_EQ(options_parse({"--host", "gateway.lan", "ping"}, options, error),
            options_outcome::kRun);
  EXPECT_EQ(options.host, "gateway.lan");
}

TEST(Args, WrongOptionsAreRefusedInOneLine) {
  const struct {
    word_list arguments;
    const char* named;
  } cases[] = {
      {{}, "no procedure"},
      {{"--json"}, "no procedure"},
      {{"--jsn", "ping"}, "--jsn"},
      {{"-x", "ping"}, "-x"},
      {{"--timeout", "0", "ping"}, "--timeout"},
      {{"--timeout", "-1", "ping"}, "--timeout"},
      {{"--timeout", "nan", "ping"}, "--timeout"},
      {{"--timeout", "inf", "ping"}, "--timeout"},
      {{"--timeout", "ten", "ping"}, "ten"},
      {{"--timeout", "1s", "ping"}, "1s"},
      {{"--timeout"}, "--timeout"},
      {{"--port", "0", "ping"}, "--port"},
      {{"--port", "65536", "ping"}, "65536"},
      {{"--port", "-1", "ping"}, "-1"},
      {{"--port", "http", "ping"}, "http"},
      {{"--host", "", "ping"}, "--host"},
      {{"--timeout", "\x1b[31m", "ping"}, "\\x1b"},
  };
  for (const auto& c : cases) {
    client_options options;
    std::string error;
    ASSERT_EQ(options_parse(c.arguments, options, error), options_outcome::kError) << c.named;
    EXPECT_NE(error.find(c.named), std::string::npos) << error;
    EXPECT_EQ(error.find_first_of("\n\x1b"), std::string::npos) << error;
  }
}

TEST(Args, HelpAndVersion) {
  client_options options;
  std::string error;
  EXPECT_EQ(options_parse({"--help"}, options, error), options_outcome::kHelp);
  EXPECT_EQ(options_parse({"-h"}, options, error), options_outcome::kHelp);
  EXPECT_EQ(options_parse({"--version"}, options, error), options_outcome::kVersion);
  for (const char* option : {"--host", "--port", "--timeout", "--json", "--version", "--help"})
    EXPECT_NE(help_text(command_all()).find(option), std::string::npos) << option;
}

TEST(Help, FitsIntoEightyColumnsAndHasEveryCommand) {
  std::string text = help_text(command_all());
  for (const command_row* command : command_all()) {
    const std::string part = help_of(*command);
    EXPECT_TRUE(part.starts_with("usage: wificonf")) << command->name;
    EXPECT_NE(part.find(std::string("\n  ") + command->name + " "), std::string::npos) << part;
    text += part;
  }
  for (size_t at = 0; at < text.size(); at = text.find('\n', at) + 1)
    EXPECT_LT(text.find('\n', at) - at, 80u) << text.substr(at, 90);
}
