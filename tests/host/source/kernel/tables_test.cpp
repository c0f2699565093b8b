// Tables of the kernel from messages made by hand: rows, dumps in pieces, cut and lying answers.
#include "source/kernel/tables.h"

#include <gtest/gtest.h>
#include <linux/if_addr.h>
#include <linux/rtnetlink.h>
#include <netinet/in.h>

#include <algorithm>
#include <functional>
#include <string>

#include "host/source/kernel/kernel_recording.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

constexpr if_index_t kPort7 = 0x1A006000;

// A device with an interface, one without, and another one.
table_devices devices_for(const std::vector<if_index_t>& interfaces = {}) {
  std::vector<kernel_link> links(2);
  links[0].number = 7;
  links[0].name = "eth 7";
  links[0].mtu_bytes = 65536;
  links[1].number = 9;
  links[1].name = "left\"/\xff";
  const std::vector<mapped_device> mapped = {{"eth 7", 7, kPort7}};
  return table_devices(links, mapped, interfaces);
}

using put_attributes = std::function<void(nlmsghdr&)>;

template <typename Head>
netlink_request message_of(uint16 type, const Head& head, const put_attributes& put) {
  netlink_request message(type, 0, 4096);
  message.extra<Head>() = head;
  put(message.head());
  return message;
}

// ---- Addresses ------------------------------------------------------------------------------------------------------

constexpr std::array<uint8, 4> kLocal = {192, 0, 2, 1}, kPeer = {192, 0, 2, 2};
constexpr std::array<uint8, 16> kIpv6 = {0xfe, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7};

netlink_request address_message(uint32 device, uint8 flags = IFA_F_PERMANENT) {
  const ifaddrmsg head{AF_INET, 24, flags, RT_SCOPE_UNIVERSE, device};
  return message_of(RTM_NEWADDR, head, [](nlmsghdr& it) {
    const ifa_cacheinfo lifetimes{.ifa_prefered = 60, .ifa_valid = 0xFFFFFFFF, .cstamp = 1, .tstamp = 2};
    mnl_attr_put(&it, IFA_ADDRESS, kPeer.size(), kPeer.data());
    mnl_attr_put(&it, IFA_LOCAL, kLocal.size(), kLocal.data());
    mnl_attr_put_strz(&it, IFA_LABEL, "eth 7:1");
    mnl_attr_put(&it, IFA_CACHEINFO, sizeof lifetimes, &lifetimes);
  });
}

std::vector<address_row> address_rows(netlink_request message, const table_devices& devices = devices_for()) {
  std::vector<table_row> rows;
  decode_address_row(message.head(), devices, rows);
  std::vector<address_row> found;
  for (table_row& it : rows) found.push_back(std::get<address_row>(it));
  return found;
}

TEST(AddressRows, HaveWhatTheKernelReports) {
  const auto rows = address_rows(address_message(7));
  ASSERT_EQ(rows.size(), 1U);
  const address_row& row = rows[0];
  EXPECT_EQ(row.device.if_index, kPort7);
  EXPECT_EQ(row.device.name, "eth 7");
  EXPECT_EQ(row.device.number, 7U);
  EXPECT_EQ(row.mtu_bytes, 65536U);
  EXPECT_EQ(row.address, (ip_address{false, {192, 0, 2, 1}, 24}));
  EXPECT_EQ(row.peer, (ip_address{false, {192, 0, 2, 2}, 24}));
  EXPECT_EQ(row.scope, "global");
  EXPECT_EQ(row.flags, "primary,permanent");
  EXPECT_EQ(row.label, "eth 7:1");
  EXPECT_EQ(row.valid_seconds, std::nullopt) << "for ever";
  EXPECT_EQ(row.preferred_seconds, 60U);
}

TEST(AddressRows, ADeviceWithoutAnInterfaceHasItsName) {
  const auto rows = address_rows(address_message(9));
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].device.if_index, 0U);
  EXPECT_EQ(rows[0].device.name, "left\"/\xff");
}

TEST(AddressRows, ADeviceThatCameLaterHasItsNumber) {
  const auto rows = address_rows(address_message(11));
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].device.name, "");
  EXPECT_EQ(rows[0].device.number, 11U);
}

TEST(AddressRows, OfOtherInterfacesAreSkipped) {
  EXPECT_EQ(address_rows(address_message(7), devices_for({kPort7})).size(), 1U);
  EXPECT_EQ(address_rows(address_message(9), devices_for({kPort7})).size(), 0U);
  EXPECT_EQ(address_rows(address_message(11), devices_for({kPort7})).size(), 0U);
}

