// The structured form of a command's output: one JSON document, a record on a line.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"
#include "shell/output/rendering.h"
#include "shell/output/schema.h"
#include "shell/output/traffic_readings.h"

namespace host {

enum { kSchemaVersion = 1 };

// What a document is made for.
struct display {
  display_bit bit;
  std::string_view section;    // of its only record in the document; empty: a record for each interface, its name first
  std::string_view name = {};  // in the published schema
  bool has_marks = false;      // as text it marks alarms and warnings; its titles and rules are no messages
};

// A field of a record.
struct document_cell {
  const field* meaning;  // null: not bound
  uint64 number;
  double decimal;
  std::string text;
};

class document {
 public:
  // `command` without its pipes.
  document(const display& shown, std::string_view command);

  // Lines of the document that are complete; whoever takes them clears them.
  std::string& ready() { return ready_; }

  void begin_record(std::string_view interface_name);
  // Writes the record, unless nothing at all was said of its interface. With `rates` they are its last member.
  void end_record(const std::optional<traffic_rates>* rates = nullptr);

  // Stores a value in the record. False when the display has no field for it.
  bool bind(const cmd_tuple_t& tuple);

  // The same of a value that nobody knows: it stays null.
  bool bind_unknown(const cmd_tuple_t& tuple);

  // A line that bound no value; it belongs to the record that is open, if any. False when the document holds so many
  // already that this one is left out; its last one says so.
  bool add_message(std::string_view text);

  // Writes what is left: messages, and the end.
  void end();

 private:
  // The field of a value in the record that is open, or null.
  const field* shown_field(const cmd_tuple_t& tuple) const;
  void begin(std::string_view command);
  void write_record(const std::optional<traffic_rates>* rates);

  display shown_;
  std::vector<std::string_view> names_;  // of the fields, in order
  std::vector<document_cell> cells_;     // one for each name
  std::vector<uint8> cell_of_row_;       // by row of the schema; 0xFF: not in this display
  std::string record_name_;
  bool record_open_ = false;
  bool record_is_empty_ = true;
  bool first_record_ = true;
  std::string ready_;
  std::string messages_;
  bool lost_messages_ = false;
};

}  // namespace host
