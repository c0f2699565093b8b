// The place of the running program.
#pragma once

#include <filesystem>

namespace host {

inline std::filesystem::path program_directory() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

}  // namespace host
