#include "shell/output/document/interface_answers.h"

#include <cstddef>
#include <utility>

#include "messages/calls/command_account.h"

namespace host {
namespace {

// As a service would write it.
constexpr std::byte kNoPermission[] = {static_cast<std::byte>(absence::no_permission)};

}  // namespace

interface_answers::interface_answers(std::vector<property> asked, bool hides_traffic)
    : asked_(std::move(asked)), hides_traffic_(hides_traffic) {}

void interface_answers::begin(if_index_t if_index) {
  if_index_ = if_index;
  unknown_.reset();
  all_.reset();
}

// Requested once per command. If the service does not answer, no value counts as unknown; the failure is noted.
bool interface_answers::knows_all() {
  if (!knows_all_) knows_all_ = ask_source_knows_all(client_queue()).value_or(true);
  return *knows_all_;
}

bool interface_answers::is_unknown(property of) {
  if (if_index_ == 0 || of == property::none || asked_.empty() || knows_all()) return false;
  if (!unknown_) unknown_ = ask_unknown_values(client_queue(), if_index_, asked_).value_or(unknown_answer{});
  return unknown_->has(of);
}

std::optional<std::vector<interface_value>> interface_answers::values() {
  all_ = ask_interface_values(client_queue(), if_index_, asked_, false);
  if (!all_) return std::nullopt;
  std::vector<interface_value> values(all_->values().begin(), all_->values().end());
  if (hides_traffic_)
    for (interface_value& value : values)
      if (is_of_traffic(value.of)) value = {value.of, value_kind::absent, kNoPermission};
  return values;
}

}  // namespace host
