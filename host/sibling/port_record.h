// The port manager's record of an interface.
#pragma once

#include "platform/port_manager.h"
#include "sibling/frame.h"

namespace sibling {

// Requests the record and frees it. Without one the reason was printed.
class port_record {
 public:
  explicit port_record(const request& requested);
  ~port_record();
  port_record(const port_record&) = delete;
  port_record& operator=(const port_record&) = delete;

  explicit operator bool() const { return record_ != nullptr; }
  pm_port_info_t* get() const { return record_; }

 private:
  pm_port_info_t* record_ = nullptr;
};

}  // namespace sibling
