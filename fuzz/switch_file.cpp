// Switch files, from their text to the switch.
#include "source/chassis/switch_file.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  try {
    host::read_switch_document(host::yaml_document({reinterpret_cast<const char*>(data), size}, "input"), "input",
                               1'700'000'000);
  } catch (const host::yaml_file_error&) {
    // Refused with its reason.
  }
  return 0;
}
