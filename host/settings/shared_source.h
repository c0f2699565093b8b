// The source of a switch that several sessions change.
#pragma once

namespace host {

// Puts a source before the one of the_machine(). It passes everything on, but for changes of interfaces that a commit
// of another session holds: it refuses those, with the name of the holder. Trials (settings/trial.h) change nothing and
// are not refused.
void share_source();

}  // namespace host
