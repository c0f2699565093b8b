#!/usr/bin/env bash
# What a newcomer does first: newcomer_test.sh SOURCE_TREE. The optimised build is there already, or is made now.
set -eu
. "$(dirname "$0")/support/script.sh"
run="$1/run"

step "one interface"
first=$("$run" -c "show interface ethernet 1/1") || fail "./run ends with $?"
case "$first" in
"Ethernet1/1 is up"*"  Hardware: "*"  MTU 1500 bytes, BW "*) ;;
*) fail "./run shows: $first" ;;
esac

step "the structured form"
"$run" -c "show interface | json" | jq -e '.schema_version == 2 and (.interfaces | length) > 90' >/dev/null ||
  fail "the structured form is no JSON, or too short"

step "an interface that does not exist"
status=0
"$run" -c "show interface ethernet 63/1" 2>/dev/null || status=$?
[ "$status" -eq 4 ] || fail "an interface that does not exist ends with $status"
