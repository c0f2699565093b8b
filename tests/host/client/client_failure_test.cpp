// Every client function while its service is lost, rejects, is silent, or answers short.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "client/library_functions.h"
#include "client/request.h"
#include "host/switch/small_machine.h"
#include "host/transport/alarm_soon.h"
#include "messages/calls/command_account.h"
#include "platform/clear_counters.h"
#include "platform/interface_manager.h"
#include "platform/ip_config.h"
#include "platform/ip_statistics.h"
#include "platform/platform_data.h"
#include "platform/port_channel.h"
#include "platform/port_config.h"
#include "platform/port_manager.h"
#include "platform/transceiver.h"
#include "platform/vsan.h"
#include "service/answers.h"
#include "service/device_counters.h"
#include "service/services.h"
#include "support/allocations.h"
#include "transport/failures.h"
#include "transport/transport.h"

namespace host {
namespace {

// How a client reports failures.
enum class convention { error, only_minus_one, zero_is_failure, one_is_failure };

struct failed_call {
  int32 result;
  bool delivered;  // a block or a message came out
};

// One client function, called for an interface for which its service has a full answer. What comes out is freed.
struct client_call {
  const char* name;
  const char* service;
  std::size_t answer_bytes;  // the shortest answer that serves the caller
  convention failures;
  mts_q_handle_t (*queue)(mts_q_handle_t command_queue);
  failed_call (*call)(const small_machine& names, mts_q_handle_t q);
};

mts_q_handle_t of_command(mts_q_handle_t q) { return q; }
mts_q_handle_t of_process(mts_q_handle_t) { return client_queue(); }

failed_call take_block(int32 result, void* block) {
  std::free(block);
  return {result, block != nullptr};
}

// A pointer that must not survive a failure.
template <typename T>
T* stale() {
  return reinterpret_cast<T*>(std::uintptr_t{16});
}

failed_call call_port_config(const small_machine& names, mts_q_handle_t q) {
  const if_index_range_t range{names.first_port, names.second_port};
  uint32 count = 99;
  auto* records = stale<pm_port_info_t>();
  const int32 result = pm_cmi_get_port_config(q, 1, 1, &range, &count, &records, 60);
  EXPECT_EQ(count, result == 0 ? 2u : 0u);
  return take_block(result, records);
}

failed_call call_transceiver(const small_machine& names, mts_q_handle_t q) {
  const if_index_range_t range{names.first_port, names.first_port};
  uint32 length = 99;
  auto* response = stale<pm_fcot_res_t>();
  const int32 result = pm_cmi_get_fcot_info(q, 1, 1, &range, &length, &response, 60);
  EXPECT_EQ(length, result == 0 ? 267u : 0u);
  return take_block(result, response);
}

failed_call call_tracked(const small_machine& names, mts_q_handle_t q) {
  auto* list = stale<void>();
  const int32 result = pm_cmi_get_tracked_port_if_list(q, names.first_port, &list, 60);
  return take_block(result, list);
}

// What became of a message that a client function was to fill; it is dropped.
failed_call take_message(int32 result, mts_q_handle_t q, mts_msg_ref_t& message) {
  const bool delivered = message.id != 0;
  EXPECT_EQ(mts_drop(q, &message), 0);
  return {result, delivered};
}

failed_call call_listing(const small_machine&, mts_q_handle_t q) {
  mts_msg_ref_t message{7, 7};
  const int32 result = pm_get_if_index_listing(IF_TYPE_ETHERNET, q, &message, 60);
  return take_message(result, q, message);
}

failed_call call_startup_listing(const small_machine&, mts_q_handle_t q) {
  mts_msg_ref_t message{7, 7};
  const int32 result = pm_get_startup_if_index_listing("/startup", IF_TYPE_ETHERNET, q, &message, 60);
  return take_message(result, q, message);
}

// Asking and reading the answer are two functions that callers use one after the other.
failed_call call_port_info(const small_machine& names, mts_q_handle_t q) {
  mts_msg_ref_t message{7, 7};
  auto* ports = stale<pm_port_info_t>();
  uint32 num_ports = 99;
  int32 result = pm_get_port_info_range(q, names.first_port, names.second_port, &message);
  EXPECT_EQ(message.id != 0, result == 0);
  if (result != 0) return {result, false};
  result = pm_parse_get_port_info_range(&message, &num_ports, &ports);
  EXPECT_EQ(num_ports == 0, ports == nullptr);
  EXPECT_EQ(mts_drop(q, &message), 0);
  return take_block(result, ports);
}

failed_call call_trunk_membership(const small_machine& names, mts_q_handle_t q) {
  vsan_bitset_t carried{};
  const int32 result = vsan_get_port_trunking_membership(q, names.old_channel, &carried);
  EXPECT_EQ(carried.size, result == 0 ? 512u : 0u) << "a failure leaves the set alone";
  return {result, false};
}

intf_range_t one_range(if_index_t low, if_index_t high) {
  intf_range_t ranges{};
  ranges.range_count = 1;
  ranges.range[0] = {low, high};
  return ranges;
}

// A parameter block whose one argument is a range of interfaces.
struct block_of_range {
  block_of_range(if_index_t low, if_index_t high) : ranges(one_range(low, high)) {
    argument.arg = &ranges;
    param.parameter_count = 1;
    param.arg_list[0] = &argument;
  }
  block_of_range(const block_of_range&) = delete;
  block_of_range& operator=(const block_of_range&) = delete;

