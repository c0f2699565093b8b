// Interfaces that commands create and delete over the kernel: what it is asked, and what becomes of a refusal.
#include "source/kernel/creation.h"

#include <gtest/gtest.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <net/if.h>

#include <cerrno>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/port_status.h"
#include "host/source/kernel/recorded_switch.h"
#include "platform/port_config.h"
#include "platform/syserr.h"
#include "source/kernel/kernel_source.h"
#include "source/kernel/policy.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

constexpr question kNewLink{NETLINK_ROUTE, RTM_NEWLINK, AF_UNSPEC};
constexpr question kDeleteLink{NETLINK_ROUTE, RTM_DELLINK, AF_UNSPEC};
constexpr uint32 kFree = 77;  // no device has this number

if_index_t loopback(uint32 number) { return numbered_index(IF_TYPE_LOOPBACK, number); }
if_index_t sub_interface(uint32 device, uint32 number) {
  return ethernet_index(IF_TYPE_ETHERNET, 0, device - 1, number);
}

// A request to create a device.
struct creation {
  uint32 number = 0;
  bool is_up = false;
  std::string name = {};
  std::string kind = {};
  uint32 parent = 0;
  uint16 vlan = 0;

  bool operator==(const creation&) const = default;
};

std::ostream& operator<<(std::ostream& to, const creation& it) {
  return to << it.number << " " << (it.is_up ? "up " : "") << it.name << " " << it.kind << " " << it.parent << "."
            << it.vlan;
}

constexpr message_policy kCreationPolicy = {
    {IFLA_IFNAME, attribute_type::text, 1},
    {IFLA_IFALIAS, attribute_type::text, 0},
    {IFLA_LINK, attribute_type::number, 4},
    {IFLA_LINKINFO, attribute_type::nest, 0},
};
constexpr message_policy kCreatedKindPolicy = {
    {IFLA_INFO_KIND, attribute_type::text, 1},
    {IFLA_INFO_DATA, attribute_type::nest, 0},
};
constexpr message_policy kCreatedVlanPolicy = {{IFLA_VLAN_ID, attribute_type::number, 2}};

creation creation_in(const nlmsghdr& request) {
  EXPECT_EQ(request.nlmsg_flags & (NLM_F_CREATE | NLM_F_EXCL), NLM_F_CREATE | NLM_F_EXCL);
  const auto parsed = parse<ifinfomsg>(request, kCreationPolicy);
  if (!parsed) return {};
  const attributes info = parsed->all.nested(IFLA_LINKINFO, kCreatedKindPolicy);
  creation it{.number = static_cast<uint32>(parsed->head.ifi_index), .is_up = (parsed->head.ifi_flags & IFF_UP) != 0};
  it.name = parsed->all.text(IFLA_IFNAME).value_or("");
  it.parent = parsed->all.number<uint32>(IFLA_LINK).value_or(0);
  it.kind = info.text(IFLA_INFO_KIND).value_or("");
  it.vlan = info.nested(IFLA_INFO_DATA, kCreatedVlanPolicy).number<uint16>(IFLA_VLAN_ID).value_or(0);
  return it;
}

class KernelCreation : public testing::Test {
 protected:
  KernelCreation() {
    record_switch(kernel_);
    kernel_.answer(kNewLink, [this](const nlmsghdr& request) { return create(creation_in(request)); });
    kernel_.answer(kDeleteLink, [this](const nlmsghdr& request) {
      deleted_.push_back(
          static_cast<uint32>(static_cast<const ifinfomsg*>(mnl_nlmsg_get_payload(&request))->ifi_index));
      return delete_answer_;
    });
    read({});
  }
  ~KernelCreation() override {
    the_machine() = {};
    set_source();
  }

  static void read(const requested_interfaces& requested) {
    auto source = std::make_unique<kernel_source>(requested);
    the_machine() = source->read();
    set_source(std::move(source));
  }

  // A device that is asked for is in the next dump, unless this one is refused.
  recorded_answer create(const creation& asked) {
    created_.push_back(asked);
    if (created_.size() == refused_) return refusal_;
    kernel_.tell(kLinks, link_message({.number = asked.number != 0 ? asked.number : 100,
                                       .name = asked.name.empty() ? "vlan0" : asked.name,
                                       .kind = asked.kind,
                                       .flags = IFF_UP,
                                       .parent = asked.parent,
                                       .vlan = asked.vlan}));
    return {};
  }

