// "show interface transceiver" and "show transceiver".
#include <algorithm>

#include "shell/commands/show/interface.h"
#include "shell/commands/show/library_display.h"
#include "shell/commands/show/table_display.h"

namespace host {
namespace {

constexpr if_index_type_t kKindsWithOptics[] = {IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE, IF_TYPE_FC};

constexpr display kTransceiverShown = {kTransceiverDisplay, {}, "transceiver", true, true};
constexpr display kTransceiverDetailsShown = {kTransceiverDetailsDisplay, {}, "transceiver_details", true, true};
constexpr display kCalibrationShown = {kCalibrationDisplay, {}, "transceiver_calibrations", true, true};

// clang-format off
constexpr interface_display kTransceiverDisplays[] = {
    {"show interface [RANGE] transceiver", "Transceivers: identity, state and measured values", kTransceiverShown,
     {.id = DISPLAY_TRANSCEIVER, .kinds = kKindsWithOptics, .followed_by_lanes = true}},
    {"show interface [RANGE] transceiver details", "Transceivers with the limits of their values", kTransceiverDetailsShown,
     {.id = DISPLAY_TRANSCEIVER_DETAIL, .kinds = kKindsWithOptics, .followed_by_lanes = true}},
    {"show interface [RANGE] transceiver calibrations", "Transceivers with their calibration constants", kCalibrationShown,
     {DISPLAY_TRANSCEIVER_CALIBRATION, kKindsWithOptics, kNoHeaders}},
};
// clang-format on

// The library lists Fibre Channel and Ethernet ports, as text alone.
int show_transceivers(const invocation& run) {
  constexpr if_index_type_t kNotListed[] = {IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE};
  const interface_view& view = *run.line.what->view;
  if (run.output.is_structured()) return show_kinds(run, view.kinds);
  const command_library& library = run.session.library;
  const auto list = view.id == DISPLAY_TRANSCEIVER          ? library.show_transceivers
                    : view.id == DISPLAY_TRANSCEIVER_DETAIL ? library.show_transceivers_details
                                                            : library.show_transceivers_calibrations;
  const int listed = run_display(run, list);
  return std::max(listed, show_kinds(run, kNotListed));
}

// clang-format off
constexpr table_column kViolationColumns[] = {
    {{"Interface", 1}, property::interface, 13},
    {{"Device", 3}, property::device, 8},
    {{"Lane", 2, true}, property::lane, 4},
    {{"Quantity", 1}, property::quantity, 11},
    {{"Value", 1, true}, property::measured_value, 6},
    {{"Limit", 2, true}, property::violated_limit, 6},
    {{"Unit", 2}, property::value_unit, 4},
    {{"Mark", 1}, property::violation, 4},
};
// clang-format on

constexpr table_view kViolations = {table_id::optical_violations, "values outside their limits", kViolationColumns};

int show_violations(const invocation& run) { return show_table(run, kViolations); }

constexpr display kViolationsShown = {
    .bit = kViolationsDisplay, .name = "transceiver_violations", .list = "violations", .is_table = true};

// clang-format off
constexpr command kOfViolations[] = {
    {"show interface [RANGE] transceiver violations", "Values of transceivers outside their limits", show_violations, kViolationsShown},
};
constexpr command kOfAllPorts[] = {
    {"show transceiver", "Transceivers of all ports", show_transceivers, kTransceiverShown, &kTransceiverDisplays[0].view},
    {"show transceiver details", "All transceivers with the limits of their values", show_transceivers, kTransceiverDetailsShown, &kTransceiverDisplays[1].view},
    {"show transceiver calibrations", "All transceivers with their calibration constants", show_transceivers, kCalibrationShown, &kTransceiverDisplays[2].view},
};
// clang-format on

constexpr auto kTransceiverRows = [] {
  constexpr auto kOfRanges = commands_of<kTransceiverDisplays>();
  std::array<command, kOfRanges.size() + std::size(kOfViolations) + std::size(kOfAllPorts)> all{};
  auto* const after_ranges = std::copy(kOfRanges.begin(), kOfRanges.end(), all.begin());
  auto* const after_violations = std::copy(std::begin(kOfViolations), std::end(kOfViolations), after_ranges);
  std::copy(std::begin(kOfAllPorts), std::end(kOfAllPorts), after_violations);
  return all;
}();

constexpr word_help kTransceiverWords[] = {
    {"calibrations", "Calibration constants"},
    {"details", "With the limits of their values"},
    {"transceiver", "Transceivers"},
    {"violations", "Only values outside their limits"},
};

}  // namespace

constexpr command_group kTransceiverCommands = {kTransceiverRows, kTransceiverWords};

}  // namespace host
