// Counters without the rest of what the kernel reports, and the list of devices that they are shown for.
#include "source/kernel/device_counters.h"

#include <gtest/gtest.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "host/source/kernel/kernel_recording.h"
#include "host/source/kernel/recorded_switch.h"
#include "source/kernel/device_list.h"
#include "source/kernel/kernel_source.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

const question kDumpOfNames = recorded_kernel::ethtool(ETHTOOL_MSG_LINKSTATE_GET);
const question kDumpOfStatistics = {NETLINK_ROUTE, RTM_GETSTATS, AF_UNSPEC};

netlink_request name_message(uint32 number, const std::string& name) {
  netlink_request message(recorded_kernel::kEthtoolFamily, 0);
  message.extra<genlmsghdr>() = {.cmd = ETHTOOL_MSG_LINKSTATE_GET_REPLY, .version = 1, .reserved = 0};
  nlattr* const head = mnl_attr_nest_start(&message.head(), ETHTOOL_A_LINKSTATE_HEADER);
  mnl_attr_put_u32(&message.head(), ETHTOOL_A_HEADER_DEV_INDEX, number);
  mnl_attr_put_strz(&message.head(), ETHTOOL_A_HEADER_DEV_NAME, name.c_str());
  mnl_attr_nest_end(&message.head(), head);
  return message;
}

netlink_request statistics_message(uint32 number, uint64 received) {
  netlink_request message(RTM_NEWSTATS, 0);
  message.extra<if_stats_msg>().ifindex = number;
  rtnl_link_stats64 counted{};
  counted.rx_packets = received;
  mnl_attr_put(&message.head(), IFLA_STATS_LINK_64, sizeof counted, &counted);
  return message;
}

// Two veth devices, whose names can change from one dump of names to the next.
class CountedDevices : public testing::Test {
 protected:
  CountedDevices() {
    for (const auto& [number, name] : {std::pair(12U, "veth0"), {13U, "veth1"}})
      kernel_.tell(kLinks, link_message({.number = number, .name = name, .kind = "veth", .flags = IFF_UP}));
    kernel_.answer(kDumpOfNames, [this](const nlmsghdr&) {
      ++dumps_of_names_;
      const bool is_renamed = renamed_at_ != 0 && dumps_of_names_ >= renamed_at_;
      return recorded_answer{.messages = {recorded(name_message(12, "veth0")),
                                          recorded(name_message(13, is_renamed ? "uplink" : "veth1"))}};
    });
    kernel_.tell(kDumpOfStatistics, statistics_message(12, 100));
    kernel_.tell(kDumpOfStatistics, statistics_message(13, 200));
  }
  ~CountedDevices() override { std::remove(list_.c_str()); }

  uint64 received_by(kernel_source& source, machine& model, uint32 number) {
    interface& port = *model.find(ethernet_index(IF_TYPE_ETHERNET, 0, number - 1));
    source.update_statistics(port, 0);
    return port.stats.in.packets.value_or(0);
  }

  recorded_kernel kernel_;
  uint32 dumps_of_names_ = 0;
  uint32 renamed_at_ = 0;  // the dump of names; 0: never
  const std::string list_ = testing::TempDir() + "device-list-" + std::to_string(getpid());
};

TEST_F(CountedDevices, AreReadWithTheirNames) {
  const auto counted = read_device_counters();
  ASSERT_TRUE(counted);
  ASSERT_EQ(counted->size(), 2U);
  EXPECT_EQ((*counted)[0].name, "veth0");
  EXPECT_EQ((*counted)[0].counted.rx_packets, 100U);
  EXPECT_EQ((*counted)[1].name, "veth1");
  EXPECT_EQ((*counted)[1].counted.rx_packets, 200U);
  EXPECT_EQ(kernel_.times_asked(kLinks), 0U);
}

TEST_F(CountedDevices, AreNotReadWhileOneIsRenamed) {
  renamed_at_ = 2;
  EXPECT_FALSE(read_device_counters());
}

TEST_F(CountedDevices, AreNotReadWhenOneHasNoCounters) {
  kernel_.answer(kDumpOfStatistics,
                 [](const nlmsghdr&) { return recorded_answer{.messages = {recorded(statistics_message(12, 100))}}; });
  EXPECT_FALSE(read_device_counters());
}

TEST_F(CountedDevices, AreNotReadWhenCountersBelongToAnother) {
  kernel_.tell(kDumpOfStatistics, statistics_message(14, 300));
  EXPECT_FALSE(read_device_counters());
}

TEST_F(CountedDevices, AreNotReadWhenTheKernelRefuses) {
  kernel_.refuse(kDumpOfStatistics, EOPNOTSUPP);
  EXPECT_FALSE(read_device_counters());
}

TEST_F(CountedDevices, AreReadAgainAfterAnInterruptedDump) {
  kernel_.disturb(kDumpOfStatistics, disturbance::interrupted);
  const auto counted = read_device_counters();
  ASSERT_TRUE(counted);
  EXPECT_EQ((*counted)[1].counted.rx_packets, 200U);
}

