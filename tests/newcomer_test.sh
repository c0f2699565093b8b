#!/usr/bin/env bash
# What a newcomer does first: newcomer_test.sh SOURCE_TREE. The optimised build is there already, or is made now.
set -eu
run="$1/run"

fail() {
  printf 'FAILED: %s\n' "$*"
  exit 1
}

first=$("$run" -c "show interface ethernet 1/1") || fail "./run ends with $?"
case "$first" in
"Ethernet1/1 is up"*"  Hardware: "*"  MTU 1500 bytes, BW "*) ;;
*) fail "./run shows: $first" ;;
esac

"$run" -c "show interface | json" | jq -e '.schema_version == 1 and (.interfaces | length) > 90' >/dev/null ||
  fail "the structured form is no JSON, or too short"

status=0
"$run" -c "show interface ethernet 63/1" 2>/dev/null || status=$?
[ "$status" -eq 4 ] || fail "an interface that does not exist ends with $status"

# The build check must not be felt. The best of five runs counts: the machine may be busy.
best=999999
for _ in 1 2 3 4 5; do
  begin=$(date +%s%N)
  "$run" -c "show interface ethernet 1/1" >/dev/null
  took=$((($(date +%s%N) - begin) / 1000000))
  [ "$took" -ge "$best" ] || best=$took
done
printf './run takes %d ms\n' "$best"
[ "$best" -lt 200 ] || fail "./run takes $best ms when there is nothing to build"