  intf_range_t ranges;
  param_arg_t argument{};
  paraminfo_t param{};
};

failed_call call_config_sub_interface(const small_machine& names, mts_q_handle_t q) {
  const intf_range_t ranges = one_range(names.sub_port + 1, names.sub_port + 2);
  return {static_cast<int32>(pm_cli_config_sub_interface(q, 1, 0x800000, &ranges, 120)), false};
}

failed_call call_config_loopback(const small_machine& names, mts_q_handle_t q) {
  const intf_range_t ranges = one_range(names.loopback + 1, names.loopback + 1);
  return {static_cast<int32>(pm_cli_config_loopback_interface(q, 1, 0x4000, &ranges, 120)), false};
}

failed_call call_statistics(const small_machine& names, mts_q_handle_t q) {
  show_eth_intf_resp_t stats;
  return {pm_get_clear_eth_stats(q, names.first_port, names.first_port, 1, &stats), false};
}

failed_call call_clear(const small_machine& names, mts_q_handle_t q) {
  return {pm_get_clear_eth_stats(q, names.first_port, names.first_port, 0, nullptr), false};
}

failed_call call_channel_statistics(const small_machine& names, mts_q_handle_t q) {
  show_eth_intf_resp_t stats;
  return {pm_port_channel_get_clear_eth_stats(q, names.old_channel, 1, &stats), false};
}

failed_call call_counters(const small_machine& names, mts_q_handle_t q) {
  pm_if_stat stats;
  return {pm_get_interface_counters(names.mgmt, q, &stats), false};
}

failed_call call_addresses(const small_machine& names, mts_q_handle_t q) {
  auto* list = stale<ipconf_if_inet_addrs_t>();
  const int32 result = ipconf_get_if_inet_addrs(q, names.routed_port, &list);
  return take_block(result, list);
}

template <int32 (*Query)(if_info_t*, uint32)>
failed_call call_interface_manager(const small_machine& names, mts_q_handle_t) {
  if_info_t record{};
  record.ifindex = names.first_port;
  return {Query(&record, 1), false};
}

failed_call call_members(const small_machine& names, mts_q_handle_t) {
  auto* response = stale<void>();
  const int32 result = get_port_channel_members(11, names.channel, &response);
  return take_block(result, response);
}

failed_call call_multi_chassis(const small_machine& names, mts_q_handle_t) {
  char status[MCEC_STATUS_BYTES] = {};
  const int32 result = mcecm_api_sdb_sh_int_po(names.channel, status);
  EXPECT_STREQ(status, result == 0 ? "peer is alive" : "");
  return {result, false};
}

template <int32 (*Query)(if_index_t, statscl_portcl_stats_msg_t*)>
failed_call call_port_statistics(const small_machine& names, mts_q_handle_t) {
  statscl_portcl_stats_msg_t stats{};
  const int32 result = Query(names.first_port, &stats);
  EXPECT_EQ(stats.ifidx, result == 0 ? names.first_port : 0u);
  return {result, false};
}

failed_call call_loopback(const small_machine& names, mts_q_handle_t q) {
  ip_if_stats stats{};
  return {get_loopback_counters(q, names.loopback, &stats), false};
}

failed_call call_capability(const small_machine& names, mts_q_handle_t) {
  const if_index_range_t range{names.first_port, names.first_port};
  uint8 response[sizeof(crdcfg_port_cap_t)] = {};
  return {get_port_capability(&range, sizeof response, response), false};
}

failed_call call_clear_ports(const small_machine& names, mts_q_handle_t q) {
  const if_index_t ports[] = {names.first_port, names.nobody};
  auto* list = stale<uint8>();
  const int32 result = pm_clear_port_counters(q, 2, ports, 1, &list, 1);
  return take_block(result, list);
}

failed_call call_clear_management(const small_machine& names, mts_q_handle_t q) {
  return {pm_clear_interface_counters("eth0", names.mgmt, q), false};
}

failed_call call_clear_channel(const small_machine& names, mts_q_handle_t q) {
  return {dstats_clear_counters(q, names.channel, 1, 1, 5), false};
}

failed_call call_next_channel(const small_machine& names, mts_q_handle_t) {
  if_index_t next = 4711;
  const int32 result = pcmap_get_next_port_channel(0, &next);
  EXPECT_EQ(next, result == 0 ? names.old_channel : 4711u) << "a failure stores nothing";
  return {result, false};
}

failed_call call_clear_port_statistics(const small_machine& names, mts_q_handle_t) {
  return {clear_port_statistics(names.first_port), false};
}

failed_call call_clear_loopback(const small_machine& names, mts_q_handle_t) {
  return {clear_loopback_counters(names.loopback), false};
}

// A description, which the port keeps.
failed_call call_set_config(const small_machine& names, mts_q_handle_t q) {
  const if_index_range_t range{names.first_port, names.second_port};
  const char name[PM_PORT_NAME_BYTES] = "a name that is too long to be kept without memory of its own";
  auto* statuses = stale<pm_port_cfg_status_t>();
  uint32 count = 99;
  const int32 result =
      pm_cmi_set_port_config(q, "", 0, 1, &range, PM_CFG_NAME, PM_PORT_NAME_BYTES, name, &statuses, &count, 60);
  EXPECT_EQ(count, statuses != nullptr ? 2u : 0u);
  return take_block(result, statuses);
}

// A step of a macro.
template <int32 (*Step)(const paraminfo_t*, pm_port_cfg_status_t**, uint32*)>
failed_call call_step(const small_machine& names, mts_q_handle_t q) {
  block_of_range block(names.first_port, names.second_port);
  block.argument.token_id = TOKEN_CONF_INTERFACES;
  block.param.q = q;
  auto* statuses = stale<pm_port_cfg_status_t>();
  uint32 count = 99;
  const int32 result = Step(&block.param, &statuses, &count);
  EXPECT_EQ(count, statuses != nullptr ? 2u : 0u);
  return take_block(result, statuses);
}

// The only client that says on the terminal what went wrong.
failed_call clear_channel_ranges(const small_machine& names, mts_q_handle_t q) {
  block_of_range block(names.channel, names.channel);
  block.argument.type = PARAM_TYPE_INTERFACES;
  block.param.q = q;
  return {pm_cli_clear_ethernet_channel_counters(&block.param), false};
}

failed_call call_clear_channel_ranges(const small_machine& names, mts_q_handle_t q) {
  testing::internal::CaptureStdout();
  const failed_call cleared = clear_channel_ranges(names, q);
  std::fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout().empty(), cleared.result == 0);
  return cleared;
}

using enum convention;
constexpr std::size_t kHead = 8;
failed_call call_chassis_type(const small_machine&, mts_q_handle_t) {
  uint32 type = 0;
  return {pdb_get_chassis_type(&type), false};
}

failed_call call_platform_info(const small_machine&, mts_q_handle_t) {
  platform_info_t info{};
  return {get_platform_info(&info), false};
}

failed_call call_card(const small_machine& names, mts_q_handle_t) {
  card_module_info_t info{};
  return {get_card_module_info(names.first_port, &info), false};
}

failed_call call_device_counters(const small_machine&, mts_q_handle_t) {
  pm_proc_net_dev_stats_t stats{};
  return {pm_get_proc_net_dev_stats("lo", &stats), false};
}

const client_call kCalls[] = {
    {"pm_cmi_get_port_config", "port-manager", kHead + 2 * 328, error, of_command, call_port_config},
    {"pm_cmi_get_fcot_info", "port-manager", kHead + 267, error, of_command, call_transceiver},
    {"pm_cmi_get_tracked_port_if_list", "port-manager", kHead + 2 * 4, error, of_command, call_tracked},
    {"pm_get_if_index_listing", "port-manager", 4 + 3 * 4, only_minus_one, of_command, call_listing},
    {"pm_get_clear_eth_stats, get", "port-manager", kHead + 320, error, of_command, call_statistics},
    {"pm_get_clear_eth_stats, clear", "port-manager", kHead, error, of_command, call_clear},
    {"pm_port_channel_get_clear_eth_stats", "port-manager", kHead + 320, error, of_command, call_channel_statistics},
    {"pm_get_interface_counters", "port-manager", kHead + 528, zero_is_failure, of_command, call_counters},
    {"ipconf_get_if_inet_addrs", "ip", kHead + 2 * 28, error, of_command, call_addresses},
    {"im_get_ifindex_layermode_list", "interface-manager", kHead + 8, error, of_process,
     call_interface_manager<im_get_ifindex_layermode_list>},
    {"im_get_ifindex_native_vlan_list", "interface-manager", kHead + 8, error, of_process,
     call_interface_manager<im_get_ifindex_native_vlan_list>},
    {"im_get_ifindex_access_vlan_list", "interface-manager", kHead + 8, error, of_process,
     call_interface_manager<im_get_ifindex_access_vlan_list>},
    {"get_port_channel_members", "port-channel", kHead + 2 * 4, error, of_process, call_members},
    {"mcecm_api_sdb_sh_int_po", "port-channel", kHead + 256, error, of_process, call_multi_chassis},
    {"get_port_statistics", "statistics", kHead + 688, error, of_process, call_port_statistics<get_port_statistics>},
    {"get_port_snmp_statistics", "statistics", kHead + 688, error, of_process,
     call_port_statistics<get_port_snmp_statistics>},
    {"get_loopback_counters", "statistics", kHead + 200, zero_is_failure, of_command, call_loopback},
    {"pm_get_startup_if_index_listing", "port-manager", 4 + 3 * 4, only_minus_one, of_command, call_startup_listing},
    {"pm_get_port_info_range", "port-manager", kHead + 2 * 328, error, of_command, call_port_info},
    {"vsan_get_port_trunking_membership", "vsan-manager", kHead + 516, error, of_command, call_trunk_membership},
    {"pm_cli_config_sub_interface", "port-manager", kHead, error, of_command, call_config_sub_interface},
    {"pm_cli_config_loopback_interface", "port-manager", kHead, error, of_command, call_config_loopback},
    {"pm_clear_port_counters", "port-manager", 1 + 2 * 8, error, of_command, call_clear_ports},
    {"pm_clear_interface_counters", "port-manager", kHead, zero_is_failure, of_command, call_clear_management},
    {"dstats_clear_counters", "statistics", kHead, error, of_command, call_clear_channel},
    {"pcmap_get_next_port_channel", "port-channel", kHead + 4, error, of_process, call_next_channel},
    {"clear_port_statistics", "statistics", kHead, error, of_process, call_clear_port_statistics},
    {"clear_loopback_counters", "statistics", kHead, zero_is_failure, of_process, call_clear_loopback},
    {"pm_cli_clear_ethernet_channel_counters", "port-manager", kHead, one_is_failure, of_command,
     call_clear_channel_ranges},
    {"get_port_capability", "card-config", kHead + 124, error, of_process, call_capability},
    {"pm_cmi_set_port_config", "port-manager", kHead + 2 * 8, error, of_command, call_set_config},
    {"leave_channels", "port-channel", kHead + 2 * 8, error, of_command, call_step<leave_channels>},
    {"pdb_get_chassis_type", "hardware", kHead + 40, error, of_process, call_chassis_type},
    {"get_platform_info", "hardware", kHead + 40, error, of_process, call_platform_info},
    {"get_card_module_info", "hardware", kHead + 12, error, of_process, call_card},
    {"pm_get_proc_net_dev_stats", "hardware", kHead + 64, error, of_process, call_device_counters},
    {"make_edge_ports", "spanning-tree", kHead + 2 * 8, error, of_command, call_step<make_edge_ports>},
};

void PrintTo(const client_call& tested, std::ostream* out) { *out << tested.name; }

class ClientFailures : public testing::TestWithParam<client_call> {
 protected:
  ClientFailures() {
    transport_register(all_services());
    before_ = transport_accounts();
    q_ = transport_open_queue();
  }
  ~ClientFailures() override {
    inject_fault(injected_fault::kind::none);
    transport_cancel(false);
    transport_close_queue(q_);
    const transport_account now = transport_accounts();
    EXPECT_EQ(now.sent - before_.sent + now.received - before_.received, now.dropped - before_.dropped);
    EXPECT_EQ(now.dropped_twice, before_.dropped_twice);
    EXPECT_EQ(now.never_dropped, before_.never_dropped);
  }

