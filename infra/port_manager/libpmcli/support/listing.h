// Listings of interfaces, as the port manager answers them.
#pragma once

#include <algorithm>

#include "platform/mts.h"
#include "platform/types.h"
#include "support/reader.h"

namespace pmcli {

// The interfaces of a listing message, which stays the caller's. Its count is believed only as far as its payload
// reaches.
class interface_listing {
 public:
  explicit interface_listing(const mts_msg_ref_t* answer)
      : entries_(mts_payload_get(answer), mts_payload_size(answer)) {
    const uint32 counted = entries_.u32();
    count_ = static_cast<uint32>(std::min<std::size_t>(counted, entries_.left() / sizeof(if_index_t)));
  }

  uint32 count() const { return count_; }
  uint32 size() const { return count_ * static_cast<uint32>(sizeof(if_index_t)); }  // bytes

  // Calls `visit` with each interface, in the listing's order.
  template <typename Visitor>
  void for_each(const Visitor& visit) const {
    reader entries = entries_;
    for (uint32 i = 0; i < count_; ++i) visit(entries.u32());
  }

 private:
  reader entries_;
  uint32 count_;
};

}  // namespace pmcli
