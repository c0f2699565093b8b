#include "shell/session/history.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "base/files.h"
#include "base/replace_file.h"
#include "base/state_directory.h"
#include "base/write_all.h"

namespace host {
namespace {

constexpr std::size_t kLongestLine = 4096;  // longer ones are not kept
constexpr std::size_t kMostLines = 2 * std::size_t{kHistoryLines};

// A file in the form of the line editor begins so; its lines have octal escapes.
constexpr std::string_view kEncoded = "_HiStOrY_V2_";

std::string decoded(std::string_view line) {
  const auto digit = [&](std::size_t at) {
    return at < line.size() && line[at] >= '0' && line[at] <= '7' ? line[at] - '0' : -1;
  };
  std::string text;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const bool is_octal = line[i] == '\\' && digit(i + 1) >= 0 && digit(i + 2) >= 0 && digit(i + 3) >= 0;
    if (is_octal) {
      text += static_cast<char>(digit(i + 1) * 64 + digit(i + 2) * 8 + digit(i + 3));
      i += 3;
    } else {
      i += line[i] == '\\' && i + 1 < line.size() && line[i + 1] == '\\' ? 1 : 0;
      text += line[i];
    }
  }
  return text;
}

// Whether the path still names an open file: another shell may have replaced it.
bool is_named(const std::string& path, int descriptor) {
  struct stat opened {
  }, named{};
  return fstat(descriptor, &opened) == 0 && stat(path.c_str(), &named) == 0 && opened.st_ino == named.st_ino &&
         opened.st_dev == named.st_dev;
}

// Opens the file that the path names and locks it; -1 with an errno when that cannot be done.
int open_locked(const std::string& path, int flags, int lock) {
  while (true) {
    const int descriptor = open(path.c_str(), flags | O_CLOEXEC, 0600);
    if (descriptor < 0) return -1;
    int error = 0;
    while (flock(descriptor, lock) != 0 && (error = errno) == EINTR) error = 0;
    if (error == 0 && is_named(path, descriptor)) return descriptor;
    close(descriptor);
    if (error == 0) continue;
    errno = error;
    return -1;
  }
}

std::string text_of(int descriptor) {
  std::string text;
  char part[8192];
  for (ssize_t size = 0; (size = read(descriptor, part, sizeof part)) > 0;)
    text.append(part, static_cast<std::size_t>(size));
  return text;
}

std::vector<std::string> lines_of(std::string_view text) {
  const bool is_encoded = text.starts_with(kEncoded);
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (!line.empty() && line != kEncoded) lines.push_back(is_encoded ? decoded(line) : std::string(line));
  }
  return lines;
}

std::string last_lines(const std::vector<std::string>& lines) {
  std::string text;
  for (std::size_t i = lines.size() - std::min<std::size_t>(lines.size(), kHistoryLines); i < lines.size(); ++i)
    text.append(lines[i]).append("\n");
  return text;
}

}  // namespace

std::string history_file() { return state_file("history"); }

std::vector<std::string> read_history(const std::string& path) {
  const open_file file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (file.descriptor < 0) return {};
  std::vector<std::string> lines = lines_of(text_of(file.descriptor));
  if (lines.size() > kHistoryLines) lines.erase(lines.begin(), lines.end() - kHistoryLines);
  return lines;
}

int append_to_history(const std::string& path, std::string_view line) {
  if (line.size() > kLongestLine) return 0;
  if (const int error = make_directories_of(path); error != 0) return error;
  const open_file file(open_locked(path, O_WRONLY | O_APPEND | O_CREAT, LOCK_SH));
  if (file.descriptor < 0) return errno;
  return write_all(file.descriptor, std::string(line) + "\n");
}

void shorten_history(const std::string& path) {
  const open_file file(open_locked(path, O_RDONLY, LOCK_EX));
  if (file.descriptor < 0) return;
  const std::string text = text_of(file.descriptor);
  const std::vector<std::string> lines = lines_of(text);
  if (lines.size() <= kMostLines && !text.starts_with(kEncoded)) return;
  struct stat old {};
  if (fstat(file.descriptor, &old) == 0) replace_file(path, last_lines(lines), &old);
}

}  // namespace host
