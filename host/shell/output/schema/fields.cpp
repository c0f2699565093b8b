// The fields of the structured form that are not values of interfaces: only displays bind them. For their keys the
// rules of messages/property_fields.cpp hold.
#include <iterator>

#include "shell/output/schema/schema.h"

namespace host {
namespace {

using enum field_type;

// clang-format off
constexpr field kFields[] = {
    // Messages of this process.
    {property::none, "sent", integer, "messages", "Messages sent", "Messages sent to services"},
    {property::none, "received", integer, "messages", "Messages received", "Messages received from services"},
    {property::none, "dropped", integer, "messages", "Messages released", "Received messages that were released"},
    {property::none, "dropped_twice", integer, "messages", "Messages released twice", "Messages that were released more than once"},
    {property::none, "never_dropped", integer, "messages", "Messages never released", "Received messages that were not released"},

    // The result of a setting of a port.
    {property::none, "status", integer, "", "Status", "Status with which the port refused the setting; 0 when it did not"},
    {property::none, "text", text, "", "Refusal", "Text of that status; null when the port did not refuse"},
    {property::none, "setting", text, "", "Setting", "Command that was to change the port"},
    {property::none, "result", text, "", "Result", "What became of it: \"applied\", \"unchanged\" or \"refused\""},
    {property::none, "reason", text, "", "Reason", "Why it was refused; null when it was not"},

    // Configuration.
    {property::none, "interface_range", text, "", "Interfaces", "Interfaces that the command is for; null for none"},
    {property::none, "command", text, "", "Command", "Command that makes the setting"},
    {property::none, "step", integer, "", "Step", "Which change it is, counted from the first of the session"},
    {property::none, "changed_at", time, "", "Time", "When the command ran, in UTC"},
    {property::none, "user", text, "", "User", "Who ran the command, or has the session"},
    {property::none, "before", text, "", "Before", "Commands that made the settings before, separated by semicolons"},
    {property::none, "after", text, "", "After", "Commands that make the settings afterwards, separated by semicolons"},

    // The place of a port.
    {property::none, "unit", integer, "", "Unit", "Satellite unit of the port; null in the switch itself"},
    {property::none, "module", integer, "", "Module", "Module of the port"},

    // Resources of a module.
    {property::none, "level", text, "", "Level", "What the record is about: \"module\", \"port group\", \"buffer group\" or \"port\""},
    {property::none, "port", full_name, "", "Port", "Full name of the port"},
    {property::none, "port_group", integer, "", "Port group", "Number of the port group, or of the one that it is in"},
    {property::none, "buffer_group", integer, "", "Buffer group", "Number of the buffer group, or of the one that it is in"},
    {property::none, "bb_credits", integer, "credits", "Buffer credits", "Buffer-to-buffer credits of the port"},
    {property::none, "total_buffers", integer, "buffers", "Total buffers", "Buffers of the group"},
    {property::none, "available_buffers", integer, "buffers", "Available buffers", "Buffers that no port uses"},
    {property::none, "performance_buffers", integer, "buffers", "Performance buffers", "Performance buffers of the group or the port"},
    {property::none, "available_performance_buffers", integer, "buffers", "Available performance buffers", "Performance buffers that no port uses"},
    {property::none, "bandwidth_mbps", integer, "Mbit/s", "Bandwidth", "Bandwidth of the group or the port"},
    {property::none, "available_bandwidth_mbps", integer, "Mbit/s", "Available bandwidth", "Bandwidth that no port uses"},

    // A device of the kernel.
    {property::none, "name_reason", text, "", "Reason", "Why the device has the interface, such as \"default route\", \"stored\" or \"vlan of eth1\""},

    // The shell and what it runs on.
    {property::none, "program_version", text, "", "Version", "Version of the shell"},
    {property::none, "library", text, "", "Command library", "File that the command library was loaded from"},
    {property::none, "platform", text, "", "Platform", "\"simulated switch\", or \"Linux\" for the devices of the kernel"},
    {property::none, "switch_name", text, "", "Switch", "Name of the simulated switch; null over the kernel"},
    {property::none, "switch_file", text, "", "Switch file", "File that describes the simulated switch; null when there is none"},
    {property::none, "kernel_release", text, "", "Kernel release", "Release of the kernel; null for a simulated switch"},
    {property::none, "clock_time", time, "", "Clock", "Time of the switch's clock, in UTC"},

    // A session with the switch.
    {property::none, "session", integer, "", "Session", "Number of the session, counted from 1 since the switch was started"},
    {property::none, "terminal", text, "", "Terminal", "Terminal of the session; null when it has none"},
    {property::none, "process", integer, "", "Process", "Number of the process that uses the session; null when it has ended and its commit waits"},
    {property::none, "since", time, "", "Since", "When the session began, in UTC"},
    {property::none, "holds", text, "", "Holds", "What the session holds: \"candidate\", \"commit\" for one that waits, or both with a comma; null for nothing"},
    {property::none, "confirmation_seconds", integer, "s", "Seconds to confirm", "Time until the commit that waits is rolled back; null when none waits"},
};
// clang-format on

static_assert(std::size(kFields) == kNumOwnRows - kRowSent);

}  // namespace

std::span<const field> display_fields() { return kFields; }

}  // namespace host
