#include "daemon/log.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "base/write_all.h"

namespace host {
namespace {

// Whether standard error is a stream of the journal, which systemd names by device and inode.
bool is_journal() {
  const char* const stream = std::getenv("JOURNAL_STREAM");
  struct stat own {};
  return stream != nullptr && fstat(STDERR_FILENO, &own) == 0 && fmt::format("{}:{}", own.st_dev, own.st_ino) == stream;
}

}  // namespace

void log_line(log_level level, std::string_view text) {
  static const bool has_priorities = is_journal();
  std::string line =
      has_priorities ? fmt::format("<{}>{}", static_cast<int>(level), text) : fmt::format("pmshd: {}", text);
  for (char& character : line)
    if (static_cast<unsigned char>(character) < ' ' || character == '\x7f') character = '?';
  line += '\n';
  write_all(STDERR_FILENO, line);
}

}  // namespace host
