// Which interfaces exist: the enumeration callback and its filter by families of names.
#include <gtest/gtest.h>

#include <algorithm>

#include "contract/command/interface_command.h"
#include "pmcli/selection.h"
#include "support/failure_walk.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

using Interfaces = std::vector<if_index_t>;
using ListingQueries = std::vector<RecordingPlatform::listing_query>;

constexpr interface_mask_t kEthernetMask = 0x2;
constexpr if_index_type_t kAllTypes[] = {0, 1, 2, 5, 11, 20, 26, 31, 254};

struct enumerated {
  int32 result;
  Interfaces interfaces;
  bool has_block;
};

// The list is handed in full of rubbish, and its block is taken over as a caller does.
enumerated enumerate(RecordingPlatform& platform, paraminfo_t* param) {
  static if_index_t rubbish = 0;
  if_index_list_t list{77, &rubbish};
  const int32 result = pm_cli_if_index_enum_func(param, &list);
  EXPECT_NE(list.list, &rubbish);
  const bool has_block = list.list != nullptr;
  EXPECT_EQ(list.length != 0, has_block);
  enumerated found{result, {}, has_block};
  if (!has_block) return found;
  found.interfaces.assign(list.list, list.list + list.length);
  platform.release(list.list);
  return found;
}

void expect_listed(const enumerated& found, const Interfaces& expected) {
  EXPECT_EQ(found.result, 1);
  EXPECT_EQ(found.interfaces, expected);
}

void expect_failure(const enumerated& found) {
  EXPECT_EQ(found.result, -1);
  EXPECT_FALSE(found.has_block);
}

enumerated enumerate_all(RecordingPlatform& platform, interface_mask_t mask) {
  return enumerate(platform, interface_command(platform, 1, mask, nullptr));
}

enumerated enumerate_ranges(RecordingPlatform& platform, interface_mask_t mask,
                            const std::vector<vsh_intf_mono_range_t>& pairs) {
  intf_range_t ranges = interface_ranges(pairs);
  return enumerate(platform, interface_command(platform, 1, mask, &ranges));
}

Interfaces ports(uint32 first, uint32 last) {
  Interfaces list;
  for (uint32 port = first; port <= last; ++port) list.push_back(ethernet(1, port));
  return list;
}

vsh_intf_mono_range_t port_range(uint32 first, uint32 last) { return {ethernet(1, first), ethernet(1, last)}; }

// ---- The mask ------------------------------------------------------------------------------------------------------

struct mask_case {
  interface_mask_t mask;
  if_index_type_t type;
};

// Other bits of the low word are listed as type 0.
constexpr mask_case kKindMasks[] = {
    {0x1, 1},  {0x40000, 1}, {0x80000, 1},     {0x2, 2},     {0x800000, 26},
    {0x80, 5}, {0x8, 11},    {0x2000000, 254}, {0x4000, 20}, {0x10000000, 31},
};

if_index_type_t listed_type(interface_mask_t mask) {
  for (const mask_case& known : kKindMasks)
    if (known.mask == mask) return known.type;
  return 0;
}

TEST(EnumerationMask, EachBitSelectsItsListing) {
  for (uint32 bit = 0; bit < 32; ++bit) {
    const interface_mask_t mask = interface_mask_t{1} << bit;
    if (mask == 0x800 || mask == 0x10000 || mask == 0x1000000) continue;  // below
    SCOPED_TRACE(bit);
    RecordingPlatform platform;
    for (const if_index_type_t type : kAllTypes) platform.listings[type] = listing_of({numbered(29, type)});
    const if_index_type_t type = listed_type(mask);
    expect_listed(enumerate_all(platform, mask), {numbered(29, type)});
    EXPECT_EQ(platform.listing_queries, (ListingQueries{{type, RecordingPlatform::q(), 60, std::nullopt}}));
    EXPECT_EQ(platform.text(), "");
  }
}

