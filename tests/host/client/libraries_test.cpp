// The client libraries as displays use them: opened by name, looked up, called, closed.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/switch/small_machine.h"
#include "platform/card_config.h"
#include "platform/clear_counters.h"
#include "platform/eth_statistics.h"
#include "platform/ip_statistics.h"
#include "platform/paraminfo.h"
#include "platform/port_config.h"
#include "platform/syserr.h"
#include "platform/vlan_manager.h"
#include "service/services.h"
#include "support/heap_block.h"

namespace host {
namespace {

class ClientLibraries : public testing::Test {
 protected:
  ClientLibraries() { transport_register(all_services()); }
  ~ClientLibraries() override {
    if (library_ != nullptr) dlclose(library_);
  }

  template <typename Function>
  Function find(const char* library, const char* symbol) {
    library_ = dlopen(library, RTLD_LAZY);
    if (library_ == nullptr) {
      ADD_FAILURE() << dlerror();
      return nullptr;
    }
    return reinterpret_cast<Function>(dlsym(library_, symbol));
  }

  small_machine names_ = install_small_machine();
  void* library_ = nullptr;
};

TEST_F(ClientLibraries, StatisticsClientFillsTheRecord) {
  const auto get = find<statcl_get_port_client_stats_fn>("libstatcl.so", "statcl_get_port_client_stats");
  ASSERT_NE(get, nullptr);
  statscl_portcl_stats_msg_t stats{};

  EXPECT_EQ(get(names_.first_port, &stats), 0);
  EXPECT_EQ(stats.ifidx, names_.first_port);
  EXPECT_EQ(stats.mac.pktflow.egress_pkts, 9123u);
  EXPECT_NE(get(names_.nobody, &stats), 0);
}

TEST_F(ClientLibraries, StatisticsClientHasTheSnmpVariant) {
  const auto get = find<statcl_get_port_client_stats_fn>("libstatcl.so", "statcl_get_port_client_snmp_stats");
  ASSERT_NE(get, nullptr);
  statscl_portcl_stats_msg_t stats{};

  EXPECT_EQ(get(names_.routed_port, &stats), 0);
  EXPECT_EQ(stats.ifidx, names_.routed_port);
}

TEST_F(ClientLibraries, LoopbackCountersReportSuccessAsOne) {
  const auto get = find<ip_get_loopback_counters_fn>("libip_stats.so", "ip_get_loopback_counters");
  ASSERT_NE(get, nullptr);
  const mts_q_handle_t q = transport_open_queue();
  ip_if_stats stats{};

  EXPECT_EQ(get(q, names_.loopback, &stats), 1);
  EXPECT_EQ(stats.out_pkts, 9123u);
  EXPECT_EQ(get(q, names_.first_port, &stats), 0);
  transport_close_queue(q);
}

TEST_F(ClientLibraries, StatisticsClientClearsAPort) {
  const auto clear = find<statscl_clear_port_client_stats_fn>("libstatcl.so", "statscl_clear_port_client_stats");
  ASSERT_NE(clear, nullptr);

  EXPECT_EQ(clear(names_.first_port), 0);
  EXPECT_EQ(the_machine().find(names_.first_port)->stats.out.packets, 0u);
  EXPECT_EQ(clear(names_.nobody), PM_ERR_NO_SUCH_INTERFACE);
  EXPECT_EQ(clear(names_.loopback), PM_ERR_NOT_ALLOWED_ON_INTERFACE);
}

TEST_F(ClientLibraries, LoopbacksAreClearedAndReportSuccessAsOne) {
  const auto clear = find<ip_clear_loopback_counters_fn>("libip_stats.so", "ip_clear_loopback_counters");
  ASSERT_NE(clear, nullptr);

  EXPECT_EQ(clear(0, names_.loopback), 1);
  EXPECT_EQ(the_machine().find(names_.loopback)->stats.out.packets, 0u);
  EXPECT_EQ(clear(0, names_.nobody), 0);
  EXPECT_EQ(clear(0, names_.first_port), 0);
  EXPECT_NE(the_machine().find(names_.first_port)->stats.out.packets, 0u);
}

TEST_F(ClientLibraries, CardConfigurationFillsTheResponse) {
  const auto get = find<crdcfg_get_port_cap_fn>("libcrdcfg.so", "crdcfg_get_port_cap");
  ASSERT_NE(get, nullptr);
  const if_index_range_t range{names_.first_port, names_.first_port};
  uint8 response[124] = {};

  EXPECT_EQ(get(&range, 124, response), 0);
  EXPECT_EQ(response[4], 2 | 4 | 16);
  EXPECT_STREQ(reinterpret_cast<char*>(response + 29), "MODEL-48X");
}

TEST_F(ClientLibraries, VlanManagerCanBeOpened) {
  EXPECT_NE(find<vlan_get_port_trunking_memb_parse_fn>("libvlan_mgr.so", "vlan_get_port_trunking_memb_parse_reply"),
            nullptr);
}

TEST_F(ClientLibraries, AClosedLibraryStaysLoaded) {
  void* const opened = dlopen("libcrdcfg.so", RTLD_LAZY);
  ASSERT_NE(opened, nullptr);
  dlclose(opened);
  void* const loaded = dlopen("libcrdcfg.so", RTLD_LAZY | RTLD_NOLOAD);
  ASSERT_NE(loaded, nullptr);
  dlclose(loaded);
}

TEST_F(ClientLibraries, MissingLibraryStaysMissing) { EXPECT_EQ(dlopen("libnobody.so", RTLD_LAZY), nullptr); }

// A command about some interfaces, as the shell hands it to a step of a macro.
struct step_command {
  explicit step_command(std::initializer_list<if_index_t> interfaces) {
    for (const if_index_t it : interfaces) ranges.range[ranges.range_count++] = {it, it};
    range.token_id = TOKEN_CONF_INTERFACES;
    range.arg = &ranges;
    block.parameter_count = 1;
    block.arg_list[0] = &range;
    block.q = transport_open_queue();
  }
  ~step_command() { transport_close_queue(block.q); }
  step_command(const step_command&) = delete;
  step_command& operator=(const step_command&) = delete;

