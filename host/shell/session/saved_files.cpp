#include "shell/session/saved_files.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>

#include "base/files.h"
#include "base/printable.h"
#include "base/text.h"
#include "shell/platform/prompts.h"

namespace host {
namespace {

// The path in quotes, without control bytes.
std::string shown(const std::string& path) {
  std::string text;
  append_printable(text, path);
  return in_quotes(text);
}

}  // namespace

std::string refuse_to_replace(const std::string& path) {
  if (!is_regular_file(path) || confirm(fmt::format("Replace {}? (y/n) [n] ", shown(path)))) return {};
  return fmt::format("nothing was written: {} exists. Start the shell with --yes to replace it.", shown(path));
}

std::string write_fault(const std::string& path, int error) {
  if (error == 0) return {};
  const std::string reason = error == ENXIO ? "no process reads the pipe" : std::strerror(error);
  return fmt::format("cannot write {}: {}.", shown(path), reason);
}

std::string written_sentence(const std::string& path) { return fmt::format("Written to {}.\n", shown(path)); }

}  // namespace host
