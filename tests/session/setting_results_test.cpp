// What became of a setting for each port, in the structured form.
#include <gtest/gtest.h>

#include "session/json.h"
#include "session/program.h"

namespace session {
namespace {

rapidjson::Document parsed(const std::string& text) {
  rapidjson::Document document;
  document.Parse(text.c_str());
  if (document.HasParseError()) throw std::logic_error("not one document: " + text);
  return document;
}

// The document of the last line.
rapidjson::Document configured(const std::string& range, const std::string& lines) {
  const std::string out = run_lines("configure\ninterface " + range + "\n" + lines + " | json\n").out;
  return parsed(out.substr(out.find("{\"schema_version\"")));
}

// "Ethernet1/1: applied" and so on, with what was before and after, and the reason.
std::string text_of(const rapidjson::Value& record) {
  const auto text = [&record](const char* key) {
    return record[key].IsNull() ? std::string("null") : std::string(record[key].GetString());
  };
  return text("interface") + ": " + text("setting") + ": " + text("result") + ": " + text("before") + " -> " +
         text("after") + ": " + text("reason");
}

std::string summary_of(const rapidjson::Document& document) {
  const auto& summary = document["summary"];
  return std::to_string(summary["applied"].GetUint()) + " " + std::to_string(summary["unchanged"].GetUint()) + " " +
         std::to_string(summary["refused"].GetUint());
}

TEST(SettingResults, EachPortOfTheRangeHasOne) {
  const auto document =
      configured("ethernet 1/7-9", "switchport mtu 9000\ninterface ethernet 1/8-10\nswitchport mtu 9000");
  ASSERT_EQ(document["interfaces"].Size(), 3U);
  EXPECT_EQ(text_of(document["interfaces"][0]), "Ethernet1/8: switchport mtu 9000: unchanged: null -> null: null");
  EXPECT_EQ(text_of(document["interfaces"][1]),
            "Ethernet1/9: switchport mtu 9000: refused: null -> null: port is locked");
  EXPECT_STREQ(document["interfaces"][2]["result"].GetString(), "refused");
  EXPECT_EQ(summary_of(document), "0 1 2");
}

TEST(SettingResults, WhatWasBeforeHasItsCommandAlsoWhenItIsUsual) {
  const auto mtu = configured("ethernet 1/1-2", "switchport mtu 9000");
  EXPECT_EQ(text_of(mtu["interfaces"][1]),
            "Ethernet1/2: switchport mtu 9000: applied: switchport mtu 1500 -> switchport mtu 9000: null");
  EXPECT_EQ(summary_of(mtu), "2 0 0");
  EXPECT_EQ(text_of(configured("ethernet 1/1", "shutdown\nno shutdown")["interfaces"][0]),
            "Ethernet1/1: no shutdown: applied: shutdown -> no shutdown: null");
  EXPECT_EQ(text_of(configured("ethernet 1/1", "description to the lab")["interfaces"][0]),
            "Ethernet1/1: description to the lab: applied: no description -> description to the lab: null");
}

TEST(SettingResults, SettingsOfTheShellHaveThem) {
  EXPECT_EQ(text_of(configured("ethernet 1/1", "flowcontrol receive on")["interfaces"][0]),
            "Ethernet1/1: flowcontrol receive on: applied: flowcontrol receive off -> flowcontrol receive on: null");
}

TEST(SettingResults, ASettingThatTheLibraryRefusesIsRefusedByEachPort) {
  const auto document = configured("fc 3/1-2", "switchport receive-buffer-size 257");
  ASSERT_EQ(document["interfaces"].Size(), 2U);
  EXPECT_EQ(text_of(document["interfaces"][0]),
            "fc3/1: switchport receive-buffer-size 257: refused: null -> null: the command is refused as a whole");
  EXPECT_EQ(summary_of(document), "0 0 2");
  EXPECT_EQ(document["exit_code"].GetInt(), 1);
}

TEST(SettingResults, AnUndoHasThem) {
  const auto document = configured("ethernet 1/1-2", "switchport mtu 9000\nundo");
  ASSERT_EQ(document["interfaces"].Size(), 2U);
  EXPECT_EQ(text_of(document["interfaces"][0]),
            "Ethernet1/1: undo: applied: switchport mtu 9000 -> switchport mtu 1500: null");
  EXPECT_EQ(text_of(configured("loopback 77", "undo")["interfaces"][0]),
            "loopback77: undo: applied: interface loopback 77 -> null: null");
}

TEST(SettingResults, AsTextOnlyRefusalsAreListed) {
  EXPECT_EQ(run_lines("configure\ninterface ethernet 1/7-8\nswitchport mtu 9000\n").out, "");
}

}  // namespace
}  // namespace session
