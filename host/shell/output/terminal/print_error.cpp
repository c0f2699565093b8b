#include "shell/output/terminal/print_error.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

#include "base/printable.h"
#include "base/write_all.h"
#include "shell/output/exit_codes.h"

namespace host {
namespace {

error_taker& error_sink() {
  static error_taker sink;
  return sink;
}

}  // namespace

error_taker set_error_sink(error_taker sink) { return std::exchange(error_sink(), std::move(sink)); }

int report_lost_output(int error) {
  if (error == EPIPE) return kDone;
  print_error(fmt::format("the output cannot be written: {}.", std::strerror(error)));
  return kServiceFailed;
}

int print_text(std::string_view text) {
  const int flushed = std::fflush(stdout) == 0 ? 0 : errno;
  const int error = flushed != 0 ? flushed : write_all(STDOUT_FILENO, text);
  return error == 0 ? int{kDone} : report_lost_output(error);
}

void print_error(std::string_view text) {
  if (const auto& sink = error_sink()) {
    std::string line;
    append_printable(line, text);
    return sink(line);
  }
  std::string line = "pmsh: ";
  append_printable(line, text);
  line += '\n';
  std::fputs(line.c_str(), stderr);
}

}  // namespace host