TEST(AddressRows, WordsOfFlagsAreThoseOfTheFamily) {
  EXPECT_EQ(address_rows(address_message(7, IFA_F_SECONDARY))[0].flags, "secondary");
  const ifaddrmsg head{AF_INET6, 64, IFA_F_PERMANENT, RT_SCOPE_LINK, 7};
  const auto rows = address_rows(message_of(RTM_NEWADDR, head, [](nlmsghdr& it) {
    mnl_attr_put(&it, IFA_ADDRESS, kIpv6.size(), kIpv6.data());
    mnl_attr_put_u32(&it, IFA_FLAGS, IFA_F_TEMPORARY | IFA_F_TENTATIVE | IFA_F_DADFAILED | IFA_F_STABLE_PRIVACY);
  }));
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].flags, "temporary,tentative,dadfailed,stable-privacy") << "those of 32 bits count";
  EXPECT_EQ(rows[0].scope, "link");
  EXPECT_EQ(rows[0].address, (ip_address{true, kIpv6, 64}));
  EXPECT_EQ(rows[0].peer, std::nullopt);
}

TEST(AddressRows, AnAddressOfAnotherSizeOrTypeIsNone) {
  const ifaddrmsg head{AF_INET6, 64, 0, RT_SCOPE_LINK, 7};
  for (const std::size_t size : {0U, 3U, 4U, 5U, 15U}) {
    const auto put = [size](nlmsghdr& it) { mnl_attr_put(&it, IFA_ADDRESS, size, kIpv6.data()); };
    EXPECT_TRUE(address_rows(message_of(RTM_NEWADDR, head, put)).empty()) << size;
  }
  netlink_request removed = address_message(7);
  removed.head().nlmsg_type = RTM_DELADDR;
  EXPECT_TRUE(address_rows(std::move(removed)).empty());
}

// ---- Dumps ----------------------------------------------------------------------------------------------------------

constexpr question kAddresses = {NETLINK_ROUTE, RTM_GETADDR, AF_INET};

std::unique_ptr<table_reader> open_addresses() { return open_kernel_table(table_id::ipv4_addresses, devices_for()); }

// The number of rows in each piece.
std::vector<std::size_t> pieces_of(table_reader& reader) {
  std::vector<std::size_t> sizes;
  for (bool goes_on = true; goes_on;) {
    std::vector<table_row> rows;
    goes_on = reader.next(rows);
    sizes.push_back(rows.size());
  }
  return sizes;
}

std::string fault_of(const std::function<void()>& read) {
  try {
    read();
  } catch (const std::runtime_error& why) {
    return why.what();
  }
  return "none";
}

using counts = std::vector<std::size_t>;

TEST(KernelTables, ADumpIsReadDatagramByDatagram) {
  recorded_kernel kernel;
  for (int i = 0; i < 5; ++i) kernel.tell(kAddresses, address_message(7));
  const auto reader = open_addresses();
  EXPECT_EQ(pieces_of(*reader), (counts{2, 2, 1, 0}));
  EXPECT_FALSE(reader->has_changed());
}

TEST(KernelTables, AnInterruptedDumpKeepsItsRowsAndHasChanged) {
  recorded_kernel kernel;
  for (int i = 0; i < 3; ++i) kernel.tell(kAddresses, address_message(7));
  kernel.disturb(kAddresses, disturbance::interrupted);
  const auto reader = open_addresses();
  const counts sizes = pieces_of(*reader);
  EXPECT_GE(sizes.front(), 2U);
  EXPECT_TRUE(reader->has_changed());
}

TEST(KernelTables, ARefusalIsItsReason) {
  recorded_kernel kernel;
  kernel.refuse(kAddresses, EPERM);
  EXPECT_EQ(fault_of([] { pieces_of(*open_addresses()); }), "addresses of the kernel: Operation not permitted");
}

TEST(KernelTables, LostMessagesAreAnError) {
  recorded_kernel kernel;
  kernel.tell(kAddresses, address_message(7));
  kernel.disturb(kAddresses, disturbance::lost);
  EXPECT_EQ(fault_of([] { pieces_of(*open_addresses()); }), "addresses of the kernel: No buffer space available");
}

TEST(KernelTables, AMessageOfAnImpossibleLengthIsAnError) {
  for (const uint32 claimed : {0U, 15U, 100'000U, 0x80000000U, 0xFFFFFFFFU}) {
    recorded_kernel kernel;
    for (int i = 0; i < 2; ++i) kernel.tell(kAddresses, address_message(7));
    kernel.claimed_length = claimed;
    EXPECT_EQ(fault_of([] { pieces_of(*open_addresses()); }), "addresses of the kernel: the kernel's answer is cut")
        << claimed;
  }
}

TEST(KernelTables, MessagesThatAreCutAtAnyByteGiveNoMoreThanTheirRow) {
  for (std::size_t longest = sizeof(nlmsghdr); longest < 120; ++longest) {
    recorded_kernel kernel;
    kernel.longest = longest;
    kernel.tell(kAddresses, address_message(7));
    const auto reader = open_addresses();
    EXPECT_LE(pieces_of(*reader).front(), 1U);
  }
}

}  // namespace
}  // namespace host
