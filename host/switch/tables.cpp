#include "switch/tables.h"

#include <algorithm>
#include <iterator>

namespace host {

bool rows_in_memory::next(std::vector<table_row>& rows) {
  rows.insert(rows.end(), std::make_move_iterator(rows_.begin()), std::make_move_iterator(rows_.end()));
  rows_.clear();
  return false;
}

std::unique_ptr<table_reader> addresses_of(const machine& model, bool is_ipv6,
                                           const std::vector<if_index_t>& interfaces) {
  std::vector<table_row> rows;
  for (const interface& it : model.interfaces) {
    const bool is_requested =
        interfaces.empty() || std::binary_search(interfaces.begin(), interfaces.end(), it.if_index);
    for (const ip_address& address : it.addresses) {
      if (!is_requested || address.is_ipv6 != is_ipv6) continue;
      address_row row;
      row.device.if_index = it.if_index;
      row.mtu_bytes = it.settings.mtu_bytes;
      row.address = address;
      rows.emplace_back(std::move(row));
    }
  }
  return std::make_unique<rows_in_memory>(std::move(rows));
}

}  // namespace host
