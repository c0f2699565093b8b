#!/usr/bin/env bash
# Compares what the library exports with the checked-in list, the list with the public headers, and the headers with what the C program
# of the tests includes: exports_test.sh LIBRARY EXPORTS C_SOURCE PLATFORM_HEADERS_DIRECTORY PUBLIC_HEADERS_DIRECTORY...
set -eu
. "$(dirname "$0")/../../support/script.sh"
export LC_ALL=C
library=$1 exports=$2 c_source=$3 platform=$4
shift 4
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

step "the library exports what the list names"
sort "$exports" >"$scratch/listed"
test -s "$scratch/listed" || fail "$exports is empty"
test -z "$(uniq -d "$scratch/listed")" || fail "listed twice: $(uniq -d "$scratch/listed" | tr '\n' ' ')"
nm -D --defined-only "$library" | awk '$2 != "A" { sub(/@@PMCLI_1[.]0$/, "", $3); print $3 }' | sort >"$scratch/exported"
diff -u "$scratch/listed" "$scratch/exported" || fail "the library exports another set of names than $exports lists"

step "every export is in a public header"
# A declaration: the name in front of a parenthesis or a bracket, on a line that is no comment.
find "$@" -name '*.h' -exec cat {} + | sed 's,/\*.*\*/,,; /^ \*/d' >"$scratch/declarations"
while read -r name; do
  grep -Eq "(^|[^A-Za-z0-9_])$name *[[(]" "$scratch/declarations" || fail "$name is in no public header"
done <"$scratch/listed"

step "the C program includes every header"
for directory in "$platform" "$@"; do
  for header in "$directory"/*.h; do
    grep -q "/$(basename "$header")\"" "$c_source" || fail "$c_source does not include $(basename "$header")"
  done
done
