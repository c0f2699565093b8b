#include "transport/failures.h"

#include <vector>

#include "base/c_edge.h"

namespace host {
namespace {

std::vector<failure> noted;

}  // namespace

std::span<const failure> noted_failures() { return noted; }

void note_failure(const failure& failed) {
  no_throw(0, [&] { return noted.push_back(failed), 0; });
}

void forget_failures() { noted.clear(); }

}  // namespace host
