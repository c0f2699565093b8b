// The tables of the kernel, by dumps that are read while their rows are shown.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "source/kernel/device_map.h"
#include "source/kernel/links.h"
#include "source/kernel/netlink.h"
#include "switch/tables.h"

namespace host {

// A device as rows name it.
struct table_device {
  uint32 number = 0;  // the kernel's
  std::string name;
  if_index_t if_index = 0;  // 0: none
  uint32 mtu_bytes = 0;
};

// The devices that a table is read of, as the command found them.
class table_devices {
 public:
  // `interfaces`, sorted: those that the user named; without any all devices.
  table_devices(const std::vector<kernel_link>& links, const std::vector<mapped_device>& mapped,
                const std::vector<if_index_t>& interfaces);

  bool is_requested(uint32 number) const;

  // Sorted by number.
  const std::vector<table_device>& requested() const { return requested_; }

  // Null for a device that came later.
  const table_device* find(uint32 number) const;

  // As rows have it, also a device that came later.
  row_device row_of(uint32 number) const;

 private:
  std::vector<table_device> all_;
  std::vector<table_device> requested_;
  bool has_all_;
};

// Appends the rows of a message.
using row_decoder = std::function<void(const nlmsghdr&, const table_devices&, std::vector<table_row>&)>;

// Reads a table whose rows are messages of one dump of NETLINK_ROUTE.
std::unique_ptr<table_reader> read_dump(netlink_request request, std::string what, row_decoder decode,
                                        table_devices devices);

// Null when the kernel has no such table.
std::unique_ptr<table_reader> open_kernel_table(table_id table, table_devices devices);

// ---- Decoders of single messages ------------------------------------------------------------------------------------

void decode_address_row(const nlmsghdr& message, const table_devices& devices, std::vector<table_row>& rows);

// Words of the bits in `flags`, in the order of `words`, separated by commas.
struct flag_word {
  uint32 bits;
  const char* word;
};
std::string words_of_flags(uint32 flags, std::span<const flag_word> words);

// Appends a word to a list.
void append_word(std::string& list, std::string_view word);

// An address in its bytes; nothing when there are not four or sixteen.
std::optional<ip_address> address_of(std::span<const uint8> bytes);

}  // namespace host