  static void inject_fault(injected_fault::kind what, std::size_t number = 0) {
    ASSERT_TRUE(transport_inject_fault(GetParam().service, {what, static_cast<uint32>(number)}));
  }

  failed_call call() const { return GetParam().call(names_, q_); }
  int32 error_of_transport() const { return mts_errno_get(GetParam().queue(q_)); }

  // The result that stands for a failure, by the function's convention.
  static int32 failure(int32 error) {
    switch (GetParam().failures) {
      case only_minus_one: return -1;
      case zero_is_failure: return 0;
      case one_is_failure: return 1;
      default: return error;
    }
  }

  static int32 success() { return GetParam().failures == zero_is_failure ? 1 : 0; }

  small_machine names_ = install_small_machine();
  transport_account before_;
  mts_q_handle_t q_;
};

TEST_P(ClientFailures, NoFaultSucceeds) { EXPECT_EQ(call().result, success()); }

TEST_P(ClientFailures, LostServiceIsATransportFailure) {
  inject_fault(injected_fault::kind::lost);

  const failed_call got = call();

  EXPECT_EQ(got.result, failure(-1));
  EXPECT_FALSE(got.delivered);
  EXPECT_EQ(error_of_transport(), ECONNREFUSED);
}

TEST_P(ClientFailures, SilentServiceIsWaitedForUntilTheUserGivesUp) {
  inject_fault(injected_fault::kind::silent);
  const alarm_soon alarm([](int) { transport_cancel(true); });

  const failed_call got = call();

  EXPECT_EQ(got.result, failure(-1));
  EXPECT_FALSE(got.delivered);
  EXPECT_EQ(error_of_transport(), ECANCELED);
}

TEST_P(ClientFailures, CancelledWaitIsATransportFailure) {
  transport_cancel(true);

  const failed_call got = call();

  EXPECT_EQ(got.result, failure(-1));
  EXPECT_FALSE(got.delivered);
  EXPECT_EQ(error_of_transport(), ECANCELED);
}

TEST_P(ClientFailures, RejectedRequestIsAGeneralFailure) {
  inject_fault(injected_fault::kind::reject);

  const failed_call got = call();

  EXPECT_EQ(got.result, failure(PM_ERR_GENERAL));
  EXPECT_FALSE(got.delivered);
}

// Functions to which an error is an answer: a change is refused, or there is no other port-channel.
bool is_answered_by_errors(std::string_view name) {
  constexpr std::string_view kNames[] = {"pm_get_clear_eth_stats, clear",
                                         "pm_cli_config_sub_interface",
                                         "pm_cli_config_loopback_interface",
                                         "pm_clear_interface_counters",
                                         "dstats_clear_counters",
                                         "clear_port_statistics",
                                         "clear_loopback_counters",
                                         "pm_cli_clear_ethernet_channel_counters",
                                         "pcmap_get_next_port_channel",
                                         "pm_cmi_set_port_config",
                                         "leave_channels",
                                         "make_edge_ports",
                                         "get_card_module_info",
                                         "pm_get_proc_net_dev_stats"};
  return std::ranges::find(kNames, name) != std::end(kNames);
}

TEST_P(ClientFailures, AnErrorThatTheServiceReportsIsNoted) {
  const client_call& tested = GetParam();
  if (tested.failures == only_minus_one || tested.name == std::string_view("pm_clear_port_counters"))
    return;  // there is no error in its answer
  const auto all = all_services();
  service failing = *std::ranges::find(all, tested.service, &service::name);
  failing.serve = [](mts_opc_t, std::span<const std::byte>) { return answer_error(PM_ERR_VALUE_OUT_OF_RANGE); };
  failing.is_whole = nullptr;
  transport_register({&failing, 1});
  forget_failures();

  EXPECT_EQ(call().result, failure(PM_ERR_VALUE_OUT_OF_RANGE));

  const std::vector<host::failure> noted(noted_failures().begin(), noted_failures().end());
  if (is_answered_by_errors(tested.name))
    EXPECT_EQ(noted, std::vector<host::failure>{});
  else
    EXPECT_EQ(noted, (std::vector<host::failure>{{tested.service, fault::error, PM_ERR_VALUE_OUT_OF_RANGE}}));
  transport_register(all_services());
}

TEST_P(ClientFailures, InterruptionsDoNotShow) {
  inject_fault(injected_fault::kind::interrupt, 5);

  EXPECT_EQ(call().result, success());
}

TEST_P(ClientFailures, AnswerCutAtAnyByteIsAGeneralFailure) {
  const std::size_t whole = GetParam().answer_bytes;
  for (std::size_t left = 0; left < whole; ++left) {
    inject_fault(injected_fault::kind::cut, left);
    const failed_call got = call();
    EXPECT_EQ(got.result, failure(PM_ERR_GENERAL)) << "cut to " << left;
    EXPECT_FALSE(got.delivered) << "cut to " << left;
  }
  inject_fault(injected_fault::kind::cut, whole);
  EXPECT_EQ(call().result, success()) << "the whole answer has " << whole << " bytes";
}

// Callers are C: they get the failure of their contract, and no exception.
TEST_P(ClientFailures, MemoryThatRunsOutIsAFailure) {
  call();  // what is made once is there
  const auto call_without_memory =
      GetParam().call == call_clear_channel_ranges ? clear_channel_ranges : GetParam().call;
  std::size_t failures = 0;
  for (std::size_t spared = 0;; ++spared) {
    command_account account(q_);  // what is noted in an empty one needs memory
    transport_take_buffer();      // so does an answer
    const pmcli_test::failing_allocation memory(spared);
    const failed_call got = call_without_memory(names_, q_);
    if (!memory.has_failed()) break;
    if (got.result == success()) continue;  // it was done without that
    ++failures;
    EXPECT_TRUE(got.result == failure(PM_ERR_GENERAL) || got.result == failure(-1)) << spared << ": " << got.result;
    EXPECT_FALSE(got.delivered) << spared;
  }
  EXPECT_NE(failures, 0U);
}

std::string name_of(const testing::TestParamInfo<client_call>& instance) {
  std::string name = instance.param.name;
  std::erase_if(name, [](unsigned char c) { return !std::isalnum(c) && c != '_'; });
  return name;
}

TEST(KernelCountersClient, ACounterThatItsMemberCannotHoldIsTheLargestValue) {
  const pm_proc_net_dev_stats_t record = device_record(
      {.rx_bytes = 5'000'000'000, .rx_packets = 4'294'967'295, .tx_bytes = 4'294'967'296, .tx_packets = 7});
  EXPECT_EQ(record.rx_bytes, 4'294'967'295U);
  EXPECT_EQ(record.rx_packets, 4'294'967'295U);
  EXPECT_EQ(record.tx_bytes, 4'294'967'295U);
  EXPECT_EQ(record.tx_packets, 7U);
}

TEST(KernelCountersClient, MemoryThatRunsOutIsAFailure) {
  transport_register(all_services());
  pm_proc_net_dev_stats_t stats{};
  ASSERT_EQ(pm_get_proc_net_dev_stats("lo", &stats), 0);
  transport_take_buffer();  // an answer needs memory
  const pmcli_test::failing_allocation memory(0);
  EXPECT_EQ(pm_get_proc_net_dev_stats("lo", &stats), PM_ERR_GENERAL);
}

TEST(KernelCountersClient, ANameThatIsTooLongIsNoDevice) {
  pm_proc_net_dev_stats_t stats{};
  EXPECT_EQ(pm_get_proc_net_dev_stats("sixteen-letters-", &stats), PM_ERR_NO_SUCH_INTERFACE);
}

INSTANTIATE_TEST_SUITE_P(EveryClient, ClientFailures, testing::ValuesIn(kCalls), name_of);

// A service that promises more records than it sends, for the clients whose answers are counted.
reply promise_more(mts_opc_t, std::span<const std::byte>) {
  reply answer;
  answer.payload.assign(16, std::byte{0});
  std::memset(answer.payload.data() + 4, 0xFF, 4);
  return answer;
}

// The same in the form of a listing.
reply list_more(mts_opc_t, std::span<const std::byte>) {
  reply answer;
  answer.payload.assign(16, std::byte{0xFF});
  return answer;
}

// A service that reports success and has nothing to say.
reply say_nothing(mts_opc_t, std::span<const std::byte>) {
  reply answer;
  answer.payload.assign(8, std::byte{0});
  return answer;
}

class ClientsOfBrokenServices : public ClientFailures {
 protected:
  static void replace(service_function broken) {
    for (service replaced : all_services()) {
      if (replaced.name != std::string_view(GetParam().service)) continue;
      replaced.serve = broken;
      transport_register({&replaced, 1});
    }
  }
  ~ClientsOfBrokenServices() override { transport_register(all_services()); }
};

TEST_P(ClientsOfBrokenServices, CountIsBelievedOnlyAsFarAsThePayloadReaches) {
  const bool begins_with_the_count = GetParam().failures == only_minus_one || GetParam().call == call_clear_ports;
  replace(begins_with_the_count ? list_more : promise_more);

  const failed_call got = call();

  EXPECT_EQ(got.result, failure(PM_ERR_GENERAL));
  EXPECT_FALSE(got.delivered);
}

TEST_P(ClientsOfBrokenServices, SuccessWithoutARecordIsNotBelieved) {
  const bool needs_no_record =
      GetParam().call == call_tracked || GetParam().call == call_members || GetParam().call == call_addresses ||
      GetParam().call == call_clear || GetParam().call == call_listing || GetParam().call == call_startup_listing ||
      GetParam().call == call_port_info || GetParam().call == call_config_sub_interface ||
      GetParam().call == call_config_loopback || GetParam().call == call_clear_ports ||
      GetParam().call == call_clear_management || GetParam().call == call_clear_channel ||
      GetParam().call == call_clear_port_statistics || GetParam().call == call_clear_loopback ||
      GetParam().call == call_clear_channel_ranges || GetParam().call == call_set_config ||
      GetParam().call == call_step<leave_channels> || GetParam().call == call_step<make_edge_ports>;
  replace(say_nothing);

  EXPECT_EQ(call().result, needs_no_record ? success() : failure(PM_ERR_GENERAL));
}

INSTANTIATE_TEST_SUITE_P(EveryClient, ClientsOfBrokenServices, testing::ValuesIn(kCalls), name_of);

}  // namespace
}  // namespace host
