#include "shell/session/dry_run.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"
#include "shell/grammar/words.h"
#include "shell/output/command_output.h"
#include "shell/session/invocation.h"

namespace host {

dry_run::dry_run(uint32 num_files) : state_{the_machine(), {}}, running_(state_), num_files_(num_files) {}

bool is_skipped_in_dry_run(const command_line& line) {
  const command_effect effect = line.what->effect;
  return effect == command_effect::outside || (effect == command_effect::writes_file && line.file != "-");
}

int skip_in_dry_run(const invocation& run) {
  run.output.text("Skipped in a dry run: " + in_quotes(run.line.text) + ".\n");
  return kDone;
}

void leave_dry_run(shell& session) {
  if (session.trying && !session.trying->is_of_whole_session() && session.num_files <= session.trying->num_files())
    session.trying.reset();
}

}  // namespace host
