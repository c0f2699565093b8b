#include "shell/print_error.h"

#include <cstdio>
#include <string>

#include "shell/output/printable.h"

namespace host {
namespace {

std::function<void(std::string_view)>& error_sink() {
  static std::function<void(std::string_view)> sink;
  return sink;
}

}  // namespace

void set_error_sink(std::function<void(std::string_view)> sink) { error_sink() = std::move(sink); }

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