TEST(EnumerationMask, InbandInterfaceIsNotAskedFor) {
  RecordingPlatform platform;
  expect_listed(enumerate_all(platform, 0x800), {if_index_inband_get_active_sup_priority_hi()});
  EXPECT_THAT(platform.listing_queries, IsEmpty());
  expect_listed(enumerate_ranges(platform, 0x800, {port_range(1, 9)}), {if_index_inband_get_active_sup_priority_hi()});
  EXPECT_EQ(platform.text(), "");
}

TEST(EnumerationMask, TwoKindsAreRefusedSilently) {
  for (const interface_mask_t mask : {0x10000U, 0x1000000U}) {
    RecordingPlatform platform;
    for (const if_index_type_t type : kAllTypes) platform.listings[type] = listing_of({ethernet(1, 1)});
    expect_failure(enumerate_all(platform, mask));
    EXPECT_EQ(platform.text(), "");
    EXPECT_THAT(platform.listing_queries, IsEmpty());
  }
}

void expect_invalid(interface_mask_t mask, const std::string& shown) {
  RecordingPlatform platform;
  for (const if_index_type_t type : kAllTypes) platform.listings[type] = listing_of({ethernet(1, 1)});
  expect_failure(enumerate_all(platform, mask));
  EXPECT_EQ(platform.text(), "error: iface_mask(" + shown + ") not valid\n");
  EXPECT_EQ(platform.terminal(), platform.text());
  EXPECT_THAT(platform.listing_queries, IsEmpty());
}

TEST(EnumerationMask, OfNoBitAndOfManyIsNotValid) {
  expect_invalid(0, "0");
  expect_invalid(0x80001, "80001");
  expect_invalid(0x3, "3");
  expect_invalid(0x810, "810");
  expect_invalid(0x10001, "10001");
  expect_invalid(0x1010000, "1010000");
  expect_invalid(0xC0000, "C0000");
  expect_invalid(0xABCDEF, "ABCDEF");
  expect_invalid(0xFFFFFFFF, "FFFFFFFF");
}

TEST(EnumerationMask, BitsOfTheHighWordAreNotValid) {
  for (uint32 bit = 32; bit < 64; ++bit) {
    expect_invalid(interface_mask_t{1} << bit, "0");
    expect_invalid(interface_mask_t{1} << bit | 0x2, "2");
    expect_invalid(interface_mask_t{1} << bit | 0x10000, "10000");
  }
}

TEST(EnumerationMask, NoTwoBitsAreValid) {
  RecordingPlatform platform;
  for (uint32 low = 0; low < 64; ++low) {
    for (uint32 high = low + 1; high < 64; ++high) {
      const interface_mask_t mask = interface_mask_t{1} << low | interface_mask_t{1} << high;
      platform.clear_output();
      expect_failure(enumerate_all(platform, mask));
      EXPECT_THAT(platform.text(), StartsWith("error: iface_mask(")) << low << ", " << high;
    }
  }
  EXPECT_THAT(platform.listing_queries, IsEmpty());
}

TEST(EnumerationMask, IsThatOfTheFirstArgument) {
  RecordingPlatform platform;
  platform.listings[2] = listing_of({ethernet(1, 1)});
  paraminfo_t* const param = interface_command(platform, 1, kEthernetMask, nullptr);
  platform.add_argument(param, PARAM_TYPE_INTERFACES, nullptr)->interface_mask = 0x3;
  expect_listed(enumerate(platform, param), {ethernet(1, 1)});

  param->arg_list[0] = nullptr;
  expect_failure(enumerate(platform, param));
  EXPECT_EQ(platform.text(), "error: iface_mask(0) not valid\n");
}

TEST(Enumeration, WithoutAParameterBlockFailsSilently) {
  RecordingPlatform platform;
  expect_failure(enumerate(platform, nullptr));
  EXPECT_EQ(platform.text(), "");
  EXPECT_THAT(platform.calls, IsEmpty());
}

// ---- The configuration ---------------------------------------------------------------------------------------------

