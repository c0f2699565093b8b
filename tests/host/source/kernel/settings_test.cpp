// Settings over the kernel: what is asked of bridges, what carries a device, the kernel's own words.
#include "source/kernel/settings.h"

#include <gtest/gtest.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/if_bridge.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <net/if.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/port_status.h"
#include "host/source/kernel/kernel_recording.h"
#include "platform/port_manager.h"
#include "platform/syserr.h"
#include "source/kernel/policy.h"
#include "source/kernel/way.h"

namespace host {
namespace {

// ---- VLANs of bridges -----------------------------------------------------------------------------------------------

enum : uint16 {
  kTagged = 0,
  kUntagged = BRIDGE_VLAN_INFO_PVID | BRIDGE_VLAN_INFO_UNTAGGED,
  kBegin = BRIDGE_VLAN_INFO_RANGE_BEGIN,
  kEnd = BRIDGE_VLAN_INFO_RANGE_END
};

struct asked {
  uint16 type;
  std::vector<std::pair<uint16, uint16>> vlans;  // flags and number

  bool operator==(const asked&) const = default;
};

std::ostream& operator<<(std::ostream& to, const asked& it) {
  to << "type " << it.type;
  for (const auto& [flags, id] : it.vlans) to << " " << id << "/" << flags;
  return to;
}

constexpr message_policy kRequestedVlansPolicy = {{IFLA_AF_SPEC, attribute_type::nest, 0}};
constexpr message_policy kRequestedVlanPolicy = {
    {IFLA_BRIDGE_VLAN_INFO, attribute_type::bytes, sizeof(bridge_vlan_info)}};

asked vlans_in_request(const nlmsghdr& request) {
  asked it{request.nlmsg_type, {}};
  const auto parsed = parse<ifinfomsg>(request, kRequestedVlansPolicy);
  if (!parsed) return it;
  EXPECT_EQ(parsed->head.ifi_family, AF_BRIDGE);
  EXPECT_EQ(parsed->head.ifi_index, 7);
  parsed->all.nested(IFLA_AF_SPEC, kRequestedVlanPolicy)
      .for_each(IFLA_BRIDGE_VLAN_INFO, [&](std::span<const uint8> bytes) {
        const auto info = record_of<bridge_vlan_info>(bytes);
        it.vlans.emplace_back(info.flags, info.vid);
      });
  const std::size_t nothing_else = it.vlans.size() * NLA_ALIGN(NLA_HDRLEN + sizeof(bridge_vlan_info)) + NLA_HDRLEN;
  EXPECT_EQ(request.nlmsg_len, NLMSG_LENGTH(sizeof(ifinfomsg)) + nothing_else);
  return it;
}

std::vector<asked> asked_for(const port_settings& requested, const port_settings& before) {
  std::vector<asked> all;
  for (netlink_request& request : bridge_vlan_requests(7, requested, before))
    all.push_back(vlans_in_request(request.head()));
  return all;
}

port_settings access(uint16 vlan) {
  port_settings it;
  it.admin_mode = PM_PORT_MODE_ACCESS;
  it.access_vlan = vlan;
  return it;
}

port_settings trunk(uint16 native, std::vector<uint16> allowed) {
  port_settings it;
  it.admin_mode = PM_PORT_MODE_TRUNK;
  it.native_vlan = native;
  it.allowed_vlans = std::move(allowed);
  return it;
}

using Asked = std::vector<asked>;

TEST(KernelVlans, AnAccessPortHasOneWithoutTags) {
  EXPECT_EQ(asked_for(access(20), access(1)), (Asked{{RTM_SETLINK, {{kUntagged, 20}}}, {RTM_DELLINK, {{kTagged, 1}}}}));
}

TEST(KernelVlans, ATrunkHasRangesAndItsNativeOneApart) {
  EXPECT_EQ(asked_for(trunk(11, {10, 11, 12, 13, 20}), access(1)),
            (Asked{{RTM_SETLINK, {{kTagged, 10}, {kUntagged, 11}, {kBegin, 12}, {kEnd, 13}, {kTagged, 20}}},
                   {RTM_DELLINK, {{kTagged, 1}}}}));
}

TEST(KernelVlans, WhatATrunkCarriesNoMoreGoes) {
  EXPECT_EQ(
      asked_for(trunk(1, {1, 5}), trunk(1, {1, 2, 3, 4, 5, 7})),
      (Asked{{RTM_SETLINK, {{kUntagged, 1}, {kTagged, 5}}}, {RTM_DELLINK, {{kBegin, 2}, {kEnd, 4}, {kTagged, 7}}}}));
}

TEST(KernelVlans, ATrunkWithoutVlansLosesAll) {
  EXPECT_EQ(asked_for(trunk(1, {}), access(9)), (Asked{{RTM_DELLINK, {{kTagged, 9}}}}));
}

TEST(KernelVlans, EverySecondVlanFitsIntoOneRequest) {
  std::vector<uint16> odd;
  for (uint16 id = 1; id < 4095; id += 2) odd.push_back(id);
  const Asked all = asked_for(trunk(1, odd), trunk(1, odd));
  ASSERT_EQ(all.size(), 1U);
  EXPECT_EQ(all[0].vlans.size(), 2047U);
  EXPECT_EQ(all[0].vlans.back(), (std::pair<uint16, uint16>{kTagged, 4093}));
}

// ---- Refused before the kernel is asked -----------------------------------------------------------------------------

const char* refusal(const port_settings& requested, const port_settings& before) {
  return text_of_port_status(apply_to_device({.number = 0, .name = "", .is_bridge_port = false}, requested, before));
}

TEST(KernelSettings, WhatTheKernelDoesNotHaveIsRefused) {
  port_settings requested = access(1);
  requested.receive_credit = 12;
  EXPECT_STREQ(refusal(requested, access(1)), "the kernel has no such setting");
  EXPECT_STREQ(refusal(access(2), access(1)), "the device is not a port of a bridge");
}

TEST(KernelSettings, NothingChangedIsNothingDone) {
  EXPECT_EQ(apply_to_device({.number = 0, .name = ""}, access(1), access(1)), 0U);
}

TEST(KernelSettings, ANativeVlanMustBeCarried) {
  const setting_target target{.number = 0, .name = "", .is_bridge_port = true};
  EXPECT_STREQ(text_of_port_status(apply_to_device(target, trunk(9, {1, 2}), trunk(1, {1, 2}))),
               "the trunk does not carry the native VLAN");
  port_settings fabric = access(1);
  fabric.admin_mode = 0x2000000;
  EXPECT_STREQ(text_of_port_status(apply_to_device(target, fabric, access(1))),
               "the kernel has access and trunk ports only");
}

// ---- What the kernel is asked ---------------------------------------------------------------------------------------

constexpr question kSetLink{NETLINK_ROUTE, RTM_NEWLINK, AF_UNSPEC};
const question kSetModes = recorded_kernel::ethtool(ETHTOOL_MSG_LINKMODES_SET);
constexpr question kSetVlans{NETLINK_ROUTE, RTM_SETLINK, AF_BRIDGE};
constexpr question kDeleteVlans{NETLINK_ROUTE, RTM_DELLINK, AF_BRIDGE};
const question kSetPause = recorded_kernel::ethtool(ETHTOOL_MSG_PAUSE_SET);

class KernelAsked : public testing::Test {
 protected:
  KernelAsked() {
    for (const question& it : {kSetLink, kSetModes, kSetPause, kSetVlans, kDeleteVlans}) refuse(it, 0, {});
  }

