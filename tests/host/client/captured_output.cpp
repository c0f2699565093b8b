#include "host/client/captured_output.h"

#include <utility>

#include "platform/cmd_channel.h"

namespace {

std::string captured;

}  // namespace

std::string take_captured_output() { return std::exchange(captured, {}); }

// Host code prints texts without tuples: the format is the text, and a percent sign in it would ask for one.
void cmd_prt(cmd_rx_handle_t*, const char* format, ...) { captured += format; }