  static std::string create_interfaces(const std::vector<if_index_t>& interfaces) {
    return text_of_status(the_source().create_interfaces(the_machine(), interfaces));
  }
  static std::string delete_interfaces(const std::vector<if_index_t>& interfaces) {
    return text_of_status(the_source().delete_interfaces(the_machine(), interfaces));
  }
  static std::string text_of_status(uint32 status) {
    if (status == 0) return "";
    if (status == PM_ERR_NO_SUCH_INTERFACE) return "no such interface";
    const char* const text = text_of_port_status(status);
    return text == nullptr ? std::to_string(status) : text;
  }
  static const interface* find(if_index_t if_index) { return the_machine().find(if_index); }

  recorded_kernel kernel_;
  std::vector<creation> created_;
  std::vector<uint32> deleted_;
  std::size_t refused_ = 0;  // which creation, from 1
  recorded_answer refusal_;
  recorded_answer delete_answer_;
};

using Creations = std::vector<creation>;
using Numbers = std::vector<uint32>;

TEST_F(KernelCreation, ALoopbackIsADummyWithItsNumber) {
  EXPECT_EQ(create_interfaces({loopback(kFree)}), "");
  EXPECT_EQ(created_, (Creations{{.number = 77, .is_up = true, .name = "lo77", .kind = "dummy"}}));
  ASSERT_NE(find(loopback(kFree)), nullptr);
  EXPECT_TRUE(find(loopback(kFree))->is_created);
}

TEST_F(KernelCreation, ASubInterfaceIsAVlanDeviceOfItsPort) {
  EXPECT_EQ(create_interfaces({sub_interface(kSwp4, 5)}), "");
  EXPECT_EQ(created_, (Creations{{.is_up = true, .name = "swp4.5", .kind = "vlan", .parent = kSwp4, .vlan = 5}}));
  ASSERT_NE(find(sub_interface(kSwp4, 5)), nullptr);
  EXPECT_TRUE(find(sub_interface(kSwp4, 5))->is_created);
}

// The kernel switches no VLAN device on whose parent is off.
TEST_F(KernelCreation, ASubInterfaceOfAPortThatIsOffIsOff) {
  EXPECT_EQ(create_interfaces({sub_interface(kSwp6, 5)}), "");
  ASSERT_EQ(created_.size(), 1U);
  EXPECT_FALSE(created_[0].is_up);
}

TEST_F(KernelCreation, ANameThatIsTooLongIsLeftToTheKernel) {
  kernel_.tell(kLinks, link_message({.number = 20, .name = "port-of-the-lab", .flags = IFF_UP}));
  read({});
  EXPECT_EQ(create_interfaces({sub_interface(20, 5)}), "");
  ASSERT_EQ(created_.size(), 1U);
  EXPECT_EQ(created_[0].name, "");
  EXPECT_NE(find(sub_interface(20, 5)), nullptr);
}

TEST_F(KernelCreation, DevicesOfOthersKeepTheirNumbers) {
  EXPECT_EQ(create_interfaces({loopback(kSwp4)}), "the kernel's device 6 is swp4");
  EXPECT_EQ(create_interfaces({sub_interface(60, 5)}), "no such interface");
  EXPECT_EQ(created_, Creations{});
}

TEST_F(KernelCreation, ARefusalHasTheKernelsWordsAndLeavesNothing) {
  refused_ = 2;
  refusal_ = {EBUSY, {}, "no more of these"};
  EXPECT_EQ(create_interfaces({loopback(kFree), loopback(kFree + 1), loopback(kFree + 2)}), "no more of these");
  EXPECT_EQ(created_.size(), 2U);
  EXPECT_EQ(deleted_, (Numbers{kFree}));
}

TEST_F(KernelCreation, AUserWithoutTheRightIsNamed) {
  refused_ = 1;
  refusal_ = {EPERM, {}, ""};
  EXPECT_EQ(create_interfaces({loopback(kFree)}), "not permitted: the right CAP_NET_ADMIN is missing");
  EXPECT_EQ(deleted_, Numbers{});
}

TEST_F(KernelCreation, ADeviceThatTheMapGivesAnotherInterfaceIsDeletedAgain) {
  read({{"lo77", {.if_index = loopback(5)}}, {"swp4.5", {.if_index = loopback(6)}}});
  EXPECT_EQ(create_interfaces({loopback(kFree)}), "the map gives the new device another interface");
  EXPECT_EQ(create_interfaces({sub_interface(kSwp4, 5)}), "the map gives the new device another interface");
  EXPECT_EQ(deleted_, (Numbers{kFree, 100}));
}

