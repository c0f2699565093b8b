// Tables of a switch: rows that a source reads piece by piece, so that a table of any length takes little memory.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "base/table_id.h"
#include "platform/types.h"
#include "switch/model.h"

namespace host {

// What a row is about. An interface, a device of the kernel, or both.
struct row_device {
  if_index_t if_index = 0;  // 0: the device has no interface
  std::string name;         // of the kernel's device; empty: none
  uint32 number = 0;        // the kernel's
};

// Lists of words are separated by commas.
struct address_row {
  row_device device;
  std::optional<uint32> mtu_bytes;
  ip_address address;
  std::optional<ip_address> peer;  // at the other end of a link between two
  std::string scope;               // empty: unknown
  std::optional<std::string> flags;
  std::string label;
  std::optional<uint32> valid_seconds;  // none: for ever
  std::optional<uint32> preferred_seconds;
};

using table_row = std::variant<address_row>;

// A table that is being read. It lives until its last row was read, or the reader is dropped.
class table_reader {
 public:
  table_reader() = default;
  virtual ~table_reader() = default;
  table_reader(const table_reader&) = delete;
  table_reader& operator=(const table_reader&) = delete;

  // Appends the next rows, if any. False when there are no more. Throws std::runtime_error with the reason.
  virtual bool next(std::vector<table_row>& rows) = 0;

  // Whether the table changed while it was read: rows may be missing, or be there twice.
  virtual bool has_changed() const { return false; }
};

// Reads rows that are in memory.
class rows_in_memory final : public table_reader {
 public:
  explicit rows_in_memory(std::vector<table_row> rows) : rows_(std::move(rows)) {}
  bool next(std::vector<table_row>& rows) override;

 private:
  std::vector<table_row> rows_;
};

// The addresses in a model, of one family; without `interfaces` of all.
std::unique_ptr<table_reader> addresses_of(const machine& model, bool is_ipv6,
                                           const std::vector<if_index_t>& interfaces);

}  // namespace host
