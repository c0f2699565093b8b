// "show interface transceiver" and "show transceiver".
#include <algorithm>

#include "shell/commands/show/interface.h"
#include "shell/commands/show/library_display.h"

namespace host {
namespace {

constexpr if_index_type_t kKindsWithOptics[] = {IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE, IF_TYPE_FC};

constexpr display kTransceiverShown = {kTransceiverDisplay, {}, "transceiver", true, true};
constexpr display kTransceiverDetailsShown = {kTransceiverDetailsDisplay, {}, "transceiver_details", true, true};
constexpr display kCalibrationShown = {kCalibrationDisplay, {}, "transceiver_calibrations", true, true};

// clang-format off
constexpr interface_display kTransceiverDisplays[] = {
    {"show interface [RANGE] transceiver", "Transceivers: identity, state and measured values", kTransceiverShown,
     {DISPLAY_TRANSCEIVER, kKindsWithOptics, kNoHeaders}},
    {"show interface [RANGE] transceiver details", "Transceivers with the limits of their values", kTransceiverDetailsShown,
     {DISPLAY_TRANSCEIVER_DETAIL, kKindsWithOptics, kNoHeaders}},
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
constexpr command kOfAllPorts[] = {
    {"show transceiver", "Transceivers of all ports", show_transceivers, kTransceiverShown, &kTransceiverDisplays[0].view},
    {"show transceiver details", "All transceivers with the limits of their values", show_transceivers, kTransceiverDetailsShown, &kTransceiverDisplays[1].view},
    {"show transceiver calibrations", "All transceivers with their calibration constants", show_transceivers, kCalibrationShown, &kTransceiverDisplays[2].view},
};
// clang-format on

constexpr auto kTransceiverRows = [] {
  constexpr auto kOfRanges = commands_of<kTransceiverDisplays>();
  std::array<command, kOfRanges.size() + std::size(kOfAllPorts)> all{};
  std::copy(std::begin(kOfAllPorts), std::end(kOfAllPorts), std::copy(kOfRanges.begin(), kOfRanges.end(), all.begin()));
  return all;
}();

constexpr word_help kTransceiverWords[] = {
    {"calibrations", "Calibration constants"},
    {"details", "With the limits of their values"},
    {"transceiver", "Transceivers"},
};

}  // namespace

constexpr command_group kTransceiverCommands = {kTransceiverRows, kTransceiverWords};

}  // namespace host
