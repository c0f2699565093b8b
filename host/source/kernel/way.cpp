#include "source/kernel/way.h"

namespace host {

std::set<uint32> devices_below(const std::vector<kernel_link>& links, uint32 number) {
  std::set<uint32> found;
  std::vector<uint32> left{number};
  while (!left.empty()) {
    const uint32 it = left.back();
    left.pop_back();
    if (it == 0 || !found.insert(it).second) continue;
    for (const kernel_link& link : links) {
      if (link.number == it && !link.kind.empty() && link.kind != "veth") left.push_back(link.parent);
      if (link.master == it) left.push_back(link.number);
    }
  }
  return found;
}

}  // namespace host