TEST(Enumeration, OnlyConfiguration1IsTheRunningOne) {
  for (const uint32 config : {2U, 0U, 3U, 0x101U, 0xFFFFFFFFU}) {
    RecordingPlatform platform;
    platform.config_type = config;
    platform.startup_uri = "bootflash:/startup";
    platform.listings[2] = listing_of(ports(1, 4));
    platform.startup_listings[2] = listing_of(ports(2, 3));
    expect_listed(enumerate_all(platform, kEthernetMask), ports(2, 3));
    EXPECT_EQ(platform.listing_queries, (ListingQueries{{2, RecordingPlatform::q(), 60, "bootflash:/startup"}}));
  }
}

TEST(Enumeration, AsksOnTheQueueOfTheCommand) {
  for (const uint32 config : {1U, 2U}) {
    RecordingPlatform platform;
    platform.config_type = config;
    platform.listings[2] = platform.startup_listings[2] = listing_of({});
    paraminfo_t* const param = interface_command(platform, 1, kEthernetMask, nullptr);
    param->q = 99;
    enumerate(platform, param);
    ASSERT_EQ(platform.listing_queries.size(), 1U);
    EXPECT_EQ(platform.listing_queries[0].q, 99);
  }
}

TEST(Enumeration, FailedRequestIsTold) {
  for (const uint32 config : {1U, 2U}) {
    for (const bool has_ranges : {false, true}) {
      RecordingPlatform platform;
      platform.config_type = config;
      platform.mts_errno = 104;
      platform.listings[2] = platform.startup_listings[2] = listing_of(ports(1, 4));
      platform.fail_with(config == 1 ? "pm_get_if_index_listing" : "pm_get_startup_if_index_listing");
      expect_failure(has_ranges ? enumerate_ranges(platform, kEthernetMask, {port_range(1, 4)})
                                : enumerate_all(platform, kEthernetMask));
      EXPECT_EQ(platform.text(), "<transport failure 1 104>\n");
      EXPECT_THAT(platform.drops, IsEmpty());
    }
  }
}

TEST(Enumeration, FailedDropIsToldAndGivesNoList) {
  for (const bool has_ranges : {false, true}) {
    RecordingPlatform platform;
    platform.mts_errno = 9;
    platform.listings[2] = listing_of(ports(1, 4));
    platform.fail_with("mts_drop");
    expect_failure(has_ranges ? enumerate_ranges(platform, kEthernetMask, {port_range(1, 4)})
                              : enumerate_all(platform, kEthernetMask));
    EXPECT_EQ(platform.text(), "<transport failure 1 9>\n");
    EXPECT_EQ(platform.drops, (std::vector<uint32>{1}));
  }
  RecordingPlatform platform;
  platform.listings[2] = listing_of({});
  platform.fail_with("mts_drop");
  expect_failure(enumerate_all(platform, kEthernetMask));
  EXPECT_EQ(platform.text(), "<transport failure 1 110>\n");
}

// ---- All interfaces ------------------------------------------------------------------------------------------------

TEST(EnumerationOfAll, KeepsTheOrderOfTheListing) {
  RecordingPlatform platform;
  const Interfaces listed = {ethernet(2, 7), ethernet(1, 1), sub_interface(ethernet(1, 1), 5), ethernet(1, 1)};
  platform.listings[2] = listing_of(listed);
  expect_listed(enumerate_all(platform, kEthernetMask), listed);
  EXPECT_EQ(platform.drops, (std::vector<uint32>{1}));
}

TEST(EnumerationOfAll, ParameterWithoutRangesIsAll) {
  RecordingPlatform platform;
  platform.listings[2] = listing_of(ports(1, 3));
  expect_listed(enumerate_ranges(platform, kEthernetMask, {}), ports(1, 3));
}

TEST(EnumerationOfAll, EmptyListingIsNoFailureAndAllocatesNothing) {
  for (const octets& listing : {listing_of({}), octets{}, octets{0}, octets{0, 0, 0}, octets{0, 0, 0, 1}}) {
    RecordingPlatform platform;
    platform.listings[2] = listing;
    const enumerated found = enumerate_all(platform, kEthernetMask);
    expect_listed(found, {});
    EXPECT_FALSE(found.has_block);
    EXPECT_EQ(platform.count("malloc"), 0U);
    EXPECT_EQ(platform.text(), "");
  }
}

