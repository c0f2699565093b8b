// Listings of interfaces, as the port manager answers them.
#pragma once

#include <algorithm>

#include "platform/mts.h"
#include "platform/port_manager.h"
#include "platform/types.h"
#include "platform/vsh.h"
#include "support/port_manager.h"
#include "support/reader.h"
#include "support/scope.h"

namespace pmcli {

// The interfaces of a listing message, which stays the caller's. Its count is limited by the size of its
// payload.
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

// Requests the interfaces of a kind from the port manager; a failure is printed. Returns 0 and fills `answer`, or the
// error.
inline int32 request_listing(if_index_type_t kind, mts_q_handle_t q, message* answer) {
  const int32 error = pm_get_if_index_listing(kind, q, answer->ref(), kPortManagerTimeout);
  if (error == 0)
    answer->hold();
  else
    vsh_print_mts_error_message(VSH_MTS_ERROR_REQUEST, mts_errno_get(q));
  return error;
}

}  // namespace pmcli
