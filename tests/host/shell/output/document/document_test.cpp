// The structured_detailed form, record by record.
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <set>
#include <string_view>

#include "host/shell/output/captured_command.h"
#include "platform/cmd_channel.h"
#include "session/json.h"
#include "shell/output/schema/schema.h"

namespace session {
namespace {

using testing::HasSubstr;

constexpr host::display kDetailed = {host::kDetailedDisplay, {}, "detailed"};

host::output_settings structured_detailed() {
  host::output_settings settings;
  settings.structured = true;
  settings.shown = kDetailed;
  settings.command = "show interface";
  return settings;
}

// The document of a command that prints one interface with `print`.
template <typename Print>
rapidjson::Document document_of(Print print) {
  captured_command command(structured_detailed());
  command.output().begin_interface("Ethernet1/1");
  print(command.channel());
  command.output().end_interface();
  rapidjson::Document document;
  document.Parse(command.finish().c_str());
  EXPECT_FALSE(document.HasParseError());
  return document;
}

TEST(Document, EveryFieldOfTheDisplayIsListedAndNullWhenItIsNotBound) {
  const auto document = document_of([](cmd_rx_handle_t* rx) { cmd_prt(rx, "only a message\n"); });
  const auto& record = document["interfaces"][0];

  EXPECT_STREQ(record["interface"].GetString(), "Ethernet1/1");
  for (const uint16 row : host::rows_of(host::kDetailedDisplay)) {
    const std::string name(host::all_fields()[row].name);
    if (name == "interface") continue;
    ASSERT_TRUE(record.HasMember(name.c_str())) << name;
    EXPECT_TRUE(record[name.c_str()].IsNull()) << name;
  }
}

TEST(Document, InterfaceOfWhichNothingIsSaidHasNoRecord) {
  EXPECT_EQ(document_of([](cmd_rx_handle_t*) {})["interfaces"].Size(), 0U);
  EXPECT_EQ(document_of([](cmd_rx_handle_t* rx) { cmd_prt(rx, "\n"); })["interfaces"].Size(), 0U);
}

TEST(Document, ValuesHaveTheTypeOfTheirField) {
  const uint32 speed = 1000;
  const uint32 state = 2;
  const uint64 rate = 18446744073709551615ULL;
  const auto document = document_of([&](cmd_rx_handle_t* rx) {
    cmd_prt(rx, "%s %s %s\n", cmd_tuple(0x022A0282, &speed), cmd_tuple(0x022A01D9, &state),
            cmd_tuple(0x152A0258, &rate));
    cmd_prt(rx, "reliability %s/255\n", cmd_tuple(0x302A027C, "255"));
  });
  const auto& record = document["interfaces"][0];

  EXPECT_EQ(record["speed_mbps"].GetUint(), 1000U);
  EXPECT_STREQ(record["state"].GetString(), "down");
  EXPECT_EQ(record["input_bits_per_second"].GetUint64(), rate);
  EXPECT_EQ(record["reliability_per_255"].GetUint(), 255U);
  EXPECT_EQ(document["messages"].Size(), 0U);
}

TEST(Document, PlaceholdersOfAbsentValuesAreNull) {
  const uint32 speed = 0;
  const auto document = document_of([&](cmd_rx_handle_t* rx) {
    cmd_prt(rx, "%s %s %s\n", cmd_tuple(0x302A0287, "--"), cmd_tuple(0x302A027D, "--"), cmd_tuple(0x302A0273, ""));
    cmd_prt(rx, "%s\n", cmd_tuple(0x022A0282, &speed));
  });
  const auto& record = document["interfaces"][0];

  for (const char* const key : {"media_type", "tx_load_per_255", "hardware", "speed_mbps"})
    EXPECT_TRUE(record[key].IsNull()) << key;
}

TEST(Document, LineIsAMessageUnlessItBindsAFieldOfTheDisplay) {
  const uint32 number = 5;
  const auto document = document_of([&](cmd_rx_handle_t* rx) {
    cmd_prt(rx, "  MTU %s bytes,", cmd_tuple(0x142A0278, &number));
    cmd_prt(rx, " and no more\n");
    cmd_prt(rx, "  Encapsulation ARPA\n\n");
    cmd_prt(rx, "Unknown tag %s\n", cmd_tuple(0x142A07FF, &number));
    cmd_prt(rx, "Other display %s\n", cmd_tuple(0x302A0200, "MODEL"));
    cmd_prt(rx, "Plain %s\n", cmd_tuple(0, "text"));
  });
  const auto messages = document["messages"].GetArray();

  ASSERT_EQ(messages.Size(), 4U);
  EXPECT_STREQ(messages[0]["text"].GetString(), "  Encapsulation ARPA");
  EXPECT_STREQ(messages[1]["text"].GetString(), "Unknown tag 5");
  EXPECT_STREQ(messages[2]["text"].GetString(), "Other display MODEL");
  EXPECT_STREQ(messages[3]["text"].GetString(), "Plain text");
  EXPECT_STREQ(messages[3]["interface"].GetString(), "Ethernet1/1");
}

TEST(Document, ValuesOfOneRecordDoNotReachTheNext) {
  captured_command command(structured_detailed());
  const uint32 mtu = 9000;
  command.output().begin_interface("Ethernet1/1");
  cmd_prt(command.channel(), "%s\n", cmd_tuple(0x142A0278, &mtu));
  command.output().end_interface();
  command.output().begin_interface("Ethernet1/2");
  cmd_prt(command.channel(), "%s\n", cmd_tuple(0x142A0279, &mtu));
  command.output().end_interface();
  rapidjson::Document document;
  document.Parse(command.finish().c_str());

  EXPECT_EQ(document["interfaces"][0]["mtu_bytes"].GetUint(), 9000U);
  EXPECT_TRUE(document["interfaces"][1]["mtu_bytes"].IsNull());
}

TEST(Document, DecimalsKeepTheDigitsThatAreShown) {
  const host::display shown = {host::kTransceiverDisplay, {}, "transceiver"};
  host::output_settings settings = structured_detailed();
  settings.shown = shown;
  captured_command command(settings);
  command.output().begin_interface("Ethernet1/1");
  cmd_float_t celsius{};
  celsius.fval = -2.97F;
  celsius.u.ti = {.whole = -2, .decimal = 97, .nb_decimals = 2};
  cmd_prt(command.channel(), "%s\n", cmd_tuple(0x452A0020, &celsius));
  command.output().end_interface();
  EXPECT_THAT(command.finish(), HasSubstr("\"temperature_c\":-2.97,"));
}

TEST(Document, LinesOfTheChannelAreLayoutWhereTheServiceHasTheValues) {
  host::output_settings settings = structured_detailed();
  settings.shown.has_values = true;
  captured_command command(settings);
  command.output().begin_interface("Ethernet1/1");
  cmd_prt(command.channel(), "  Encapsulation ARPA\n");
  std::puts("stats unavailable");
  command.output().end_interface();
  rapidjson::Document document;
  document.Parse(command.finish().c_str());

  ASSERT_EQ(document["messages"].Size(), 1U);
  EXPECT_STREQ(document["messages"][0]["text"].GetString(), "stats unavailable");
}

// ---- Values of the service.

// A document of one record, which bound an MTU. `fill` fills the rest of it.
template <typename Fill>
rapidjson::Document document_with_mtu(int exit_code, Fill fill) {
  host::display shown = kDetailed;
  shown.has_values = true;
  host::document document(shown, "show interface");
  document.begin_record("Ethernet1/1");
  const uint32 mtu = 9000;
  document.bind({0x142A0278, &mtu});
  fill(document);
  document.end_record();
  document.end(exit_code);
  rapidjson::Document parsed;
  parsed.Parse(document.ready().c_str());
  EXPECT_FALSE(parsed.HasParseError()) << document.ready();
  return parsed;
}

class FilledRecord : public testing::Test {
 protected:
  static rapidjson::Document filled(const std::vector<host::interface_value>& values) {
    return document_with_mtu(0, [&values](host::document& document) { document.fill(values); });
  }

