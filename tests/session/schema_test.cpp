// The published JSON Schema, and the documents of every command against it.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "session/json.h"
#include "session/program.h"
#include "session/schema_validator.h"
#include "shell/grammar.h"

namespace session {
namespace {

std::string file_text(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

rapidjson::Document parse(const std::string& text) {
  rapidjson::Document document;
  document.Parse(text.c_str());
  EXPECT_FALSE(document.HasParseError()) << text;
  return document;
}

rapidjson::Document published_schema() { return parse(file_text(PMSH_DOCS "/schema.json")); }

// Why a document does not follow the definition of a display; empty when it does.
std::string fault_of(const rapidjson::Document& document, std::string_view definition) {
  const rapidjson::Document schema = published_schema();
  return schema_fault(document, schema["$defs"][std::string(definition).c_str()], schema);
}

// A line of a command for all its interfaces.
std::string line_of(const host::command& what) {
  std::string line;
  for (std::size_t i = 0; i < what.syntax.num_words; ++i) {
    const host::syntax_word& word = what.syntax.words[i];
    if (word.is_optional) continue;
    line.append(line.empty() ? "" : " ").append(word.is_number ? "2" : word.is_vlans ? "1-300" : word.text);
  }
  return line;
}

class EveryCommand : public testing::TestWithParam<const char*> {};

TEST_P(EveryCommand, FollowsThePublishedSchema) {
  for (const host::command& what : host::all_commands()) {
    if (what.shown.bit == host::kNoDisplay || what.shown.bit == host::kSettingDisplay) continue;
    const std::string line = line_of(what);
    const outcome result = run_shell_on(shipped_switch(GetParam()), {"-c", line + " | json"});
    EXPECT_EQ(result.exit_code, 0) << line << result.err;
    const rapidjson::Document document = parse(result.out);
    EXPECT_EQ(fault_of(document, what.shown.name), "") << line;
    EXPECT_STREQ(document["command"].GetString(), line.c_str());
  }
}

INSTANTIATE_TEST_SUITE_P(Switches, EveryCommand, testing::Values("campus.yaml", "storage.yaml"));

TEST(PublishedSchema, ErrorsFollowItToo) {
  const rapidjson::Document document = parse(run_command("show interface ethernet 9/9 brief | json").out);
  EXPECT_EQ(fault_of(document, "brief"), "");
}

TEST(PublishedSchema, SettingsFollowItWhetherTheyAreTakenOrRefused) {
  for (const char* const range : {"ethernet 1/1", "ethernet 1/9"}) {
    const std::string lines = std::string("configure\ninterface ") + range + "\nshutdown | json\n";
    const rapidjson::Document document = parse(run_shell_on(test_file("configuration.yaml"), {}, lines).out);
    EXPECT_EQ(fault_of(document, "settings"), "") << range;
  }
}

TEST(PublishedSchema, DocumentFollowsTheWholeWhenItFollowsOneDefinition) {
  const rapidjson::Document schema = published_schema();
  rapidjson::Document document = parse(run_command("show interface ethernet 1/1 mac-address | json").out);
  EXPECT_EQ(schema_fault(document, schema, schema), "");
  document["interfaces"][0]["address"].SetInt(7);
  EXPECT_EQ(schema_fault(document, schema, schema), ": anyOf");
}

TEST(PublishedSchema, DocumentsOfOtherDisplaysAndDamagedOnesDoNotFollowIt) {
  rapidjson::Document document = parse(run_command("show interface ethernet 1/1 brief | json").out);
  ASSERT_EQ(fault_of(document, "brief"), "");
  EXPECT_EQ(fault_of(document, "status"), "/interfaces/0: additionalProperties");

  auto& record = document["interfaces"][0];
  record["mtu_bytes"].SetString("1500");
  EXPECT_EQ(fault_of(document, "brief"), "/interfaces/0/mtu_bytes: type");
  record["mtu_bytes"].SetNull();
  EXPECT_EQ(fault_of(document, "brief"), "");
  record["ip_address"].SetString("nowhere");
  EXPECT_EQ(fault_of(document, "brief"), "/interfaces/0/ip_address: pattern");
  record["ip_address"].SetNull();
  record["interface"].SetNull();
  EXPECT_EQ(fault_of(document, "brief"), "/interfaces/0/interface: type");
  record["interface"].SetString("Ethernet1/1");
  record.AddMember("color", "red", document.GetAllocator());
  EXPECT_EQ(fault_of(document, "brief"), "/interfaces/0: additionalProperties");
  record.RemoveMember("color");
  document.RemoveMember("time");
  EXPECT_EQ(fault_of(document, "brief"), ": required");
}

TEST(PublishedSchema, InterfaceIsTheFirstFieldOfARecord) {
  const rapidjson::Document schema = published_schema();
  for (const host::command& what : host::all_commands()) {
    if (what.shown.bit == host::kNoDisplay || !what.shown.section.empty()) continue;
    const auto& definition = schema["$defs"][std::string(what.shown.name).c_str()];
    const auto& record = definition["properties"]["interfaces"]["items"]["properties"];
    EXPECT_STREQ(record.MemberBegin()->name.GetString(), "interface") << what.syntax.text;
  }
}

TEST(PublishedDocuments, AreWhatTheShellPrints) {
  EXPECT_EQ(run_shell({"--print-json-schema"}).out, file_text(PMSH_DOCS "/schema.json"));
  EXPECT_EQ(run_shell({"--print-command-reference"}).out, file_text(PMSH_DOCS "/commands.md"));
}

TEST(PublishedDocuments, CommandReferenceNamesEveryCommand) {
  const std::string page = file_text(PMSH_DOCS "/commands.md");
  for (const host::command& what : host::all_commands())
    EXPECT_NE(page.find("| `" + std::string(what.syntax.text) + "` | " + std::string(what.help)), std::string::npos)
        << what.syntax.text;
}

}  // namespace
}  // namespace session
