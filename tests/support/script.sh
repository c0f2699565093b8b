# For test scripts, sourced: what tests/run_tests.py reads from them.

# Begins a step. The script fails in the step that it is in.
step() { printf 'step: %s\n' "$*"; }

# Names a part that this machine cannot do: skipped PART REASON
skipped() { printf 'skipped: %s: %s\n' "$1" "$2"; }

# Ends a script that this machine cannot run at all: skip_all REASON
skip_all() {
  skipped everything "$1"
  exit 77
}

fail() {
  printf '%s\n' "$*"
  exit 1
}

has() { grep -qF -- "$2" <<<"$1" || fail "no '$2' in: $1"; }
has_line() { grep -qxF -- "$2" <<<"$1" || fail "no line '$2' in: $1"; }

# Repeats a command until it succeeds: a device or a process that has begun something needs its time, however busy the machine is.
until_true() { until "$@"; do sleep 0.05; done; }