TEST(EnumerationOfAll, ManyInterfacesAreListed) {
  RecordingPlatform platform;
  Interfaces listed;
  for (uint32 i = 0; i < 10'000; ++i) listed.push_back(ethernet(1 + i / 250, 1 + i % 250));
  platform.listings[2] = listing_of(listed);
  expect_listed(enumerate_all(platform, kEthernetMask), listed);
}

// ---- Listings that lie ---------------------------------------------------------------------------------------------

TEST(LyingListing, IsBelievedAsFarAsItsPayloadReaches) {
  for (const uint32 counted : {4U, 5U, 0x3FFFFFFFU, 0x40000000U, 0x40000003U, 0xFFFFFFFFU}) {
    RecordingPlatform platform;
    platform.listings[2] = words({counted, ethernet(1, 1), ethernet(1, 2), ethernet(1, 3)});
    expect_listed(enumerate_all(platform, kEthernetMask), ports(1, 3));
    expect_listed(enumerate_ranges(platform, kEthernetMask, {port_range(1, 9)}), ports(1, 3));
  }
}

TEST(LyingListing, EntriesBehindItsCountAreNotThere) {
  RecordingPlatform platform;
  platform.listings[2] = words({1, ethernet(1, 1), ethernet(1, 2)});
  expect_listed(enumerate_all(platform, kEthernetMask), ports(1, 1));
  expect_listed(enumerate_ranges(platform, kEthernetMask, {port_range(1, 9)}), ports(1, 1));
}

TEST(LyingListing, CutAtEachByteShowsItsWholeEntries) {
  const octets whole = listing_of(ports(1, 4));
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    RecordingPlatform platform;
    platform.listings[2] = octets(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    const auto entries = static_cast<uint32>(size < 4 ? 0 : (size - 4) / 4);
    expect_listed(enumerate_all(platform, kEthernetMask), ports(1, entries));
    expect_listed(enumerate_ranges(platform, kEthernetMask, {port_range(1, 9)}), ports(1, entries));
  }
}

TEST(LyingListing, WithoutAPayloadIsEmpty) {
  for (const char* const function : {"mts_payload_get", "mts_payload_size"}) {
    RecordingPlatform platform;
    platform.listings[2] = listing_of(ports(1, 4));
    platform.fail_with(function);
    expect_listed(enumerate_all(platform, kEthernetMask), {});
    expect_listed(enumerate_ranges(platform, kEthernetMask, {port_range(1, 9)}), {});
    EXPECT_EQ(platform.drops.size(), 2U);
  }
}

// ---- Ranges --------------------------------------------------------------------------------------------------------

TEST(EnumerationOfRanges, BothBoundsBelongToARange) {
  RecordingPlatform platform;
  platform.listings[2] = listing_of(ports(1, 10));
  expect_listed(enumerate_ranges(platform, kEthernetMask, {port_range(3, 5)}), ports(3, 5));
  expect_listed(enumerate_ranges(platform, kEthernetMask, {port_range(7, 7)}), ports(7, 7));
  EXPECT_EQ(platform.drops, (std::vector<uint32>{1, 2}));
}

TEST(EnumerationOfRanges, OrderIsThatOfTheListing) {
  RecordingPlatform platform;
  platform.listings[2] = listing_of({ethernet(1, 4), ethernet(1, 1), ethernet(1, 3), ethernet(1, 2)});
  expect_listed(enumerate_ranges(platform, kEthernetMask, {port_range(1, 2), port_range(4, 4)}),
                {ethernet(1, 4), ethernet(1, 1), ethernet(1, 2)});
}

TEST(EnumerationOfRanges, InterfaceInTwoRangesIsListedTwice) {
  RecordingPlatform platform;
  platform.listings[2] = listing_of(ports(1, 20));
  Interfaces expected = ports(1, 4);
  for (uint32 port = 5; port <= 10; ++port) expected.insert(expected.end(), 2, ethernet(1, port));
  const Interfaces rest = ports(11, 15);
  expected.insert(expected.end(), rest.begin(), rest.end());
  expect_listed(enumerate_ranges(platform, kEthernetMask, {port_range(1, 10), port_range(5, 15)}), expected);
}

TEST(EnumerationOfRanges, ReversedRangeHoldsNothing) {
  RecordingPlatform platform;
  platform.listings[2] = listing_of(ports(1, 10));
  const enumerated found = enumerate_ranges(platform, kEthernetMask, {port_range(5, 3)});
  expect_listed(found, {});
  EXPECT_FALSE(found.has_block);
  EXPECT_EQ(platform.count("malloc"), 0U);
  expect_listed(enumerate_ranges(platform, kEthernetMask, {port_range(5, 3), port_range(2, 2)}), ports(2, 2));
}

TEST(EnumerationOfRanges, PortsThatDoNotExistAreLeftOut) {
  RecordingPlatform platform;
  platform.listings[2] = listing_of({ethernet(1, 2), ethernet(2, 2)});
  expect_listed(enumerate_ranges(platform, kEthernetMask, {port_range(3, 90)}), {});
  expect_listed(enumerate_ranges(platform, kEthernetMask, {{ethernet(1, 1), ethernet(3, 1)}}),
                {ethernet(1, 2), ethernet(2, 2)});
  expect_listed(enumerate_ranges(platform, kEthernetMask, {{0, 0xFFFFFFFF}}), {ethernet(1, 2), ethernet(2, 2)});
  EXPECT_EQ(platform.text(), "");
}

TEST(EnumerationOfRanges, MoreThan64AreNotLookedAt) {
  std::vector<vsh_intf_mono_range_t> pairs;
  for (uint32 port = 1; port <= 64; ++port) pairs.push_back(port_range(port, port));
  for (const uint32 count : {64U, 65U, 0xFFFFFFFFU}) {
    RecordingPlatform platform;
    platform.listings[2] = listing_of(ports(1, 70));
    const auto ranges = std::make_unique<intf_range_t>(interface_ranges(pairs));
    ranges->range_count = count;
    expect_listed(enumerate(platform, interface_command(platform, 1, kEthernetMask, ranges.get())), ports(1, 64));
  }
}

TEST(EnumerationOfRanges, OneBlockOfTheExactSizeIsAllocated) {
  RecordingPlatform platform;
  platform.listings[2] = listing_of(ports(1, 10));
  enumerate_ranges(platform, kEthernetMask, {port_range(1, 3)});
  EXPECT_EQ(platform.count("malloc"), 1U);
}

// ---- Families of names ---------------------------------------------------------------------------------------------

constexpr interface_mask_t kFibreChannelMask = 0x1;
constexpr interface_mask_t kBayMask = 0x40000;
constexpr interface_mask_t kExternalMask = 0x80000;

struct name_case {
  const char* name;
  interface_mask_t of;  // the only mask that selects it; 0: all three
};

constexpr name_case kNames[] = {
    {"fc1/1", 0x1},
    {"bay3", 0x40000},
    {"ext1", 0x80000},
    {"e1/1", 0x80000},
    {"f", 0x1},
    {"b", 0x40000},
    {"fibre-channel-with-a-long-name", 0x1},
    {"bay-with-a-long-name", 0x40000},
    {"sup-fc0", 0},
    {"Fc1/1", 0},
    {"Bay3", 0},
    {"Ethernet1/1", 0},
    {" fc1/1", 0},
    {"1", 0},
};

Interfaces name_ports(RecordingPlatform& platform) {
  Interfaces listed;
  for (const name_case& named : kNames) {
    listed.push_back(fibre_channel(1, static_cast<uint32>(listed.size()) + 1));
    platform.names[listed.back()] = named.name;
  }
  platform.listings[1] = listing_of(listed);
  return listed;
}

Interfaces of_family(const Interfaces& listed, interface_mask_t mask) {
  Interfaces family;
  for (std::size_t i = 0; i < listed.size(); ++i)
    if (kNames[i].of == mask || kNames[i].of == 0) family.push_back(listed[i]);
  return family;
}

TEST(NameFamily, EachMaskSelectsItsOwn) {
  for (const interface_mask_t mask : {kFibreChannelMask, kBayMask, kExternalMask}) {
    RecordingPlatform platform;
    const Interfaces listed = name_ports(platform);
    expect_listed(enumerate_all(platform, mask), of_family(listed, mask));
    expect_listed(enumerate_ranges(platform, mask, {{listed.front(), listed.back()}}), of_family(listed, mask));
  }
}

TEST(NameFamily, FilterByName) {
  RecordingPlatform platform;
  const Interfaces listed = name_ports(platform);
  for (const interface_mask_t mask : {kFibreChannelMask, kBayMask, kExternalMask}) {
    paraminfo_t* const param = interface_command(platform, 1, mask, nullptr);
    for (std::size_t i = 0; i < listed.size(); ++i)
      EXPECT_EQ(pm_cli_check_to_add_in_if_index_listing(listed[i], param), kNames[i].of == mask || kNames[i].of == 0)
          << kNames[i].name << " with mask " << mask;
  }
}

TEST(NameFamily, OtherMasksSelectEveryName) {
  for (const interface_mask_t mask : {interface_mask_t{0}, interface_mask_t{0x2}, interface_mask_t{0x800000},
                                      interface_mask_t{0x20000}, ~interface_mask_t{0xC0001}}) {
    RecordingPlatform platform;
    Interfaces listed = name_ports(platform);
    platform.names[listed[0]] = "";
    for (const if_index_t if_index : listed)
      EXPECT_TRUE(pm_cli_check_to_add_in_if_index_listing(if_index, interface_command(platform, 1, mask, nullptr)));
  }
}

// "Exactly" this mask: with another bit beside it, the three letters belong to no family.
TEST(NameFamily, MaskOfSeveralBitsSelectsNoneOfTheThreeLetters) {
  for (const interface_mask_t mask :
       {interface_mask_t{0x3}, interface_mask_t{0x40001}, interface_mask_t{0x80001}, interface_mask_t{0xC0000},
        interface_mask_t{0xC0001}, interface_mask_t{0x100000001}, interface_mask_t{0x8000000000040000}}) {
    RecordingPlatform platform;
    const Interfaces listed = name_ports(platform);
    paraminfo_t* const param = interface_command(platform, 1, mask, nullptr);
    for (std::size_t i = 0; i < listed.size(); ++i)
      EXPECT_EQ(pm_cli_check_to_add_in_if_index_listing(listed[i], param), kNames[i].of == 0) << kNames[i].name;
  }
}

TEST(NameFamily, InterfaceWithoutANameIsRejected) {
  for (const interface_mask_t mask : {kFibreChannelMask, kBayMask, kExternalMask}) {
    RecordingPlatform platform;
    platform.names[fibre_channel(1, 1)] = "";
    EXPECT_FALSE(
        pm_cli_check_to_add_in_if_index_listing(fibre_channel(1, 1), interface_command(platform, 1, mask, nullptr)));
  }
}

TEST(NameFamily, WhenNothingIsAcceptedThereIsNoList) {
  RecordingPlatform platform;
  platform.names[fibre_channel(1, 1)] = "ext1";
  platform.listings[1] = listing_of({fibre_channel(1, 1)});
  const enumerated found = enumerate_all(platform, kFibreChannelMask);
  expect_listed(found, {});
  EXPECT_FALSE(found.has_block);
  EXPECT_EQ(platform.count("malloc"), 1U);  // the scratch list
}

// ---- Order ---------------------------------------------------------------------------------------------------------

// Ports 3, 1 and 2 of a family; the platform's order is the reverse of their numbers.
Interfaces list_in_disorder(RecordingPlatform& platform, const char* name) {
  const Interfaces listed = {fibre_channel(1, 3), fibre_channel(1, 1), fibre_channel(1, 2)};
  for (const if_index_t if_index : listed) platform.names[if_index] = name;
  platform.listings[1] = listing_of(listed);
  platform.compare_aliases = [](if_index_t a, if_index_t b) { return a > b ? -1 : a < b; };
  return listed;
}

TEST(EnumerationOrder, BayAndExternalPortsAreSortedAsThePlatformSays) {
  struct family_case {
    interface_mask_t mask;
    const char* name;
  };
  for (const auto& [mask, name] : {family_case{kBayMask, "bay1"}, family_case{kExternalMask, "ext1"}}) {
    RecordingPlatform platform;
    list_in_disorder(platform, name);
    const if_index_t one = fibre_channel(1, 1), two = fibre_channel(1, 2), three = fibre_channel(1, 3);
    expect_listed(enumerate_all(platform, mask), {three, two, one});
    expect_listed(enumerate_ranges(platform, mask, {{one, three}}), {three, two, one});
    expect_listed(enumerate_ranges(platform, mask, {{one, two}, {two, three}}), {three, two, two, one});
  }
}

TEST(EnumerationOrder, OtherKindsAreNotSorted) {
  RecordingPlatform platform;
  const Interfaces listed = list_in_disorder(platform, "fc1");
  expect_listed(enumerate_all(platform, kFibreChannelMask), listed);
  platform.listings[2] = platform.listings[1];
  expect_listed(enumerate_all(platform, kEthernetMask), listed);
}

// ---- No memory -----------------------------------------------------------------------------------------------------

// What is printed when the nth allocation fails. The call fails then, and the answer is dropped.
std::string text_without_memory(uint32 nth, interface_mask_t mask, const std::vector<vsh_intf_mono_range_t>& pairs) {
  std::vector<std::string> texts;
  enumerated found{};
  walk_failures(
      [&](RecordingPlatform& platform) {
        for (uint32 port = 1; port <= 5; ++port) platform.names[fibre_channel(1, port)] = port <= 3 ? "fc1" : "bay1";
        platform.listings[1] = words({9, fibre_channel(1, 1), fibre_channel(1, 2), fibre_channel(1, 3),
                                      fibre_channel(1, 4), fibre_channel(1, 5)});
        found = enumerate_ranges(platform, mask, pairs);
      },
      [&](const walk_run& run) {
        if (run.platform.failed_call() != "malloc") return;
        expect_failure(found);
        EXPECT_EQ(run.platform.terminal(), run.platform.text());
        texts.push_back(without_lines(run.platform.text()));
      });
  return nth <= texts.size() ? texts[nth - 1] : "(no such allocation)";
}

TEST(EnumerationWithoutMemory, InbandInterface) {
  EXPECT_EQ(text_without_memory(1, 0x800, {}),
            "(Error) Malloc Failure in enumeration.cpp[LINE] for size 4\n"
            "error: malloc failure - size(4)\n");
}

TEST(EnumerationWithoutMemory, ScratchListIsOfTheSizeOfTheListing) {
  EXPECT_EQ(text_without_memory(1, kFibreChannelMask, {}),
            "(Error) Malloc Failure in enumeration.cpp[LINE] for size 20\n"
            "error: malloc failure - size(20)\n");
}

TEST(EnumerationWithoutMemory, ListIsOfTheSizeOfWhatIsAccepted) {
  EXPECT_EQ(text_without_memory(2, kFibreChannelMask, {}),
            "(Error) Malloc Failure in enumeration.cpp[LINE] for size 12\n"
            "error: malloc failure - size(12)\n");
}

TEST(EnumerationWithoutMemory, ListOfRangesTellsTheSizeOfTheListing) {
  const vsh_intf_mono_range_t first_two{fibre_channel(1, 1), fibre_channel(1, 2)};
  EXPECT_EQ(text_without_memory(1, kFibreChannelMask, {first_two}),
            "(Error) Malloc Failure in enumeration.cpp[LINE] for size 8\n"
            "error: malloc failure - size(20)\n");
  EXPECT_EQ(text_without_memory(1, kFibreChannelMask, {first_two, first_two, first_two}),
            "(Error) Malloc Failure in enumeration.cpp[LINE] for size 24\n"
            "error: malloc failure - size(20)\n");
}

}  // namespace
}  // namespace pmcli_test
