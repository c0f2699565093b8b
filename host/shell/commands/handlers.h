// The commands of the shell.
#pragma once

#include <span>

#include "shell/grammar/grammar.h"
#include "shell/library/command_library.h"
#include "shell/output/exit_codes.h"

namespace host {

struct shell;
class command_output;

// A command that runs.
struct invocation {
  const command_line& line;
  shell& session;
  command_output& output;
};

// Calls a handler of a display. When one of another library does not return 0, it failed; that is an error of the
// command.
void call_handler(const invocation& run, command_handler handler, paraminfo_t* block);

// False, after a complaint, when the line names a module that the switch does not have.
bool has_named_module(const invocation& run);

// Displays.
int show_interface(const invocation& run);
int show_overview(const invocation& run);
int show_panel(const invocation& run);
int show_kinds(const invocation& run, std::span<const if_index_type_t> kinds);  // all interfaces of some kinds
int show_transceivers(const invocation& run);
int show_module_resources(const invocation& run);
int show_added(const invocation& run);
int show_kernel_map(const invocation& run);
int clear_all(const invocation& run);
int clear_range(const invocation& run);
int clear_ethernet(const invocation& run);
int clear_port_channels(const invocation& run);
int clear_loopbacks(const invocation& run);
int clear_inband(const invocation& run);
int clear_management(const invocation& run);
int advance_clock(const invocation& run);
int show_transport(const invocation& run);
int show_version(const invocation& run);
int show_clock(const invocation& run);
int help(const invocation& run);
int find_commands(const invocation& run);
int set_screen_lines(const invocation& run);
int leave(const invocation& run);

// The configuration.
int configure(const invocation& run);
int configure_candidate(const invocation& run);
int configure_dry_run(const invocation& run);
int show_diff(const invocation& run);
int commit(const invocation& run);
int commit_confirmed(const invocation& run);
int confirm_commit(const invocation& run);
int discard(const invocation& run);
int choose_interfaces(const invocation& run);
int delete_interfaces(const invocation& run);
int set_ports(const invocation& run);
int set_ports_of_host(const invocation& run);
int undo(const invocation& run);
int show_history(const invocation& run);
int show_changes(const invocation& run);
int leave_mode(const invocation& run);
int leave_configuration(const invocation& run);
int show_running_config(const invocation& run);
int show_startup_config(const invocation& run);
int copy_running_config(const invocation& run);

}  // namespace host
