#!/usr/bin/env bash
# Whether the library is what abi/ says of its ABI: abi_test.sh LIBRARY FILE RECORD_ABI
set -eu
. "$(dirname "$0")/../../support/script.sh"
library=$1 file=$2 record=$3
[ -e "$library" ] || skip_all "$library is not built"
command -v abidiff >/dev/null || skip_all "abidiff (abigail-tools) is missing"

step "functions, types and symbol versions are those of $(basename "$file")"
changes=$(abidiff "$file" "$library") || fail "$changes
If that is intended: $record $library $file"

step "the comparison sees a change"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
sed "s/pm_verify_yn/pm_verify_no/g" "$file" >"$work/other.abi"
status=0
abidiff "$work/other.abi" "$library" >/dev/null || status=$?
[ $((status & 3)) -eq 0 ] && [ $((status & 4)) -ne 0 ] || fail "a renamed function: abidiff ends with $status"
