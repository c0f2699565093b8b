// The file of a journal: locked, appended to, replaced as a whole.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace host {

// Why there is no journal: one sentence with the next step.
struct store_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The system's functions; tests replace them.
struct file_calls {
  ssize_t (*write)(int descriptor, const void* bytes, size_t size, off_t offset);
  int (*sync)(int descriptor);
  int (*truncate)(int descriptor, off_t size);
};
const file_calls& system_file_calls();

class journal_file {
 public:
  // Locks PATH.lock, so that no other process has the journal. `path` is absolute; missing folders are made. With
  // `moves_aside` a file that is there gets another name. `calls` outlive the journal. Throws store_error.
  explicit journal_file(std::string path, bool moves_aside = false, const file_calls& calls = system_file_calls());
  ~journal_file();
  journal_file(const journal_file&) = delete;
  journal_file& operator=(const journal_file&) = delete;

  const std::string& path() const { return path_; }

  // The name of the file that was moved aside; empty: there was none.
  const std::string& moved_to() const { return moved_to_; }

  std::size_t size_bytes() const { return size_bytes_; }

  // Whether the file is there: it was opened, or written since.
  bool exists() const { return descriptor_ >= 0; }

  // The whole file, which is not a link, pipe or folder. Throws store_error.
  std::vector<std::byte> read() const;

  // Ends the file after so many bytes; what follows is removed by the next append at the latest.
  void cut(std::size_t size_bytes);

  // Both are on the disk when they return 0, else an errno. The file then has what it had; after replace() it may have
  // the new bytes, and is to be read again.
  int append(std::span<const std::byte> bytes);
  int replace(std::span<const std::byte> bytes);

 private:
  void lock();
  void move_aside();
  void open_journal();
  int append_in_place(std::span<const std::byte> bytes);
  int append_to_copy(std::span<const std::byte> bytes);

  std::string path_;
  const file_calls& calls_;
  std::string moved_to_;
  int lock_ = -1;
  int descriptor_ = -1;
  std::size_t size_bytes_ = 0;  // that count
  bool has_rest_ = false;       // bytes may follow them
  bool is_uncertain_ = false;   // the disk reported an error: what it holds may not be what is read
};

}  // namespace host
