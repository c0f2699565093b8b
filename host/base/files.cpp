#include "base/files.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <span>

#include "base/replace_file.h"
#include "base/write_all.h"

namespace host {
namespace {

namespace fs = std::filesystem;

// The file that a path leads to, whether it is there or not; empty and errno ELOOP for links in a circle.
std::string follow_links(const std::string& path) {
  constexpr int kMostLinks = 40;
  fs::path at = path;
  std::error_code error;
  for (int i = 0; i < kMostLinks; ++i) {
    if (fs::symlink_status(at, error).type() != fs::file_type::symlink) return at.string();
    const fs::path target = fs::read_symlink(at, error);
    if (error) return at.string();
    at = target.is_absolute() ? target : at.parent_path() / target;
  }
  errno = ELOOP;
  return {};
}

int write_in_place(const std::string& path, std::string_view text) {
  const open_file file(open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  return file.descriptor < 0 ? errno : write_all(file.descriptor, text);
}

bool is_standard_output(const struct stat& file) {
  struct stat output {};
  return fstat(STDOUT_FILENO, &output) == 0 && output.st_dev == file.st_dev && output.st_ino == file.st_ino;
}

// Returns the size of what was read, 0 at the end, or -1 and errno. Waits for the writer of a pipe.
ssize_t read_block(int descriptor, std::span<char> block, bool (*is_cancelled)()) {
  constexpr int kLookMs = 100;  // at `is_cancelled`: a signal may come just before the wait
  while (true) {
    const ssize_t size = read(descriptor, block.data(), block.size());
    if (size >= 0 || (errno != EAGAIN && errno != EINTR)) return size;
    pollfd writer{descriptor, POLLIN, 0};
    poll(&writer, 1, kLookMs);
    if (is_cancelled == nullptr || !is_cancelled()) continue;
    errno = ECANCELED;
    return -1;
  }
}

// Whether a pipe that is at its end had no writer since it was opened; the kernel reports a writer that left.
bool is_pipe_without_writer(int descriptor) {
  struct stat found {};
  if (fstat(descriptor, &found) != 0 || !S_ISFIFO(found.st_mode)) return false;
  pollfd writer{descriptor, POLLIN, 0};
  return poll(&writer, 1, 0) == 0;
}

// Checks the lines of a text that arrives in parts.
struct line_check {
  std::size_t number = 1;  // of the line, from 1
  std::string_view fault;  // a sentence; empty: none so far

  void add(std::string_view part) {
    for (const char character : part) {
      size_ = character == '\n' ? 0 : size_ + 1;
      if (size_ > kLongestLine) fault = "the line is longer than 65536 bytes.";
      if (character == '\0') fault = "the line contains a zero byte. Expected a text file with commands.";
      if (!fault.empty()) return;
      if (character == '\n') ++number;
    }
  }

 private:
  static constexpr std::size_t kLongestLine = 65'536;

  std::size_t size_ = 0;
};

}  // namespace

int write_file(const std::string& path, std::string_view text) {
  struct stat old {};
  const bool exists = stat(path.c_str(), &old) == 0;
  if (!exists && errno != ENOENT) return errno;
  if (exists && is_standard_output(old)) return write_all(STDOUT_FILENO, text);
  if (exists && !S_ISREG(old.st_mode)) return write_in_place(path, text);
  const std::string target = follow_links(path);
  return target.empty() ? errno : replace_file(target, text, exists ? &old : nullptr);
}

int make_directories_of(const std::string& path) {
  for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1)) {
    const std::string directory = path.substr(0, slash);
    struct stat found {};
    if (mkdir(directory.c_str(), 0700) == 0) continue;
    const int error = errno;
    if (stat(directory.c_str(), &found) != 0) return error;
  }
  return 0;
}

bool exists(const std::string& path) {
  struct stat found {};
  return stat(path.c_str(), &found) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

bool is_regular_file(const std::string& path) {
  struct stat found {};
  return stat(path.c_str(), &found) == 0 && S_ISREG(found.st_mode);
}

std::optional<std::string> read_file(const std::string& path, std::string& error, bool (*is_cancelled)()) {
  // Without waiting for a process that opens a pipe to write.
  const open_file file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  std::string text;
  std::string reason = file.descriptor < 0 ? std::strerror(errno) : std::string();
  line_check lines;
  while (reason.empty() && lines.fault.empty()) {
    std::array<char, 1 << 16> block;
    const ssize_t size = read_block(file.descriptor, block, is_cancelled);
    if (size < 0) reason = std::strerror(errno);
    if (size == 0 && text.empty() && is_pipe_without_writer(file.descriptor)) reason = "no process writes to the pipe";
    if (size <= 0) break;
    const std::string_view part(block.data(), static_cast<std::size_t>(size));
    lines.add(part);
    text += part;
  }
  if (reason.empty() && lines.fault.empty()) return text;
  error = !reason.empty() ? fmt::format("cannot read '{}': {}.", path, reason)
                          : fmt::format("{}:{}: {}", path, lines.number, lines.fault);
  return std::nullopt;
}

}  // namespace host
