// The structured form, record by record.
#include <gtest/gtest.h>

#include "platform/cmd_channel.h"
#include "session/captured_command.h"
#include "session/json.h"
#include "shell/output/schema.h"

namespace session {
namespace {

constexpr host::display kDetailed = {host::kDetailedDisplay, {}};

host::output_settings structured() {
  host::output_settings settings;
  settings.structured = true;
  settings.shown = kDetailed;
  settings.command = "show interface";
  return settings;
}

// The document of a command that prints one interface with `print`.
template <typename Print>
rapidjson::Document document_of(Print print) {
  captured_command command(structured());
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
  for (const host::field& field : host::schema()) {
    if ((field.displays & host::kDetailedDisplay) == 0 || field.name == "interface") continue;
    ASSERT_TRUE(record.HasMember(field.name.data())) << field.name;
    EXPECT_TRUE(record[field.name.data()].IsNull()) << field.name;
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
  EXPECT_EQ(record["input_rate_bps"].GetUint64(), rate);
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
  captured_command command(structured());
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

TEST(Schema, NamesNumbersWithUnitsAndNoTagTwice) {
  for (const host::field& field : host::schema()) {
    EXPECT_EQ(host::find_field(uint32{field.component} << 16 | field.tag), &field) << field.name;
    for (const char letter : field.name)
      EXPECT_TRUE((letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9') || letter == '_') << field.name;
  }
  EXPECT_EQ(host::find_field(0x142A0003), nullptr);
  EXPECT_EQ(host::find_field(0xFFFF), nullptr);
}

TEST(Schema, SameFieldHasOneTypeInADisplay) {
  for (const host::field& one : host::schema()) {
    for (const host::field& other : host::schema()) {
      if (one.name != other.name || (one.displays & other.displays) == 0) continue;
      const auto is_number = [](host::field_type type) { return type >= host::field_type::number; };
      EXPECT_EQ(is_number(one.type), is_number(other.type)) << one.name;
    }
  }
}

}  // namespace
}  // namespace session
