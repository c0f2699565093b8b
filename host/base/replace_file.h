// Replacing a file as a whole.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "base/write_all.h"

namespace host {

// Closes a descriptor; a negative one is none.
struct open_file {
  explicit open_file(int opened) : descriptor(opened) {}
  ~open_file() {
    if (descriptor >= 0) ::close(descriptor);
  }
  open_file(const open_file&) = delete;
  open_file& operator=(const open_file&) = delete;

  int descriptor;
};

// The mode that a new file gets.
inline mode_t mode_of_new_files() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

inline int flush_to_disk(int descriptor) { return fsync(descriptor) == 0 || errno == EINVAL ? 0 : errno; }

// Fills the file that replaces `old`, which is null when there is none.
inline int fill_replacement(int descriptor, std::string_view text, const struct stat* old) {
  if (const int error = write_all(descriptor, text); error != 0) return error;
  const bool has_owner = old == nullptr || (old->st_uid == geteuid() && old->st_gid == getegid());
  if (!has_owner && fchown(descriptor, old->st_uid, old->st_gid) != 0) return errno;
  if (fchmod(descriptor, old != nullptr ? old->st_mode & 07777 : mode_of_new_files()) != 0) return errno;
  return flush_to_disk(descriptor);
}

// A new name is on the disk when its directory was synchronised.
inline int flush_directory_of(const std::string& path) {
  const std::string directory = std::filesystem::path(path).parent_path().string();
  const open_file opened(open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return opened.descriptor < 0 ? 0 : flush_to_disk(opened.descriptor);
}

// Replaces a regular file, or creates it, as a whole: a reader sees all of the text or all of the old file, also when
// this process is killed. It gets the mode and the owner of `old`, which is null when there is none. Returns 0 or an
// errno.
inline int replace_file(const std::string& path, std::string_view text, const struct stat* old) {
  std::string made = path + ".XXXXXX";
  const open_file file(mkostemp(made.data(), O_CLOEXEC));
  if (file.descriptor < 0) return errno;
  int error = fill_replacement(file.descriptor, text, old);
  if (error == 0 && std::rename(made.c_str(), path.c_str()) != 0) error = errno;
  if (error != 0) unlink(made.c_str());
  return error != 0 ? error : flush_directory_of(path);
}

}  // namespace host
