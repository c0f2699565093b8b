// The resources of a module: global buffer groups, port groups, local buffer groups, ports.

#include <cstdio>
#include <limits>

#include "module/resource_tree.h"
#include "platform/if_index.h"
#include "platform/platform_data.h"
#include "pmcli/module.h"
#include "support/scope.h"

using namespace pmcli;

namespace {

// ---- Cells ------------------------------------------------------------------------------------------------------

struct cell {
  char text[24];
};

// A number in five columns, or five blanks.
cell wide_number(int32 number) {
  cell shown;
  if (number == kNotReceived)
    std::snprintf(shown.text, sizeof shown.text, "     ");
  else
    std::snprintf(shown.text, sizeof shown.text, "%5d", number);
  return shown;
}

// A number, or two blanks.
cell number_of(int32 number) {
  cell shown;
  if (number == kNotReceived)
    std::snprintf(shown.text, sizeof shown.text, "  ");
  else
    std::snprintf(shown.text, sizeof shown.text, "%d", number);
  return shown;
}

// Of Mbit/s, in single precision.
float gigabits(int32 megabits) { return static_cast<float>(megabits) / 1000.0F; }

cell bandwidth_of(int32 megabits) {
  cell shown;
  if (megabits == kNotReceived)
    std::snprintf(shown.text, sizeof shown.text, "  ");
  else
    std::snprintf(shown.text, sizeof shown.text, "%5.2f", static_cast<double>(gigabits(megabits)));
  return shown;
}

const char* rate_mode_text(int32 mode) {
  enum : int32 { kDedicated = 1, kShared = 2 };
  if (mode == kDedicated) return "dedicated";
  return mode == kShared ? "shared" : "  ";
}

void print_bandwidth(const char* format, int32 megabits) {
  if (megabits != kNotReceived) std::printf(format, static_cast<double>(gigabits(megabits)));
}

void print_count(const char* format, int32 count) {
  if (count != kNotReceived) std::printf(format, count);
}

// ---- Nodes: each prints one with its children, and passes it ------------------------------------------------------

// The result of reading a node: passed, of another kind (which was printed), or incomplete.
enum class node_end { passed, malformed, cut };

using print_node = node_end (*)(reader* at);

// Prints the children, each followed by a line end; one that is not passed is the last.
void print_children(reader* at, uint16 count, print_node print) {
  for (uint16 i = 0; i < count; ++i) {
    const node_end end = print(at);
    if (end == node_end::cut) return;
    std::putchar('\n');
    if (end != node_end::passed) return;
  }
}

// Reads a node of a kind; `at` stays before a node of another kind.
node_end read_node(reader* at, uint32 category, const char* refusal, resource_node* node) {
  reader ahead = *at;
  const auto head = read_node_head(&ahead);
  if (!head) return node_end::cut;
  if (head->category != category) {
    std::printf(refusal, static_cast<int32>(head->category));
    return node_end::malformed;
  }
  *node = *head;
  read_node_values(&ahead, node);
  *at = ahead;
  return node_end::passed;
}

node_end print_port(reader* at) {
  resource_node port;
  const node_end end = read_node(at, PM_RESOURCE_PORT, "Invalid payload: port category not found %d\n", &port);
  if (end != node_end::passed) return end;
  char name[50] = "";
  snprintf_if_index_short(name, sizeof name, port.id);
  std::printf("      %-8s             %5s         %5s        %5s     %s", name, number_of(port.bb_credit).text,
              number_of(port.performance_buffers).text, bandwidth_of(port.bandwidth).text,
              rate_mode_text(port.rate_mode));
  return end;
}

node_end print_local_buffer_group(reader* at) {
  resource_node group;
  const node_end end = read_node(at, PM_RESOURCE_LOCAL_BUFFER_GROUP,
                                 "Invalid payload: local buffer group category not found %d\n", &group);
  if (end != node_end::passed) return end;
  std::printf("    Buffer-Group %d\n", static_cast<int32>(group.id));
  print_count("    Total Buffers          %5d\n", group.bb_credit);
  print_count("    Available Buffers      %5d\n", group.available_buffers);
  if (group.num_children == 0) return end;
  std::putchar('\n');
  print_children(at, group.num_children, print_port);
  return end;
}

node_end print_port_group(reader* at) {
  resource_node group;
  const node_end end = read_node(at, PM_RESOURCE_PORT_GROUP, "Invalid payload: port group not found %d\n", &group);
  if (end != node_end::passed) return end;
  std::printf("  Port-Group %d\n", static_cast<int32>(group.id));
  print_bandwidth("  Total Bandwidth                                    %6.2f\n", group.bandwidth);
  print_bandwidth("  Available Bandwidth                                %6.2f\n", group.available_bandwidth);
  std::putchar('\n');
  print_children(at, group.num_children, print_local_buffer_group);
  return end;
}

// A node of any kind is taken for one.
node_end print_global_buffer_group(reader* at) {
  auto group = read_node_head(at);
  if (!group) return node_end::cut;
  read_node_values(at, &*group);
  std::printf("Total Buffers              %5s         %5s\n", wide_number(group->bb_credit).text,
              wide_number(group->performance_buffers).text);
  std::printf("Available Shared Buffers   %5s         %5s\n", wide_number(group->available_buffers).text,
              wide_number(group->available_performance).text);
  print_children(at, group->num_children, print_port_group);
  return node_end::passed;
}

// For callers that vouch for the node: without an end.
void print_vouched(pmcli::reader at, print_node print, uint32* size) {
  const std::size_t before = at.left();
  print(&at);
  *size += static_cast<uint32>(before - at.left());
}

reader endless(const pm_mod_resource_alloc_resp_data_t* node) {
  return {node, std::numeric_limits<std::ptrdiff_t>::max()};
}

// ---- The answer -------------------------------------------------------------------------------------------------

// Compares a module's own node with its groups; false after a contradiction was printed.
bool is_module_expected(const resource_node& module, uint32 wanted) {
  if (module.id != wanted) {
    std::printf("Incorrect module number %d in response\n", static_cast<int32>(module.id));
    return false;
  }
  if (module.num_values != 0) {
    std::puts("unexpected number of tlv's at module level");
    return false;
  }
  return true;
}

uint32 print_tree(reader at, uint32 wanted) {
  reader ahead = at;
  const auto top = read_node_head(&ahead);
  uint16 num_groups = 1;
  if (top->category == PM_RESOURCE_MODULE) {
    if (!is_module_expected(*top, wanted)) return 0;
    num_groups = top->num_children;
    at = ahead;
  }
  pm_print_module_resources_header();
  std::puts("");
  print_children(&at, num_groups, print_global_buffer_group);
  return 0;
}

uint32 print_answer(const mts_msg_ref_t* answer, uint32 wanted) {
  reader payload(mts_payload_get(answer), mts_payload_size(answer));
  const uint32 error = payload.u32();
  const bool is_answer = payload.ok() && (error != 0 || payload.left() >= sizeof(pm_mod_resource_alloc_resp_data_t));
  if (!is_answer) {
    std::puts("null response");
    return 1;
  }
  if (error == 0) return print_tree(payload, wanted);
  std::puts("Linecard returned error");
  return 0;
}

}  // namespace