  // Refuses such a request when it is the one with this number among all, from 1.
  void refuse(const question& asked, std::size_t number, const recorded_answer& refusal) {
    kernel_.answer(asked, [this, number, refusal](const nlmsghdr& request) {
      const auto* const bytes = reinterpret_cast<const char*>(&request);
      requests_.emplace_back(bytes, bytes + request.nlmsg_len);
      return requests_.size() == number ? refusal : recorded_answer{0, {}};
    });
  }

  uint32 apply(const port_settings& requested, const port_settings& before) {
    return apply_to_device({.number = 7, .name = "swp7", .is_bridge_port = true, .bond = 9}, requested, before);
  }
  // The request for a link, which must be this one alone.
  const ifinfomsg& link_request() const {
    static const ifinfomsg none{};
    EXPECT_EQ(requests_.size(), 1U);
    return requests_.empty() ? none : head_of(requests_[0]);
  }
  static const ifinfomsg& head_of(const recorded_message& request) {
    return *reinterpret_cast<const ifinfomsg*>(request.data() + NLMSG_HDRLEN);
  }
  // The bytes of an attribute of a request behind a head of this size; nothing when it has none.
  std::optional<std::vector<uint8>> attribute(std::size_t head, uint16 type, std::size_t which = 0) const {
    static constexpr message_policy kAnyPolicy = message_policy::uniform(attribute_type::bytes, 0);
    const auto& request = *reinterpret_cast<const nlmsghdr*>(requests_.at(which).data());
    const auto found = parse(payload_of(request).subspan(head), kAnyPolicy).bytes(type);
    return found ? std::optional(std::vector<uint8>(found->begin(), found->end())) : std::nullopt;
  }
  asked vlans_in(std::size_t which) const {
    const auto& head = *reinterpret_cast<const nlmsghdr*>(requests_.at(which).data());
    return vlans_in_request(head);
  }
  std::optional<std::vector<uint8>> of_link(uint16 type) const { return attribute(sizeof(ifinfomsg), type); }
  std::optional<std::vector<uint8>> of_ethtool(uint16 type) const { return attribute(sizeof(genlmsghdr), type); }

