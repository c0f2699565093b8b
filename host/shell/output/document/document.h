// The structured form of a command's output: one JSON document, a record on a line.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "messages/interface_values.h"
#include "platform/types.h"
#include "shell/output/document/json_writer.h"
#include "shell/output/document/traffic_readings.h"
#include "shell/output/rendering.h"
#include "shell/output/schema/schema.h"

namespace host {

enum { kSchemaVersion = 2 };

// The display of a document.
struct display {
  display_bit bit;
  std::string_view section = {};         // of its only record in the document; empty: a list of records
  std::string_view name = {};            // in the document and in the published schema
  bool has_marks = false;                // as text it marks alarms and warnings
  bool has_values = false;               // values that the text shows without a tag come from the service of values:
                                         // lines of the channel that bind none are layout and no messages
  std::string_view list = "interfaces";  // of its records; empty: the document has messages only
  bool repeats = false;   // a value that is bound again begins the next record; lines without values are layout
  bool is_table = false;  // its records are rows (document::add_row), which may be about no interface
};

// Whether documents of a display have a summary of results.
inline bool has_summary(const display& shown) { return shown.bit == kSettingDisplay; }

struct result_summary {
  uint32 applied = 0;
  uint32 unchanged = 0;
  uint32 refused = 0;
};

// For commands whose output is only sentences.
inline constexpr display kSentences = {kTextDisplay, {}, "text", false, false, {}};

// Whether its records have rates when the command is watched: those of interfaces that a show command makes.
constexpr bool may_have_rates(const display& shown) {
  return shown.has_values ||
         (shown.list == "interfaces" && shown.section.empty() && !shown.is_table && shown.bit != kSettingDisplay);
}

enum class importance : uint8 { info, error };

class document {
 public:
  // `command` without its pipes.
  document(const display& shown, std::string_view command);

  // Complete lines of the document; the caller removes those that it took.
  std::string& ready() { return ready_; }

  void begin_record(std::string_view interface_name);

  // Whether a value of the record's interface was bound.
  bool has_bound_record() const { return record_open_ && has_bound_; }

  // Fills the open record with the values that no tuple bound, and with the reasons for those that are absent.
  void fill(std::span<const interface_value> values);
  // The same when a service failed, which is the reason for all absent values.
  void fill_failed();

  // Writes the record, unless nothing was shown of its interface. `rates` of a watched command are its last
  // member when the display may have them.
  void end_record(const std::optional<traffic_rates>* rates = nullptr);

  // Stores a value in the record. False when the display has no field for it.
  bool bind(const cmd_tuple_t& tuple);

  // The same for an unknown value, which stays null.
  bool bind_unknown(const cmd_tuple_t& tuple);

  // A record of a table: a row with its values.
  void add_row(std::span<const interface_value> values);

  // A sentence about an interface; without a name about that of the open record, if any. False when the document has
  // its maximum of sentences and this one is omitted; the last one reports this.
  bool add_message(std::string_view text, importance how = importance::info, std::string_view interface_name = {});

  // The number of records with each result.
  void set_summary(const result_summary& summary) { summary_ = summary; }

  // Writes the rest: messages, exit code and the end.
  void end(int exit_code);

 private:
  enum class cell_state : uint8 { empty, bound, from_service, absent };

  // A field of the open record.
  struct cell {
    cell_state state = cell_state::empty;
    uint64 number = 0;
    std::string text;             // digits of a decimal, too
    interface_value answered;     // by the service
    std::string_view why_absent;  // empty: there is none
  };

  cell* cell_of(const cmd_tuple_t& tuple);
  void begin(std::string_view command);
  void write_record(const std::optional<traffic_rates>* rates);
  void write_bound(json_writer& json, const field& meaning, const cell& value) const;

  display shown_;
  std::vector<uint16> rows_;         // of the fields, in order
  std::vector<cell> cells_;          // one for each
  std::vector<uint16> cell_of_row_;  // by row of the schema
  std::string record_name_;
  bool record_open_ = false;
  bool record_is_empty_ = true;
  bool has_bound_ = false;
  bool first_record_ = true;
  std::string ready_;
  result_summary summary_;
  std::string messages_;
  bool lost_messages_ = false;
};

// The properties of a display's fields, which the service of values answers.
std::vector<property> properties_of(const display& shown);

// A document with only the reason why a line did not run, with its newline.
std::string document_of_error(std::string_view line, std::string_view text, int exit_code);

}  // namespace host