  std::vector<std::byte> bytes_;
  host::value_writer to_{bytes_};
};

TEST_F(FilledRecord, ValuesThatNoLineBoundComeFromTheService) {
  constexpr std::array<if_index_t, 2> kMembers = {0x08000000, 0x08001000};
  to_.number(host::property::mtu_bytes, 1500);
  to_.number(host::property::input_packets, 18446744073709551614U);
  to_.text(host::property::encapsulation, "ARPA");
  to_.interfaces(host::property::members, kMembers);
  to_.time(host::property::last_link_flapped, 1'700'000'000);
  const auto document = filled(*host::read_values(bytes_));
  const auto& record = document["interfaces"][0];

  EXPECT_EQ(record["mtu_bytes"].GetUint(), 9000U);  // what the text shows
  EXPECT_EQ(record["input_packets"].GetUint64(), 18446744073709551614U);
  EXPECT_STREQ(record["encapsulation"].GetString(), "ARPA");
  EXPECT_EQ(record["members"].Size(), 2U);
  EXPECT_STREQ(record["members"][0].GetString(), "Ethernet1/1");
  EXPECT_STREQ(record["last_link_flapped"].GetString(), "2023-11-14T22:13:20Z");
  EXPECT_TRUE(record["absent"].ObjectEmpty());
}

TEST_F(FilledRecord, AnAbsentValueIsNullAndItsReasonIsGiven) {
  to_.absent(host::property::mtu_bytes, host::absence::not_supported);
  to_.absent(host::property::description, host::absence::none);
  to_.absent(host::property::input_errors, host::absence::no_permission);
  const auto document = filled(*host::read_values(bytes_));
  const auto& record = document["interfaces"][0];

  for (const char* const key : {"mtu_bytes", "description", "input_errors"}) EXPECT_TRUE(record[key].IsNull()) << key;
  ASSERT_EQ(record["absent"].MemberCount(), 2U);
  EXPECT_STREQ(record["absent"]["mtu_bytes"].GetString(), "not supported");
  EXPECT_STREQ(record["absent"]["input_errors"].GetString(), "no permission");
}

TEST_F(FilledRecord, AValueOfAnotherKindThanItsFieldIsLeftOut) {
  to_.text(host::property::input_packets, "many");
  to_.number(host::property::description, 7);
  to_.decimal(host::property::input_bytes, "1.5");
  const auto document = filled(*host::read_values(bytes_));
  for (const char* const key : {"input_packets", "description", "input_bytes"})
    EXPECT_TRUE(document["interfaces"][0][key].IsNull()) << key;
}

TEST(Document, WhatAFailedServiceLeavesOutHasThatReason) {
  const auto document = document_with_mtu(2, [](host::document& it) { it.fill_failed(); });
  const auto& record = document["interfaces"][0];

  EXPECT_EQ(record["mtu_bytes"].GetUint(), 9000U);
  EXPECT_TRUE(record["input_packets"].IsNull());
  EXPECT_STREQ(record["absent"]["input_packets"].GetString(), "service failed");
  EXPECT_FALSE(record["absent"].HasMember("mtu_bytes"));
  EXPECT_EQ(document["exit_code"].GetInt(), 2);
}

TEST(Schema, KeysAreLowerCaseAndEveryTagHasAField) {
  std::set<std::string_view> keys;
  for (const host::field& field : host::all_fields()) {
    for (const char letter : field.name)
      EXPECT_TRUE((letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9') || letter == '_') << field.name;
    EXPECT_TRUE(keys.insert(field.name).second) << field.name;
    EXPECT_FALSE(field.title.empty()) << field.name;
    EXPECT_FALSE(field.description.empty()) << field.name;
  }
  for (const host::binding& bound : host::own_bindings())
    EXPECT_EQ(host::find_binding(uint32{bound.component} << 16 | bound.tag), &bound) << bound.tag;
  EXPECT_EQ(host::find_binding(0x142A0003), nullptr);
  EXPECT_EQ(host::find_binding(0xFFFF), nullptr);
}

// The ends of keys that name a unit. Of two that fit, the first counts.
struct unit_of_key {
  std::string_view end;
  std::string_view unit;
};

constexpr unit_of_key kUnitsOfKeys[] = {
    {"_bits_per_second", "bit/s"},
    {"_bytes_per_second", "byte/s"},
    {"_megabytes_per_second", "Mbyte/s"},
    {"_packets_per_second", "packet/s"},
    {"_kbps", "kbit/s"},
    {"_mbps", "Mbit/s"},
    {"_bits", "bits"},
    {"_bytes", "bytes"},
    {"_seconds", "s"},
    {"_msec", "ms"},
    {"_usec", "us"},
    {"_percent", "%"},
    {"_per_255", "/255"},
    {"_km", "km"},
    {"_m", "m"},
    {"_c", "C"},
    {"_v", "V"},
    {"_ma", "mA"},
    {"_dbm", "dBm"},
    {"_packets", "packets"},
    {"_frames", "frames"},
};

// What is counted needs no end of its key: "runts" are packets.
constexpr std::string_view kUnitsOfCounts[] = {"credits",  "buffers", "packets", "frames",  "events",
                                               "messages", "resets",  "queues",  "entries", "changes"};

// "input_packets_65_to_127_bytes" counts packets of a size: its end is no unit.
bool is_size_class(std::string_view key) {
  return key.find("packets_") != std::string_view::npos && key.find("_to_") != std::string_view::npos;
}

const unit_of_key* unit_at_end_of(std::string_view key) {
  const auto found = std::ranges::find_if(kUnitsOfKeys, [key](const unit_of_key& it) { return key.ends_with(it.end); });
  return is_size_class(key) || found == std::end(kUnitsOfKeys) ? nullptr : found;
}

TEST(Schema, AKeyThatEndsWithAUnitHasThatUnit) {
  EXPECT_EQ(unit_at_end_of("mtu_bytes")->unit, "bytes");
  EXPECT_EQ(unit_at_end_of("input_bytes_per_second")->unit, "byte/s");
  EXPECT_EQ(unit_at_end_of("description"), nullptr);
  EXPECT_EQ(unit_at_end_of("input_packets_0_to_64_bytes"), nullptr);
  for (const host::field& field : host::all_fields())
    if (const unit_of_key* const ending = unit_at_end_of(field.name)) EXPECT_EQ(field.unit, ending->unit) << field.name;
}

TEST(Schema, AUnitIsPartOfTheKey) {
  for (const host::field& field : host::all_fields()) {
    if (field.unit.empty() || std::ranges::find(kUnitsOfCounts, field.unit) != std::end(kUnitsOfCounts)) continue;
    const unit_of_key* const ending = unit_at_end_of(field.name);
    EXPECT_TRUE(ending != nullptr && ending->unit == field.unit) << field.name << " in " << field.unit;
  }
}

// "..._bits_per_second", "..._bytes_per_second", "..._packets_per_second" and whole megabytes.
TEST(Schema, RatesAreNamedByOneRule) {
  for (const host::field& field : host::all_fields()) {
    const std::string_view name = field.name;
    EXPECT_FALSE(name.ends_with("_bps") || name.ends_with("_pps") || name.ends_with("_per_sec")) << name;
    if (!name.ends_with("_per_second")) continue;
    const std::string_view unit = name.substr(0, name.size() - std::string_view("_per_second").size());
    EXPECT_TRUE(unit.ends_with("_bits") || unit.ends_with("bytes") || unit.ends_with("_packets")) << name;
  }
}

}  // namespace
}  // namespace session
