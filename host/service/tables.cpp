// The rows of tables, piece by piece. A table that is being read is open under its cursor.
#include "switch/tables.h"

#include <algorithm>
#include <list>
#include <stdexcept>

#include "base/digits.h"
#include "base/port_status.h"
#include "messages/table_messages.h"
#include "service/answers.h"
#include "service/optics.h"
#include "service/row_writer.h"
#include "service/services.h"
#include "settings/session.h"

namespace host {
namespace {

constexpr std::size_t kMostOpenTables = 8;

// ---- Values of rows -------------------------------------------------------------------------------------------------

std::optional<uint64> state_of(const row_device& device) {
  const interface* const port = the_machine().find(device.if_index);
  return port == nullptr ? std::nullopt : std::optional<uint64>(port->oper_state);
}

void write_row(const address_row& row, row_writer to) {
  to.device(row.device);
  to.number(property::state, state_of(row.device));
  to.number(property::mtu_bytes, row.mtu_bytes);
  to.address(property::ip_address, row.address);
  to.number(property::prefix_length_bits, row.address.prefix_length);
  to.address(property::peer_address, row.peer);
  to.text(property::address_scope, row.scope);
  to.words(property::address_flags, row.flags);
  to.text(property::address_label, row.label);
  to.number(property::valid_lifetime_seconds, row.valid_seconds);
  to.number(property::preferred_lifetime_seconds, row.preferred_seconds);
}

void write_row(const neighbor_row& row, row_writer to) {
  to.device(row.device);
  to.address(property::ip_address, row.address);
  to.mac(property::mac, row.mac);
  to.known_text(property::neighbor_state, row.state);
  to.words(property::neighbor_flags, row.flags);
  to.number(property::age_seconds, row.age_seconds);
}

void write_row(const forwarding_row& row, row_writer to) {
  to.device(row.port);
  to.text(property::bridge, row.bridge);
  to.mac(property::mac, row.mac);
  to.number(property::vlan_id, row.vlan);
  to.text(property::entry_type, row.type);
  to.words(property::entry_flags, row.flags);
  to.address(property::remote_address, row.remote);
  to.number(property::age_seconds, row.age_seconds);
}

// "8000.021c.7340.0100", as the parts of other addresses are written.
std::optional<std::string> text_of(const std::optional<bridge_id>& id) {
  if (!id) return std::nullopt;
  std::string text;
  append_dotted_hex(text, *id);
  return text;
}

void write_row(const bridge_port_row& row, row_writer to) {
  to.device(row.port);
  to.text(property::bridge, row.bridge);
  to.known_text(property::spanning_tree_state, row.state);
  to.known_text(property::spanning_tree_role, row.role);
  to.number(property::path_cost, row.path_cost);
  to.number(property::port_priority, row.priority);
  to.number(property::port_id, row.port_id);
  to.known_text(property::root_bridge, text_of(row.root));
  to.known_text(property::designated_bridge, text_of(row.designated_bridge));
}

void write_row(const driver_counter_row& row, row_writer to) {
  to.device(row.device);
  to.map(property::driver_counters, row.counters);
}

void write_row(const hardware_row& row, row_writer to) {
  to.device(row.device);
  to.known_text(property::driver, row.driver);
  to.known_text(property::driver_version, row.driver_version);
  to.known_text(property::firmware_version, row.firmware_version);
  to.known_text(property::bus, row.bus);
  to.known_mac(property::permanent_address, row.permanent_mac);
  to.known_number(property::rx_queues, row.rx_queues);
  to.known_number(property::tx_queues, row.tx_queues);
  to.known_number(property::other_queues, row.other_queues);
  to.known_number(property::combined_queues, row.combined_queues);
  to.known_number(property::max_rx_queues, row.most_rx_queues);
  to.known_number(property::max_tx_queues, row.most_tx_queues);
  to.known_number(property::max_other_queues, row.most_other_queues);
  to.known_number(property::max_combined_queues, row.most_combined_queues);
  to.known_number(property::rx_ring_entries, row.rx_ring);
  to.known_number(property::tx_ring_entries, row.tx_ring);
  to.known_number(property::max_rx_ring_entries, row.most_rx_ring);
  to.known_number(property::max_tx_ring_entries, row.most_tx_ring);
  to.words(property::configured_fec, row.configured_fec);
  to.known_text(property::active_fec, row.active_fec);
  to.known_number(property::eee_enabled, row.is_eee_enabled);
  to.known_number(property::eee_active, row.is_eee_active);
  to.words(property::offloads, row.offloads);
}

void write_row(const lldp_row& row, row_writer to) {
  to.device(row.device);
  to.text(property::protocol, row.protocol);
  to.text(property::chassis_id, row.chassis_id);
  to.text(property::chassis_id_type, row.chassis_id_type);
  to.text(property::system_name, row.system_name);
  to.text(property::system_description, row.system_description);
  to.words(property::management_addresses, row.management_addresses);
  to.words(property::system_capabilities, row.capabilities);
  to.words(property::enabled_capabilities, row.enabled_capabilities);
  to.text(property::remote_port_id, row.port_id);
  to.text(property::remote_port_id_type, row.port_id_type);
  to.text(property::remote_port_description, row.port_description);
  to.number(property::remote_port_vlan, row.port_vlan);
  to.vlans(property::remote_vlans, row.vlans);
  to.number(property::ttl_seconds, row.ttl_seconds);
  to.number(property::unchanged_seconds, row.unchanged_seconds);
}

void write_row(const violation_row& row, row_writer to) {
  to.device(row.device);
  to.number(property::lane, row.lane);
  to.text(property::quantity, row.quantity);
  to.known_decimal(property::measured_value, row.measured);
  to.known_decimal(property::violated_limit, row.limit);
  to.text(property::value_unit, row.unit);
  to.number(property::violation, row.mark);
}

// ---- Open tables ----------------------------------------------------------------------------------------------------

struct open_table {
  uint32 cursor;
  std::unique_ptr<table_reader> reader;  // null: everything is read
  std::vector<table_row> waiting;        // rows that were read, and not answered yet
  std::size_t next = 0;                  // of them
  bool has_changed = false;
};

// Those of the session. The last used one is the last.
struct tables_of_session {
  std::list<open_table> open;
};

std::list<open_table>& open_tables() { return the_session().kept<tables_of_session>().open; }

uint32 new_cursor() {
  static uint32 last = 0;
  if (++last == 0) ++last;
  return last;
}

// Appends rows to an answer until it is full, or there are no more.
uint32 write_rows(open_table& table, reply& answer) {
  uint32 count = 0;
  while (count < kMostRowsOfAnswer && answer.payload.size() < kMostBytesOfAnswer) {
    if (table.next == table.waiting.size()) {
      table.waiting.clear();
      table.next = 0;
      if (count != 0 || table.reader == nullptr) break;  // rows that are there are not kept waiting
      const bool goes_on = table.reader->next(table.waiting);
      table.has_changed = table.reader->has_changed();
      if (!goes_on) table.reader.reset();
      if (table.waiting.empty() && table.reader == nullptr) break;
      continue;
    }
    const std::size_t begin = answer.payload.size();
    append_bytes(answer, row_head{});
    value_writer values(answer.payload);
    std::visit([&values](const auto& row) { write_row(row, row_writer(values)); }, table.waiting[table.next++]);
    const row_head head{static_cast<uint32>(answer.payload.size() - begin - sizeof(row_head))};
    std::memcpy(answer.payload.data() + begin, &head, sizeof head);
    ++count;
  }
  return count;
}

// The next rows of a table, which stays open when there are more.
reply answer_rows(open_table table) {
  reply answer;
  append_bytes(answer, reply_head{});
  append_bytes(answer, table_answer{});
  uint32 count = 0;
  try {
    count = write_rows(table, answer);
  } catch (const std::runtime_error& why) {
    return answer_error(static_cast<syserr_t>(status_of_text(why.what())));
  }
  const bool has_more = table.reader != nullptr || table.next != table.waiting.size();
  const reply_head head{0, count};
  const table_answer rows{has_more ? table.cursor : 0, static_cast<uint8>(table.has_changed ? 1 : 0), {}};
  std::memcpy(answer.payload.data(), &head, sizeof head);
  std::memcpy(answer.payload.data() + sizeof head, &rows, sizeof rows);
  if (!has_more) return answer;
  std::list<open_table>& all = open_tables();
  if (all.size() == kMostOpenTables) all.pop_front();
  all.push_back(std::move(table));
  return answer;
}

std::optional<open_table> take_open_table(uint32 cursor) {
  std::list<open_table>& all = open_tables();
  const auto found = std::find_if(all.begin(), all.end(), [=](const open_table& it) { return it.cursor == cursor; });
  if (found == all.end()) return std::nullopt;
  std::optional<open_table> taken(std::move(*found));
  all.erase(found);
  return taken;
}

// ---- Requests -------------------------------------------------------------------------------------------------------

reply begin_table(std::span<const std::byte> request) {
  if (request.size() < sizeof(begin_table_request) || request.size() % sizeof(be32) != 0) return reject();
  begin_table_request head;
  std::memcpy(&head, request.data(), sizeof head);
  if (head.table == 0 || head.table > static_cast<uint16>(table_id::last)) return answer_error(kNoSuchTable);
  std::vector<if_index_t> interfaces;
  for (std::size_t at = sizeof head; at < request.size(); at += sizeof(be32)) {
    be32 if_index;
    std::memcpy(&if_index, request.data() + at, sizeof if_index);
    interfaces.push_back(if_index);
  }
  std::sort(interfaces.begin(), interfaces.end());
  std::unique_ptr<table_reader> reader;
  try {
    const auto table = static_cast<table_id>(uint16{head.table});
    reader = table == table_id::optical_violations ? read_violations(interfaces)
                                                   : the_source().open_table(the_machine(), table, interfaces);
  } catch (const std::runtime_error& why) {
    return answer_error(static_cast<syserr_t>(status_of_text(why.what())));
  }
  if (reader == nullptr) return answer_error(kNoSuchTable);
  return answer_rows({new_cursor(), std::move(reader), {}});
}

reply go_on(std::span<const std::byte> bytes) {
  const auto request = read_request<table_cursor>(bytes);
  if (!request) return reject();
  std::optional<open_table> table = take_open_table(request->cursor);
  return table ? answer_rows(std::move(*table)) : answer_error(kTableGivenUp);
}

reply end_table(std::span<const std::byte> bytes) {
  const auto request = read_request<table_cursor>(bytes);
  if (!request) return reject();
  take_open_table(request->cursor);
  return answer_writer(0).finish();
}

}  // namespace

reply serve_tables(mts_opc_t opcode, std::span<const std::byte> request) {
  switch (opcode) {
    case TABLES_OPC_BEGIN: return begin_table(request);
    case TABLES_OPC_GO_ON: return go_on(request);
    case TABLES_OPC_END: return end_table(request);
    default: return reject_opcode();
  }
}

}  // namespace host
