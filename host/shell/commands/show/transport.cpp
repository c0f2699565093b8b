// "show transport".
#include "transport/transport.h"

#include "shell/commands/group.h"
#include "shell/commands/show/own_channel.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"

namespace host {
namespace {

struct account_line {
  const char* format;
  uint16 tag;
  uint64 transport_account::*count;
};

constexpr account_line kAccountLines[] = {
    {"Messages sent:           %10s\n", kTagMessagesSent, &transport_account::sent},
    {"Messages received:       %10s\n", kTagMessagesReceived, &transport_account::received},
    {"Messages dropped:        %10s\n", kTagMessagesDropped, &transport_account::dropped},
    {"  dropped twice:         %10s\n", kTagMessagesDroppedTwice, &transport_account::dropped_twice},
    {"  never dropped:         %10s\n", kTagMessagesNeverDropped, &transport_account::never_dropped},
};

int show_transport(const invocation&) {
  const transport_account account = transport_accounts();
  cmd_rx_handle_t* const rx = channel();
  for (const account_line& line : kAccountLines) {
    const uint64 count = account.*line.count;
    cmd_prt(rx, line.format, cmd_tuple(static_cast<uint32>(CMD_TYPE_UINT64) << 24 | line.tag, &count));
  }
  return kDone;
}

constexpr display kTransportShown = {kTransportDisplay, "transport", "transport"};

// clang-format off
constexpr command kTransportRows[] = {
    {"show transport", "Messages between this shell and the services", show_transport, kTransportShown},
};
// clang-format on

constexpr word_help kTransportWords[] = {
    {"transport", "Messages between this shell and the services"},
};

}  // namespace

constexpr command_group kTransportCommands = {kTransportRows, kTransportWords};

}  // namespace host
