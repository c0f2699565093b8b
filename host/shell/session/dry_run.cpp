#include "shell/session/dry_run.h"

#include "messages/calls/session.h"
#include "shell/session/state.h"

namespace host {

bool begin_dry_run(shell& session, uint32 num_files) {
  if (session.trying) return true;
  if (!session_dry_run(true)) return false;
  session.trying = begun_dry_run{num_files};
  return true;
}

void leave_dry_run(shell& session) {
  if (!session.trying || session.trying->is_of_whole_session() || session.num_files > session.trying->num_files) return;
  session_dry_run(false);
  session.trying.reset();
}

}  // namespace host
