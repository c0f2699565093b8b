// Requests for the values of an interface.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "messages/interface_values.h"
#include "platform/mts.h"

namespace host {

// Owns the bytes of its values.
class values_answer {
 public:
  values_answer(std::vector<std::byte> bytes, std::vector<interface_value> values)
      : bytes_(std::move(bytes)), values_(std::move(values)) {}
  values_answer(values_answer&&) = default;
  values_answer& operator=(values_answer&&) = default;
  values_answer(const values_answer&) = delete;
  values_answer& operator=(const values_answer&) = delete;
  ~values_answer() = default;

  // In the order of the request.
  std::span<const interface_value> values() const { return values_; }

  // The value of a property, or null when the answer has none: no service knows the property, or only what is absent
  // was asked for.
  const interface_value* find(property of) const;

 private:
  std::vector<std::byte> bytes_;
  std::vector<interface_value> values_;
};

// Asks for values of an interface, or only for those that are absent. Nothing when the service does not answer,
// refuses, or does not know the interface, and when its answer is damaged, which is noted.
std::optional<values_answer> ask_interface_values(mts_q_handle_t q, if_index_t if_index,
                                                  std::span<const property> asked, bool only_absent);

// Those of these properties whose values are absent for another reason than absence::none. Nothing as above.
std::optional<unknown_answer> ask_unknown_values(mts_q_handle_t q, if_index_t if_index,
                                                 std::span<const property> asked);

// Whether values are absent only because there are none: then displays need no request.
// Nothing as above.
std::optional<bool> ask_source_knows_all(mts_q_handle_t q);

}  // namespace host