  recorded_kernel kernel_;
  std::vector<recorded_message> requests_;
};

using Bytes = std::vector<uint8>;

Bytes bytes_of_number(uint32 number) {
  Bytes bytes(sizeof number);
  std::memcpy(bytes.data(), &number, sizeof number);
  return bytes;
}

port_settings with_state(uint8 state) {
  port_settings it;
  it.admin_state = state;
  return it;
}

TEST_F(KernelAsked, ToSwitchADeviceOffAndOn) {
  EXPECT_EQ(apply(with_state(PM_PORT_STATE_DOWN), with_state(PM_PORT_STATE_UP)), 0U);
  EXPECT_EQ(link_request().ifi_index, 7);
  EXPECT_EQ(link_request().ifi_change, unsigned{IFF_UP});
  EXPECT_EQ(link_request().ifi_flags, 0U);
  requests_.clear();
  EXPECT_EQ(apply(with_state(PM_PORT_STATE_UP), with_state(PM_PORT_STATE_DOWN)), 0U);
  EXPECT_EQ(link_request().ifi_change, unsigned{IFF_UP});
  EXPECT_EQ(link_request().ifi_flags, unsigned{IFF_UP});
}

TEST_F(KernelAsked, ForAnAliasOrNone) {
  port_settings described;
  described.description = "lab %n";
  EXPECT_EQ(apply(described, {}), 0U);
  EXPECT_EQ(of_link(IFLA_IFALIAS), (Bytes{'l', 'a', 'b', ' ', '%', 'n'}));
  EXPECT_EQ(link_request().ifi_change, 0U);
  requests_.clear();
  EXPECT_EQ(apply({}, described), 0U);
  EXPECT_EQ(of_link(IFLA_IFALIAS), Bytes{});
}

TEST_F(KernelAsked, ForAnMtu) {
  port_settings requested;
  requested.mtu_bytes = 9000;
  EXPECT_EQ(apply(requested, {}), 0U);
  EXPECT_EQ(of_link(IFLA_MTU), bytes_of_number(9000));
}

TEST_F(KernelAsked, ForABondAloneWhateverItsMembersTakeOver) {
  port_settings member;
  member.channel = 0x16000009;
  member.mtu_bytes = 9000;
  EXPECT_EQ(apply(member, {}), 0U);
  EXPECT_EQ(link_request().ifi_index, 7);
  EXPECT_EQ(of_link(IFLA_MASTER), bytes_of_number(9));
  EXPECT_EQ(of_link(IFLA_MTU), std::nullopt);
}

TEST_F(KernelAsked, ForASpeedADuplexOrBothAgreed) {
  port_settings fixed;
  fixed.admin_speed_mbps = 1000;
  fixed.admin_duplex = PM_PORT_DUPLEX_HALF;
  EXPECT_EQ(apply(fixed, {}), 0U);
  EXPECT_EQ(of_ethtool(ETHTOOL_A_LINKMODES_AUTONEG), Bytes{0});
  EXPECT_EQ(of_ethtool(ETHTOOL_A_LINKMODES_SPEED), bytes_of_number(1000));
  EXPECT_EQ(of_ethtool(ETHTOOL_A_LINKMODES_DUPLEX), Bytes{0});
  requests_.clear();
  EXPECT_EQ(apply({}, fixed), 0U);
  EXPECT_EQ(of_ethtool(ETHTOOL_A_LINKMODES_AUTONEG), Bytes{1});
  EXPECT_EQ(of_ethtool(ETHTOOL_A_LINKMODES_SPEED), std::nullopt);
  EXPECT_EQ(of_ethtool(ETHTOOL_A_LINKMODES_DUPLEX), std::nullopt);
}

TEST_F(KernelAsked, ForPauseByDirection) {
  port_settings receives;
  receives.admin_flow_control = 0x0002;
  EXPECT_EQ(apply(receives, {}), 0U);
  EXPECT_EQ(of_ethtool(ETHTOOL_A_PAUSE_AUTONEG), Bytes{0});
  EXPECT_EQ(of_ethtool(ETHTOOL_A_PAUSE_RX), Bytes{1});
  EXPECT_EQ(of_ethtool(ETHTOOL_A_PAUSE_TX), Bytes{0});
  requests_.clear();
  port_settings agrees;
  agrees.admin_flow_control = 0x0004;
  EXPECT_EQ(apply(agrees, receives), 0U);
  EXPECT_EQ(of_ethtool(ETHTOOL_A_PAUSE_AUTONEG), Bytes{1});
  EXPECT_EQ(of_ethtool(ETHTOOL_A_PAUSE_RX), Bytes{0});
  EXPECT_EQ(of_ethtool(ETHTOOL_A_PAUSE_TX), Bytes{1});
}

TEST_F(KernelAsked, ADeviceIsSwitchedOnWhenAllElseIsDone) {
  port_settings requested = with_state(PM_PORT_STATE_UP);
  requested.mtu_bytes = 9000;
  EXPECT_EQ(apply(requested, with_state(PM_PORT_STATE_DOWN)), 0U);
  ASSERT_EQ(requests_.size(), 2U);
  EXPECT_EQ(head_of(requests_[0]).ifi_change, 0U);
  EXPECT_EQ(head_of(requests_[1]).ifi_flags, unsigned{IFF_UP});
  requests_.clear();
  EXPECT_EQ(apply(with_state(PM_PORT_STATE_DOWN), requested), 0U);
  ASSERT_EQ(requests_.size(), 2U);
  EXPECT_EQ(head_of(requests_[0]).ifi_change, unsigned{IFF_UP});
}

TEST_F(KernelAsked, ARefusalHasTheKernelsWordsAndEndsTheRest) {
  uint32 asked = 0;
  kernel_.answer(kSetLink, [&asked](const nlmsghdr&) {
    ++asked;
    return recorded_answer{EINVAL, {}, "mtu greater than device maximum"};
  });
  port_settings requested = with_state(PM_PORT_STATE_UP);
  requested.mtu_bytes = 9000;
  EXPECT_STREQ(text_of_port_status(apply(requested, with_state(PM_PORT_STATE_DOWN))),
               "mtu greater than device maximum");
  EXPECT_EQ(asked, 1U);
}

TEST_F(KernelAsked, EveryStepIsRefusedInTheKernelsWords) {
  port_settings described, sized, fast, pausing, bonded;
  described.description = "lab";
  sized.mtu_bytes = 9000;
  fast.admin_speed_mbps = 1000;
  pausing.admin_flow_control = 0x0002;
  bonded.channel = 0x16000009;
  const std::pair<question, port_settings> steps[] = {{kSetLink, with_state(PM_PORT_STATE_DOWN)},
                                                      {kSetLink, described},
                                                      {kSetLink, sized},
                                                      {kSetLink, bonded},
                                                      {kSetModes, fast},
                                                      {kSetPause, pausing},
                                                      {kSetVlans, access(20)}};
  for (const auto& [asked, requested] : steps) {
    port_settings before = asked == kSetVlans ? access(1) : port_settings();
    requests_.clear();
    refuse(asked, 1, {EINVAL, {}, "in the kernel's words"});
    EXPECT_STREQ(text_of_port_status(apply(requested, before)), "in the kernel's words");
    // The kernel adds VLANs one by one: those before the refused one are taken back.
    EXPECT_EQ(requests_.size(), asked == kSetVlans ? 3U : 1U);
    requests_.clear();
    refuse(asked, 1, {EBUSY});
    EXPECT_STREQ(text_of_port_status(apply(requested, before)), "Device or resource busy");
  }
}

TEST_F(KernelAsked, ARefusalWithoutWordsIsAnErrno) {
  port_settings requested;
  requested.mtu_bytes = 9000;
  for (const auto& [error, text] : {std::pair{ENODEV, "No such device"},
                                    {EBUSY, "Device or resource busy"},
                                    {EPERM, "not permitted: the right CAP_NET_ADMIN is missing"}}) {
    kernel_.answer(kSetLink, [error = error](const nlmsghdr&) { return recorded_answer{error, {}}; });
    EXPECT_STREQ(text_of_port_status(apply(requested, {})), text);
  }
}

// ---- What was made before a refusal is taken back -------------------------------------------------------------------

TEST_F(KernelAsked, WhatWasMadeBeforeARefusalIsTakenBack) {
  port_settings before = with_state(PM_PORT_STATE_UP), requested = with_state(PM_PORT_STATE_DOWN);
  before.description = "old";
  requested.description = "new";
  requested.mtu_bytes = 9000;
  refuse(kSetLink, 3, {EINVAL, {}, "mtu greater than device maximum"});
  EXPECT_STREQ(text_of_port_status(apply(requested, before)), "mtu greater than device maximum");
  ASSERT_EQ(requests_.size(), 5U);
  EXPECT_EQ(attribute(sizeof(ifinfomsg), IFLA_IFALIAS, 3), (Bytes{'o', 'l', 'd'}));
  EXPECT_EQ(head_of(requests_[4]).ifi_change, unsigned{IFF_UP});
  EXPECT_EQ(head_of(requests_[4]).ifi_flags, unsigned{IFF_UP});
}

TEST_F(KernelAsked, ASpeedIsTakenBackWhenPauseIsRefused) {
  port_settings requested;
  requested.mtu_bytes = 9000;
  requested.admin_speed_mbps = 1000;
  requested.admin_duplex = PM_PORT_DUPLEX_FULL;
  requested.admin_flow_control = 0x0002;
  refuse(kSetPause, 3, {EOPNOTSUPP});
  EXPECT_STREQ(text_of_port_status(apply(requested, {})), "Operation not supported");
  ASSERT_EQ(requests_.size(), 5U);
  EXPECT_EQ(attribute(sizeof(genlmsghdr), ETHTOOL_A_LINKMODES_AUTONEG, 3), Bytes{1});
  EXPECT_EQ(attribute(sizeof(ifinfomsg), IFLA_MTU, 4), bytes_of_number(1500));
}

TEST_F(KernelAsked, VlansThatCameAreTakenBackWhenTheOthersStay) {
  refuse(kDeleteVlans, 2, {EBUSY, {}, "the VLAN is in use"});
  EXPECT_STREQ(text_of_port_status(apply(access(20), access(1))), "the VLAN is in use");
  ASSERT_EQ(requests_.size(), 4U);
  EXPECT_EQ(vlans_in(2), (asked{RTM_SETLINK, {{kUntagged, 1}}}));
  EXPECT_EQ(vlans_in(3), (asked{RTM_DELLINK, {{kTagged, 20}}}));
}

TEST_F(KernelAsked, VlansAreTakenBackWhenTheDeviceDoesNotComeUp) {
  port_settings before = trunk(9, {1, 2});  // of which the native VLAN is none
  before.admin_state = PM_PORT_STATE_DOWN;
  refuse(kSetLink, 3, {ENODEV});
  EXPECT_STREQ(text_of_port_status(apply(access(20), before)), "No such device");
  ASSERT_EQ(requests_.size(), 5U);
  EXPECT_EQ(vlans_in(3), (asked{RTM_SETLINK, {{kBegin, 1}, {kEnd, 2}}}));
  EXPECT_EQ(vlans_in(4), (asked{RTM_DELLINK, {{kTagged, 20}}}));
}

TEST_F(KernelAsked, AFirstRefusalLeavesNothingToTakeBack) {
  refuse(kSetLink, 1, {EPERM});
  port_settings requested = with_state(PM_PORT_STATE_UP);
  requested.description = "new";
  EXPECT_STREQ(text_of_port_status(apply(requested, with_state(PM_PORT_STATE_DOWN))),
               "not permitted: the right CAP_NET_ADMIN is missing");
  EXPECT_EQ(requests_.size(), 1U);
}

TEST_F(KernelAsked, AnMtuThatIsNotKnownIsNotTakenBack) {
  port_settings before;
  before.mtu_bytes.reset();
  port_settings requested;
  requested.admin_flow_control = 0x0002;
  refuse(kSetPause, 2, {EOPNOTSUPP});
  EXPECT_STREQ(text_of_port_status(apply(requested, before)), "Operation not supported");
  EXPECT_EQ(requests_.size(), 2U);
}

TEST_F(KernelAsked, ASocketThatCannotBeOpenedIsARefusal) {
  the_kernel_io().open = [](int) {
    errno = EMFILE;
    return std::unique_ptr<kernel_channel>();
  };
  port_settings requested;
  requested.mtu_bytes = 9000;
  EXPECT_STREQ(text_of_port_status(apply(requested, {})), "cannot open a netlink socket: Too many open files");
}

TEST_F(KernelAsked, AKernelWithoutEthtoolRefusesItsSettings) {
  kernel_.has_ethtool = false;
  port_settings requested;
  requested.admin_flow_control = 0x0002;
  const uint32 status = apply(requested, {});
  EXPECT_STREQ(text_of_port_status(status), "Operation not supported");
}

// ---- What carries a device ------------------------------------------------------------------------------------------

kernel_link device(uint32 number, const std::string& kind, uint32 master = 0, uint32 parent = 0) {
  kernel_link link;
  link.number = number;
  link.kind = kind;
  link.master = master;
  link.parent = parent;
  return link;
}

TEST(KernelWay, ParentsAndMembersCarryADevice) {
  const std::vector<kernel_link> links = {device(2, "", 9),        device(3, "veth", 9, 4), device(4, "veth", 0, 3),
                                          device(5, ""),           device(9, "bridge"),     device(10, "vlan", 0, 9),
                                          device(11, "vlan", 0, 5)};
  EXPECT_EQ(devices_below(links, 10), (std::set<uint32>{2, 3, 9, 10}));
  EXPECT_EQ(devices_below(links, 11), (std::set<uint32>{5, 11}));
  EXPECT_EQ(devices_below(links, 4), (std::set<uint32>{4}));  // the other end of a veth pair is another port
  EXPECT_EQ(devices_below(links, 0), (std::set<uint32>{}));
}

TEST(KernelWay, DevicesThatCarryEachOtherAreTakenOnce) {
  EXPECT_EQ(devices_below({device(2, "vlan", 0, 3), device(3, "vlan", 0, 2)}, 2), (std::set<uint32>{2, 3}));
}

// ---- Words of the kernel --------------------------------------------------------------------------------------------

// An error message with words; with the whole request in it, or only with its head.
netlink_request error_message(int error, const char* words, bool is_capped) {
  netlink_request message(NLMSG_ERROR, is_capped ? NLM_F_ACK_TLVS | NLM_F_CAPPED : NLM_F_ACK_TLVS);
  message.head().nlmsg_flags = static_cast<uint16>(message.head().nlmsg_flags & ~NLM_F_REQUEST);
  auto& body = message.extra<nlmsgerr>();
  body.error = error;
  body.msg.nlmsg_len = sizeof(nlmsghdr) + (is_capped ? 100U : sizeof(ifinfomsg));
  if (!is_capped) message.extra<ifinfomsg>().ifi_index = 7;
  mnl_attr_put_strz(&message.head(), NLMSGERR_ATTR_MSG, words);
  return message;
}

TEST(KernelWords, AreReadBehindTheRequest) {
  EXPECT_EQ(extack_message(error_message(-EINVAL, "Device can not be enslaved while up", true).head()),
            "Device can not be enslaved while up");
  EXPECT_EQ(extack_message(error_message(-EINVAL, "mtu greater than device maximum", false).head()),
            "mtu greater than device maximum");
}

TEST(KernelWords, OfASuccessAreNoRefusal) { EXPECT_EQ(extack_message(error_message(0, "a warning", true).head()), ""); }

TEST(KernelWords, LyingLengthsAndCutMessagesHaveNone) {
  netlink_request message = error_message(-EINVAL, "words", false);
  auto* const body = static_cast<nlmsgerr*>(mnl_nlmsg_get_payload(&message.head()));
  body->msg.nlmsg_len = 0xFFFFFFFF;
  EXPECT_EQ(extack_message(message.head()), "");
  body->msg.nlmsg_len = 0;
  EXPECT_EQ(extack_message(message.head()), "");
  netlink_request cut = error_message(-EINVAL, "words", true);
  const uint32 whole = cut.head().nlmsg_len;
  for (uint32 size = NLMSG_HDRLEN; size + 2 < whole; ++size) {
    cut.head().nlmsg_len = size;
    EXPECT_NE(extack_message(cut.head()), "words") << size;
  }
}

TEST(KernelWords, BecomeStatusesWithTheirText) {
  const uint32 one = status_of_text("first words");
  const uint32 two = status_of_text("other words");
  EXPECT_NE(one, two);
  EXPECT_EQ(status_of_text("first words"), one);
  EXPECT_STREQ(syserr2str(static_cast<syserr_t>(one)), "first words");
  EXPECT_STREQ(syserr2str(static_cast<syserr_t>(two)), "other words");
  EXPECT_STREQ(syserr2str(static_cast<syserr_t>(uint32{kPortStatusNoRight})),
               "not permitted: the right CAP_NET_ADMIN is missing");
  EXPECT_EQ(syserr2str(0x40F1FFFF), nullptr);
}

}  // namespace
}  // namespace host
