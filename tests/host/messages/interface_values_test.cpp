// The values of an interface as they travel.
#include "messages/interface_values.h"

#include <gtest/gtest.h>

#include <array>

namespace host {
namespace {

using bytes = std::vector<std::byte>;

bytes of(std::initializer_list<int> values) {
  bytes made;
  for (const int value : values) made.push_back(static_cast<std::byte>(value));
  return made;
}

TEST(InterfaceValues, AnIpv6AddressHasSixteenBytes) {
  constexpr std::array<uint8, 16> kAddress = {0x20, 1, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7};
  bytes answer;
  value_writer(answer).ipv6(property::peer_address, kAddress);
  const auto values = read_values(answer);
  ASSERT_TRUE(values);
  EXPECT_EQ(values->front().kind, value_kind::ipv6);
  EXPECT_EQ(values->front().bytes[15], std::byte{7});
  answer[5] = std::byte{15};
  answer.pop_back();
  EXPECT_FALSE(read_values(answer)) << "one byte less";
}

TEST(InterfaceValues, AMapHasNamesAndNumbers) {
  const std::vector<std::pair<std::string, uint64>> entries = {{"rx_queue_0", 1}, {"", 2}, {"\xff", ~uint64{0}}};
  bytes answer;
  value_writer(answer).map(property::driver_counters, entries);
  const auto values = read_values(answer);
  ASSERT_TRUE(values);
  const auto read = values->front().map_entries();
  ASSERT_EQ(read.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(read[i].first, entries[i].first);
    EXPECT_EQ(read[i].second, entries[i].second);
  }
  interface_value cut = values->front();
  cut.bytes = cut.bytes.first(cut.bytes.size() - 1);
  EXPECT_EQ(cut.map_entries().size(), 2U);
}

TEST(InterfaceValues, AMapThatIsTooLargeLacksItsLastEntries) {
  const std::vector<std::pair<std::string, uint64>> entries(3, {std::string(30'000, 'x'), 1});
  bytes answer;
  value_writer(answer).map(property::driver_counters, entries);
  ASSERT_TRUE(read_values(answer));
  EXPECT_EQ(read_values(answer)->front().map_entries().size(), 2U);
}

TEST(InterfaceValues, ARequestNamesItsProperties) {
  const std::array asked = {property::interface, property::device};
  const bytes request = values_request_for(0x1A000000, asked, true);
  EXPECT_EQ(request, of({0x1A, 0, 0, 0, 1, 0, 0, 2, 0, 1, 0, 2}));
  const auto read = read_properties(request);
  ASSERT_TRUE(read);
  ASSERT_EQ(read->size(), 2U);
  EXPECT_EQ((*read)[0], property::interface);
  EXPECT_EQ((*read)[1], property::device);
}

TEST(InterfaceValues, ARequestOfAnotherSizeOrOfUnknownPropertiesIsNone) {
  const std::array asked = {property::interface};
  bytes request = values_request_for(1, asked, false);
  EXPECT_FALSE(read_properties(std::span(request).first(request.size() - 1)));
  EXPECT_FALSE(read_properties(std::span(request).first(7)));
  request.push_back({});
  EXPECT_FALSE(read_properties(request));
  request.pop_back();
  request.back() = request[request.size() - 2] = std::byte{0xFF};
  EXPECT_FALSE(read_properties(request));
}

TEST(InterfaceValues, NumbersAreBigEndianOf64Bits) {
  bytes answer;
  value_writer(answer).number(property::interface, 0x0102030405060708);
  EXPECT_EQ(answer, of({0, 1, 1, 0, 0, 8, 1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(InterfaceValues, EveryKindIsReadAsItWasWritten) {
  constexpr std::array<uint8, 6> kMac = {2, 4, 6, 8, 10, 12};
  constexpr std::array<uint8, 4> kAddress = {192, 0, 2, 1};
  constexpr std::array<uint32, 3> kNumbers = {10, 100'000, 400'000};
  constexpr std::array<if_index_t, 2> kMembers = {0x1A000000, 0x1A001000};
  constexpr std::array<uint16, 5> kVlans = {1, 2, 3, 7, 4094};
  bytes answer;
  value_writer to(answer);
  to.absent(property::device, absence::no_permission);
  to.text(property::description, "to the \"core\"");
  to.decimal(property::temperature_c, "-2.97");
  to.mac(property::address, kMac);
  to.ipv4(property::ip_address, kAddress);
  to.interface(property::member_of, 0x16000009);
  to.interfaces(property::members, kMembers);
  to.numbers(property::speeds_mbps, kNumbers);
  to.vlans(property::allowed_vlans, kVlans);
  to.membership(property::vlan, {vlan_mode::trunk, 0, 5, 7}, kVlans);
  to.time(property::last_link_flapped, 1'700'000'000);
  EXPECT_EQ(to.count(), 11u);

  const auto values = read_values(answer);
  ASSERT_TRUE(values);
  ASSERT_EQ(values->size(), 11u);
  EXPECT_EQ((*values)[0].why_absent(), absence::no_permission);
  EXPECT_EQ((*values)[1].text(), "to the \"core\"");
  EXPECT_EQ((*values)[2].text(), "-2.97");
  EXPECT_EQ((*values)[3].bytes[5], std::byte{12});
  EXPECT_EQ((*values)[4].bytes[0], std::byte{192});
  EXPECT_EQ((*values)[5].number(), 0x16000009u);
  ASSERT_EQ((*values)[6].num_entries(), 2u);
  EXPECT_EQ((*values)[6].entry(1), 0x1A001000u);
  ASSERT_EQ((*values)[7].num_entries(), 3u);
  EXPECT_EQ((*values)[7].entry(2), 400'000u);
  ASSERT_EQ((*values)[8].num_entries(), 6u);  // 1-3, 7, 4094
  EXPECT_EQ((*values)[8].entry(1), 3u);
  EXPECT_EQ((*values)[8].entry(5), 4094u);
  EXPECT_EQ((*values)[9].membership().mode, vlan_mode::trunk);
  EXPECT_EQ((*values)[9].membership().access, 5);
  EXPECT_EQ((*values)[9].membership().native, 7);
  ASSERT_EQ((*values)[9].num_entries(), 6u);
  EXPECT_EQ((*values)[9].entry(2), 7u);
  EXPECT_EQ((*values)[10].number(), 1'700'000'000u);
}

TEST(InterfaceValues, AnAnswerThatIsCutAnywhereBetweenValuesIsNone) {
  bytes answer;
  value_writer to(answer);
  to.number(property::mtu_bytes, 1500);
  const std::size_t first = answer.size();
  to.text(property::description, "uplink");
  for (std::size_t size = 1; size < answer.size(); ++size)
    EXPECT_EQ(read_values(std::span(answer).first(size)).has_value(), size == first) << size;
}

TEST(InterfaceValues, AValueOfAnotherSizeThanItsKindIsNone) {
  EXPECT_FALSE(read_values(of({0, 1, 1, 0, 0, 4, 1, 2, 3, 4})));        // a number of four bytes
  EXPECT_FALSE(read_values(of({0, 1, 8, 0, 0, 3, 1, 2, 3})));           // a list of numbers with an odd end
  EXPECT_FALSE(read_values(of({0, 1, 9, 0, 0, 2, 0, 1})));              // half a run of VLANs
  EXPECT_FALSE(read_values(of({0, 1, 10, 0, 0, 4, 0, 1, 0, 1})));       // a membership cut short
  EXPECT_FALSE(read_values(of({0, 1, 200, 0, 0, 4, 0, 1, 0, 1})));      // a kind that there is not
  EXPECT_TRUE(read_values(of({0, 1, 10, 0, 0, 6, 1, 0, 0, 1, 0, 1})));  // access without allowed VLANs
}

}  // namespace
}  // namespace host
