#include "shell/print_error.h"

#include <cstdio>
#include <string>

#include "shell/output/printable.h"

namespace host {

void print_error(std::string_view text) {
  std::string line = "pmsh: ";
  append_printable(line, text);
  line += '\n';
  std::fputs(line.c_str(), stderr);
}

}  // namespace host
