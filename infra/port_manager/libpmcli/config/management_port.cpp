#include "config/management_port.h"

#include <cstdio>
#include <cstring>

#include "platform/platform_data.h"

namespace pmcli {

namespace {

constexpr uint32 kConsoleOnlyCard = 40;

bool is_console(const char* terminal) {
  return terminal != nullptr && (std::strcmp(terminal, "/dev/ttyS0") == 0 || std::strcmp(terminal, "/dev/ttyS1") == 0);
}

bool is_without_gigabit(uint32 card) {
  return (card >= 1 && card <= 9) || (card >= 11 && card <= 25) || card == 28 ||
         pm_is_tamber_lindo_linecard(card) != 0 || pm_is_corvid_linecard(card) != 0;
}

}  // namespace

bool is_refused_off_console(const config_command& command) {
  card_module_info_t card{};
  if (command.kind != IF_TYPE_MGMT || get_card_module_info(command.first, &card) != 0) return false;
  if (card.card_type != kConsoleOnlyCard || is_console(command.param->vtyname)) return false;
  std::puts("mgmt0: (error) requested config change not allowed ");
  return true;
}

bool is_gigabit_refused(const config_command& command) {
  card_module_info_t card{};
  if (command.kind != IF_TYPE_MGMT) return false;
  if (get_card_module_info(command.first, &card) != 0) {
    std::puts("error: failed to get module info while setting port speed ");
    return true;
  }
  if (!is_without_gigabit(card.card_type)) return false;
  std::puts("mgmt0: (error) port speed 1G is not supported ");
  return true;
}

}  // namespace pmcli
