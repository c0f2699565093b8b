#!/usr/bin/env bash
# The runner of the tests, on tests that pass, fail, crash, exit and are skipped: runner_test.sh RUNNER SAMPLE_TESTS
set -u
runner=$1 sample=$2
here=$(dirname "$0")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() {
  printf '%s\nThe runner printed:\n%s\n' "$1" "$printed"
  exit 1
}
has() { grep -qF -- "$1" <<<"$printed" || fail "no '$1'"; }
has_line() { grep -qxF -- "$1" <<<"$printed" || fail "no line '$1'"; }

# Runs the runner on one program or script: run_on PROGRAMS SCRIPTS [ARGUMENT...]
run_on() {
  printf '{"programs": [%s], "scripts": [%s]}\n' "$1" "$2" >"$scratch/tests.json"
  printed=$("$runner" "${@:3}" "$scratch" 2>&1)
  code=$?
}
name=$(basename "$scratch")
program="{\"name\": \"sample\", \"command\": [\"$sample\"]}"
script="{\"name\": \"script\", \"command\": [\"$here/sample_script.sh\"]}"

echo "step: every end of a test is counted"
run_on "$program" "" -j 1
[ "$code" -eq 1 ] || fail "exit code $code"
has "tests: 5 passed, 4 failed, 2 skipped: "

echo "step: a failure shows its output and the command that runs it alone"
has "for the runner to show"
has_line "  run it alone: $sample --gtest_filter=Sample.Fails"

echo "step: the end of a process belongs to the test that was running"
has_line "FAILED: $name/sample/Sample.Crashes"
has "ended by signal 6 (SIGABRT)"
has_line "FAILED: $name/sample/Sample.Exits"
has_line "FAILED: $name/sample/SampleAtExit.FailsTheProcess (end of process)"
has "exited with 23"

echo "step: a skipped test is named with its reason"
has_line "SKIPPED: $name/sample/Sample.IsSkipped: this machine has no antenna"
has_line "SKIPPED: $name/sample/Sample.DISABLED_IsNotRun: disabled"

echo "step: a pattern selects tests"
run_on "$program" "" -k PassesAfter
[ "$code" -eq 0 ] || fail "exit code $code"
[ "$printed" = "tests: 2 passed, 0 failed, 0 skipped" ] || fail "another summary"

echo "step: the slowest tests are listed"
run_on "$program" "$script" --slowest 2
[ "$(grep -cE '^ +[0-9]+\.[0-9] s  ' <<<"$printed")" -eq 2 ] || fail "not two lines of seconds"
grep -qE "^ +[0-9]+\.[0-9] s  $name/(sample/Sample|script: )" <<<"$printed" || fail "no name after the seconds"

echo "step: nothing that ran is a failure"
run_on "$program" "" -k NoSuchTest
[ "$code" -eq 1 ] || fail "exit code $code"

echo "step: a program that cannot list its tests is a failure"
run_on '{"name": "none", "command": ["/bin/false"]}' ""
[ "$code" -eq 1 ] || fail "exit code $code"
has_line "FAILED: $name/none/list of tests"

echo "step: a script fails in its current step"
run_on "" "$script"
[ "$code" -eq 1 ] || fail "exit code $code"
has_line "FAILED: $name/script: second"
has "what went wrong"
has_line "SKIPPED: $name/script antenna: this machine has none"
has "tests: 1 passed, 1 failed, 1 skipped: $name/script antenna"
