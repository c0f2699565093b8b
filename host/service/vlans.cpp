// The VLAN manager and the private VLANs of ports.
#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <map>

#include "messages/vlan_messages.h"
#include "platform/port_manager.h"
#include "service/answers.h"
#include "service/services.h"

namespace host {
namespace {

vlan_bitset_t set_of(const std::vector<uint16>& vlans) {
  vlan_bitset_t set{};
  set.size = BITSET_BYTES;
  for (const uint16 id : vlans) bitset_set(&set, id);
  return set;
}

// ---- VLANs ----------------------------------------------------------------------------------------------------------

constexpr uint16 kLastVlan = 4094;

bool is_trunk(const interface& port) { return port.oper_mode == PM_PORT_MODE_TRUNK; }

// The VLAN that exists because a port has it as access or native VLAN; 0: none.
uint16 used_vlan(const interface& port) {
  if (port.settings.layer != 2) return 0;
  return (is_trunk(port) ? port.settings.native_vlan : port.settings.access_vlan).value_or(0);
}

std::string usual_name(uint16 id) { return id == 1 ? "default" : fmt::format("VLAN{:04}", id); }

// `described` is null for a VLAN that ports use and nothing describes.
vlan_info_resp_t record_of(uint16 id, const vlan* described) {
  enum : uint32 { kActive = 1, kOrdinary = 1, kUp = 1, kNotShut = 1, kShut = 2, kUsualMtu = 1500 };
  vlan_info_resp_t record{};
  record.vdc_vlan = {1, id};
  record.vstate = kActive;
  record.vtype = described != nullptr && described->kind != 0 ? described->kind : uint32{kOrdinary};
  record.oper = kUp;
  record.mtu = kUsualMtu;
  record.shut_state = described != nullptr && described->is_shut ? kShut : kNotShut;
  const std::string name = described != nullptr && !described->name.empty() ? described->name : usual_name(id);
  std::memcpy(record.vlan_name, name.data(), std::min(name.size(), sizeof record.vlan_name));
  return record;
}

// Nothing for a VLAN that is neither described nor used.
std::optional<vlan_info_resp_t> find_record(uint16 id) {
  const auto& vlans = the_machine().vlans;
  const auto& ports = the_machine().interfaces;
  const auto described = std::find_if(vlans.begin(), vlans.end(), [id](const vlan& it) { return it.id == id; });
  if (described != vlans.end()) return record_of(id, &*described);
  const bool is_used =
      id != 0 && std::any_of(ports.begin(), ports.end(), [id](const interface& port) { return used_vlan(port) == id; });
  return is_used ? std::optional(record_of(id, nullptr)) : std::nullopt;
}

reply answer_vlan(std::span<const std::byte> bytes) {
  const auto request = read_request<vdc_vlan_id_t>(bytes);
  auto record = request ? find_record(request->vlan_id) : std::nullopt;
  if (!record) return reject();
  record->vdc_vlan = *request;
  reply answer;
  append_bytes(answer, *record);
  return answer;
}

reply answer_all_vlans() {
  std::map<uint16, const vlan*> existing;  // by id; null: not described
  for (const vlan& it : the_machine().vlans) existing.emplace(it.id, &it);
  for (const interface& port : the_machine().interfaces) existing.emplace(used_vlan(port), nullptr);
  std::vector<vlan_info_resp_t> records;
  for (const auto& [id, described] : existing)
    if (id >= 1 && id <= kLastVlan) records.push_back(record_of(id, described));
  return answer_records<vlan_info_resp_t>(records);
}

reply answer_memberships(std::span<const std::byte> bytes) {
  if (bytes.size() % sizeof(be32) != 0) return reject();
  reply answer;
  for (; !bytes.empty(); bytes = bytes.subspan(sizeof(be32))) {
    be32 if_index;
    std::memcpy(&if_index, bytes.data(), sizeof if_index);
    const interface* const port = std::as_const(the_machine()).find(if_index);
    if (port == nullptr) continue;
    trunk_port_memb_t record{};
    record.port = if_index;
    record.native_trunk.vdc_id = 1;
    record.native_trunk.vlan_id = port->settings.native_vlan.value_or(0);
    record.allowed_vlan_list = set_of(port->settings.allowed_vlans);
    append_bytes(answer, record);
  }
  return answer;
}

// ---- Private VLANs --------------------------------------------------------------------------------------------------

reply answer_private_vlans(std::span<const std::byte> bytes) {
  const auto request = read_request<interface_request>(bytes);
  const interface* const port = request ? std::as_const(the_machine()).find(request->if_index) : nullptr;
  if (port == nullptr) return reject();
  const interface::private_vlans& configured = port->private_vlan;
  pvlan_switchport_info_t record{};
  record.host_primary = configured.host_primary;
  record.host_secondary = configured.host_secondary;
  record.mapping_primary = configured.mapping_primary;
  record.mapping_secondary = set_of(configured.mapping_secondary);
  std::vector<uint16> operational;
  if (port->oper_state == PM_PORT_STATE_UP) operational = configured.mapping_secondary;
  for (const uint16 id : {configured.host_primary, configured.host_secondary, configured.mapping_primary})
    if (id != 0 && port->oper_state == PM_PORT_STATE_UP) operational.push_back(id);
  record.operational = set_of(operational);
  reply answer;
  append_bytes(answer, record);
  return answer;
}

}  // namespace

reply serve_vlan_manager(mts_opc_t opcode, std::span<const std::byte> request) {
  switch (opcode) {
    case MTS_OPC_VLAN_INFO: return answer_vlan(request);
    case VLAN_OPC_ALL: return answer_all_vlans();
    case VLAN_OPC_ERRORED:
      return answer_for_interface(request,
                                  [](const interface& port) { return answer_record(set_of(port.errored_vlans)); });
    case MTS_OPC_VLAN_TRUNKING_MEMBERSHIP: return answer_memberships(request);
    default: return reject_opcode();
  }
}

reply serve_private_vlans(mts_opc_t opcode, std::span<const std::byte> request) {
  return opcode == MTS_OPC_PVLAN_GET_SWITCHPORT_INFO ? answer_private_vlans(request) : reject_opcode();
}

}  // namespace host
