// The in-band interface: the supervisor's internal Fibre-Channel attachment, backed by a kernel device. It has no port
// record, and its views are plain text.

#include <cstdio>

#include "command/frame.h"
#include "interface/kernel_device.h"
#include "interface/management.h"
#include "pm/port_attributes.h"
#include "pmcli/command.h"
#include "pmcli/displays.h"
#include "pmcli/interface.h"

using namespace pmcli;

namespace {

constexpr char kName[] = "sup-fc0";
constexpr char kDevice[] = "eth2";
constexpr uint32 kSpeedMbps = 1000;

void show_counters(cmd_rx_handle_t* rx) {
  std::puts(kName);
  show_device_counters(rx, kDevice);
}

}  // namespace

void print_inband_port_status(int brief_mode) {
  const kernel_device device(kDevice);
  ifreq answer;
  if (!device.is_open() || !device.ask(SIOCGIFFLAGS, &answer)) return;
  const char* const state = (answer.ifr_flags & IFF_UP) != 0 ? "up" : "down";
  if (brief_mode == 0) {
    std::printf("%s is %s\n", kName, state);
    return;
  }
  char speed[80];
  port_speed_string_gbps(kSpeedMbps, speed);
  std::printf("%-25s%-34s%s", kName, state, speed);  // no newline, which is intended
}

void print_inband_port_config(void) {
  std::puts("    Hardware is Fibre Channel");
  std::puts("    Speed is 1 Gbps");
}

void print_inband_port_description(void) {}

void pm_cli_print_inband_brief_info(void) { print_inband_port_status(1); }

void pm_cli_show_inband_port_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t, uint32 command) {
  switch (command) {
    case DISPLAY_DETAIL:
      print_inband_port_status(0);
      print_inband_port_config();
      return show_device_counters(rx_handle, kDevice);
    case DISPLAY_STATUS: return print_inband_port_status(0);
    case DISPLAY_DESCRIPTION: return print_inband_port_description();
    case DISPLAY_BRIEF: return print_inband_port_status(1);
    default: std::puts("Option not supported");
  }
}

int32 pm_cli_show_inband_port_config(paraminfo_t* param) {
  if (param == nullptr || refused_on_standby(param)) return 0;
  cmd_rx_handle_t* const rx = obtain_output(param);
  if (rx == nullptr) return 0;
  switch (param->command_id) {
    case DISPLAY_STATUS:
    case DISPLAY_DESCRIPTION:
    case DISPLAY_BRIEF: pm_cli_show_inband_port_info(rx, param->q, param->command_id); break;
    case DISPLAY_COUNTERS:
    case DISPLAY_COUNTERS_ALL: show_counters(rx); break;
    case DISPLAY_COUNTERS_BRIEF:
    case DISPLAY_NOTHING_105:
    case DISPLAY_NOTHING_106: break;
    default: pm_cli_show_inband_port_info(rx, param->q, DISPLAY_DETAIL); break;
  }
  cmd_prt_send(rx);
  return 0;
}
