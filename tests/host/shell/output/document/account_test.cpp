// What a command asked for and did not get: sentences, messages of the document, the exit code.
#include "shell/output/document/account.h"

#include <gtest/gtest.h>

#include "host/shell/output/captured_command.h"
#include "session/json.h"
#include "shell/output/exit_codes.h"
#include "shell/output/terminal/print_error.h"

namespace session {
namespace {

using host::failure;
using host::fault;

constexpr failure kNoIp = {"ip", fault::unreachable};
constexpr failure kRefused = {"ip", fault::rejected};
constexpr failure kNoLibrary = {"libstatcl.so", fault::not_opened};

using lines = std::vector<std::string>;

// The errors that a command prints while this lives.
class printed_errors {
 public:
  printed_errors() {
    host::set_error_sink([this](std::string_view text) { seen_.emplace_back(text); });
  }
  ~printed_errors() { host::set_error_sink({}); }
  printed_errors(const printed_errors&) = delete;
  printed_errors& operator=(const printed_errors&) = delete;

  const lines& seen() const { return seen_; }

 private:
  lines seen_;
};

host::output_settings structured() {
  host::output_settings settings;
  settings.structured = true;
  settings.shown = {host::kDetailedDisplay, {}};
  return settings;
}

TEST(FailureSentence, NamesTheSourceAndWhatItDid) {
  EXPECT_EQ(host::sentence_of(kNoIp), "the service 'ip' is not running.");
  EXPECT_EQ(host::sentence_of({"ip", fault::unanswered}), "the service 'ip' did not answer in time.");
  EXPECT_EQ(host::sentence_of(kRefused), "the service 'ip' refused a request.");
  EXPECT_EQ(host::sentence_of({"ip", fault::damaged}), "the service 'ip' answered with less than it promised.");
  EXPECT_EQ(host::sentence_of({"ip", fault::error, PM_ERR_PORT_LOCKED}),
            "the service 'ip' answered with an error: port is locked.");
  EXPECT_EQ(host::sentence_of(kNoLibrary), "the library 'libstatcl.so' cannot be opened.");
  EXPECT_EQ(host::sentence_of({"libstatcl.so", fault::without_function, 0, "statcl_get"}),
            "the library 'libstatcl.so' has no function statcl_get.");
}

TEST(Account, StandardErrorHasASentenceForEachSource) {
  const printed_errors errors;
  captured_command command;
  for (const failure& it : {kNoIp, kNoLibrary, kRefused, kNoIp}) host::note_failure(it);

  EXPECT_EQ(command.output().report_failures(host::kDone), host::kServiceFailed);
  EXPECT_EQ(errors.seen(), (lines{"the service 'ip' is not running.", "the library 'libstatcl.so' cannot be opened."}));
}

TEST(Account, IsThatOfTheRunningCommand) {
  const printed_errors errors;
  host::note_failure(kNoIp);
  captured_command command;

  EXPECT_EQ(command.output().report_failures(host::kDone), host::kDone);
  EXPECT_EQ(errors.seen(), lines{});
}

TEST(Account, LeavesAnotherExitCode) {
  const printed_errors errors;
  captured_command command;
  host::note_failure(kNoIp);
  EXPECT_EQ(command.output().report_failures(host::kSomeInterfacesFailed), host::kSomeInterfacesFailed);
}

TEST(Account, AnInterfaceFailsWhenSomethingIsNotedOfIt) {
  captured_command command;
  command.output().begin_interface("Ethernet1/1");
  host::note_failure(kNoIp);
  EXPECT_TRUE(command.output().end_interface());
  command.output().begin_interface("Ethernet1/2");
  EXPECT_FALSE(command.output().end_interface());
}

// An entry of the document for each interface and source.
TEST(Account, MessagesNameTheInterface) {
  const printed_errors errors;
  captured_command command(structured());
  host::note_failure(kNoLibrary);
  for (const char* const name : {"Ethernet1/1", "Ethernet1/2"}) {
    command.output().begin_interface(name);
    host::note_failure(kNoIp);
    host::note_failure(kNoIp);
    command.output().end_interface();
  }
  host::note_failure(kRefused);
  command.output().report_failures(host::kDone);

  rapidjson::Document document;
  document.Parse(command.finish().c_str());
  ASSERT_FALSE(document.HasParseError());
  std::vector<std::pair<std::string, std::string>> messages;
  for (const auto& it : document["messages"].GetArray())
    messages.emplace_back(it["interface"].IsNull() ? "none" : it["interface"].GetString(), it["text"].GetString());
  EXPECT_EQ(messages,
            (std::vector<std::pair<std::string, std::string>>{{"none", "the library 'libstatcl.so' cannot be opened."},
                                                              {"Ethernet1/1", "the service 'ip' is not running."},
                                                              {"Ethernet1/2", "the service 'ip' is not running."},
                                                              {"none", "the service 'ip' refused a request."}}));
  EXPECT_EQ(errors.seen(), (lines{"the library 'libstatcl.so' cannot be opened.", "the service 'ip' is not running."}));
}

}  // namespace
}  // namespace session