uint32 pm_cli_show_mod_resources(paraminfo_type* p, uint8 module_number) {
  constexpr uint32 kAllValues = 65535;
  if (p == nullptr) return 1;
  if (p->ascii_gen != 0) return 0;
  const uint32 slot = module_number;
  const uint32 key = slot * 256 + 2;
  if (pdb_is_module_tamber(key) == 0) {
    std::printf("Command not supported on module in slot %d\n", module_number);
    return 0;
  }
  const pm_mod_resource_category_t category{PM_RESOURCE_MODULE, slot - 1};
  message answer(p->q);
  if (pm_get_module_resources(p->q, 1, &category, kAllValues, key, answer.ref()) != 0) {
    std::puts("pm_get_module_resources returned error");
    return 1;
  }
  answer.hold();
  return print_answer(answer.ref(), slot - 1);
}

void pm_print_module_resources_header(void) {
  std::puts("                          BB_Credit   Performance   Bandwidth   Rate");
  std::puts("                                      Buffers       (Gbps)      Mode");
  std::puts("---------------------------------------------------------------------------");
}

void pm_cli_show_global_buf_group_resources(pm_mod_resource_alloc_resp_data_t* cat_data, uint32* size) {
  print_vouched(endless(cat_data), print_global_buffer_group, size);
}

void pm_cli_show_port_group_resources(pm_mod_resource_alloc_resp_data_t* cat_data, uint32* size) {
  print_vouched(endless(cat_data), print_port_group, size);
}

void pm_cli_show_local_buf_group_resources(pm_mod_resource_alloc_resp_data_t* cat_data, uint32* size) {
  print_vouched(endless(cat_data), print_local_buffer_group, size);
}

void pm_cli_show_port_resources(pm_mod_resource_alloc_resp_data_t* cat_data, uint32* size) {
  print_vouched(endless(cat_data), print_port, size);
}
