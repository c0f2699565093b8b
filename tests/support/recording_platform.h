// The recording platform: everything that the library expects from a switch, programmable by a test, recorded and
// accounted for.
//
//   RecordingPlatform platform;
//   platform.ports[ethernet(1, 1)] = record;
//   pm_cli_show_eth_port_info(platform.output(), platform.q(), 1, ethernet(1, 1));
//   EXPECT_EQ(platform.text(), "...");
//   EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A01D8, ethernet(1, 1)}, {0x302A0204, "uplink"}}));
//
// One platform lives at a time. While it lives, stdout is a stream of its own, and what the library allocates, opens,
// sends and receives is watched; what is not released when it ends fails the test. Tests are written inside namespace
// pmcli_test.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "platform/bitset.h"
#include "platform/card_config.h"
#include "platform/clear_counters.h"
#include "platform/cmd_channel.h"
#include "platform/eth_statistics.h"
#include "platform/if_index.h"
#include "platform/interface_manager.h"
#include "platform/ip_config.h"
#include "platform/ip_statistics.h"
#include "platform/mts.h"
#include "platform/paraminfo.h"
#include "platform/platform_data.h"
#include "platform/port_channel.h"
#include "platform/port_config.h"
#include "platform/port_manager.h"
#include "platform/satellite.h"
#include "platform/startup_config.h"
#include "platform/syserr.h"
#include "platform/transceiver.h"
#include "platform/vlan_manager.h"
#include "platform/vsan.h"
#include "platform/vsh.h"

namespace pmcli_test {

// ---- Interface indexes of the tests' switch; modules and ports count from 1, as in names
// ---------------------------------

if_index_t ethernet(uint32 module, uint32 port, if_index_type_t type = IF_TYPE_ETHERNET);  // "Ethernet1/1", "Eth1/1"
if_index_t fibre_channel(uint32 module, uint32 port);                                      // "fc1/1"
if_index_t satellite(uint32 unit, uint32 module, uint32 port);                             // "Ethernet100/1/1"
if_index_t sub_interface(if_index_t parent, uint32 number);                                // "Ethernet1/1.100"
if_index_t port_channel(uint32 channel, if_index_type_t type = IF_TYPE_ETH_PORT_CHANNEL,   // "port-channel3", "Po3"
                        pc_subtype_t subtype = PC_SUBTYPE_ORDINARY);
if_index_t numbered(if_index_type_t type, uint32 number);  // any kind that has a number and no place
if_index_t loopback(uint32 number);                        // "loopback0"
if_index_t vethernet(uint32 number);                       // "Vethernet1"
if_index_t mgmt(uint32 port = 0);                          // "mgmt0"

// ---- What was printed
// ----------------------------------------------------------------------------------------------------

// A bound value: a number for the codes of 32 and 64 bits, else its text (MAC "0011.2233.4455", IPv4 "10.0.0.1", float
// "-3.05").
struct tuple_value {
  tuple_value(const char* text) : held(std::string(text)) {}
  tuple_value(std::string text) : held(std::move(text)) {}
  template <typename Number>
  requires std::is_integral_v<Number> || std::is_enum_v<Number> tuple_value(Number number)
      : held(static_cast<uint64>(number)) {}
  bool operator==(const tuple_value&) const = default;

  std::variant<uint64, std::string> held;
};

struct bound_tuple {
  uint32 id;
  tuple_value value;
  bool operator==(const bound_tuple&) const = default;
};
using Tuples = std::vector<bound_tuple>;
void PrintTo(const bound_tuple& tuple, std::ostream* out);

// What one cmd_prt() printed.
struct printed_piece {
  std::string format;
  std::string text;
  Tuples tuples;
  std::vector<std::string> values;  // of each tuple the whole text, neither padded nor cut
};

// ---- Messages
// ------------------------------------------------------------------------------------------------------------

using octets = std::vector<uint8>;

struct mts_request {
  uint32 node;
  uint32 sap;
  mts_opc_t opcode;
  octets payload;
};

// What a service does with a request.
struct mts_reply {
  octets payload = {};              // empty: a null payload
  bool rejected = false;            // answers with a rejection
  int32 receive_error = 0;          // not 0: mts_recv() fails with this reason
  uint32 interrupted_receives = 0;  // so many times mts_recv() is interrupted first
};

// ---- Libraries opened by name
// --------------------------------------------------------------------------------------------

// A function behind a symbol. Null: dlsym() finds nothing and dlerror() says nothing.
struct library_function {
  library_function() = default;
  library_function(std::nullptr_t) {}
  template <typename Function>  // a function, or a lambda without captures
  requires std::is_pointer_v<decltype(+std::declval<Function>())> library_function(Function function)
      : address(reinterpret_cast<void*>(+function)) {}

