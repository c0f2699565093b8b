#include "shell/library/views.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <map>
#include <utility>

namespace host {
namespace {

// Views and handlers that other libraries added.
std::deque<interface_view>& added_views() {
  static std::deque<interface_view> views;
  return views;
}

std::deque<std::vector<if_index_type_t>>& kinds_of_added_views() {
  static std::deque<std::vector<if_index_type_t>> kinds;
  return kinds;
}

std::vector<provided_kinds>& all_provided_kinds() {
  static std::vector<provided_kinds> provided;
  return provided;
}

std::map<command_handler, std::string>& names_of_added_handlers() {
  static std::map<command_handler, std::string> names;
  return names;
}

}  // namespace

const interface_view* add_view(std::vector<if_index_type_t> kinds, const added_handlers& handlers) {
  const auto& kept = kinds_of_added_views().emplace_back(std::move(kinds));
  return &added_views().emplace_back(interface_view{.kinds = kept, .own = handlers});
}

void provide_kinds(const provided_kinds& kinds) { all_provided_kinds().push_back(kinds); }

void name_added_handler(command_handler handler, std::string name) {
  names_of_added_handlers().insert_or_assign(handler, std::move(name));
}

std::string_view name_of_added_handler(command_handler handler) {
  const auto found = names_of_added_handlers().find(handler);
  return found == names_of_added_handlers().end() ? std::string_view() : found->second;
}

command_handler provided_handler(const interface_view& view, interface_mask_t kind, bool is_structured) {
  for (const provided_kinds& it : all_provided_kinds())
    if (it.view == &view && (it.kinds & kind) != 0 && (is_structured || !it.only_structured)) return it.handler;
  return nullptr;
}

}  // namespace host
