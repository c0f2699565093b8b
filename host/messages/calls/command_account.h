// The answers of services to the settings, clears and creations of a command.
//
// A command that needs the answers opens an account on its queue. Client functions note answers in the account
// of their queue; those without a queue in their contract use client_queue(), which belongs to the account that was
// opened last. Without an account nothing is noted.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "platform/mts.h"
#include "platform/port_config.h"
#include "platform/syserr.h"

namespace host {

struct setting_results {
  bool was_asked = false;   // some service got a request
  bool has_failed = false;  // a request itself failed
  std::vector<pm_port_cfg_status_t> ports;
};

struct clear_result {
  if_index_t low, high;      // the interfaces of the request, bounds included
  std::string_view service;  // that was asked, such as "the port manager"
  syserr_t error;            // 0: they are cleared

  bool operator==(const clear_result&) const = default;
};

// Accounts end in the reverse order of their beginning.
class command_account {
 public:
  explicit command_account(mts_q_handle_t q);
  ~command_account();
  command_account(const command_account&) = delete;
  command_account& operator=(const command_account&) = delete;

  setting_results settings;
  std::vector<clear_result> clears;

  // The port manager's last answer to a request to create or delete interfaces; 0 is success, or no request.
  syserr_t creation_error = 0;

 private:
  mts_q_handle_t q_;
  command_account* outer_;  // of client_queue()
};

// The queue of client functions that are not given one; -1 when there is no memory for it.
mts_q_handle_t client_queue();

// The creation error in the account of a queue; 0 without an account.
syserr_t creation_error_of(mts_q_handle_t q);

// ---- For client functions, each with the queue of its request.

// A request for settings failed, or was answered for these ports.
void note_failed_request(mts_q_handle_t q);
void note_results(mts_q_handle_t q, std::span<const pm_port_cfg_status_t> ports);

// The port manager or the statistics service, by its access point, answered a request to clear counters.
void note_clear(mts_q_handle_t q, uint32 sap, if_index_t low, if_index_t high, syserr_t error);

void note_creation(mts_q_handle_t q, syserr_t error);

}  // namespace host