  void* address = nullptr;
};
using library_symbols = std::map<std::string, library_function>;

// ---- The platform
// --------------------------------------------------------------------------------------------------------

class RecordingPlatform {
 public:
  RecordingPlatform();
  ~RecordingPlatform();  // calls expect_all_released()
  RecordingPlatform(const RecordingPlatform&) = delete;
  RecordingPlatform& operator=(const RecordingPlatform&) = delete;

  // The one that lives; null when none does.
  static RecordingPlatform* active();

  // -- The command --

  cmd_rx_handle_t* output();  // the handle that cmd_paraminfo_to_rxhandle() gives, too
  static constexpr mts_q_handle_t q() { return 7; }

  // A parameter block on queue q(): the first argument is this interface, of type PARAM_TYPE_UINT32. It lives as long
  // as the platform; change what the test needs. Further arguments are added by add_argument().
  paraminfo_t* show_command(uint32 command_id, if_index_t if_index);
  param_arg_t* add_argument(paraminfo_t* param, param_type_t type, void* arg);

  // -- What came out --

  std::string text() const { return text_; }                     // everything, in order
  std::string terminal() const { return terminal_; }             // printf, puts and their kind only
  Tuples tuples() const;                                         // every bound value, in order
  std::vector<printed_piece> pieces;                             // one for each cmd_prt()
  uint32 short_rows = 0;                                         // calls of cmd_print_short()
  uint32 sends = 0;                                              // calls of cmd_prt_send()
  std::vector<std::string> failures;                             // texts of cmd_rsp_send_nok()
  std::vector<std::vector<vsh_intf_mono_range_t>> error_ranges;  // of cmd_mrange_error_set()
  std::vector<std::pair<int32, int32>> mts_errors;  // kind and reason; printed as "<transport failure KIND REASON>\n"
  std::map<uint32, std::map<uint32, std::string>> enum_texts;  // by tag and value; without one the number is shown
  void clear_output();  // forgets texts, pieces and tuples; not what must be released
  void add_text(std::string_view text, bool is_terminal);

  // -- What was called: names of platform, loader and heap functions that can fail, in order --

  std::vector<std::string> calls;
  uint32 count(std::string_view function) const;

  // -- Failing --

  // From now on this function fails with this result and stores nothing. Functions that return a pointer fail with
  // null, whatever `result` is; "mts_is_reject" says yes, "mts_payload_size" gives 0, and the message of a failed
  // "mts_drop" is gone all the same. A result of -1 makes `mts_errno` the reason that mts_errno_get() gives.
  void fail_with(const std::string& function, int32 result = -1);
  int32 mts_errno = 110;

  // The nth call that can fail (counted from 1) fails so; 0 is none. See failure_walk.h.
  void fail_call(uint32 nth, int32 result = -1);
  const std::string& failed_call() const { return failed_call_; }  // its name; empty when it was not reached

  // For functions that a test supplies: counts as a call that can fail, and says with what; 0 is "go on".
  int32 failure_of(const std::string& function);

  // -- Services. An interface without an entry is unknown to the service, which then fails with
  // PM_ERR_NO_SUCH_INTERFACE
  //    unless said otherwise. --

  std::map<if_index_t, pm_port_info_t> ports;  // if_index in the record is filled in when it is 0
  // Takes the place of `ports` for odd answers: count and block (null: none) as they are given, copied to the heap.
  struct port_config_answer {
    uint32 count;
    std::optional<octets> block;
  };
  std::optional<port_config_answer> port_config;
  struct port_query {
    mts_q_handle_t q;
    uint32 version;
    uint32 instance;
    if_index_range_t range;
    int32 timeout;
  };
  std::vector<port_query> port_queries;  // of pm_cmi_get_port_config() and pm_cmi_get_fcot_info()
  std::map<if_index_t, pm_fcot_res_t> transceivers;
  std::optional<octets> transceiver_block;                                  // takes the place of `transceivers`
  std::optional<uint32> transceiver_length;                                 // takes the place of the block's length
  std::map<if_index_t, std::vector<if_index_t>> tracked_ports;              // without an entry: a null list
  std::map<if_index_t, std::vector<if_index_t>> channel_members;            // without an entry: a null list
  std::map<if_index_t, std::string> multi_chassis_status;                   // without an entry: empty
  std::map<if_index_t, std::vector<ipconf_if_inet_addr_info_t>> addresses;  // without an entry: a null list
  std::map<if_index_type_t, octets> listings;                               // payloads of pm_get_if_index_listing()
  // Each takes the place of the map above it, byte for byte.
  std::optional<octets> tracked_block;
  std::optional<octets> member_block;
  std::optional<octets> address_block;
  int32 address_result = 0;  // of ipconf_get_if_inet_addrs(), which hands its list over whatever this is

