// A folder that lives as long as its test; in memory, where there is such a file system.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace host {

class temporary_folder {
 public:
  temporary_folder() {
    const std::filesystem::path memory = "/dev/shm";
    const bool has_memory = ::access(memory.c_str(), W_OK) == 0;
    path_ = ((has_memory ? memory : std::filesystem::temp_directory_path()) / "store_test.XXXXXX").string();
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder");
  }
  ~temporary_folder() { std::filesystem::remove_all(path_); }
  temporary_folder(const temporary_folder&) = delete;
  temporary_folder& operator=(const temporary_folder&) = delete;

  std::string file(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

}  // namespace host
