// Reading the folder of a capture (source/kernel/capture_format.h).
#pragma once

#include <ctime>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "source/kernel/baselines.h"
#include "source/kernel/capture_format.h"

namespace host {

// What is wrong with a folder: a sentence for each fault.
struct capture_folder_error : std::runtime_error {
  explicit capture_folder_error(std::vector<std::string> all);
  std::vector<std::string> faults;
};

struct captured_answer {
  std::string bytes;
  int error = 0;  // an errno
};

struct captured_interface {
  if_index_t if_index = 0;
  name_reason reason = name_reason::device_index;
};

struct capture_folder {
  std::time_t clock = 0;
  kernel_system system;
  std::string switch_name;
  std::map<uint32, captured_interface> interfaces;                                      // by the number of the device
  std::map<uint32, counter_baseline> baselines;                                         // the same
  std::map<std::pair<capture_bus, std::string>, std::vector<captured_answer>> answers;  // by bus and key
};

// Reads a folder. Throws capture_folder_error.
capture_folder read_capture_folder(const std::string& directory);

}  // namespace host
