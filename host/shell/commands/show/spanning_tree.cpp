// "show spanning-tree".
#include "shell/commands/group.h"
#include "shell/commands/show/table_display.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"

namespace host {
namespace {

// clang-format off
constexpr table_column kTreeColumns[] = {
    {{"Port", 1}, property::interface, 13},
    {{"Device", 1}, property::device, 8},
    {{"Bridge", 2}, property::bridge, 8},
    {{"State", 1}, property::spanning_tree_state, 10},
    {{"Role", 3}, property::spanning_tree_role, 10},
    {{"Cost", 4, true}, property::path_cost, 4},
    {{"Priority", 5, true}, property::port_priority},
    {{"Designated bridge", 6}, property::designated_bridge, 19},
    {{"Root bridge", 7}, property::root_bridge, 19},
};
// clang-format on

constexpr table_view kBridgePorts = {table_id::bridge_ports, "bridge ports", kTreeColumns};

int show_spanning_tree(const invocation& run) { return show_table(run, kBridgePorts); }

constexpr display kSpanningTreeShown = {
    .bit = kSpanningTreeDisplay, .name = "spanning_tree", .list = "ports", .is_table = true};

// clang-format off
constexpr command kSpanningTreeRows[] = {
    {"show spanning-tree", "Bridge ports with state, role and cost", show_spanning_tree, kSpanningTreeShown},
    {"show spanning-tree interface RANGE", "Bridge ports of a range", show_spanning_tree, kSpanningTreeShown},
};
// clang-format on

constexpr word_help kSpanningTreeWords[] = {
    {"spanning-tree", "Spanning tree of bridge ports"},
};

}  // namespace

constexpr command_group kSpanningTreeCommands = {kSpanningTreeRows, kSpanningTreeWords};

}  // namespace host
