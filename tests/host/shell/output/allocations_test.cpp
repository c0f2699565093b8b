// Printing on the channel allocates nothing once its buffers have grown.
#include "support/allocations.h"

#include <gtest/gtest.h>

#include "host/shell/output/captured_command.h"
#include "platform/cmd_channel.h"
#include "switch/if_index_layout.h"

namespace session {
namespace {

using pmcli_test::num_allocations;

void print_block(cmd_rx_handle_t* rx) {
  const if_index_t port = host::ethernet_index(IF_TYPE_ETHERNET, 0, 0);
  const uint32 state = 1;
  const uint64 count = 123456789012345ULL;
  const uint8 mac[6] = {2, 0, 0, 0, 0, 1};
  cmd_prt(rx, "%-10.10s ", cmd_tuple(0x0C2A01D8, &port));
  cmd_prt(rx, "is %s\n", cmd_tuple(0x022A01D9, &state));
  cmd_prt(rx, "  Hardware: %s, address: %s\n", cmd_tuple(0x302A0273, "10/100/1000 Ethernet of some length"),
          cmd_tuple(0x0F2A0274, mac));
  cmd_prt(rx, "  %20s packets\n", cmd_tuple(0x152A0250, &count));
}

std::size_t allocations_of_a_block(host::output_settings settings) {
  captured_command command(settings);
  for (int i = 0; i < 1000; ++i) print_block(command.channel());
  const std::size_t before = num_allocations();
  for (int i = 0; i < 100; ++i) print_block(command.channel());
  return num_allocations() - before;
}

TEST(Allocations, NoneForText) { EXPECT_EQ(allocations_of_a_block({}), 0U); }

TEST(Allocations, NoneForRecords) {
  host::output_settings settings;
  settings.structured = true;
  settings.shown = {host::kDetailedDisplay, {}};
  captured_command command(settings);
  command.output().begin_interface("Ethernet1/1");
  for (int i = 0; i < 10; ++i) print_block(command.channel());
  const std::size_t before = num_allocations();
  for (int i = 0; i < 100; ++i) print_block(command.channel());
  EXPECT_EQ(num_allocations() - before, 0U);
  command.output().end_interface();
}

}  // namespace
}  // namespace session