  std::map<if_index_t, uint32> layers;                // without an entry: IF_LAYER_2
  std::map<if_index_t, uint16> native_vlans;          // without an entry: 1
  std::map<if_index_t, uint16> access_vlans;          // without an entry: 1
  int32 interface_manager_status = 0;                 // the status in each answered record
  std::map<std::string, int32> record_statuses;       // the same by function, in its place
  std::map<if_index_t, int32> layer_statuses;         // the same by interface, of the layer query
  std::vector<if_index_t> layers_asked;               // of im_get_ifindex_layermode_list(), in order
  std::vector<std::string> interface_manager_starts;  // arguments of im_ext_sbcr_init(), as "262 0 clish"

  std::map<if_index_t, show_eth_intf_resp_t> eth_stats;           // pm_get_clear_eth_stats()
  std::map<if_index_t, show_eth_intf_resp_t> channel_eth_stats;   // pm_port_channel_get_clear_eth_stats()
  std::map<if_index_t, pm_if_stat> interface_counters;            // pm_get_interface_counters(); without: it returns 0
  std::map<std::string, pm_proc_net_dev_stats_t> kernel_devices;  // pm_get_proc_net_dev_stats(); without: -1
  std::vector<std::string> kernel_devices_asked;

  // -- Clearing counters --

  // What was cleared, in order: "OWNER INTERFACE", where OWNER is the function that was called and INTERFACE the name;
  // for the kernel device of a management port the name of the device stands behind it.
  std::vector<std::string> cleared;
  std::map<if_index_t, int32> clear_errors;  // what clearing an interface gives at any owner; without an entry: success
  std::vector<std::vector<if_index_t>> clear_requests;  // of pm_clear_port_counters()
  // Takes the place of its list of results, which has an entry for each interface; empty: a null list.
  std::optional<octets> clear_block;
  std::vector<if_index_t> channel_map;  // the answers of pcmap_get_next_port_channel(), one after the other
  std::vector<const paraminfo_t*> channel_clearings;  // of pm_cli_clear_ethernet_channel_counters()

  // -- Settings of ports --

  struct setting_request {  // of pm_cmi_set_port_config()
    mts_q_handle_t q;
    std::string username;
    uint32 session_id;
    std::vector<std::pair<if_index_t, if_index_t>> ranges;
    uint8 type;
    octets value;
    int32 timeout;
  };
  std::vector<setting_request> setting_requests;
  // Interfaces and statuses of the answer, in order; without it the low end of each range with 0.
  std::optional<std::vector<std::pair<if_index_t, uint32>>> setting_results;
  std::optional<uint32> null_results;  // answers with this count and no list
  std::optional<std::vector<std::pair<if_index_t, uint32>>> results_in_spite_of_failure;  // a failing call leaves these
  uint32 vsan_restricted = 0;  // of vsh_is_user_vsan_restricted()
  std::set<uint32> tamber_lindo_cards;
  std::set<uint32> corvid_cards;

  // -- Transceivers --

  std::map<if_index_t, mts_get_sfp_diag_info_t> diagnostics;  // without an entry: PM_ERR_SFP_NO_DIAGNOSTICS
  std::map<if_index_t, satmgr_fport_info_t> fabric_ports;     // identifiers of slots are 1000 times their number
  std::vector<std::pair<uint32, uint32>> satellite_queries;   // unit and slot of pm_get_sat_sfp_diag_info()
  std::map<std::string, std::string> paths;                   // of uri_map_targetfs_path_get(), by name

  // -- Trunks and modules --

  std::map<if_index_t, if_index_t> channel_of;  // of members; without an entry in none
  uint32 vdc = 1;                               // the virtual device context
  std::set<uint32> resource_modules;            // keys of modules that share out resources
  octets resources;                             // payload of pm_get_module_resources()
  struct resource_query {
    mts_q_handle_t q;
    uint32 count, category, id, types, module_key;
    bool operator==(const resource_query&) const = default;
  };
  std::vector<resource_query> resource_queries;

  // -- The kernel --

  struct kernel_interface {
    std::vector<uint8> hardware_address;  // six bytes
    int mtu_bytes = 1500;
    bool is_up = true;
  };
  std::map<std::string, kernel_interface> kernel_interfaces;  // by device name; others are unknown to the kernel
  std::set<std::string> silent_requests;                      // interface requests that fail, as "SIOCGIFMTU"
  // "socket 1", "SIOCGIFMTU eth1", "close 1", in order; a socket that fails is "no socket".
  std::vector<std::string> kernel_events;
  std::set<std::string> files;              // that open() finds
  std::vector<std::string> shell_commands;  // of system(), which runs nothing

  // -- Listing and permissions --

