// The services, through their client libraries: those that are linked, and those that are opened by name.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "platform/vlan_manager.h"
#include "support/recording_state.h"

namespace pmcli_test {
namespace {

template <typename Record>
octets bytes_of(const Record& record) {
  const auto* const bytes = reinterpret_cast<const uint8*>(&record);
  return octets(bytes, bytes + sizeof record);
}

void append(octets& to, const octets& more) { to.insert(to.end(), more.begin(), more.end()); }

void put_u32(octets& block, std::size_t offset, uint32 value) {
  const be32 number(value);
  if (block.size() < offset + sizeof number) block.resize(offset + sizeof number);
  std::memcpy(&block[offset], &number, sizeof number);
}

// Stores a copy of the block for the library to free.
template <typename Block>
void give(RecordingPlatform& platform, const char* function, const octets& bytes, Block** block) {
  *block = static_cast<Block*>(platform.hand_over(bytes.data(), bytes.size(), function));
}

// Copies the entry of an interface into the library's record.
template <typename Key, typename Record>
int32 answer_from(const char* function, const std::map<Key, Record>& entries, const Key& key, Record* record) {
  if (const int32 error = platform_for(function).failure_of(function); error != 0) return error;
  const auto entry = entries.find(key);
  if (entry == entries.end()) return PM_ERR_NO_SUCH_INTERFACE;
  *record = entry->second;
  return 0;
}

// The records of a range of interfaces, one after the other, each with its index.
template <typename Record>
std::pair<uint32, octets> records_in(const std::map<if_index_t, Record>& entries, const if_index_range_t& range) {
  uint32 count = 0;
  octets block;
  for (auto [if_index, record] : entries) {
    if (if_index < range.low || if_index > range.high) continue;
    if (record.if_index == 0U) record.if_index = if_index;
    append(block, bytes_of(record));
    ++count;
  }
  return {count, block};
}

bool is_ethernet_chassis(uint32 chassis) {
  return chassis == 10 || chassis == 11 || chassis == 17 || (chassis >= 19 && chassis <= 24);
}

octets member_block(uint32 chassis, const std::vector<if_index_t>& members) {
  const bool is_ethernet = is_ethernet_chassis(chassis);
  octets block(PORT_CHANNEL_MEMBERS_BYTES);
  put_u32(block, is_ethernet ? 18 : 8, static_cast<uint32>(members.size()));
  std::size_t entry = is_ethernet ? 26 : 32;
  for (const if_index_t member : members) {
    put_u32(block, entry, member);
    entry += is_ethernet ? 7 : 8;
  }
  return block;
}

octets tracked_block(const std::vector<if_index_t>& tracked) {
  octets block(12 + 4 * 256);
  put_u32(block, 8, static_cast<uint32>(tracked.size()));
  for (std::size_t i = 0; i < tracked.size(); ++i) put_u32(block, 12 + 4 * i, tracked[i]);
  return block;
}

octets address_block(const std::vector<ipconf_if_inet_addr_info_t>& addresses) {
  ipconf_if_inet_addrs_t head{};
  head.num_inet_addrs = static_cast<uint32>(addresses.size());
  octets block = bytes_of(head);
  for (const ipconf_if_inet_addr_info_t& address : addresses) append(block, bytes_of(address));
  return block;
}

// A list for an interface: the odd block of the test, the list of the map, or none.
template <typename Entry, typename Block, typename Encode>
int32 give_list(const char* function, const std::optional<octets>& odd_block,
                const std::map<if_index_t, std::vector<Entry>>& lists, if_index_t if_index, Block** block,
                Encode encode) {
  RecordingPlatform& platform = platform_for(function);
  *block = nullptr;
  if (const int32 error = platform.failure_of(function); error != 0) return error;
  const auto list = lists.find(if_index);
  if (odd_block)
    give(platform, function, *odd_block, block);
  else if (list != lists.end())
    give(platform, function, encode(list->second), block);
  return 0;
}

int32 answer_listing(const char* function, const std::map<if_index_type_t, octets>& listings, if_index_type_t type,
                     mts_msg_ref_t* answer) {
  RecordingPlatform& platform = platform_for(function);
  if (platform.failure_of(function) != 0) return -1;
  const auto listing = listings.find(type);
  if (listing == listings.end()) return -1;
  *answer = receive_message(platform, "a listing", {.payload = listing->second});
  return 0;
}

uint32 configure(const char* function, if_index_type_t type, mts_q_handle_t q, uint32 create, interface_mask_t mask,
                 const intf_range_t* ranges, uint32 timeout) {
  RecordingPlatform& platform = platform_for(function);
  platform.interface_configurations.push_back(
      {type, q, create, mask, {ranges->range, ranges->range + ranges->range_count}, timeout});
  return static_cast<uint32>(platform.failure_of(function));
}

template <typename Value, typename Put>
int32 answer_each(const char* function, const std::map<if_index_t, Value>& values, Value otherwise, if_info_t* records,
                  uint32 count, Put put) {
  RecordingPlatform& platform = platform_for(function);
  if (const int32 error = platform.failure_of(function); error != 0) return error;
  for (uint32 i = 0; i < count; ++i) {
    const auto known = values.find(records[i].ifindex);
    put(records[i], known == values.end() ? otherwise : known->second);
    const auto status = platform.record_statuses.find(function);
    records[i].status = status == platform.record_statuses.end() ? platform.interface_manager_status : status->second;
  }
  return 0;
}

void put_layer(if_info_t& record, uint32 layer) { record.val.layer = layer; }
void put_vlan(if_info_t& record, uint16 vlan) { record.val.vlan.vlan_id = vlan; }

int32 answer_port_stats(const char* function, const std::map<if_index_t, statscl_portcl_stats_msg_t>& entries,
                        if_index_t if_index, statscl_portcl_stats_msg_t* stats) {
  const int32 error = answer_from(function, entries, if_index, stats);
  if (error == 0 && stats->ifidx == 0U) stats->ifidx = if_index;
  return error;
}

int32 statcl_get_port_client_stats(if_index_t if_index, statscl_portcl_stats_msg_t* stats) {
  return answer_port_stats("statcl_get_port_client_stats", platform_for("statcl_get_port_client_stats").port_stats,
                           if_index, stats);
}

int32 statcl_get_port_client_snmp_stats(if_index_t if_index, statscl_portcl_stats_msg_t* stats) {
  return answer_port_stats("statcl_get_port_client_snmp_stats",
                           platform_for("statcl_get_port_client_snmp_stats").snmp_port_stats, if_index, stats);
}

int32 ip_get_loopback_counters(mts_q_handle_t q, if_index_t if_index, ip_if_stats* stats) {
  EXPECT_EQ(q, RecordingPlatform::q());
  const auto& entries = platform_for("ip_get_loopback_counters").loopback_stats;
  return answer_from("ip_get_loopback_counters", entries, if_index, stats) == 0 ? 1 : 0;
}

syserr_t crdcfg_get_port_cap(const if_index_range_t* range, uint32 size, uint8* response) {
  EXPECT_EQ(range->low, range->high);
  EXPECT_EQ(size, sizeof(crdcfg_port_cap_t));
  const auto& entries = platform_for("crdcfg_get_port_cap").capabilities;
  return answer_from("crdcfg_get_port_cap", entries, range->low, reinterpret_cast<crdcfg_port_cap_t*>(response));
}

}  // namespace

void RecordingPlatform::add_default_libraries() {
  libraries[STATCL_LIBRARY] = {{"statcl_get_port_client_stats", statcl_get_port_client_stats},
                               {"statcl_get_port_client_snmp_stats", statcl_get_port_client_snmp_stats},
                               {"statscl_clear_port_client_stats", statscl_clear_port_client_stats}};
  libraries[IP_STATS_LIBRARY] = {{"ip_get_loopback_counters", ip_get_loopback_counters},
                                 {"ip_clear_loopback_counters", ip_clear_loopback_counters}};
  libraries[CRDCFG_LIBRARY] = {{"crdcfg_get_port_cap", crdcfg_get_port_cap}};
  libraries[VLAN_MGR_LIBRARY] = {};
}

}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

