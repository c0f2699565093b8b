#include "shell/session/dry_run.h"

#include "shell/session/state.h"

namespace host {

dry_run::dry_run(uint32 num_files) : state_{the_machine(), {}}, running_(state_), num_files_(num_files) {}

void leave_dry_run(shell& session) {
  if (session.trying && !session.trying->is_of_whole_session() && session.num_files <= session.trying->num_files())
    session.trying.reset();
}

}  // namespace host
