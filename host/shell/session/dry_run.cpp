#include "shell/session/dry_run.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"
#include "shell/commands/handlers.h"
#include "shell/output/command_output.h"
#include "shell/session/shell.h"

namespace host {

dry_run::dry_run(uint32 num_files) : state_{the_machine(), {}}, running_(state_), num_files_(num_files) {}

bool is_skipped_in_dry_run(const command_line& line) {
  constexpr int (*kSkipped[])(const invocation&) = {clear_all,           clear_range,     clear_ethernet,
                                                    clear_port_channels, clear_loopbacks, clear_inband,
                                                    clear_management,    advance_clock};
  if (line.what->run == copy_running_config) return line.file != "-";
  return std::find(std::begin(kSkipped), std::end(kSkipped), line.what->run) != std::end(kSkipped);
}

int skip_in_dry_run(const invocation& run) {
  run.output.text("Skipped in a dry run: " + quoted(run.line.text) + ".\n");
  return kDone;
}

void leave_dry_run(shell& session) {
  if (session.trying && !session.trying->is_of_whole_session() && session.num_files <= session.trying->num_files())
    session.trying.reset();
}

int configure_dry_run(const invocation& run) {
  if (run.session.edited) {
    run.output.complain("a dry run cannot begin while there is a candidate. Type 'end' to leave the candidate first.");
    return kUsage;
  }
  if (!run.session.trying) run.session.trying = std::make_unique<dry_run>(run.session.num_files);
  run.session.mode = kConfigureMode;
  return kDone;
}

}  // namespace host