platform_runtime_param_t platform_runtime_param_array[PLATFORM_RUNTIME_PARAMS];

int32 pm_cmi_get_port_config(mts_q_handle_t q, uint32 version, uint32 instance, const if_index_range_t* range,
                             uint32* count, pm_port_info_t** records, int32 timeout) {
  RecordingPlatform& platform = platform_for("pm_cmi_get_port_config");
  platform.port_queries.push_back({q, version, instance, *range, timeout});
  *records = nullptr;
  if (const int32 error = platform.failure_of("pm_cmi_get_port_config"); error != 0) return error;
  if (platform.port_config) {
    *count = platform.port_config->count;
    if (platform.port_config->block) give(platform, "pm_cmi_get_port_config", *platform.port_config->block, records);
    return 0;
  }
  const auto [found, block] = records_in(platform.ports, *range);
  if (found == 0) return PM_ERR_NO_SUCH_INTERFACE;
  *count = found;
  give(platform, "pm_cmi_get_port_config", block, records);
  return 0;
}

int32 pm_cmi_get_fcot_info(mts_q_handle_t q, uint32 version, uint32 instance, const if_index_range_t* range,
                           uint32* length, pm_fcot_res_t** response, int32 timeout) {
  RecordingPlatform& platform = platform_for("pm_cmi_get_fcot_info");
  platform.port_queries.push_back({q, version, instance, *range, timeout});
  *response = nullptr;
  if (const int32 error = platform.failure_of("pm_cmi_get_fcot_info"); error != 0) return error;
  const octets block =
      platform.transceiver_block ? *platform.transceiver_block : records_in(platform.transceivers, *range).second;
  if (block.empty() && !platform.transceiver_block) return PM_ERR_NO_SUCH_INTERFACE;
  *length = platform.transceiver_length.value_or(static_cast<uint32>(block.size()));
  if (!block.empty()) give(platform, "pm_cmi_get_fcot_info", block, response);
  return 0;
}

