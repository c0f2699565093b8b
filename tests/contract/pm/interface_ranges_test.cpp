// Counting and finding the interfaces of a range, and sets of VSANs. The number of slots is asked for once in the life
// of a process: tests of that number are processes of their own, the others stay below the smallest.
#include "pm/interface_ranges.h"

#include <gtest/gtest.h>

#include <cstring>

#include "contract/sample_ports.h"
#include "support/fresh_process.h"

namespace pmcli_test {
namespace {

constexpr uint32 kInvalid = 0x4029000A;
constexpr if_index_t kUntouched = 0xA5A5A5A5;

struct counted {
  uint32 result;
  uint32 count;
  bool operator==(const counted&) const = default;
};

void PrintTo(const counted& found, std::ostream* out) { *out << '{' << found.result << ", " << found.count << '}'; }

constexpr counted kNoRange{kInvalid, 0};

counted count_of(if_index_t low, if_index_t high) {
  counted found{kUntouched, kUntouched};
  found.result = pm_get_num_ports_in_if_index_range(low, high, &found.count);
  return found;
}

// The interface at a position; kUntouched when there is none, which the result must say.
if_index_t at(if_index_t low, if_index_t high, uint32 position) {
  if_index_t found = kUntouched;
  const uint32 result = pm_get_if_index_in_range(low, high, &found, position);
  EXPECT_EQ(result, found == kUntouched ? kInvalid : 0U);
  return found;
}

// ---- Kinds ---------------------------------------------------------------------------------------------------------

TEST(RangeKinds, TenCanBeCounted) {
  constexpr if_index_type_t kCounted[] = {1, 2, 4, 5, 10, 11, 13, 22, 26, 30};
  for (uint32 type = 0; type < 63; ++type) {
    RecordingPlatform platform;
    const if_index_t if_index = numbered(static_cast<if_index_type_t>(type), 0);
    const bool is_counted = std::find(std::begin(kCounted), std::end(kCounted), type) != std::end(kCounted);
    EXPECT_EQ(count_of(if_index, if_index), is_counted ? (counted{0, 1}) : kNoRange) << type;
    EXPECT_EQ(at(if_index, if_index, 0), is_counted ? if_index : kUntouched) << type;
  }
  RecordingPlatform platform;
  const if_index_t external = numbered(IF_TYPE_EXTERNAL, 0);
  EXPECT_EQ(count_of(external, external), kNoRange);
}

TEST(RangeKinds, BothEndsAreOfOneKind) {
  RecordingPlatform platform;
  constexpr if_index_type_t kKinds[] = {1, 2, 4, 5, 10, 11, 13, 22, 26, 30, 20};
  for (const if_index_type_t low : kKinds)
    for (const if_index_type_t high : kKinds) {
      if (low == high) continue;
      EXPECT_EQ(count_of(numbered(low, 0), numbered(high, 0)), kNoRange) << int{low} << " to " << int{high};
      EXPECT_EQ(at(numbered(low, 0), numbered(high, 0), 0), kUntouched);
    }
}

TEST(RangeKinds, UnreadableKindIsNone) {
  RecordingPlatform platform;
  platform.fail_with("if_index_get_type", PM_ERR_GENERAL);
  EXPECT_EQ(count_of(kPort, kPort), kNoRange);
  EXPECT_EQ(at(kPort, kPort, 0), kUntouched);
}

// ---- Ports ---------------------------------------------------------------------------------------------------------

constexpr if_index_type_t kPortKinds[] = {1, 2, 11, 13, 26};

TEST(PortRange, CountsThePortsOfASlot) {
  RecordingPlatform platform;
  for (const if_index_type_t kind : kPortKinds) {
    EXPECT_EQ(count_of(ethernet(1, 1, kind), ethernet(1, 1, kind)), (counted{0, 1})) << int{kind};
    EXPECT_EQ(count_of(ethernet(1, 1, kind), ethernet(1, 48, kind)), (counted{0, 48}));
    EXPECT_EQ(count_of(ethernet(9, 7, kind), ethernet(9, 8, kind)), (counted{0, 2}));
    EXPECT_EQ(count_of(ethernet(1, 1, kind), ethernet(1, 256, kind)), (counted{0, 256}));
  }
}

TEST(PortRange, OfTwoSlotsIsNone) {
  RecordingPlatform platform;
  for (const if_index_type_t kind : kPortKinds) {
    EXPECT_EQ(count_of(ethernet(1, 1, kind), ethernet(2, 1, kind)), kNoRange);
    EXPECT_EQ(count_of(ethernet(2, 1, kind), ethernet(1, 1, kind)), kNoRange);
    EXPECT_EQ(at(ethernet(1, 1, kind), ethernet(2, 1, kind), 0), kUntouched);
  }
}

TEST(PortRange, ReversedIsNone) {
  RecordingPlatform platform;
  for (const if_index_type_t kind : kPortKinds) {
    EXPECT_EQ(count_of(ethernet(1, 2, kind), ethernet(1, 1, kind)), kNoRange);
    EXPECT_EQ(at(ethernet(1, 2, kind), ethernet(1, 1, kind), 0), kUntouched);
  }
}

TEST(PortRange, UnreadableNumberIsNone) {
  for (const if_index_type_t kind : kPortKinds) {
    for (const char* const getter : {"if_index_get_slot", "if_index_get_port"}) {
      RecordingPlatform platform;
      platform.fail_with(getter, PM_ERR_GENERAL);
      EXPECT_EQ(count_of(ethernet(1, 1, kind), ethernet(1, 9, kind)), kNoRange);
      EXPECT_EQ(at(ethernet(1, 1, kind), ethernet(1, 9, kind), 0), kUntouched);
    }
  }
}

TEST(PortRange, EachPositionIsAPort) {
  RecordingPlatform platform;
  for (const if_index_type_t kind : kPortKinds) {
    for (uint32 position = 0; position < 4; ++position)
      EXPECT_EQ(at(ethernet(3, 5, kind), ethernet(3, 8, kind), position), ethernet(3, 5 + position, kind));
    for (const uint32 position : {4U, 5U, 255U, 0xFFFFFFFFU})
      EXPECT_EQ(at(ethernet(3, 5, kind), ethernet(3, 8, kind), position), kUntouched);
  }
}

TEST(PortRange, PortThatCannotBeMadeIsNone) {
  RecordingPlatform platform;
  platform.fail_with("if_index_set_port", PM_ERR_GENERAL);
  EXPECT_EQ(at(ethernet(1, 1), ethernet(1, 4), 1), kUntouched);
}

// ---- Sub-interfaces ------------------------------------------------------------------------------------------------

constexpr if_index_type_t kSubInterfaceKinds[] = {2, 26};

TEST(SubInterfaceRange, OfOnePortCountsItsSubInterfaces) {
  RecordingPlatform platform;
  for (const if_index_type_t kind : kSubInterfaceKinds) {
    const if_index_t port = ethernet(1, 1, kind);
    EXPECT_EQ(count_of(sub_interface(port, 10), sub_interface(port, 10)), (counted{0, 1}));
    EXPECT_EQ(count_of(sub_interface(port, 10), sub_interface(port, 19)), (counted{0, 10}));
    EXPECT_EQ(count_of(port, sub_interface(port, 4095)), (counted{0, 4096}));
    EXPECT_EQ(count_of(sub_interface(port, 11), sub_interface(port, 10)), kNoRange);
    EXPECT_EQ(count_of(sub_interface(port, 1), port), kNoRange);
  }
}

TEST(SubInterfaceRange, OfTwoPortsCountsThePorts) {
  RecordingPlatform platform;
  for (const if_index_type_t kind : kSubInterfaceKinds) {
    EXPECT_EQ(count_of(sub_interface(ethernet(1, 1, kind), 10), sub_interface(ethernet(1, 4, kind), 2)),
              (counted{0, 4}));
    EXPECT_EQ(count_of(sub_interface(ethernet(1, 4, kind), 1), sub_interface(ethernet(1, 1, kind), 9)), kNoRange);
  }
}

TEST(SubInterfaceRange, UnreadableNumberIsNone) {
  for (const if_index_type_t kind : kSubInterfaceKinds) {
    RecordingPlatform platform;
    platform.fail_with("if_index_phy_eth_get_sub_intf", PM_ERR_GENERAL);
    EXPECT_EQ(count_of(ethernet(1, 1, kind), ethernet(1, 1, kind)), kNoRange);
    EXPECT_EQ(count_of(ethernet(1, 1, kind), ethernet(1, 2, kind)), (counted{0, 2}));
  }
}

TEST(SubInterfaceRange, OtherPortsHaveNone) {
  RecordingPlatform platform;
  for (const if_index_type_t kind : {if_index_type_t{1}, if_index_type_t{11}, if_index_type_t{13}}) {
    const if_index_t port = ethernet(1, 1, kind);
    EXPECT_EQ(count_of(sub_interface(port, 9), sub_interface(port, 5)), (counted{0, 1}));
  }
}

TEST(SubInterfaceRange, EachPositionIsASubInterface) {
  RecordingPlatform platform;
  for (const if_index_type_t kind : kSubInterfaceKinds) {
    const if_index_t port = ethernet(2, 7, kind);
    for (uint32 position = 0; position < 3; ++position)
      EXPECT_EQ(at(sub_interface(port, 100), sub_interface(port, 102), position), sub_interface(port, 100 + position));
    EXPECT_EQ(at(sub_interface(port, 100), sub_interface(port, 102), 3), kUntouched);
  }
}

// ---- Channels, tunnels, server interfaces, the management port -----------------------------------------------------

TEST(ChannelRange, CountsChannels) {
  RecordingPlatform platform;
  for (const if_index_type_t kind : {if_index_type_t{4}, if_index_type_t{22}}) {
    EXPECT_EQ(count_of(port_channel(3, kind), port_channel(3, kind)), (counted{0, 1}));
    EXPECT_EQ(count_of(port_channel(1, kind), port_channel(256, kind)), (counted{0, 256}));
    EXPECT_EQ(count_of(port_channel(4, kind), port_channel(3, kind)), kNoRange);
    for (uint32 position = 0; position < 3; ++position)
      EXPECT_EQ(at(port_channel(10, kind), port_channel(12, kind), position), port_channel(10 + position, kind));
    EXPECT_EQ(at(port_channel(10, kind), port_channel(12, kind), 3), kUntouched);
    EXPECT_EQ(at(port_channel(12, kind), port_channel(10, kind), 0), kUntouched);
  }
}

TEST(ChannelRange, OrderIsThatOfTheIndexes) {
  RecordingPlatform platform;
  const if_index_t port = port_channel(3);
  EXPECT_EQ(count_of(sub_interface(port, 2), sub_interface(port, 1)), kNoRange);
  EXPECT_EQ(count_of(sub_interface(port, 1), sub_interface(port, 2)), (counted{0, 1}));
}

TEST(ChannelRange, NumberIsReadByTheFamily) {
  struct getter_case {
    if_index_type_t kind;
    const char* getter;
  };
  for (const auto& [kind, getter] : {getter_case{4, "if_index_port_channel_get_channel_num"},
                                     getter_case{22, "if_index_eth_port_channel_get_channel_num"}}) {
    RecordingPlatform platform;
    platform.fail_with(getter, PM_ERR_GENERAL);
    EXPECT_EQ(count_of(port_channel(1, kind), port_channel(2, kind)), kNoRange);
    const if_index_type_t other = kind == 4 ? 22 : 4;
    EXPECT_EQ(count_of(port_channel(1, other), port_channel(2, other)), (counted{0, 2}));
  }
}

TEST(TunnelRange, IsCountedInAnyOrder) {
  RecordingPlatform platform;
  EXPECT_EQ(count_of(numbered(10, 7), numbered(10, 7)), (counted{0, 1}));
  EXPECT_EQ(count_of(numbered(10, 1), numbered(10, 9)), (counted{0, 9}));
  EXPECT_EQ(count_of(numbered(10, 8), numbered(10, 7)), (counted{0, 0}));  // wraps
  EXPECT_EQ(count_of(numbered(10, 9), numbered(10, 7)), (counted{0, 0xFFFFFFFF}));
  EXPECT_EQ(count_of(numbered(10, 500), numbered(10, 1)), (counted{0, 0xFFFFFE0E}));
}

TEST(TunnelRange, EachPositionIsATunnel) {
  RecordingPlatform platform;
  for (uint32 position = 0; position < 3; ++position)
    EXPECT_EQ(at(numbered(10, 7), numbered(10, 9), position), numbered(10, 7 + position));
  EXPECT_EQ(at(numbered(10, 7), numbered(10, 9), 3), kUntouched);
  EXPECT_EQ(at(numbered(10, 8), numbered(10, 7), 0), kUntouched);
}

TEST(TunnelRange, UnreadableNumberIsNone) {
  RecordingPlatform platform;
  platform.fail_with("if_index_fcip_get_tunnel", PM_ERR_GENERAL);
  EXPECT_EQ(count_of(numbered(10, 1), numbered(10, 2)), kNoRange);
}

TEST(ServerRange, CountsServerInterfaces) {
  RecordingPlatform platform;
  EXPECT_EQ(count_of(numbered(30, 7), numbered(30, 7)), (counted{0, 1}));
  EXPECT_EQ(count_of(numbered(30, 1), numbered(30, 9)), (counted{0, 9}));
  EXPECT_EQ(count_of(numbered(30, 9), numbered(30, 8)), kNoRange);
  for (uint32 position = 0; position < 3; ++position)
    EXPECT_EQ(at(numbered(30, 7), numbered(30, 9), position), numbered(30, 7 + position));
  EXPECT_EQ(at(numbered(30, 7), numbered(30, 9), 3), kUntouched);
  platform.fail_with("if_index_server_interface_get_sif_num", PM_ERR_GENERAL);
  EXPECT_EQ(count_of(numbered(30, 1), numbered(30, 9)), kNoRange);
}

TEST(ManagementRange, IsAlwaysOnePort) {
  RecordingPlatform platform;
  for (const auto& [low, high] : {std::pair{mgmt(0), mgmt(0)}, {mgmt(0), mgmt(5)}, {mgmt(5), mgmt(0)}}) {
    EXPECT_EQ(count_of(low, high), (counted{0, 1}));
    EXPECT_EQ(at(low, high, 0), low);
    EXPECT_EQ(at(low, high, 1), kUntouched);
  }
}

// ---- The number of slots -------------------------------------------------------------------------------------------

// Modules count from 1, so module n is the last when there are n slots.
uint32 last_module() {
  uint32 last = 0;
  for (uint32 module = 1; module <= 64; ++module)
    if (count_of(ethernet(module, 1), ethernet(module, 1)).result == 0) last = module;
  return last;
}

TEST(SlotCountDeathTest, IsThatOfThePlatform) {
  for (const uint32 slots : {1U, 2U, 10U, 18U, 63U}) {
    SCOPED_TRACE(slots);
    in_fresh_process([=] {
      RecordingPlatform platform;
      platform.num_slots = slots;
      EXPECT_EQ(last_module(), slots);
    });
  }
}

TEST(SlotCountDeathTest, Is9WhenThePlatformCannotBeAsked) {
  in_fresh_process([] {
    RecordingPlatform platform;
    platform.num_slots = 18;
    platform.fail_with("get_platform_info", PM_ERR_GENERAL);
    EXPECT_EQ(last_module(), 9U);
  });
}

TEST(SlotCountDeathTest, Is13WhenThePlatformSays0) {
  in_fresh_process([] {
    RecordingPlatform platform;
    platform.num_slots = 0;
    EXPECT_EQ(last_module(), 13U);
  });
}

TEST(SlotCountDeathTest, IsAskedOnceAndRemembered) {
  for (const bool fails : {false, true}) {
    in_fresh_process([=] {
      const uint32 slots = fails ? 9 : 3;
      {
        RecordingPlatform platform;
        platform.num_slots = 3;
        if (fails) platform.fail_with("get_platform_info", PM_ERR_GENERAL);
        EXPECT_EQ(last_module(), slots);
        EXPECT_EQ(platform.count("get_platform_info"), 1U);
      }
      RecordingPlatform later;
      later.num_slots = 18;
      EXPECT_EQ(last_module(), slots);
      EXPECT_EQ(later.count("get_platform_info"), 0U);
    });
  }
}

TEST(SlotCountDeathTest, BoundsEachKindOfPort) {
  in_fresh_process([] {
    RecordingPlatform platform;
    platform.num_slots = 2;
    for (const if_index_type_t kind : kPortKinds) {
      EXPECT_EQ(count_of(ethernet(2, 1, kind), ethernet(2, 1, kind)), (counted{0, 1}));
      EXPECT_EQ(count_of(ethernet(3, 1, kind), ethernet(3, 1, kind)), kNoRange);
      EXPECT_EQ(at(ethernet(3, 1, kind), ethernet(3, 1, kind), 0), kUntouched);
    }
  });
}

// ---- Sets of VSANs -------------------------------------------------------------------------------------------------

// A variable set in a block of exactly its size, whose count may say something else.
struct flexible_set {
  flexible_set(uint32 counted, const octets& bits) : block(4 + bits.size()) {
    for (uint32 i = 0; i < 4; ++i) block[i] = static_cast<uint8>(counted >> (24 - 8 * i));
    std::copy(bits.begin(), bits.end(), block.begin() + 4);
  }
  pm_flexi_bitset_t* get() { return reinterpret_cast<pm_flexi_bitset_t*>(block.data()); }

