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

  using inquiry = std::function<bool(std::string_view)>;

  // `load` is called once, when a name is looked for. Without it there are no names. `may_exist` may answer more
  // cheaply that a name does not exist: then nothing is loaded for it.
  explicit interface_names(loader load = {}, inquiry may_exist = {})
      : load_(std::move(load)), may_exist_(std::move(may_exist)) {}

  // The interface with exactly this name.
  std::optional<if_index_t> find(std::string_view name) const;

  // All names, sorted.
  const std::vector<named_interface>& all() const;

 private:
  loader load_;
  inquiry may_exist_;
  mutable std::optional<std::vector<named_interface>> known_;
};

}  // namespace host