int32 pm_cmi_get_tracked_port_if_list(mts_q_handle_t, if_index_t if_index, void** list, int32) {
  const RecordingPlatform& platform = platform_for("pm_cmi_get_tracked_port_if_list");
  return give_list("pm_cmi_get_tracked_port_if_list", platform.tracked_block, platform.tracked_ports, if_index, list,
                   tracked_block);
}

int32 pm_get_if_index_listing(if_index_type_t type, mts_q_handle_t q, mts_msg_ref_t* answer, int32 timeout) {
  RecordingPlatform& platform = platform_for("pm_get_if_index_listing");
  platform.listing_queries.push_back({type, q, timeout, std::nullopt});
  return answer_listing("pm_get_if_index_listing", platform.listings, type, answer);
}

int32 pm_get_startup_if_index_listing(const char* uri_prefix, if_index_type_t type, mts_q_handle_t q,
                                      mts_msg_ref_t* answer, int32 timeout) {
  RecordingPlatform& platform = platform_for("pm_get_startup_if_index_listing");
  platform.listing_queries.push_back({type, q, timeout, uri_prefix});
  return answer_listing("pm_get_startup_if_index_listing", platform.startup_listings, type, answer);
}

uint32 acfg_pinfo_cfg_type_get(const paraminfo_t*) { return platform_for("acfg_pinfo_cfg_type_get").config_type; }

const char* acfg_pinfo_startup_cfg_uri_prefix_get(const paraminfo_t*) {
  return platform_for("acfg_pinfo_startup_cfg_uri_prefix_get").startup_uri.c_str();
}

uint32 pm_get_mts_sap(if_index_t if_index) {
  const auto& saps = platform_for("pm_get_mts_sap").port_manager_saps;
  const auto known = saps.find(if_index);
  return known == saps.end() ? static_cast<uint32>(MTS_SAP_PORT_MANAGER) : known->second;
}

int32 pm_get_port_info_range(mts_q_handle_t q, if_index_t low, if_index_t high, mts_msg_ref_t* answer) {
  RecordingPlatform& platform = platform_for("pm_get_port_info_range");
  platform.port_ranges_asked.push_back({low, high});
  platform.permission_queues.push_back(q);
  if (const int32 error = platform.failure_of("pm_get_port_info_range"); error != 0) return error;
  *answer = receive_message(platform, "ports of a range", {.payload = records_in(platform.ports, {low, high}).second});
  return 0;
}

