// The services of the switch: each a function from request bytes to an answer over the model.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "transport/transport.h"

namespace host {

// Each rejects unknown opcodes and requests whose size does not match the opcode.
reply serve_port_manager(mts_opc_t opcode, std::span<const std::byte> request);
reply serve_interface_manager(mts_opc_t opcode, std::span<const std::byte> request);
reply serve_statistics(mts_opc_t opcode, std::span<const std::byte> request);
reply serve_ip(mts_opc_t opcode, std::span<const std::byte> request);
reply serve_hardware(mts_opc_t opcode, std::span<const std::byte> request);
reply serve_card_config(mts_opc_t opcode, std::span<const std::byte> request);
reply serve_port_channel(mts_opc_t opcode, std::span<const std::byte> request);
reply serve_spanning_tree(mts_opc_t opcode, std::span<const std::byte> request);
reply serve_vsan_manager(mts_opc_t opcode, std::span<const std::byte> request);

reply serve_vlan_manager(mts_opc_t opcode, std::span<const std::byte> request);
reply serve_private_vlans(mts_opc_t opcode, std::span<const std::byte> request);
reply serve_satellite_manager(mts_opc_t opcode, std::span<const std::byte> request);
reply serve_interface_values(mts_opc_t opcode, std::span<const std::byte> request);
reply serve_tables(mts_opc_t opcode, std::span<const std::byte> request);
reply serve_switch(mts_opc_t opcode, std::span<const std::byte> request);
reply serve_session(mts_opc_t opcode, std::span<const std::byte> request);
std::vector<int> descriptors_of_switch(uint32 cursor);  // of its events
reply serve_line_card(mts_opc_t opcode, std::span<const std::byte> request);
bool is_whole_line_card_answer(std::span<const std::byte> answer);

// The file that the_machine() was read from, which the switch reports; empty: none.
void set_switch_file(std::string file);

// All of them, to be registered with the transport.
std::span<const service> all_services();

}  // namespace host