  octets block;
};

// The ids of the fixed set, which is full before the conversion.
std::vector<uint32> converted(flexible_set set) {
  vsan_bitset_t vsans;
  std::memset(&vsans, 0xFF, sizeof vsans);
  EXPECT_EQ(pm_create_vsan_bitset_from_pm_flexi_bitset(set.get(), &vsans), 0U);
  EXPECT_EQ(vsans.size, 512U);
  std::vector<uint32> ids;
  for (uint32 id = 0; id < 4096; ++id)
    if (bitset_is_set(&vsans, id) != 0) ids.push_back(id);
  return ids;
}

TEST(VsanSetFromFlexibleSet, EachBitIsTheSameVsan) {
  EXPECT_EQ(converted({1, {0x80}}), (std::vector<uint32>{0}));
  EXPECT_EQ(converted({1, {0x01}}), (std::vector<uint32>{7}));
  EXPECT_EQ(converted({3, {0x40, 0x00, 0xC1}}), (std::vector<uint32>{1, 16, 17, 23}));
  for (uint32 id = 0; id < 4096; ++id) {
    octets bits(id / 8 + 1);
    bits.back() = static_cast<uint8>(0x80U >> id % 8);
    EXPECT_EQ(converted({static_cast<uint32>(bits.size()), bits}), (std::vector<uint32>{id}));
  }
}

TEST(VsanSetFromFlexibleSet, EmptySetsHoldNothing) {
  EXPECT_EQ(converted({0, {}}), (std::vector<uint32>{}));
  EXPECT_EQ(converted({0, {0xFF, 0xFF}}), (std::vector<uint32>{}));
  EXPECT_EQ(converted({4, {0, 0, 0, 0}}), (std::vector<uint32>{}));
}

TEST(VsanSetFromFlexibleSet, NoSetHoldsNothing) {
  RecordingPlatform platform;
  vsan_bitset_t vsans;
  std::memset(&vsans, 0xFF, sizeof vsans);
  EXPECT_EQ(pm_create_vsan_bitset_from_pm_flexi_bitset(nullptr, &vsans), 0U);
  for (uint32 id = 0; id < 4096; ++id) EXPECT_FALSE(bitset_is_set(&vsans, id)) << id;
}

TEST(VsanSetFromFlexibleSet, BytesBehindItsCountAreNotLookedAt) {
  EXPECT_EQ(converted({1, {0x01, 0xFF}}), (std::vector<uint32>{7}));
}

TEST(VsanSetFromFlexibleSet, IdsAbove4095AreDropped) {
  octets bits(600, 0);
  bits[511] = 0x01;
  bits[512] = 0x80;
  bits[599] = 0xFF;
  EXPECT_EQ(converted({600, bits}), (std::vector<uint32>{4095}));
  EXPECT_EQ(converted({512, octets(512, 0xFF)}).size(), 4096U);
  EXPECT_EQ(converted({513, octets(513, 0xFF)}).size(), 4096U);
}

TEST(VsanSetFromFlexibleSet, CountIsBelievedUpTo512Bytes) {
  for (const uint32 count : {513U, 0x20000000U, 0x20000001U, 0xFFFFFFFFU})
    EXPECT_EQ(converted({count, octets(512, 0x01)}).size(), 512U);
}

}  // namespace
}  // namespace pmcli_test