int32 pm_parse_get_port_info_range(const mts_msg_ref_t* answer, uint32* num_ports, pm_port_info_t** ports) {
  RecordingPlatform& platform = platform_for("pm_parse_get_port_info_range");
  *ports = nullptr;
  if (const int32 error = platform.failure_of("pm_parse_get_port_info_range"); error != 0) return error;
  const octets records = message_payload(answer);
  if (platform.port_range) {
    *num_ports = platform.port_range->count;
    if (platform.port_range->block) give(platform, "pm_parse_get_port_info_range", *platform.port_range->block, ports);
    return 0;
  }
  *num_ports = static_cast<uint32>(records.size() / sizeof(pm_port_info_t));
  if (*num_ports != 0) give(platform, "pm_parse_get_port_info_range", records, ports);
  return 0;
}

int32 vsan_get_port_trunking_membership(mts_q_handle_t q, if_index_t if_index, vsan_bitset_t* vsans) {
  RecordingPlatform& platform = platform_for("vsan_get_port_trunking_membership");
  platform.permission_queues.push_back(q);
  return answer_from("vsan_get_port_trunking_membership", platform.port_vsans, if_index, vsans);
}

boolean vsh_fc_intf_perm_check(const vsh_fc_intf_perm_check_info_t* info) {
  RecordingPlatform& platform = platform_for("vsh_fc_intf_perm_check");
  if (platform.failure_of("vsh_fc_intf_perm_check") != 0) return 0;
  return platform.is_permitted ? platform.is_permitted(*info) : 1;
}

uint32 pm_cli_config_sub_interface(mts_q_handle_t q, uint32 create, interface_mask_t mask, const intf_range_t* ranges,
                                   uint32 timeout) {
  return configure("pm_cli_config_sub_interface", IF_TYPE_ETHERNET, q, create, mask, ranges, timeout);
}

uint32 pm_cli_config_loopback_interface(mts_q_handle_t q, uint32 create, interface_mask_t mask,
                                        const intf_range_t* ranges, uint32 timeout) {
  return configure("pm_cli_config_loopback_interface", IF_TYPE_LOOPBACK, q, create, mask, ranges, timeout);
}

int32 get_port_channel_members(uint32 chassis_type, if_index_t if_index, void** response) {
  const RecordingPlatform& platform = platform_for("get_port_channel_members");
  return give_list("get_port_channel_members", platform.member_block, platform.channel_members, if_index, response,
                   [=](const std::vector<if_index_t>& members) { return member_block(chassis_type, members); });
}

int32 ipconf_get_if_inet_addrs(mts_q_handle_t, if_index_t if_index, ipconf_if_inet_addrs_t** list) {
  const RecordingPlatform& platform = platform_for("ipconf_get_if_inet_addrs");
  const int32 error =
      give_list("ipconf_get_if_inet_addrs", platform.address_block, platform.addresses, if_index, list, address_block);
  return error != 0 ? error : platform.address_result;
}

int32 mcecm_api_sdb_sh_int_po(if_index_t if_index, char* status) {
  RecordingPlatform& platform = platform_for("mcecm_api_sdb_sh_int_po");
  if (const int32 error = platform.failure_of("mcecm_api_sdb_sh_int_po"); error != 0) return error;
  const std::string& text = platform.multi_chassis_status[if_index];
  std::memcpy(status, text.data(), std::min<std::size_t>(text.size(), MCEC_STATUS_BYTES));
  return 0;
}

int32 im_ext_sbcr_init(uint32 id, uint32 flags, const char* name) {
  RecordingPlatform& platform = platform_for("im_ext_sbcr_init");
  platform.interface_manager_starts.push_back(std::to_string(id) + " " + std::to_string(flags) + " " + name);
  return platform.failure_of("im_ext_sbcr_init");
}

