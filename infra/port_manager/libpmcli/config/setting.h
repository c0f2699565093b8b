// The result of parsing a configuration command: a setting to send, or the end of the command.
#pragma once

#include <cstdio>

#include "platform/types.h"
#include "support/scope.h"

namespace pmcli {

// One setting of a port.
struct port_setting {
  uint8 type;                  // PM_CFG_...
  uint8 length;                // bytes of the value
  uint32 number = 0;           // the value, when it is a number
  const char* text = nullptr;  // the value, when it is a text that fits
};

struct outcome {
  bool is_to_send;
  int32 result;  // of a command that ends here
  port_setting setting;
};

inline outcome send_setting(const port_setting& setting) { return {true, 0, setting}; }
inline outcome end_command(int32 result) { return {false, result, {}}; }

inline outcome refuse(const char* message, int32 result = 1) {
  std::puts(message);
  return end_command(result);
}

}  // namespace pmcli
