// Files of commands that a session runs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "shell/session/command_files.h"
#include "shell/session/state.h"

namespace host {

class command_output;

inline constexpr std::string_view kStartupConfig = "startup-config";
inline constexpr std::string_view kNoPlaceForStartup =
    "there is no place for the startup-config: neither XDG_STATE_HOME nor HOME is set.";

// The path of the switch's startup-config; empty when there is no place for it.
std::string startup_file(const shell& session);

// The text of a file of commands. Otherwise `error` is a sentence, and `code` is not kDone.
struct command_text {
  std::optional<std::string> text;
  std::string error;
  int code = kDone;
};
command_text read_commands(const std::string& path, bool is_startup);

// Runs the commands of a file; "-" is standard input, "startup-config" the stored settings. Lines that begin with "!"
// or
// "#" are comments. It stops at the first command that fails and reports its line, unless the session keeps going.
// Returns the first exit code that is not 0.
int run_file(shell& session, const std::string& name);

// The result of "copy FILE running-config".
struct copied_file {
  struct line {
    bool is_error;
    std::string text;
  };

  std::string path;
  int code = kDone;
  std::vector<line> lines;  // printed by the commands of the file, if collected
};

// Runs the commands of a file, or of the startup-config without a name. Only one output can run at a
// time, so the output of the line itself begins after the last command of the file. Each command has its own output,
// which goes where that of a typed line goes, or, with `is_collected`, into the result for the line's filters and
// document. The session keeps its mode; "exit" ends the file only.
copied_file run_for_copy(shell& session, const std::string& name, bool is_collected);

// Writes the result to the output of the line. Returns the exit code.
int report(const copied_file& copied, command_output& output);

}  // namespace host
