#include "switch/interface_names.h"

#include <algorithm>

namespace host {

const std::vector<interface_names::named_interface>& interface_names::all() const {
  if (!known_) {
    known_ = load_ ? load_() : std::vector<named_interface>();
    std::sort(known_->begin(), known_->end());
  }
  return *known_;
}

std::optional<if_index_t> interface_names::find(std::string_view name) const {
  if (!known_ && may_exist_ && !may_exist_(name)) return std::nullopt;
  const auto& known = all();
  const auto found = std::lower_bound(known.begin(), known.end(), name,
                                      [](const named_interface& it, std::string_view text) { return it.first < text; });
  return found != known.end() && found->first == name ? std::optional(found->second) : std::nullopt;
}

}  // namespace host
