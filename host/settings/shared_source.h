// The source of a switch that several sessions change.
#pragma once

namespace host {

// Puts a source before the one of the_machine(). It passes everything on, but for changes of interfaces that a commit
// of another session holds: it refuses those, with the name of the holder. The others are published as events
// (settings/change_feed.h). Trials (settings/trial.h) change nothing: they are neither refused nor published.
void share_source();

}  // namespace host
