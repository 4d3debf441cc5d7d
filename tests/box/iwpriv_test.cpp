// The distribution's own iwpriv, which knows nothing about the box.
#include <gtest/gtest.h>

#include "inside.h"

TEST(Iwpriv, SetIsDoneAndJournalled) {
  run_result set = run("iwpriv ra0 set LEDEnable=1");
  EXPECT_EQ(set.status, 0) << set.output;
  EXPECT_EQ(set.output, "");
  auto entries = journal_entries();
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(entries[0]["name"], "get_priv");
  EXPECT_EQ(entries[0]["request"], "0x8B0D");
  EXPECT_EQ(entries[0]["result"], 0);
  EXPECT_EQ(entries[1]["seq"], 2);
  EXPECT_EQ(entries[1]["comm"], "iwpriv");
  EXPECT_EQ(entries[1]["interface"], "ra0");
  EXPECT_EQ(entries[1]["request"], "0x8BE2");
  EXPECT_EQ(entries[1]["name"], "set");
  EXPECT_EQ(entries[1]["length"], 12);
  EXPECT_EQ(entries[1]["text"], "LEDEnable=1");
  EXPECT_EQ(entries[1]["result"], 0);
  EXPECT_FALSE(entries[1].contains("sub"));
  EXPECT_FALSE(entries[1].contains("error"));
  EXPECT_FALSE(entries[1].contains("injected"));
}

TEST(Iwpriv, EveryInterfaceOfTheBoardTakesASet) {
  for (int i = 0; i < 16; ++i) {
    std::string name = "ra" + std::to_string(i);
    run_result set = run("iwpriv " + name + " set SSID=net" + std::to_string(i));
    EXPECT_EQ(set.status, 0) << set.output;
    EXPECT_EQ(journal_entries().back()["interface"], name);
  }
}

TEST(Iwpriv, ListsTheSetCommand) {
  run_result list = run("iwpriv ra8");
  EXPECT_EQ(list.status, 0);
  EXPECT_NE(list.output.find("set              (8BE2) : set 1536 char  & get   0"),
            std::string::npos)
      << list.output;
}

TEST(Iwpriv, RefusesACommandThatTheDriverDoesNotHave) {
  run_result unknown = run("iwpriv ra0 nosuchcommand 1");
  EXPECT_NE(unknown.status, 0);
  EXPECT_NE(unknown.output.find("Invalid command : nosuchcommand"), std::string::npos)
      << unknown.output;
  auto entries = journal_entries();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0]["name"], "get_priv");
}

TEST(Iwpriv, RefusesAnInterfaceThatIsNotThere) {
  run_result missing = run("iwpriv ra16 set LEDEnable=1");
  EXPECT_NE(missing.status, 0);
  for (const auto& entry : journal_entries()) {
    EXPECT_EQ(entry["error"], "ENODEV");
    EXPECT_EQ(entry["interface"], "ra16");
  }
  EXPECT_FALSE(journal_entries().empty());
}
