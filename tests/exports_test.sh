#!/bin/sh
# Compares what the library exports with the checked-in list, the list with the public headers, and the headers with what
# the C program of the tests includes.
# usage: exports_test.sh LIBRARY EXPORTS C_SOURCE PLATFORM_HEADERS_DIRECTORY PUBLIC_HEADERS_DIRECTORY...
set -eu
library=$1 exports=$2 c_source=$3 platform=$4
shift 4
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
status=0

fail() {
  echo "exports: $1" >&2
  status=1
}

LC_ALL=C sort "$exports" >"$scratch/listed"
nm -D --defined-only "$library" | awk '{ print $NF }' | LC_ALL=C sort >"$scratch/exported"
test -s "$scratch/listed" || fail "$exports is empty"
test -z "$(LC_ALL=C uniq -d "$scratch/listed")" || fail "listed twice: $(LC_ALL=C uniq -d "$scratch/listed" | tr '\n' ' ')"
diff -u "$scratch/listed" "$scratch/exported" >&2 || fail "the library exports another set of names than $exports lists"

# A declaration: the name in front of a parenthesis or a bracket, on a line that is no comment.
find "$@" -name '*.h' -exec cat {} + | sed 's,/\*.*\*/,,; /^ \*/d' >"$scratch/declarations"
while read -r name; do
  grep -Eq "(^|[^A-Za-z0-9_])$name *[[(]" "$scratch/declarations" || fail "$name is in no public header"
done <"$scratch/listed"

for directory in "$platform" "$@"; do
  for header in "$directory"/*.h; do
    grep -q "/$(basename "$header")\"" "$c_source" || fail "$c_source does not include $(basename "$header")"
  done
done
exit $status
