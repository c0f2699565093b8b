// Opens the switch that the options of a program name.
#pragma once

#include <string>

#include "source/open/switch_options.h"

namespace host {

class capture;

struct opened_switch {
  std::string file;     // the switch file; empty: none was read
  std::string warning;  // one sentence; empty: none
};

// Sets the machine and its source. A replay stops the clock, unless the options did. A capture stores what the kernel
// answers; null: nothing is stored. With `is_for_counters` a kernel source reads only its counters first, if it can.
//
// Throws yaml_file_error, capture_folder_error, capture_error, kernel_error.
opened_switch open_switch(const switch_options& requested, capture* capturing = nullptr, bool is_for_counters = false);

}  // namespace host
