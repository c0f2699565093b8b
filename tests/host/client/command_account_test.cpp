// What services answered to a command: kept with the command's queue, apart from that of other commands.
#include "messages/calls/command_account.h"

#include <cstdlib>
#include <memory>

#include "client/library_functions.h"
#include "host/client/client_fixture.h"
#include "messages/calls/host_settings.h"
#include "messages/port_manager_messages.h"
#include "platform/clear_counters.h"
#include "platform/port_manager.h"

namespace host {
namespace {

struct scoped_queue {
  scoped_queue() : handle(transport_open_queue()) {}
  ~scoped_queue() { transport_close_queue(handle); }
  scoped_queue(const scoped_queue&) = delete;
  scoped_queue& operator=(const scoped_queue&) = delete;

  mts_q_handle_t handle;
};

class Account : public Clients {
 protected:
  static int32 set_pause(mts_q_handle_t q, if_index_t port) {
    const if_index_range_t range{port, port};
    const std::byte off{0};
    return set_host_setting(q, {&range, 1}, HOST_CFG_SEND_PAUSE, {&off, 1});
  }

  static void clear(mts_q_handle_t q, if_index_t port) {
    uint8* list = nullptr;
    EXPECT_EQ(pm_clear_port_counters(q, 1, &port, 1, &list, 1), 0);
    std::free(list);
  }

  // Not zero: a port is no loopback.
  static uint32 create(mts_q_handle_t q, if_index_t port) {
    intf_range_t ranges{};
    ranges.range_count = 1;
    ranges.range[0] = {port, port};
    return pm_cli_config_loopback_interface(q, 1, 0, &ranges, 60);
  }

  static std::vector<if_index_t> ports_of(const setting_results& results) {
    std::vector<if_index_t> ports;
    for (const pm_port_cfg_status_t& it : results.ports) ports.push_back(it.if_index);
    return ports;
  }

  static std::vector<if_index_t> ports_of(const std::vector<clear_result>& results) {
    std::vector<if_index_t> ports;
    for (const clear_result& it : results) ports.push_back(it.low);
    return ports;
  }

  scoped_queue other_;
};

using ports = std::vector<if_index_t>;

TEST_F(Account, BeginsEmpty) {
  const command_account account(q_);
  EXPECT_FALSE(account.settings.was_asked);
  EXPECT_FALSE(account.settings.has_failed);
  EXPECT_TRUE(account.settings.ports.empty());
  EXPECT_TRUE(account.clears.empty());
  EXPECT_EQ(creation_error_of(q_), 0);
}

TEST_F(Account, QueuesDoNotMix) {
  command_account of_first(q_);
  command_account of_other(other_.handle);

  ASSERT_EQ(set_pause(q_, names_.first_port), 0);
  ASSERT_EQ(set_pause(other_.handle, names_.third_port), 0);
  clear(q_, names_.second_port);
  clear(other_.handle, names_.routed_port);
  const uint32 error = create(q_, names_.first_port);

  EXPECT_EQ(ports_of(of_first.settings), ports{names_.first_port});
  EXPECT_EQ(ports_of(of_other.settings), ports{names_.third_port});
  EXPECT_EQ(ports_of(of_first.clears), ports{names_.second_port});
  EXPECT_EQ(ports_of(of_other.clears), ports{names_.routed_port});
  ASSERT_NE(error, 0U);
  EXPECT_EQ(of_first.creation_error, static_cast<syserr_t>(error));
  EXPECT_EQ(creation_error_of(q_), static_cast<syserr_t>(error));
  EXPECT_EQ(of_other.creation_error, 0);
  EXPECT_EQ(creation_error_of(other_.handle), 0);
}

TEST_F(Account, FailureOfARequestIsThatOfItsQueue) {
  command_account of_first(q_);
  command_account of_other(other_.handle);
  transport_inject_fault("port-manager", {injected_fault::kind::lost});
  EXPECT_EQ(set_pause(other_.handle, names_.first_port), -1);
  transport_inject_fault("port-manager", {});

  EXPECT_TRUE(of_other.settings.was_asked && of_other.settings.has_failed);
  EXPECT_FALSE(of_first.settings.was_asked || of_first.settings.has_failed);
}

// The contract of these functions has no queue.
TEST_F(Account, FunctionsWithoutAQueueNoteInTheLastThatWasOpened) {
  command_account outer(q_);
  clear_port_statistics(names_.first_port);
  {
    command_account inner(other_.handle);
    clear_port_statistics(names_.third_port);
    EXPECT_EQ(ports_of(inner.clears), ports{names_.third_port});
  }
  clear_loopback_counters(names_.loopback);
  EXPECT_EQ(ports_of(outer.clears), (ports{names_.first_port, names_.loopback}));
}

TEST_F(Account, ResultsVanishWithTheQueue) {
  auto queue = std::make_unique<scoped_queue>();
  const mts_q_handle_t closed = queue->handle;
  command_account account(closed);
  clear(closed, names_.first_port);
  create(closed, names_.first_port);
  queue.reset();
  EXPECT_EQ(attached_account(closed), nullptr);
  EXPECT_EQ(creation_error_of(closed), 0);

  const scoped_queue next;  // in the place of the one that was closed
  EXPECT_EQ(attached_account(next.handle), nullptr);
  clear(next.handle, names_.third_port);
  EXPECT_EQ(ports_of(account.clears), ports{names_.first_port});
}

TEST_F(Account, EndsBeforeItsQueue) {
  { const command_account account(q_); }
  EXPECT_EQ(attached_account(q_), nullptr);
  clear(q_, names_.first_port);
  clear_port_statistics(names_.first_port);

  const command_account account(q_);
  EXPECT_TRUE(account.clears.empty()) << "what was answered before it began";
}

TEST_F(Account, WithoutOneNothingIsKept) {
  ASSERT_EQ(set_pause(q_, names_.first_port), 0);
  clear(q_, names_.first_port);
  EXPECT_NE(create(q_, names_.first_port), 0U);
  EXPECT_EQ(attached_account(q_), nullptr);
  EXPECT_EQ(creation_error_of(q_), 0);
}

}  // namespace
}  // namespace host