TEST_F(CountedDevices, RefreshOnlyTheCountersOfAModel) {
  kernel_source source;
  machine model = source.read();
  EXPECT_EQ(received_by(source, model, 12), 12'000U) << "as the dump of links reports";
  source.refresh(model);
  ASSERT_TRUE(source.refresh_counters(model));
  EXPECT_EQ(received_by(source, model, 12), 100U);
  EXPECT_EQ(received_by(source, model, 13), 200U);
  EXPECT_EQ(kernel_.times_asked(kLinks), 1U);
}

TEST_F(CountedDevices, AreNotShownUnderAnEarlierName) {
  kernel_source source;
  machine model = source.read();
  source.refresh(model);
  renamed_at_ = 1;
  EXPECT_FALSE(source.refresh_counters(model));
}

TEST_F(CountedDevices, AreKnownToALaterProcess) {
  const machine first = kernel_source({}, {}, {}, list_).read();
  kernel_source later({}, {}, {}, list_);
  auto model = later.read_counters();
  ASSERT_TRUE(model);
  EXPECT_EQ(kernel_.times_asked(kLinks), 1U);
  ASSERT_EQ(model->interfaces.size(), first.interfaces.size());
  EXPECT_TRUE(later.refresh_counters(*model));
  EXPECT_EQ(received_by(later, *model, 13), 200U);
  later.refresh(*model);
  EXPECT_EQ(kernel_.times_asked(kLinks), 2U) << "other commands read the rest";
}

TEST_F(CountedDevices, OfALaterProcessMustHaveTheirNames) {
  kernel_source({}, {}, {}, list_).read();
  renamed_at_ = 1;
  EXPECT_FALSE(kernel_source({}, {}, {}, list_).read_counters());
}

TEST_F(CountedDevices, AreUnknownWithoutAListAndWithAMapFile) {
  EXPECT_FALSE(kernel_source().read_counters());
  kernel_source({}, {}, {}, list_).read();
  EXPECT_FALSE(kernel_source({{"veth0", {}}}, {}, {}, list_).read_counters());
}

// ---- The list -------------------------------------------------------------------------------------------------------

class ListOfDevices : public testing::Test {
 protected:
  ListOfDevices() {
    kernel_link loopback;
    loopback.number = 1;
    loopback.name = "lo";
    loopback.flags = IFF_LOOPBACK;
    kernel_link veth;
    veth.number = 7;
    veth.name = "to the lab";
    veth.kind = "veth";
    veth.slave_kind = "bridge";
    veth.mac = {2, 0, 0, 0, 0, 7};
    links_ = {loopback, veth};
    mapped_ = {{"to the lab", 7, ethernet_index(IF_TYPE_ETHERNET, 0, 6), true, name_reason::stored}};
    list_.keep_in(path_);
    list_.write(links_, mapped_, 7);
  }
  ~ListOfDevices() override { std::remove(path_.c_str()); }

  std::string text() const {
    std::ostringstream all;
    all << std::ifstream(path_).rdbuf();
    return all.str();
  }
  void write(const std::string& text) const { std::ofstream(path_) << text; }

  const std::string path_ = testing::TempDir() + "devices-" + std::to_string(getpid());
  std::vector<kernel_link> links_;
  std::vector<mapped_device> mapped_;
  device_list list_;
};

TEST_F(ListOfDevices, HasWhatDevicesAre) {
  const auto read = list_.read();
  ASSERT_TRUE(read);
  EXPECT_EQ(read->management, 7U);
  ASSERT_EQ(read->links.size(), 2U);
  EXPECT_EQ(read->links[0].name, "lo");
  EXPECT_EQ(read->links[0].kind, "");
  EXPECT_NE(read->links[0].flags & IFF_LOOPBACK, 0U);
  EXPECT_EQ(read->links[1].name, "to the lab");
  EXPECT_EQ(read->links[1].kind, "veth");
  EXPECT_EQ(read->links[1].slave_kind, "bridge");
  EXPECT_EQ(read->links[1].mac, links_[1].mac);
  ASSERT_EQ(read->mapped.size(), 1U);
  EXPECT_EQ(read->mapped[0].device, "to the lab");
  EXPECT_EQ(read->mapped[0].if_index, mapped_[0].if_index);
  EXPECT_TRUE(read->mapped[0].is_bridge_port);
}

TEST_F(ListOfDevices, IsInvalidWhenItIsCut) {
  const std::string whole = text();
  for (std::size_t size = 0; size + 1 < whole.size(); ++size) {
    write(whole.substr(0, size));
    EXPECT_FALSE(list_.read()) << size;
  }
}

TEST_F(ListOfDevices, IsInvalidInAnotherNamespaceAndWhenItIsDamaged) {
  const std::string whole = text();
  write("boot of another machine" + whole.substr(whole.find('\n')));
  EXPECT_FALSE(list_.read());
  std::string damaged = whole;
  damaged.replace(damaged.find("\n7 ") + 1, 1, "x");
  write(damaged);
  EXPECT_FALSE(list_.read());
  damaged = whole;
  damaged.replace(damaged.rfind("\n7 ") + 1, 1, "1");
  write(damaged);
  EXPECT_FALSE(list_.read()) << "two devices with one number";
}

TEST_F(ListOfDevices, DoesNotHoldANameWithALineEnd) {
  std::remove(path_.c_str());
  links_[1].name = "two\nlines";
  list_.write(links_, mapped_, 0);
  EXPECT_FALSE(list_.read());
}

}  // namespace
}  // namespace host
