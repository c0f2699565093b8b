// What identifies a machine is replaced in its answers.
#include "source/kernel/anonymous.h"

#include <gtest/gtest.h>
#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>

#include <cstring>
#include <numeric>
#include <string>
#include <vector>

#include "host/source/kernel/recorded_switch.h"
#include "source/kernel/links.h"

namespace host {
namespace {

using octets = std::vector<uint8>;

netlink_request links_request() {
  netlink_request request(RTM_GETLINK, NLM_F_DUMP);
  request.extra<ifinfomsg>().ifi_family = AF_UNSPEC;
  return request;
}

// A link as the kernel reports it, with much that no display reads.
struct real_link {
  std::string name;
  std::string kind = "";
  octets mac = {0x3c, 0xfd, 0xfe, 1, 2, 3};
  std::string alias = "rack 7, Mrs. Example";
};

std::string message_of(const real_link& link) {
  netlink_request message(RTM_NEWLINK, NLM_F_MULTI);
  message.extra<ifinfomsg>().ifi_index = 3;
  nlmsghdr& it = message.head();
  mnl_attr_put_strz(&it, IFLA_IFNAME, link.name.c_str());
  mnl_attr_put_strz(&it, IFLA_IFALIAS, link.alias.c_str());
  mnl_attr_put_u32(&it, IFLA_MTU, 9000);
  mnl_attr_put(&it, IFLA_ADDRESS, link.mac.size(), link.mac.data());
  mnl_attr_put(&it, IFLA_PERM_ADDRESS, link.mac.size(), link.mac.data());
  mnl_attr_put_strz(&it, IFLA_PARENT_DEV_NAME, "0000:3b:00.0-secret");
  nlattr* const names = mnl_attr_nest_start(&it, IFLA_PROP_LIST);
  mnl_attr_put_strz(&it, IFLA_ALT_IFNAME, "secret-altname");
  mnl_attr_nest_end(&it, names);
  if (!link.kind.empty()) {
    nlattr* const info = mnl_attr_nest_start(&it, IFLA_LINKINFO);
    mnl_attr_put_strz(&it, IFLA_INFO_KIND, link.kind.c_str());
    nlattr* const data = mnl_attr_nest_start(&it, IFLA_INFO_DATA);
    mnl_attr_put_strz(&it, 1, "secret-data");
    mnl_attr_nest_end(&it, data);
    mnl_attr_nest_end(&it, info);
  }
  const recorded_message bytes = recorded(std::move(message));
  return {bytes.begin(), bytes.end()};
}

class Anonymous : public testing::Test {
 protected:
  kernel_link link(const real_link& real) {
    netlink_request request = links_request();
    answer_ = hidden_.answer(request.head(), message_of(real));
    return decode_link(*reinterpret_cast<const nlmsghdr*>(answer_.data())).value();
  }

