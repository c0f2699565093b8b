#include "switch/model.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

// The first interface that is not below an index.
template <class Interfaces>
auto place_of(Interfaces& interfaces, if_index_t if_index) {
  return std::lower_bound(interfaces.begin(), interfaces.end(), if_index,
                          [](const interface& it, if_index_t requested) { return it.if_index < requested; });
}

// Commands visit interfaces in order and ask for each several times: the last place, or the next one, is mostly right.
template <class Interfaces>
auto* find_in(Interfaces& interfaces, if_index_t if_index) {
  static std::size_t last = 0;
  for (std::size_t place = last; place < interfaces.size() && place <= last + 1; ++place)
    if (interfaces[place].if_index == if_index) return &interfaces[last = place];
  const auto found = place_of(interfaces, if_index);
  if (found == interfaces.end() || found->if_index != if_index) return decltype(&*found)(nullptr);
  last = static_cast<std::size_t>(found - interfaces.begin());
  return &*found;
}

}  // namespace

interface* machine::find(if_index_t if_index) {
  return find_in(interfaces, if_index);
}

const interface* machine::find(if_index_t if_index) const { return find_in(interfaces, if_index); }

void machine::add(interface added) {
  const auto place = place_of(interfaces, added.if_index);
  interfaces.insert(place, std::move(added));
}

bool machine::remove(if_index_t if_index) {
  const auto place = place_of(interfaces, if_index);
  if (place == interfaces.end() || place->if_index != if_index) return false;
  interfaces.erase(place);
  for (interface& it : interfaces) std::erase(it.tracked, if_index);
  return true;
}

void machine::save_startup() {
  startup.clear();
  startup.reserve(interfaces.size());
  for (const interface& it : interfaces) startup.push_back(it.if_index);
}

const user* machine::find_user(std::string_view requested) const {
  const auto found = std::find_if(users.begin(), users.end(), [=](const user& it) { return it.name == requested; });
  return found == users.end() ? nullptr : &*found;
}

std::vector<if_index_t> machine::members_of(if_index_t channel) const {
  std::vector<if_index_t> members;
  if (channel == 0) return members;
  for (const interface& it : interfaces)
    if (it.settings.channel == channel) members.push_back(it.if_index);
  return members;
}

void set_totals_to_zero(statistics& stats) {
  stats.in = stats.out = all_zero<traffic_counters>();
  stats.errors = all_zero<error_counters>();
}

machine& the_machine() {
  static machine only;
  return only;
}

}  // namespace host
