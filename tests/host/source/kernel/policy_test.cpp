// Messages of the kernel by policy. The bytes are those of linux/netlink.h: an attribute is two bytes of length, which
// counts its head, two bytes of type, the value, and zeros up to a multiple of four.
#include "source/kernel/policy.h"

#include <gtest/gtest.h>
#include <linux/if_bridge.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <array>
#include <string>
#include <vector>

namespace host {
namespace {

using byte_list = std::vector<uint8>;

enum : uint16 { kNumber = 1, kText = 2, kBytes = 3, kNest = 4, kExact = 5, kWide = 6, kLast = 63 };

constexpr message_policy kInnerPolicy = {{kNumber, attribute_type::number, 2}};
constexpr message_policy kTestPolicy = {
    {kNumber, attribute_type::number, 4}, {kText, attribute_type::text, 1},      {kBytes, attribute_type::bytes, 3},
    {kNest, attribute_type::nest, 0},     {kExact, attribute_type::bytes, 6, 6}, {kWide, attribute_type::number, 8},
    {kLast, attribute_type::number, 1},
};

void put_native(byte_list& to, const void* from, std::size_t size) {
  const auto* const bytes = static_cast<const uint8*>(from);
  to.insert(to.end(), bytes, bytes + size);
}

// An attribute that claims `length` bytes.
byte_list claimed(uint16 length, uint16 type, const byte_list& value) {
  byte_list all;
  put_native(all, &length, sizeof length);
  put_native(all, &type, sizeof type);
  all.insert(all.end(), value.begin(), value.end());
  all.resize((all.size() + 3) / 4 * 4);
  return all;
}

byte_list attribute(uint16 type, const byte_list& value) {
  return claimed(static_cast<uint16>(4 + value.size()), type, value);
}

template <typename Number>
byte_list native(Number number) {
  byte_list bytes;
  put_native(bytes, &number, sizeof number);
  return bytes;
}

byte_list text(const std::string& characters) { return {characters.begin(), characters.end()}; }

byte_list joined(const std::vector<byte_list>& parts) {
  byte_list all;
  for (const byte_list& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

std::vector<uint16> numbers_in(const attributes& list) {
  std::vector<uint16> numbers;
  list.for_each(kNumber, [&](std::span<const uint8> bytes) { numbers.push_back(record_of<uint16>(bytes)); });
  return numbers;
}

TEST(KernelPolicy, EachAttributeIsReadAsItsType) {
  const byte_list list =
      joined({attribute(kNumber, native(uint32{70'000})), attribute(kText, text(std::string("swp1\0", 5))),
              attribute(kBytes, {1, 2, 3, 4}), attribute(kWide, native(uint64{5'000'000'000})), attribute(kLast, {9})});
  const attributes all = parse(list, kTestPolicy);
  EXPECT_EQ(all.number<uint32>(kNumber), 70'000U);
  EXPECT_EQ(all.text(kText), "swp1");
  ASSERT_TRUE(all.bytes(kBytes));
  EXPECT_EQ(byte_list(all.bytes(kBytes)->begin(), all.bytes(kBytes)->end()), (byte_list{1, 2, 3, 4}));
  EXPECT_EQ(all.number<uint64>(kWide), 5'000'000'000U);
  EXPECT_EQ(all.number<uint8>(kLast), 9);
}

TEST(KernelPolicy, AnAttributeIsAbsentAsAnotherType) {
  const byte_list list = joined({attribute(kNumber, native(uint32{7})), attribute(kText, text("swp1"))});
  const attributes all = parse(list, kTestPolicy);
  EXPECT_FALSE(all.text(kNumber));
  EXPECT_FALSE(all.bytes(kNumber));
  EXPECT_FALSE(all.number<uint8>(kText));
  EXPECT_FALSE(all.number<uint64>(kNumber));  // more bytes than it has
  EXPECT_TRUE(numbers_in(all.nested(kText, kInnerPolicy)).empty());
}

TEST(KernelPolicy, AnAttributeThatIsTooShortOrTooLongIsAbsent) {
  for (std::size_t size = 0; size <= 8; ++size) {
    const byte_list value(size, 1);
    const byte_list list = joined({attribute(kNumber, value), attribute(kText, value), attribute(kBytes, value),
                                   attribute(kExact, value), attribute(kWide, value), attribute(kLast, {9})});
    const attributes all = parse(list, kTestPolicy);
    EXPECT_EQ(all.number<uint32>(kNumber).has_value(), size >= 4) << size;
    EXPECT_EQ(all.text(kText).has_value(), size >= 1) << size;
    EXPECT_EQ(all.bytes(kBytes).has_value(), size >= 3) << size;
    EXPECT_EQ(all.bytes(kExact).has_value(), size == 6) << size;
    EXPECT_EQ(all.number<uint64>(kWide).has_value(), size == 8) << size;
    EXPECT_EQ(all.number<uint8>(kLast), 9) << size;
  }
}

TEST(KernelPolicy, ATextEndsAtItsFirstZeroOrWithTheAttribute) {
  const byte_list ended = attribute(kText, text(std::string("a\0b", 3)));
  const byte_list open = attribute(kText, text("abc"));
  const byte_list empty = attribute(kText, {0});
  EXPECT_EQ(parse(ended, kTestPolicy).text(kText), "a");
  EXPECT_EQ(parse(open, kTestPolicy).text(kText), "abc");
  EXPECT_EQ(parse(empty, kTestPolicy).text(kText), "");
}

TEST(KernelPolicy, TheLastOfSeveralHolds) {
  const byte_list list = joined({attribute(kNumber, native(uint32{1})), attribute(kNumber, native(uint32{2})),
                                 attribute(kNumber, {3})});  // too short
  EXPECT_EQ(parse(list, kTestPolicy).number<uint32>(kNumber), 2U);
}

TEST(KernelPolicy, TypesBeyondTheTableAreIgnored) {
  const byte_list list = joined({attribute(64, native(uint32{1})), attribute(0x3FFF, native(uint32{2})),
                                 attribute(7, native(uint32{3})), attribute(kNumber, native(uint32{4}))});
  const attributes all = parse(list, kTestPolicy);
  EXPECT_EQ(all.number<uint32>(kNumber), 4U);
  EXPECT_FALSE(all.bytes(7));
  EXPECT_FALSE(all.bytes(64));
  EXPECT_FALSE(all.bytes(0xFFFF));
  EXPECT_FALSE(all.text(0x3FFF));
}

// NLA_F_NESTED and NLA_F_NET_BYTEORDER are the two highest bits of the type.
TEST(KernelPolicy, FlagsAreNotPartOfTheType) {
  const byte_list list = joined({attribute(0x8000 | kNest, attribute(kNumber, native(uint16{5}))),
                                 attribute(0x4000 | kNumber, native(uint32{6}))});
  const attributes all = parse(list, kTestPolicy);
  EXPECT_EQ(all.nested(kNest, kInnerPolicy).number<uint16>(kNumber), 5);
  EXPECT_EQ(all.number<uint32>(kNumber), 6U);
}

TEST(KernelPolicy, AListIsReadInItsOrder) {
  const byte_list list = attribute(
      kNest,
      joined({attribute(kNumber, native(uint16{30})), attribute(kText, {1, 2}), attribute(kNumber, {1}),  // too short
              attribute(kNumber, native(uint16{10})), attribute(kNumber, native(uint16{20}))}));
  EXPECT_EQ(numbers_in(parse(list, kTestPolicy).nested(kNest, kInnerPolicy)), (std::vector<uint16>{30, 10, 20}));
}

// A length below that of a head, or beyond what is left, ends the list.
TEST(KernelPolicy, AWrongLengthEndsTheList) {
  for (const int claim : {0, 1, 2, 3, 9, 12, 0x7FFF, 0x8000, 0xFFFF}) {
    const byte_list list =
        joined({attribute(kText, text("x")), claimed(static_cast<uint16>(claim), kNumber, native(uint32{7}))});
    const attributes all = parse(list, kTestPolicy);
    EXPECT_EQ(all.text(kText), "x") << claim;
    EXPECT_FALSE(all.number<uint32>(kNumber)) << claim;
    EXPECT_TRUE(numbers_in(all).empty()) << claim;
  }
}

TEST(KernelPolicy, ANestDoesNotReachBeyondItsParent) {
  const byte_list inner = claimed(200, kNumber, native(uint16{5}));
  const byte_list list = joined({attribute(kNest, inner), byte_list(400, 0)});
  const attributes nest = parse(list, kTestPolicy).nested(kNest, kInnerPolicy);
  EXPECT_FALSE(nest.number<uint16>(kNumber));
  EXPECT_TRUE(numbers_in(nest).empty());
}

TEST(KernelPolicy, AnAbsentNestHasNothing) {
  EXPECT_TRUE(numbers_in(parse({}, kTestPolicy).nested(kNest, kInnerPolicy)).empty());
  EXPECT_FALSE(parse({}, kTestPolicy).nested(kNest, kInnerPolicy).number<uint16>(kNumber));
}

// Nothing is behind the cut: sanitizers see each read beyond it.
TEST(KernelPolicy, AListCutAtEachByteKeepsWhatIsWhole) {
  const byte_list whole =
      joined({attribute(kNumber, native(uint32{7})),  // 0 to 7
              attribute(kText, text("ab")),           // 8 to 13
              attribute(kNest, joined({attribute(kNumber, native(uint16{1})), attribute(kNumber, native(uint16{2}))})),
              attribute(kLast, {9})});  // 36 to 40
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const byte_list cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    const attributes all = parse(cut, kTestPolicy);
    EXPECT_EQ(all.number<uint32>(kNumber).has_value(), size >= 8) << size;
    EXPECT_EQ(all.text(kText).has_value(), size >= 14) << size;
    EXPECT_EQ(numbers_in(all.nested(kNest, kInnerPolicy)).size(), size >= 36 ? 2U : 0U) << size;
    EXPECT_EQ(all.number<uint8>(kLast).has_value(), size >= 41) << size;
  }
}

// ---- Messages with a head -------------------------------------------------------------------------------------------

byte_list message(uint16 type, const byte_list& payload) {
  return joined({native(static_cast<uint32>(16 + payload.size())), native(type), native(uint16{0}), native(uint32{0}),
                 native(uint32{0}), payload});
}

TEST(KernelPolicy, AMessageHasTheHeadOfItsType) {
  ifinfomsg head{};
  head.ifi_index = 7;
  const byte_list bytes = message(RTM_NEWLINK, joined({native(head), attribute(kNumber, native(uint32{1500}))}));
  const auto parsed = parse<ifinfomsg>(*reinterpret_cast<const nlmsghdr*>(bytes.data()), kTestPolicy);
  ASSERT_TRUE(parsed);
  EXPECT_EQ(parsed->head.ifi_index, 7);
  EXPECT_EQ(parsed->all.number<uint32>(kNumber), 1500U);
}

TEST(KernelPolicy, AMessageShorterThanItsHeadIsNone) {
  const byte_list payload = joined({native(ifinfomsg{}), attribute(kNumber, native(uint32{1500}))});
  for (std::size_t size = 0; size <= payload.size(); ++size) {
    const byte_list bytes =
        message(RTM_NEWLINK, {payload.begin(), payload.begin() + static_cast<std::ptrdiff_t>(size)});
    const auto parsed = parse<ifinfomsg>(*reinterpret_cast<const nlmsghdr*>(bytes.data()), kTestPolicy);
    EXPECT_EQ(parsed.has_value(), size >= sizeof(ifinfomsg)) << size;
    if (parsed) EXPECT_EQ(parsed->all.number<uint32>(kNumber).has_value(), size == payload.size()) << size;
  }
}

// rtgenmsg is one byte; the attributes begin at a multiple of four.
TEST(KernelPolicy, AttributesFollowAShortHeadAtAMultipleOfFour) {
  const byte_list bytes = message(RTM_NEWLINK, joined({{AF_BRIDGE, 0, 0, 0}, attribute(kNumber, native(uint32{8}))}));
  const auto parsed = parse<rtgenmsg>(*reinterpret_cast<const nlmsghdr*>(bytes.data()), kTestPolicy);
  ASSERT_TRUE(parsed);
  EXPECT_EQ(parsed->head.rtgen_family, AF_BRIDGE);
  EXPECT_EQ(parsed->all.number<uint32>(kNumber), 8U);
  const byte_list only_head = message(RTM_NEWLINK, {AF_BRIDGE});
  EXPECT_TRUE(parse<rtgenmsg>(*reinterpret_cast<const nlmsghdr*>(only_head.data()), kTestPolicy));
}

TEST(KernelPolicy, AMessageShorterThanItsHeaderHasNothing) {
  for (const uint32 length : {0U, 1U, 15U, 16U}) {
    nlmsghdr header{};
    header.nlmsg_len = length;
    EXPECT_TRUE(payload_of(header).empty()) << length;
  }
}

TEST(KernelPolicy, ARecordHasZerosWhereItsBytesEnd) {
  constexpr std::array<uint8, 2> kFlags = {0x02, 0x02};
  const auto info = record_of<bridge_vlan_info>(kFlags);
  EXPECT_EQ(info.flags, 0x0202);
  EXPECT_EQ(info.vid, 0);
}

}  // namespace
}  // namespace host