int32 im_get_ifindex_layermode_list(if_info_t* records, uint32 count) {
  const char* const name = "im_get_ifindex_layermode_list";
  RecordingPlatform& platform = platform_for(name);
  for (uint32 i = 0; i < count; ++i) platform.layers_asked.push_back(records[i].ifindex);
  const int32 error = answer_each<uint32>(name, platform.layers, IF_LAYER_2, records, count, put_layer);
  for (uint32 i = 0; error == 0 && i < count; ++i)
    if (const auto known = platform.layer_statuses.find(records[i].ifindex); known != platform.layer_statuses.end())
      records[i].status = known->second;
  return error;
}

int32 im_get_ifindex_native_vlan_list(if_info_t* records, uint32 count) {
  const char* const name = "im_get_ifindex_native_vlan_list";
  return answer_each<uint16>(name, platform_for(name).native_vlans, 1, records, count, put_vlan);
}

int32 im_get_ifindex_access_vlan_list(if_info_t* records, uint32 count) {
  const char* const name = "im_get_ifindex_access_vlan_list";
  return answer_each<uint16>(name, platform_for(name).access_vlans, 1, records, count, put_vlan);
}

int32 pm_get_clear_eth_stats(mts_q_handle_t, if_index_t low, if_index_t high, uint32 get,
                             show_eth_intf_resp_t* response) {
  EXPECT_EQ(low, high);
  EXPECT_EQ(get != 0, response != nullptr);
  if (get == 0) return clear_at("pm_get_clear_eth_stats", low);
  return answer_from("pm_get_clear_eth_stats", platform_for("pm_get_clear_eth_stats").eth_stats, low, response);
}

int32 pm_port_channel_get_clear_eth_stats(mts_q_handle_t, if_index_t if_index, uint32 get,
                                          show_eth_intf_resp_t* response) {
  EXPECT_EQ(get, 1U);
  return answer_from("pm_port_channel_get_clear_eth_stats",
                     platform_for("pm_port_channel_get_clear_eth_stats").channel_eth_stats, if_index, response);
}

void pm_cli_ethernet_intf_stats_print(cmd_rx_handle_t* rx_handle, statscl_portcl_stats_msg_t* stats, uint32 detail) {
  const RecordingPlatform& platform = platform_for("pm_cli_ethernet_intf_stats_print");
  const std::string text =
      "<statistics of " + interface_text(platform, stats->ifidx, false) + ", detail " + std::to_string(detail) + ">\n";
  cmd_prt(rx_handle, text.c_str());
}

int32 pm_get_interface_counters(if_index_t if_index, mts_q_handle_t, pm_if_stat* stats) {
  const auto& entries = platform_for("pm_get_interface_counters").interface_counters;
  return answer_from("pm_get_interface_counters", entries, if_index, stats) == 0 ? 1 : 0;
}

int32 pm_get_proc_net_dev_stats(const char* device, pm_proc_net_dev_stats_t* stats) {
  RecordingPlatform& platform = platform_for("pm_get_proc_net_dev_stats");
  platform.kernel_devices_asked.emplace_back(device);
  const auto& entries = platform.kernel_devices;
  return answer_from("pm_get_proc_net_dev_stats", entries, std::string(device), stats) == 0 ? 0 : -1;
}

int32 pdb_get_chassis_type(uint32* type) {
  RecordingPlatform& platform = platform_for("pdb_get_chassis_type");
  if (const int32 error = platform.failure_of("pdb_get_chassis_type"); error != 0) return error;
  *type = platform.chassis_type;
  return 0;
}

uint32 get_platform_runtime_index(void) { return platform_for("get_platform_runtime_index").runtime_index; }

int32 get_platform_info(platform_info_t* info) {
  RecordingPlatform& platform = platform_for("get_platform_info");
  if (const int32 error = platform.failure_of("get_platform_info"); error != 0) return error;
  info->num_slots = platform.num_slots;
  return 0;
}

int32 get_card_module_info(if_index_t if_index, card_module_info_t* info) {
  RecordingPlatform& platform = platform_for("get_card_module_info");
  if (const int32 error = platform.failure_of("get_card_module_info"); error != 0) return error;
  info->card_type = platform.card_types[if_index];
  return 0;
}

}  // extern "C"