  uint32 config_type = ACFG_RUNNING;
  std::string startup_uri = "startup:";
  std::map<if_index_type_t, octets> startup_listings;  // payloads of pm_get_startup_if_index_listing()
  struct listing_query {
    if_index_type_t type;
    mts_q_handle_t q;
    int32 timeout;
    std::optional<std::string> startup_uri;  // none: the running configuration was asked for
    bool operator==(const listing_query&) const = default;
  };
  std::vector<listing_query> listing_queries;
  std::function<int(if_index_t, if_index_t)> compare_aliases;  // without it by number
  std::map<if_index_t, uint32> port_manager_saps;              // without an entry: MTS_SAP_PORT_MANAGER
  std::optional<port_config_answer> port_range;     // takes the place of `ports` in pm_parse_get_port_info_range()
  std::vector<if_index_range_t> port_ranges_asked;  // of pm_get_port_info_range()
  std::map<if_index_t, vsan_bitset_t> port_vsans;
  std::vector<mts_q_handle_t> permission_queues;  // of each call of the service in a permission check
  std::function<boolean(const vsh_fc_intf_perm_check_info_t&)> is_permitted;  // without it all is
  struct interface_configuration {
    if_index_type_t type;  // IF_TYPE_LOOPBACK, or IF_TYPE_ETHERNET for sub-interfaces
    mts_q_handle_t q;
    uint32 create;
    interface_mask_t mask;
    std::vector<vsh_intf_mono_range_t> ranges;
    uint32 timeout;
  };
  std::vector<interface_configuration> interface_configurations;

  // -- The machine --

  uint32 chassis_type = CHASSIS_10;
  uint32 num_slots = 10;
  uint32 runtime_index = 0;  // entry of platform_runtime_param_array, which is zeroed but for this one: "eth1", "eth2"
  std::map<if_index_t, uint32> card_types;                      // without an entry: 0
  std::map<if_index_t, uint32> nodes;                           // without an entry: 0x0000<module>02
  std::optional<uint32> now;                                    // what time() says; without it the real time
  std::map<syserr_t, std::optional<std::string>> syserr_texts;  // no text: null; without an entry: "<system error HEX>"
  std::map<if_index_t, if_index_type_t> types;                  // instead of the kind in the index
  std::map<if_index_t, if_index_t> next_interfaces;             // of if_index_next(), instead of the next number
  std::map<if_index_t, std::string> names;                      // instead of the name made from the index
  std::map<if_index_t, std::string> short_names;

  // -- The user --

  std::optional<std::string> user_answer;  // without one vsh_util_user_input_get() fails
  struct question {
    std::string prompt, default_input, notty_input;
    std::string answer_before;  // what the answer buffer held
    vsh_user_input_info_t info;
  };
  std::vector<question> questions;

  // -- Messages. Each sent and received one must be dropped exactly once. --

  std::function<mts_reply(const mts_request&)> on_request;  // without it no answer comes: error 110
  std::vector<mts_request> requests;
  std::vector<mts_recv_options_t> receives;
  std::vector<uint32> drops;  // ids of the messages, in order: each request and each answer counts on from 1

  // -- Libraries opened by name. The statistics client, the IP statistics and the card configuration are there,
  // answering
  //    from the maps below and from `clear_errors`; the VLAN manager is there without symbols. --

  std::map<std::string, library_symbols> libraries;
  std::map<if_index_t, statscl_portcl_stats_msg_t> port_stats;  // ifidx is filled in when it is 0
  std::map<if_index_t, statscl_portcl_stats_msg_t> snmp_port_stats;
  std::map<if_index_t, ip_if_stats> loopback_stats;
  std::map<if_index_t, crdcfg_port_cap_t> capabilities;
  std::string loader_error = "undefined symbol";    // what dlerror() says of a symbol that is not there
  std::optional<std::string> earlier_loader_error;  // what dlerror() still has to say from before
  // "open libstatcl.so lazy" (or "now"), "find statcl_get_port_client_stats", "close libstatcl.so", in order; an open
  // that fails is "miss libstatcl.so lazy".
  std::vector<std::string> loader_events;

  // -- The heap --

  // A block for the library, which must free it. `label` names it when it is not freed.
  void* hand_over(const void* bytes, std::size_t size, const std::string& label);

  // What a caller of the library does with what it was handed: frees a block, closes a library.
  void release(void* block);
  void close(void* library_handle);
  // Drops the messages that are left, as the transport does with the queue.
  void drop_messages();

  // Fails the test for every message, library and block that is not released; each is reported once.
  void expect_all_released();
  // The same as a list of texts, without failing.
  std::vector<std::string> unreleased() const;

  struct state;  // what the platform functions keep: recording_state.h, for tests/support only
  state& internals() { return *state_; }

 private:
  void add_default_libraries();

  std::unique_ptr<state> state_;
  std::string text_;
  std::string terminal_;
  std::string failed_call_;
};

}  // namespace pmcli_test
