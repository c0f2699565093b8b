// The small switch with its services and a queue of a command. At the end every message has been accounted for.
#pragma once

#include <gtest/gtest.h>

#include "host/switch/small_machine.h"
#include "service/services.h"
#include "transport/transport.h"

namespace host {

class Clients : public testing::Test {
 protected:
  Clients() { transport_register(all_services()); }
  ~Clients() override {
    transport_register(all_services());
    transport_close_queue(q_);
    const transport_account now = transport_accounts();
    EXPECT_EQ(now.sent - before_.sent + now.received - before_.received, now.dropped - before_.dropped);
    EXPECT_EQ(now.dropped_twice, before_.dropped_twice);
    EXPECT_EQ(now.never_dropped, before_.never_dropped);
  }

  small_machine names_ = install_small_machine();
  transport_account before_ = transport_accounts();
  mts_q_handle_t q_ = transport_open_queue();
};

}  // namespace host
