// A command whose output is captured.
#pragma once

#include <optional>
#include <string>

#include "shell/output/command_output.h"

namespace session {

class captured_command {
 public:
  explicit captured_command(host::output_settings settings = {});
  ~captured_command();
  captured_command(const captured_command&) = delete;
  captured_command& operator=(const captured_command&) = delete;

  host::command_output& output() { return *output_; }

  // The handle of the output channel.
  cmd_rx_handle_t* channel() const;

  // Ends the command and returns all that came out.
  std::string finish();

 private:
  int file_;
  host::line_filters filters_;
  std::optional<host::command_output> output_;
};

}  // namespace session
