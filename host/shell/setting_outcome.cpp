#include "shell/setting_outcome.h"

#include <algorithm>

#include "platform/syserr.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"
#include "shell/shell.h"
#include "switch/port_status.h"

namespace host {
namespace {

const char* text_of(uint32 status) {
  const char* const text = syserr2str(static_cast<syserr_t>(status));
  return text != nullptr ? text : "";
}

constexpr uint32 tuple_id(uint32 type, uint16 tag) { return type << 24 | tag; }

template <typename Test>
bool any_port(std::span<const pm_port_cfg_status_t> ports, Test test) {
  return std::any_of(ports.begin(), ports.end(),
                     [&](const pm_port_cfg_status_t& port) { return test(uint32{port.status}); });
}

int exit_code_of_ports(std::span<const pm_port_cfg_status_t> ports) {
  if (any_port(ports, [](uint32 status) { return status == PORT_STATUS_NO_RIGHT; })) return kNotPermitted;
  return any_port(ports, [](uint32 status) { return status != 0; }) ? kSomeInterfacesFailed : kDone;
}

}  // namespace

void record_refusals(command_output& output, std::span<const pm_port_cfg_status_t> ports) {
  if (!output.is_structured()) return;
  for (const pm_port_cfg_status_t& port : ports) {
    const uint32 status = port.status;
    if (status == 0) continue;
    char name[64];
    output.begin_interface(sprintf_if_index(name, port.if_index));
    output.bind({tuple_id(CMD_TYPE_UINT32, kTagSettingStatus), &status});
    output.bind({tuple_id(CMD_TYPE_STRING, kTagSettingText), text_of(status)});
    output.end_interface();
  }
}

int exit_code_of(int32 worst, const setting_results& results) {
  if (worst == kForbiddenSetting) return kNotPermitted;
  if (results.has_failed) return kServiceFailed;
  if (const int code = exit_code_of_ports(results.ports); code != kDone) return code;
  if (worst == 0) return kDone;
  return results.was_asked ? kSomeInterfacesFailed : kUsage;
}

int report_refusals(const invocation& run, const std::string& words, std::span<pm_port_cfg_status_t> ports) {
  const int code = exit_code_of_ports(ports);
  if (code != kDone) run.session.library.print_refusals(words.c_str(), ports.data(), static_cast<uint32>(ports.size()));
  run.output.flush();
  record_refusals(run.output, ports);
  return code;
}

}  // namespace host