  intf_range_t ranges{};
  param_arg_t range{};
  paraminfo_t block{};
};

using macro_step = int32 (*)(paraminfo_t*, pm_port_cfg_status_t**, uint32*);
using Statuses = std::vector<std::pair<if_index_t, uint32>>;

Statuses run_step(macro_step step, step_command& command, int32 expected_result = 0) {
  pm_port_cfg_status_t* block = nullptr;
  uint32 count = 99;
  EXPECT_EQ(step(&command.block, &block, &count), expected_result);
  const heap_block<pm_port_cfg_status_t> owned(block);
  Statuses statuses;
  for (uint32 i = 0; i < count; ++i) statuses.emplace_back(block[i].if_index, block[i].status);
  return statuses;
}

TEST_F(ClientLibraries, PortsLeaveTheirChannels) {
  const auto step = find<macro_step>("libethpcmcli.so", "pcm_switchport_host_func");
  ASSERT_NE(step, nullptr);
  step_command command{names_.first_port, names_.nobody};
  EXPECT_EQ(run_step(step, command),
            (Statuses{{names_.first_port, 0}, {names_.nobody, uint32{PM_ERR_NO_SUCH_INTERFACE}}}));
  EXPECT_EQ(the_machine().find(names_.first_port)->settings.channel, 0U);
  EXPECT_EQ(the_machine().members_of(names_.channel), std::vector{names_.second_port});
}

TEST_F(ClientLibraries, SwitchedPortsBecomeEdges) {
  const auto step = find<macro_step>("libstp.so", "stp_switchport_host_func");
  ASSERT_NE(step, nullptr);
  the_machine().find(names_.third_port)->settings.layer = 2;
  the_machine().find(names_.routed_port)->settings.layer = 3;
  step_command command{names_.third_port, names_.routed_port};
  EXPECT_EQ(run_step(step, command),
            (Statuses{{names_.third_port, 0}, {names_.routed_port, uint32{PM_ERR_NOT_ALLOWED_ON_INTERFACE}}}));
  EXPECT_TRUE(the_machine().find(names_.third_port)->settings.is_edge);
  EXPECT_FALSE(the_machine().find(names_.routed_port)->settings.is_edge);
}

TEST_F(ClientLibraries, AStepWithoutARangeFails) {
  const auto step = find<macro_step>("libstp.so", "stp_switchport_host_func");
  ASSERT_NE(step, nullptr);
  step_command command{};
  command.range.token_id = 0;
  EXPECT_TRUE(run_step(step, command, PM_ERR_INVALID_RANGE).empty());
}

}  // namespace
}  // namespace host
