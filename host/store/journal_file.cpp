#include "store/journal_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <utility>

#include "base/files.h"
#include "base/replace_file.h"

namespace host {
namespace {

constexpr mode_t kOwnerOnly = 0600;
constexpr int kFlags = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
constexpr char kNextStep[] = "Correct it, or start pmshd with --stateless.";

store_error cannot(std::string_view what, const std::string& path, int error) {
  return store_error(fmt::format("cannot {} '{}': {}. {}", what, path, std::strerror(error), kNextStep));
}

// Opens a regular file; returns -1 when there is none.
int open_regular(const std::string& path, int flags) {
  const int descriptor = open(path.c_str(), flags | kFlags, kOwnerOnly);
  if (descriptor < 0 && errno == ENOENT && (flags & O_CREAT) == 0) return -1;
  const bool is_other = descriptor < 0 && (errno == ELOOP || errno == EISDIR || errno == ENXIO);
  if (descriptor < 0 && !is_other) throw cannot("open", path, errno);
  struct stat found {};
  if (!is_other && fstat(descriptor, &found) == 0 && S_ISREG(found.st_mode)) return descriptor;
  if (descriptor >= 0) close(descriptor);
  throw store_error(fmt::format("'{}' is not a regular file. Remove it, or start pmshd with --stateless.", path));
}

std::string_view as_text(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

const file_calls& system_file_calls() {
  static constexpr file_calls kSystem{pwrite, fdatasync, ftruncate};
  return kSystem;
}

journal_file::journal_file(std::string path, bool moves_aside, const file_calls& calls)
    : path_(std::move(path)), calls_(calls) {
  try {
    lock();
    if (moves_aside) move_aside();
    open_journal();
  } catch (...) {
    if (lock_ >= 0) close(lock_);
    throw;
  }
}

journal_file::~journal_file() {
  if (descriptor_ >= 0) close(descriptor_);
  close(lock_);
}

// The lock has a file of its own: the journal is replaced while it is held.
void journal_file::lock() {
  if (const int error = make_directories_of(path_); error != 0) throw cannot("make the folder of", path_, error);
  flush_directory_of(std::filesystem::path(path_).parent_path().string());  // the folder may be new
  const std::string path = path_ + ".lock";
  lock_ = open_regular(path, O_RDWR | O_CREAT);
  int result = 0;
  while ((result = flock(lock_, LOCK_EX | LOCK_NB)) != 0 && errno == EINTR) continue;
  if (result == 0) return;
  if (errno != EWOULDBLOCK) throw cannot("lock", path, errno);
  throw store_error(fmt::format(
      "another pmshd uses the state in '{}': it holds '{}'. End it, or choose another name with --name.", path_, path));
}

void journal_file::move_aside() {
  struct stat found {};
  if (lstat(path_.c_str(), &found) != 0) return;
  for (int number = 1;; ++number) {
    moved_to_ = fmt::format("{}.{}", path_, number);
    if (renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, moved_to_.c_str(), RENAME_NOREPLACE) == 0) return;
    if (errno != EEXIST) throw cannot("move aside", path_, errno);
  }
}

void journal_file::open_journal() {
  const int opened = open_regular(path_, O_RDWR);
  if (descriptor_ >= 0) close(descriptor_);
  descriptor_ = opened;
  struct stat found {};
  if (descriptor_ >= 0 && fstat(descriptor_, &found) == 0) size_bytes_ = static_cast<std::size_t>(found.st_size);
}

std::vector<std::byte> journal_file::read() const {
  std::vector<std::byte> bytes(size_bytes_);
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t size = pread(descriptor_, bytes.data() + done, bytes.size() - done, static_cast<off_t>(done));
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) throw cannot("read", path_, errno);
    if (size == 0) break;
    done += static_cast<std::size_t>(size);
  }
  bytes.resize(done);
  return bytes;
}

void journal_file::cut(std::size_t size_bytes) {
  size_bytes_ = size_bytes;
  has_rest_ = true;
}

int journal_file::append(std::span<const std::byte> bytes) {
  const int error = is_uncertain_ ? append_to_copy(bytes) : append_in_place(bytes);
  if (error == 0) return 0;
  // A record that was refused must not be there when the machine fails.
  if (calls_.truncate(descriptor_, static_cast<off_t>(size_bytes_)) == 0 && calls_.sync(descriptor_) == 0)
    has_rest_ = false;
  return error;
}

int journal_file::append_in_place(std::span<const std::byte> bytes) {
  if (has_rest_ && calls_.truncate(descriptor_, static_cast<off_t>(size_bytes_)) != 0) return errno;
  has_rest_ = true;
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t size =
        calls_.write(descriptor_, bytes.data() + done, bytes.size() - done, static_cast<off_t>(size_bytes_ + done));
    if (size < 0 && errno == EINTR) continue;
    if (size <= 0) return size == 0 ? ENOSPC : errno;
    done += static_cast<std::size_t>(size);
  }
  if (calls_.sync(descriptor_) != 0) {
    is_uncertain_ = true;
    return errno;
  }
  size_bytes_ += bytes.size();
  has_rest_ = false;
  return 0;
}

// After an error of the disk a second try at the same place may succeed without being written.
int journal_file::append_to_copy(std::span<const std::byte> bytes) {
  std::vector<std::byte> all;
  try {
    all = read();
  } catch (const store_error&) {
    return EIO;
  }
  if (all.size() != size_bytes_) return EIO;
  all.insert(all.end(), bytes.begin(), bytes.end());
  const std::size_t size_before = size_bytes_;
  const int error = replace(all);
  if (error != 0) size_bytes_ = size_before;  // whichever file is there begins with these
  return error;
}

// The lock allows a name that a killed process left.
int journal_file::replace(std::span<const std::byte> bytes) {
  const std::string made = path_ + ".new";
  try {
    const open_file file(open_regular(made, O_WRONLY | O_CREAT | O_TRUNC));
    struct stat own {};
    if (fstat(file.descriptor, &own) != 0) return errno;
    if (const int error = fill_replacement(file.descriptor, as_text(bytes), &own); error != 0) {
      unlink(made.c_str());
      return error;
    }
    if (rename(made.c_str(), path_.c_str()) != 0) return errno;
    open_journal();
  } catch (const store_error&) {
    return EIO;
  }
  const int error = flush_directory_of(path_);
  has_rest_ = false;
  is_uncertain_ = error != 0;
  return error;
}

}  // namespace host
