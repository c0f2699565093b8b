// Queries of the interface manager.
#pragma once

#include <cstdio>
#include <cstring>

#include "platform/interface_manager.h"
#include "support/errors.h"

namespace pmcli {

// Prepares for queries. Returns 0, or the error after it was printed.
inline syserr_t prepare_interface_manager() {
  const syserr_t error = im_ext_sbcr_init(262, 0, "clish");
  if (error != 0)
    std::printf("im_ext_sbcr_init failed: 0x%x (%s)\n", static_cast<uint32>(error), system_error_text(error));
  return error;
}

// One question about one interface. `format` words a failure of the call or of the record's own status: interface
// index, result of the call, its text, status of the record.
struct interface_query {
  int32 (*ask)(if_info_t* records, uint32 count);
  const char* format;
};

// Fills a zeroed record. True when both the call and the record are good; otherwise the failure was printed.
// `*error` is the call's result: 0 also when only the record's status is bad.
inline bool ask_interface_manager(const interface_query& query, if_index_t if_index, if_info_t* record,
                                  syserr_t* error) {
  std::memset(record, 0, sizeof *record);  // all of it, the rest of the union too
  record->ifindex = if_index;
  *error = query.ask(record, 1);
  const auto status = static_cast<uint32>(record->status);
  if (*error == 0 && status == 0) return true;
  std::printf(query.format, if_index, static_cast<uint32>(*error), system_error_text(*error), status);
  return false;
}

}  // namespace pmcli
