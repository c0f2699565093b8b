#include "stage.h"

#include <fcntl.h>

#include <cstdio>
#include <cstring>
#include <span>

#include "service/services.h"
#include "shell/library/command_queue.h"
#include "shell/output/command_output.h"
#include "switch/interface_name.h"
#include "switch/model.h"

namespace fuzz {

if_index_t the_port;
if_index_t the_channel;

namespace {

std::span<const std::byte> the_answer;
mts_opc_t the_opcode;
host::service the_service;

host::reply serve(mts_opc_t opcode, std::span<const std::byte> request) {
  if (opcode != the_opcode) return the_service.serve(opcode, request);
  return {host::reply::kind::answer, {the_answer.begin(), the_answer.end()}};
}

void make_switch() {
  host::machine& machine = host::the_machine();
  machine.chassis_type = 10;
  machine.num_slots = 3;
  machine.cards = {{.slot = 0, .card_type = 1, .model = "", .shares_resources = false},
                   {.slot = 2, .card_type = 2, .model = "", .shares_resources = true}};
  host::interface port;
  port.if_index = the_port = host::index_of(IF_TYPE_ETHERNET, {.slot = 1, .port = 1});
  port.module_in_port = host::transceiver{.supported = true, .type = 1};
  port.settings.channel = the_channel = host::index_of(IF_TYPE_ETH_PORT_CHANNEL, {.port = 5});
  machine.add(port);
  host::interface channel;
  channel.if_index = the_channel;
  machine.add(channel);
}

// What the library prints by itself, and what it prints on the channel.
void throw_output_away() {
  if (std::freopen("/dev/null", "w", stdout) == nullptr) std::abort();
}

int nowhere() {
  static const int descriptor = open("/dev/null", O_WRONLY | O_CLOEXEC);
  return descriptor;
}

}  // namespace

void take_over(uint32_t sap, bool is_on_line_cards, mts_opc_t opcode) {
  throw_output_away();
  make_switch();
  host::transport_register(host::all_services());
  host::transport_limit_waits(1);
  for (const host::service& known : host::all_services())
    if (known.sap == sap && known.is_on_line_cards == is_on_line_cards) the_service = known;
  the_opcode = opcode;
  host::service taken = the_service;
  taken.serve = serve;
  host::transport_register({&taken, 1});
}

void answer_with(const uint8_t* data, std::size_t size, const std::function<void(paraminfo_t*)>& use) {
  the_answer = {reinterpret_cast<const std::byte*>(data), size};
  host::line_filters filters;
  host::output_settings settings;
  settings.descriptor = nowhere();
  host::command_output output(settings, filters);
  const host::command_queue q;
  if_index_t if_index = the_port;
  param_arg_t argument{};
  argument.arg = &if_index;
  paraminfo_t block{};
  block.q = q.handle;
  block.parameter_count = 1;
  block.arg_list[0] = &argument;
  use(&block);
}

pm_port_info_t port_record() {
  pm_port_info_t record;
  std::memset(&record, 0, sizeof record);
  record.if_index = the_port;
  return record;
}

}  // namespace fuzz
