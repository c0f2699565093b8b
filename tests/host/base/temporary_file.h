// A file that lives as long as its test.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace host {

class temporary_file {
 public:
  explicit temporary_file(const std::string& content)
      : path_(std::filesystem::temp_directory_path() / ("switch_file_test_" + std::to_string(getpid()) + ".yaml")) {
    std::ofstream(path_) << content;
  }
  ~temporary_file() { std::filesystem::remove(path_); }
  temporary_file(const temporary_file&) = delete;
  temporary_file& operator=(const temporary_file&) = delete;

  std::string path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace host
