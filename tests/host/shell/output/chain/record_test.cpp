// Lines as messages of a document.
#include "shell/output/chain/record.h"

#include <gtest/gtest.h>

#include "host/shell/output/chain/seen_lines.h"
#include "session/json.h"

namespace session {
namespace {

// The messages of a document that gets these lines.
texts messages_of(bool drops_layout, std::initializer_list<host::text_line> lines) {
  seen_lines seen;
  host::document made({host::kDetailedDisplay, {}}, "show interface");
  host::recording_sink record(made, drops_layout, seen);
  for (const host::text_line& it : lines) record.take(it);
  record.end();
  std::string text;
  for (const std::string& line : seen.texts()) text += line;
  rapidjson::Document document;
  document.Parse(text.c_str());
  EXPECT_FALSE(document.HasParseError()) << text;
  texts found;
  for (const auto& it : document["messages"].GetArray()) found.emplace_back(it["text"].GetString());
  return found;
}

constexpr host::text_line kTitle = {.text = "Details", .is_of_channel = true};

TEST(Record, LinesWithoutAValueAreMessages) {
  EXPECT_EQ(messages_of(false, {{"sfp not present"}, {.text = "is up", .is_bound = true}, {" \t"}, {""}, kTitle}),
            (texts{"sfp not present", "Details"}));
}

TEST(Record, TitlesOfAMarkedDisplayAreNone) {
  EXPECT_EQ(messages_of(true, {kTitle, {"sfp not present"}}), texts{"sfp not present"});
  EXPECT_EQ(messages_of(true, {{.text = "denied", .is_of_channel = true, .has_failed = true}}), texts{"denied"});
}

TEST(Record, HandsOnTheDocumentLineByLine) {
  seen_lines seen;
  host::document made({host::kDetailedDisplay, {}}, "show interface");
  host::recording_sink record(made, false, seen);
  record.hand_on();
  EXPECT_EQ(seen.lines.size(), 0U) << "its first line is not complete";
  record.end();
  EXPECT_EQ(seen.lines.size(), 1U);
  EXPECT_EQ(seen.num_ended, 1);
  EXPECT_FALSE(record.take_part({"half"}));
}

TEST(Record, KnowsWhenAMessageIsLost) {
  seen_lines seen;
  host::document made({host::kDetailedDisplay, {}}, "show interface");
  host::recording_sink record(made, false, seen);
  const std::string large(10 << 20, 'x');
  record.take({large});
  record.take({large});
  EXPECT_FALSE(record.has_lost());
  record.take({"one too many"});
  EXPECT_TRUE(record.has_lost());
  record.forget();
  EXPECT_FALSE(record.has_lost());
}

}  // namespace
}  // namespace session
