// The output channel, for displays of the shell itself.
#pragma once

#include "platform/cmd_channel.h"
#include "platform/paraminfo.h"

namespace host {

// The channel's handle comes from a parameter block.
inline cmd_rx_handle_t* channel() {
  paraminfo_t block{};
  return cmd_paraminfo_to_rxhandle(&block);
}

inline const cmd_tuple_t* text_tuple(uint16 tag, const char* text) {
  return cmd_tuple(static_cast<uint32>(CMD_TYPE_STRING) << 24 | 0x2A0000 | tag, text);
}

}  // namespace host
