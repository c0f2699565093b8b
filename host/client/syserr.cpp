#include "platform/syserr.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string>
#include <utility>

#include "base/c_edge.h"
#include "base/port_status.h"
#include "messages/calls/session.h"
#include "messages/table_messages.h"
#include "platform/port_config.h"

namespace {

using namespace host;

struct error_text {
  syserr_t error;
  const char* text;
};

constexpr error_text kTexts[] = {
    {0, "success"},
    {-1, "message transport failed"},
    {PM_ERR_GENERAL, "general failure"},
    {PM_ERR_NOT_ALLOWED_ON_INTERFACE, "operation not allowed on the interface"},
    {PM_ERR_UNKNOWN_TLV, "unknown port attribute"},
    {PM_ERR_INVALID_RANGE, "invalid interface range"},
    {PM_ERR_PORT_IN_CHANNEL, "port belongs to a port-channel"},
    {PM_ERR_SPEED_NOT_SUPPORTED, "speed not supported by the port"},
    {PM_ERR_VALUE_OUT_OF_RANGE, "value out of range"},
    {PM_ERR_PORT_LOCKED, "port is locked"},
    {static_cast<syserr_t>(PM_ERR_TEXT_ONLY), "operation not possible at the moment"},
    {PM_ERR_NO_TRANSCEIVER, "no transceiver present"},
    {static_cast<syserr_t>(PM_ERR_MODE_E_OUTSIDE_FIRST_PORT), "mode E allowed only on the first port of the group"},
    {PM_ERR_NO_SUCH_INTERFACE, "no such interface"},
    {PM_ERR_TOO_MANY_SUB_INTERFACES, "too many sub-interfaces"},
    {PM_ERR_SUB_INTERFACE_ON_L2, "no sub-interfaces on a layer 2 port"},
    {PM_ERR_SUB_INTERFACE_INTERNAL, "sub-interface 4095 is internal"},
    {kNoSuchTable, "the switch has no such table"},
    {kTableGivenUp, "too many other tables were begun meanwhile"},
};

// The services may be of another process: its text is valid until the same status is asked for again.
const char* text_of_services(uint32 status) {
  static std::map<uint32, std::string> asked;
  return no_throw<const char*>(nullptr, [status]() -> const char* {
    auto text = session_status_text(status);
    return text ? (asked[status] = std::move(*text)).c_str() : nullptr;
  });
}

const char* text_of_status(uint32 status) {
  const char* const text = text_of_port_status(status);
  return text == nullptr && is_status_of_text(status) ? text_of_services(status) : text;
}

}  // namespace

const char* syserr2str(syserr_t error) {
  const auto* const end = std::end(kTexts);
  const auto* const found =
      std::find_if(std::begin(kTexts), end, [=](const error_text& it) { return it.error == error; });
  return found == end ? text_of_status(static_cast<uint32>(error)) : found->text;
}
