// Names that interfaces have beside their word and number: those of the kernel's devices.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/if_index.h"

namespace host {

class interface_names {
 public:
  using named_interface = std::pair<std::string, if_index_t>;
  using loader = std::function<std::vector<named_interface>()>;

  // `load` is called once, when a name is looked for. Without it there are no names.
  explicit interface_names(loader load = {}) : load_(std::move(load)) {}

  // The interface with exactly this name.
  std::optional<if_index_t> find(std::string_view name) const;

  // All names, sorted.
  const std::vector<named_interface>& all() const;

 private:
  loader load_;
  mutable std::optional<std::vector<named_interface>> known_;
};

}  // namespace host
