#include "shell/output/schema/schema.h"

#include <fmt/format.h>

#include <algorithm>

namespace host {
namespace {

enum : uint8 { kComponentOfLibrary = 0x2A, kComponentOfShell = 0 };

// Those of properties, those of displays, then added ones.
std::vector<field>& field_rows() {
  static std::vector<field> rows = [] {
    std::vector<field> made(property_fields().begin(), property_fields().end());
    made.insert(made.end(), display_fields().begin(), display_fields().end());
    return made;
  }();
  return rows;
}

std::vector<binding>& added_bindings() {
  static std::vector<binding> rows;
  return rows;
}

// Whose values are of other types or words under the same key.
bool contradicts(const field& known, const field& added) { return known.type != added.type; }

}  // namespace

std::span<const field> all_fields() { return field_rows(); }

const binding* find_binding(uint32 tuple_id) {
  const auto tag = static_cast<uint16>(tuple_id);
  const auto component = static_cast<uint8>(tuple_id >> 16);
  const bool is_ours = component == kComponentOfLibrary || component == kComponentOfShell;
  if (const binding* const own = is_ours ? find_own_binding(tag) : nullptr; own != nullptr) return own;
  const std::vector<binding>& added = added_bindings();
  const auto found = std::find_if(added.begin(), added.end(),
                                  [=](const binding& row) { return row.tag == tag && row.component == component; });
  return found == added.end() ? nullptr : &*found;
}

std::vector<uint16> rows_of(display_bit shown) {
  std::vector<bool> has_row(field_rows().size());
  for (const auto bindings : {own_bindings(), std::span<const binding>(added_bindings())})
    for (const binding& each : bindings)
      if ((each.displays & shown) != 0) has_row[each.row] = true;
  std::vector<uint16> rows;
  for (uint16 row = 0; row < has_row.size(); ++row)
    if (has_row[row] || (displays_without_tag(row) & shown) != 0) rows.push_back(row);
  return rows;
}

display_bit add_display(std::span<const added_field> fields, std::string& error) {
  static uint64 last = kLastDisplay;
  if (last << 1 == 0) {
    error = "there are too many displays";
    return kNoDisplay;
  }
  for (const added_field& added : fields) {
    const binding* const known = find_binding(added.tuple_id);
    if (known != nullptr && field_of(*known).name != added.described.name) {
      error =
          fmt::format("the tuple id of '{}' belongs to the field '{}'", added.described.name, field_of(*known).name);
      return kNoDisplay;
    }
    const auto same_key = std::find_if(field_rows().begin(), field_rows().end(),
                                       [&](const field& row) { return row.name == added.described.name; });
    if (same_key != field_rows().end() && contradicts(*same_key, added.described)) {
      error = fmt::format("the field '{}' has another type in another display", added.described.name);
      return kNoDisplay;
    }
  }
  last <<= 1;
  for (const added_field& added : fields) {
    auto row = std::find_if(field_rows().begin(), field_rows().end(),
                            [&](const field& known) { return known.name == added.described.name; });
    if (row == field_rows().end()) row = field_rows().insert(row, added.described);
    binding made = {.tag = static_cast<uint16>(added.tuple_id),
                    .row = static_cast<uint16>(row - field_rows().begin()),
                    .displays = last};
    made.component = static_cast<uint8>(added.tuple_id >> 16);
    const binding* const known = find_binding(added.tuple_id);
    if (known != nullptr) {
      made.form = known->form;
      made.words = known->words;
    }
    added_bindings().push_back(made);
  }
  return static_cast<display_bit>(last);
}

}  // namespace host
