// How the output of a line is shown, and where it goes.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "shell/grammar/parser.h"
#include "shell/output/command_output.h"
#include "shell/session/state.h"

namespace host {

// The settings of the output of a line with these pipes, for any command.
output_settings settings_for(const shell& session, std::span<const pipe_stage> pipes);

// Makes the filters. Returns an error, or an empty text when the line can run.
std::string make_filters(std::span<const pipe_stage> pipes, bool is_structured, line_filters& filters);

// Why the line cannot be watched; empty when it can.
std::string refuse_to_watch(const shell& session, std::span<const pipe_stage> pipes);

// A line that does not run: the error on standard error, and in a document when its output is structured. Returns the
// exit code.
int refuse_line(const shell& session, std::string_view line, std::string_view error, bool is_structured,
                int exit_code = kUsage);
int refuse_mistake(const shell& session, const line_mistake& mistake);

// The same for a line in which names of devices could not be found for this reason.
int refuse_mistake(const shell& session, const line_mistake& mistake, std::string_view fault);

// Shows a text of the shell itself. Returns an exit code.
int show_text(const shell& session, std::string_view text);

// The output of a line with "| save", whose pipes outlive this: it is gathered, and written to the file when the
// command has ended. Without that pipe nothing happens.
class saved_output {
 public:
  explicit saved_output(std::span<const pipe_stage> pipes);

  bool is_wanted() const { return file_ != nullptr; }

  // To be called before the command runs. Returns an error, or an empty text.
  std::string begin(output_settings& settings);

  // Writes the file. Returns an error, or an empty text.
  std::string write() const;

  std::string sentence() const;

 private:
  const std::string* file_ = nullptr;
  std::string text_;
};

}  // namespace host
