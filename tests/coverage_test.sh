#!/usr/bin/env bash
# What tests/coverage.py reports of a library of one file. coverage_test.sh SOURCE_TREE
set -eu
. "$(dirname "$0")/support/script.sh"
coverage=$1/tests/coverage.py
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

mkdir -p "$scratch/infra/port_manager/pm" "$scratch/tests"
printf '%s\n' 'if (speed != 0)' '  start();' 'stop();' >"$scratch/infra/port_manager/pm/fans.cpp"

# report REASON...: the first line has a branch that is not taken, the second does not run; sets out and code
report() {
  printf '%s\n' '# FILE | PART | REASON' "$@" >"$scratch/tests/coverage_reasons.txt"
  cat >"$scratch/coverage.json" <<'JSON'
{"files": [{"file": "infra/port_manager/pm/fans.cpp", "lines": [
  {"line_number": 1, "count": 4, "branches": [{"count": 0}, {"count": 4}, {"count": 0, "throw": true}]},
  {"line_number": 2, "count": 0, "branches": []},
  {"line_number": 3, "count": 4, "branches": []}]}]}
JSON
  code=0
  out=$(python3 "$coverage" "$scratch" "$scratch/coverage.json" 2>&1) || code=$?
}

step "what does not run is counted"
report 'pm/fans.cpp | speed != 0 | the speed is known' 'pm/fans.cpp | start() | there are no fans'
[ "$code" -eq 0 ] || fail "exit code $code: $out"
has_line "$out" "1 of 3 lines and 1 of 2 branches do not run"

step "a line and a branch without a reason"
report 'pm/fans.cpp | speed != 0 | the speed is known'
[ "$code" -eq 1 ] || fail "exit code $code: $out"
has_line "$out" "without a reason: infra/port_manager/pm/fans.cpp:2: start();"
report 'pm/fans.cpp | start() | there are no fans'
[ "$code" -eq 1 ] || fail "exit code $code: $out"
has_line "$out" "without a reason: infra/port_manager/pm/fans.cpp:1: if (speed != 0)"

step "a reason for a line that runs, for none, and for no file"
for reason in 'pm/fans.cpp | stop()' 'pm/fans.cpp | pause()' 'pm/fan_trays.cpp | start()'; do
  report 'pm/fans.cpp | speed != 0 | the speed is known' 'pm/fans.cpp | start() | there are no fans' "$reason | it was so"
  [ "$code" -eq 1 ] || fail "$reason: exit code $code: $out"
  has_line "$out" "a reason that nothing needs: $reason"
  [ "$(grep -c 'a reason that nothing needs' <<<"$out")" -eq 1 ] || fail "others are reported, too: $out"
done
