#include "platform/port_channel.h"

#include <algorithm>
#include <cstring>

#include "client/request.h"
#include "messages/port_channel_messages.h"

using namespace host;

namespace {

// Members in the form of the Ethernet-switch chassis, and in that of the others.
constexpr list_layout kEthernetLayout = {
    .block_bytes = PORT_CHANNEL_MEMBERS_BYTES, .count_offset = 18, .first_entry = 26, .entry_bytes = 7};
constexpr list_layout kClassicLayout = {
    .block_bytes = PORT_CHANNEL_MEMBERS_BYTES, .count_offset = 8, .first_entry = 32, .entry_bytes = 8};

constexpr uint32 kEthernetChassis[] = {10, 11, 17, 19, 20, 21, 22, 23, 24};

const list_layout& layout_of(uint32 chassis_type) {
  const auto* const end = std::end(kEthernetChassis);
  return std::find(std::begin(kEthernetChassis), end, chassis_type) == end ? kClassicLayout : kEthernetLayout;
}

}  // namespace

int32 get_port_channel_members(uint32 chassis_type, if_index_t if_index, void** response) {
  if (response == nullptr) return PM_ERR_GENERAL;
  return ask_list({client_queue(), SAP_PORT_CHANNEL, PC_OPC_MEMBERS}, bytes_of(interface_request{if_index}),
                  layout_of(chassis_type), response);
}

int32 get_port_channel_info(if_index_t if_index, port_channel_info_t* info) {
  if (info == nullptr) return PM_ERR_GENERAL;
  return ask_record({client_queue(), SAP_PORT_CHANNEL, PC_OPC_CHANNEL_OF}, bytes_of(interface_request{if_index}),
                    writable_bytes_of(*info));
}

int32 mcecm_api_sdb_sh_int_po(if_index_t if_index, char* status) {
  if (status == nullptr) return PM_ERR_GENERAL;
  multi_chassis_status answered;
  const syserr_t error = ask_record({client_queue(), SAP_PORT_CHANNEL, PC_OPC_MULTI_CHASSIS_STATUS},
                                    bytes_of(interface_request{if_index}), writable_bytes_of(answered));
  if (error != 0) return error;
  std::memcpy(status, answered.text, sizeof answered.text);
  status[sizeof answered.text - 1] = '\0';
  return 0;
}
