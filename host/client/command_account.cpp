#include "messages/calls/command_account.h"

#include "client/request.h"
#include "platform/port_manager.h"
#include "transport/transport.h"

namespace host {

command_account::command_account(mts_q_handle_t q) : q_(q), outer_(attach_account(client_queue(), this)) {
  attach_account(q_, this);
}

command_account::~command_account() {
  attach_account(q_, nullptr);
  attach_account(client_queue(), outer_);
}

syserr_t creation_error_of(mts_q_handle_t q) {
  const command_account* const account = attached_account(q);
  return account == nullptr ? 0 : account->creation_error;
}

void note_failed_request(mts_q_handle_t q) {
  command_account* const account = attached_account(q);
  if (account == nullptr) return;
  account->settings.was_asked = true;
  account->settings.has_failed = true;
}

void note_results(mts_q_handle_t q, std::span<const pm_port_cfg_status_t> ports) {
  command_account* const account = attached_account(q);
  if (account == nullptr) return;
  account->settings.was_asked = true;
  account->settings.ports.insert(account->settings.ports.end(), ports.begin(), ports.end());
}

void note_clear(mts_q_handle_t q, uint32 sap, if_index_t low, if_index_t high, syserr_t error) {
  command_account* const account = attached_account(q);
  if (account == nullptr) return;
  const char* const service = sap == MTS_SAP_PORT_MANAGER ? "the port manager" : "the statistics service";
  account->clears.push_back({low, high, service, error});
}

void note_creation(mts_q_handle_t q, syserr_t error) {
  if (command_account* const account = attached_account(q); account != nullptr) account->creation_error = error;
}

}  // namespace host
