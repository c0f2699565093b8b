#include "switch/source.h"

#include <utility>

namespace host {
namespace {

std::unique_ptr<switch_source>& owned_source() {
  static std::unique_ptr<switch_source> only = std::make_unique<switch_source>();
  return only;
}

}  // namespace

void switch_source::complete(interface&, detail) {}
bool switch_source::is_unknown(if_index_t, std::string_view) { return false; }
bool switch_source::knows_all_fields() const { return true; }
bool switch_source::update_statistics(interface&, uint32) { return true; }
void switch_source::clear_counters(interface&, uint32) {}

switch_source& the_source() { return *owned_source(); }

void set_source(std::unique_ptr<switch_source> source) { owned_source() = std::move(source); }

}  // namespace host