TEST_F(KernelCreation, DevicesThatCommandsCreateAreDeleted) {
  EXPECT_EQ(create_interfaces({loopback(kFree)}), "");
  EXPECT_EQ(delete_interfaces({sub_interface(kSwp3, 100), loopback(kFree)}), "");
  EXPECT_EQ(deleted_, (Numbers{kVlan100, kFree}));
}

TEST_F(KernelCreation, OtherDevicesAreNotDeleted) {
  EXPECT_EQ(delete_interfaces({sub_interface(kSwp3, 100), loopback(0)}),
            "the device lo is not one that commands create");
  EXPECT_EQ(delete_interfaces({loopback(kFree)}), "no such interface");
  EXPECT_EQ(deleted_, Numbers{}) << "all of them, or none";
}

TEST_F(KernelCreation, ARefusedDeletionHasTheKernelsWords) {
  delete_answer_ = {EBUSY, {}, "somebody holds it"};
  EXPECT_EQ(delete_interfaces({sub_interface(kSwp3, 100)}), "somebody holds it");
}

// A dummy that a command has deleted, when it is created again.
class KernelRestoration : public KernelCreation {
 protected:
  KernelRestoration() {
    kernel_.answer(kNewLink, [this](const nlmsghdr& request) {
      if ((request.nlmsg_flags & NLM_F_CREATE) != 0) return create(creation_in(request));
      if (const auto alias = parse<ifinfomsg>(request, kCreationPolicy)->all.text(IFLA_IFALIAS))
        aliases_.push_back(*alias);
      return setting_answer_;
    });
    deleted_interface_ = *find(loopback(0));
    deleted_interface_.if_index = loopback(kFree);
    deleted_interface_.settings.description = "of the lab";
  }

  std::string restore() { return text_of_status(the_source().restore_interface(the_machine(), deleted_interface_)); }

  interface deleted_interface_;
  std::vector<std::string> aliases_;
  recorded_answer setting_answer_;
};

TEST_F(KernelRestoration, ADeviceIsCreatedAndSetAsTheOldOneWas) {
  EXPECT_EQ(restore(), "");
  EXPECT_EQ(created_, (Creations{{.number = 77, .is_up = true, .name = "lo77", .kind = "dummy"}}));
  EXPECT_EQ(aliases_, (std::vector<std::string>{"of the lab"}));
  ASSERT_NE(find(loopback(kFree)), nullptr);
  EXPECT_EQ(find(loopback(kFree))->settings.description, "of the lab");
}

TEST_F(KernelRestoration, WhatTheKernelRefusesIsTheStatus) {
  setting_answer_ = {EBUSY, {}, "not now"};
  EXPECT_EQ(restore(), "not now");
  EXPECT_EQ(aliases_.size(), 1U);
  EXPECT_EQ(deleted_, (std::vector<uint32>{77}));

  deleted_interface_.if_index = loopback(kFree + 1);
  refused_ = 2;
  refusal_ = {EBUSY, {}, "no more of these"};
  EXPECT_EQ(restore(), "no more of these");
  EXPECT_EQ(aliases_.size(), 1U);
}

TEST(KernelCreated, DummiesByTheirNumberAndVlanDevicesOfPorts) {
  kernel_link dummy;
  dummy.number = 7;
  dummy.kind = "dummy";
  EXPECT_TRUE(is_created_by_command(dummy, loopback(7)));
  EXPECT_FALSE(is_created_by_command(dummy, loopback(8))) << "by the map";
  kernel_link vlan;
  vlan.kind = "vlan";
  vlan.vlan = 5;
  EXPECT_TRUE(is_created_by_command(vlan, sub_interface(3, 5)));
  EXPECT_TRUE(is_created_by_command(vlan, ethernet_index(IF_TYPE_ETHERNET_L3, 0, 3, 5)));
  EXPECT_FALSE(is_created_by_command(vlan, sub_interface(3, 6))) << "by the map";
  EXPECT_FALSE(is_created_by_command(vlan, channel_index(IF_TYPE_ETH_PORT_CHANNEL, 3, PC_SUBTYPE_ORDINARY, 5)));
  kernel_link port;
  EXPECT_FALSE(is_created_by_command(port, sub_interface(3, 0)));
}

}  // namespace
}  // namespace host