  anonymiser hidden_;
  std::string answer_;
};

TEST_F(Anonymous, ALinkKeepsWhatItIsAndLosesWhoseItIs) {
  const kernel_link made = link({.name = "ens7f0np0"});
  EXPECT_EQ(made.number, 3U);
  EXPECT_EQ(made.mtu_bytes, 9000U);
  EXPECT_EQ(made.name, "device1");
  EXPECT_EQ(made.alias, "alias 1");
  EXPECT_EQ(made.mac, (std::array<uint8, 6>{2, 0, 0, 0, 0, 1}));
  EXPECT_EQ(made.permanent_mac, made.mac);
  EXPECT_EQ(answer_.find("secret"), std::string::npos);
}

TEST_F(Anonymous, TheSameIsReplacedByTheSame) {
  const kernel_link first = link({.name = "one"});
  const kernel_link other = link({.name = "two", .mac = {0x3c, 0xfd, 0xfe, 1, 2, 4}, .alias = "another"});
  const kernel_link again = link({.name = "one"});
  EXPECT_EQ(again.name, first.name);
  EXPECT_EQ(again.mac, first.mac);
  EXPECT_EQ(again.alias, first.alias);
  EXPECT_EQ(other.name, "device2");
  EXPECT_EQ(other.mac[5], 2);
  EXPECT_EQ(other.alias, "alias 2");
}

TEST_F(Anonymous, NamesAreThoseOfTheirKindAndFitTheKernel) {
  EXPECT_EQ(link({.name = "uplink", .kind = "bond"}).name, "bond1");
  EXPECT_EQ(link({.name = "br-office", .kind = "bridge"}).name, "bridge2");
  EXPECT_EQ(link({.name = "lo"}).name, "lo");
  EXPECT_LT(link({.name = "x", .kind = "a-kind-that-is-much-too-long"}).name.size(), std::size_t{IFNAMSIZ});
  EXPECT_EQ(answer_.find("secret"), std::string::npos);
}

TEST_F(Anonymous, OtherHardwareAddressesAreZeros) {
  EXPECT_EQ(link({.name = "a", .mac = {0, 0, 0, 0, 0, 0}}).mac, (std::array<uint8, 6>{}));
  EXPECT_EQ(link({.name = "b", .mac = octets(20, 7)}).mac, (std::array<uint8, 6>{}));
}

TEST_F(Anonymous, AddressesAreThoseForDocumentation) {
  netlink_request request(RTM_GETADDR, NLM_F_DUMP);
  std::vector<kernel_link> links(1);
  links[0].number = 3;
  const auto add = [&](const octets& real) {
    netlink_request message(RTM_NEWADDR, NLM_F_MULTI);
    auto& head = message.extra<ifaddrmsg>();
    head.ifa_family = real.size() == 4 ? AF_INET : AF_INET6;
    head.ifa_prefixlen = 20;
    head.ifa_index = 3;
    mnl_attr_put(&message.head(), IFA_LOCAL, real.size(), real.data());
    mnl_attr_put_strz(&message.head(), IFA_LABEL, "secret");
    const recorded_message bytes = recorded(std::move(message));
    const std::string made = hidden_.answer(request.head(), {bytes.data(), bytes.size()});
    EXPECT_EQ(made.find("secret"), std::string::npos);
    decode_address(*reinterpret_cast<const nlmsghdr*>(made.data()), links);
    const ip_address& last = links[0].addresses.back();
    EXPECT_EQ(last.prefix_length, 20);
    return octets(last.bytes.begin(), last.bytes.begin() + static_cast<std::ptrdiff_t>(real.size()));
  };
  EXPECT_EQ(add({10, 1, 2, 3}), (octets{192, 0, 2, 1}));
  EXPECT_EQ(add({10, 1, 2, 4}), (octets{192, 0, 2, 2}));
  EXPECT_EQ(add({10, 1, 2, 3}), (octets{192, 0, 2, 1}));
  EXPECT_EQ(add({127, 0, 0, 1}), (octets{127, 0, 0, 1}));
  const octets link_local = {0xfe, 0x80, 0, 0, 0, 0, 0, 0, 0x3e, 0xfd, 0xfe, 0xff, 0xfe, 1, 2, 3};
  const octets made = add(link_local);
  EXPECT_EQ(octets(made.begin(), made.begin() + 4), (octets{0x20, 0x01, 0x0d, 0xb8}));
}

// ---- Modules --------------------------------------------------------------------------------------------------------

octets page_after(const octets& page, uint8 page_number, uint32 offset) {
  netlink_request request(recorded_kernel::kEthtoolFamily, NLM_F_ACK);
  request.extra<genlmsghdr>().cmd = ETHTOOL_MSG_MODULE_EEPROM_GET;
  mnl_attr_put_u32(&request.head(), ETHTOOL_A_MODULE_EEPROM_OFFSET, offset);
  mnl_attr_put_u8(&request.head(), ETHTOOL_A_MODULE_EEPROM_PAGE, page_number);
  mnl_attr_put_u8(&request.head(), ETHTOOL_A_MODULE_EEPROM_I2C_ADDRESS, 0x50);
  const recorded_message reply = recorded(ethtool_message(
      ETHTOOL_MSG_MODULE_EEPROM_GET_REPLY, ETHTOOL_A_MODULE_EEPROM_HEADER, 3,
      [&](nlmsghdr& it) { mnl_attr_put(&it, ETHTOOL_A_MODULE_EEPROM_DATA, page.size(), page.data()); }));
  anonymiser hidden;
  const std::string made = hidden.answer(request.head(), {reply.data(), reply.size()});
  return decode_module_page(*reinterpret_cast<const nlmsghdr*>(made.data()), 3);
}

uint8 sum_of(const octets& page) {
  return static_cast<uint8>(std::accumulate(page.begin() + 64, page.begin() + 95, 0U));
}

TEST(AnonymousModule, TheSerialNumberIsZerosUnderARightSum) {
  const octets real = sfp_identity();
  const octets made = page_after(real, 0, 0);
  ASSERT_EQ(made.size(), 128U);
  EXPECT_EQ(std::string(made.begin() + 68, made.begin() + 84), std::string(16, '0'));
  EXPECT_EQ(made[95], sum_of(made));
  EXPECT_TRUE(std::equal(made.begin(), made.begin() + 68, real.begin()));
  EXPECT_TRUE(std::equal(made.begin() + 84, made.begin() + 95, real.begin() + 84));
}

TEST(AnonymousModule, AWrongSumStaysWrong) {
  octets real = sfp_identity();
  ++real[95];
  const octets made = page_after(real, 0, 0);
  EXPECT_EQ(made[95], static_cast<uint8>(sum_of(made) + 1));
}

TEST(AnonymousModule, AQsfpHasItsSerialNumberInTheUpperPage) {
  const module_pages real = qsfp_pages();
  EXPECT_EQ(page_after(real.at({0x50, 0, 0}), 0, 0), real.at({0x50, 0, 0}));
  EXPECT_EQ(page_after(real.at({0x50, 3, 128}), 3, 128), real.at({0x50, 3, 128}));
  const octets made = page_after(real.at({0x50, 0, 128}), 0, 128);
  EXPECT_EQ(std::string(made.begin() + 68, made.begin() + 84), std::string(16, '0'));
  EXPECT_EQ(made[95], sum_of(made));
}

TEST(AnonymousModule, AnotherLayoutKeepsItsIdentifierAlone) {
  octets real(128, 'S');
  real[0] = 0x06;
  octets kept(128);
  kept[0] = 0x06;
  EXPECT_EQ(page_after(real, 0, 0), kept);
  EXPECT_EQ(page_after(real, 0, 128), kept);
  EXPECT_EQ(page_after(real, 4, 128), kept);
}

TEST(AnonymousModule, ByCmisTheSerialNumberIsInTheUpperPage) {
  octets real(128, 'V');
  real[0] = 0x18;
  EXPECT_EQ(page_after(real, 0, 0), real);
  for (const uint8 page : std::initializer_list<uint8>{1, 2, 0x11})
    EXPECT_EQ(page_after(real, page, 128), real) << unsigned{page};
  const octets made = page_after(real, 0, 128);
  octets expected = real;
  std::fill_n(expected.begin() + 38, 16, uint8{'0'});
  expected[94] = static_cast<uint8>('V' + 16 * ('0' - 'V'));
  EXPECT_EQ(made, expected);
}

// ---- Other answers --------------------------------------------------------------------------------------------------

TEST(AnonymousAnswers, ADriverKeepsItsName) {
  ethtool_drvinfo driver{};
  driver.cmd = ETHTOOL_GDRVINFO;
  std::strcpy(driver.driver, "fastnic");
  std::strcpy(driver.bus_info, "0000:3b:00.0");
  const anonymiser hidden;
  const std::string made = hidden.ioctl_answer({reinterpret_cast<const char*>(&driver), sizeof driver});
  ASSERT_EQ(made.size(), sizeof driver);
  std::memcpy(&driver, made.data(), sizeof driver);
  EXPECT_STREQ(driver.driver, "fastnic");
  EXPECT_STREQ(driver.bus_info, "");
}

TEST(AnonymousAnswers, TheTableHasTheSameSubstitutes) {
  anonymiser hidden;
  hidden.device_name("enp1s0", "");
  EXPECT_EQ(hidden.table("Inter-|   Receive\n    lo: 1 2\nenp1s0: 3 4\n  wlan0: 5 6\n"),
            "Inter-|   Receive\nlo: 1 2\ndevice1: 3 4\ndevice2: 5 6\n");
}

TEST(AnonymousAnswers, SettingsAndRoutesToPeersAreNotStored) {
  netlink_request links = links_request();
  EXPECT_TRUE(anonymiser::is_stored(request_of(NETLINK_ROUTE, links.head())));
  netlink_request setting(RTM_SETLINK, NLM_F_ACK);
  setting.extra<ifinfomsg>().ifi_index = 3;
  EXPECT_FALSE(anonymiser::is_stored(request_of(NETLINK_ROUTE, setting.head())));
  for (const bool is_public : {true, false}) {
    netlink_request route(RTM_GETROUTE, NLM_F_ACK);
    route.extra<rtmsg>().rtm_family = AF_INET;
    const octets to = is_public ? octets{192, 0, 2, 255} : octets{10, 1, 2, 3};
    mnl_attr_put(&route.head(), RTA_DST, to.size(), to.data());
    EXPECT_EQ(anonymiser::is_stored(request_of(NETLINK_ROUTE, route.head())), is_public);
  }
}

}  // namespace
}  // namespace host
