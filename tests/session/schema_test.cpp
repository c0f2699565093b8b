// The published command reference and JSON Schema are those of the program. Documents are validated in documents.py.
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "session/program.h"
#include "shell/grammar/syntax.h"

namespace session {
namespace {

using testing::HasSubstr;

std::string file_text(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

TEST(PublishedDocuments, AreWhatTheShellPrints) {
  EXPECT_EQ(run_shell({"--print-json-schema"}).out, file_text(PMSH_DOCS "/schema.json"));
  EXPECT_EQ(run_shell({"--print-command-reference"}).out, file_text(PMSH_DOCS "/commands.md"));
}

TEST(PublishedDocuments, CommandReferenceNamesEveryCommand) {
  const std::string page = file_text(PMSH_DOCS "/commands.md");
  for (const host::command& what : host::all_commands())
    EXPECT_THAT(page, HasSubstr("| `" + std::string(what.syntax.text) + "` | " + std::string(what.help)))
        << what.syntax.text;
}

}  // namespace
}  // namespace session
