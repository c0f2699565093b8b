// The model as plain data.
#include "switch/model.h"

#include <gtest/gtest.h>

#include "source/chassis/giant.h"

namespace host {
namespace {

constexpr std::time_t kNow = 1'700'000'000;

TEST(Model, ACopyIsEqual) {
  const machine made = make_giant(64, kNow);
  const machine copy = made;
  EXPECT_EQ(copy, made);
}

// Makes a copy of a machine, changes something of it, and expects that it is another one.
template <typename Change>
void expect_another(const machine& made, Change change) {
  machine copy = made;
  change(copy);
  EXPECT_FALSE(copy == made);
}

TEST(Model, EveryPartOfItCounts) {
  const machine made = make_giant(64, kNow);
  ASSERT_TRUE(made.interfaces[1].module_in_port);
  expect_another(made, [](machine& it) { it.name += "2"; });
  expect_another(made, [](machine& it) { it.cards[0].shares_resources = true; });
  expect_another(made, [](machine& it) { it.vlans.push_back({.id = 9, .name = "nine"}); });
  expect_another(made, [](machine& it) { it.users.push_back({.name = "guest", .vsans = {}}); });
  expect_another(made, [](machine& it) { it.interfaces[1].settings.description += "2"; });
  expect_another(made, [](machine& it) { it.interfaces[1].delay_usec.reset(); });
  expect_another(made, [](machine& it) { it.interfaces[1].addresses.push_back({.prefix_length = 31}); });
  expect_another(made, [](machine& it) { it.interfaces[1].private_vlan.host_primary = 7; });
  expect_another(made, [](machine& it) { it.interfaces[1].storm_control->back().percent = 9; });
  expect_another(made, [](machine& it) { it.interfaces[1].capabilities.qos->tx_queues = 9; });
  expect_another(made, [](machine& it) { it.interfaces[1].module_in_port->diagnostics.constants.rx[4] = 9; });
  expect_another(made, [](machine& it) { it.interfaces[1].stats.in.packets_by_size[7] += 1; });
  expect_another(made, [](machine& it) { it.interfaces[1].stats.errors.cos7_lost = std::nullopt; });
  expect_another(made, [](machine& it) { it.interfaces[1].stats.rate_ring->samples[3].out_frames += 1; });
  expect_another(made, [](machine& it) { it.interfaces[1].traffic.reset(); });
}

TEST(Model, StatisticsBeginUnknown) {
  const statistics made;
  EXPECT_FALSE(made.in.bytes.has_value());
  EXPECT_FALSE(made.out.packets_by_size[7].has_value());
  EXPECT_FALSE(made.errors.cos7_lost.has_value());
  EXPECT_FALSE(made.in_bytes_per_second.has_value());
  EXPECT_FALSE(made.rate_ring.has_value());
}

TEST(Model, TotalsAreSetToZeroAndRatesGoOn) {
  statistics made;
  made.in_bytes_per_second = 12;
  made.in.bytes = 5;
  set_totals_to_zero(made);
  EXPECT_EQ(made.in.bytes, counter(0));
  EXPECT_EQ(made.in.packets_by_size[0], counter(0));
  EXPECT_EQ(made.out.discards, counter(0));
  EXPECT_EQ(made.errors.crc, counter(0));
  EXPECT_EQ(made.errors.cos7_lost, counter(0));
  EXPECT_EQ(made.in_bytes_per_second, counter(12));
}

}  // namespace
}  // namespace host
