// Requests for the rows of a table.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "messages/table_messages.h"
#include "platform/mts.h"

namespace host {

// Reads a table in pieces. Its destructor gives up the rest.
class table_query {
 public:
  using row = std::vector<interface_value>;

  // `interfaces`, sorted: those that the table is read of; without any, everything.
  table_query(mts_q_handle_t q, table_id table, std::span<const if_index_t> interfaces);
  ~table_query();
  table_query(const table_query&) = delete;
  table_query& operator=(const table_query&) = delete;

  // Reads the next rows, which replace the former ones. False when there are no more, or after an error.
  bool next();

  // They live until the next call.
  std::span<row> rows() { return rows_; }

  // 0; kNoSuchTable, or why the source cannot read the table (see syserr2str). A service that does not answer, rejects
  // the request or sends a damaged answer is noted, and the error is PM_ERR_GENERAL.
  syserr_t error() const { return error_; }

  // Whether the table changed while it was read: rows may be missing, or be there twice.
  bool has_changed() const { return has_changed_; }

 private:
  bool read(std::span<const std::byte> payload);

  mts_q_handle_t q_;
  std::vector<std::byte> request_;  // of the next piece
  bool is_begun_ = false;
  uint32 cursor_ = 0;
  std::vector<std::byte> bytes_;
  std::vector<row> rows_;
  syserr_t error_ = 0;
  bool has_changed_ = false;
};

}  // namespace host
