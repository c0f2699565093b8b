#!/usr/bin/env bash
# Compiles every header of the platform and of the library alone, and what uses them from either language, as C11, C++17
# and C++20: c_headers_alone.sh C_COMPILER CXX_COMPILER INFRA_DIRECTORY
set -eu
. "$(dirname "$0")/../support/script.sh"
c_compiler=$1 cxx_compiler=$2 infra=$3
library=$infra/port_manager
tests=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# Each header is the first line of a file of its own, so nothing that it needs can come from another.
count=0
for header in "$infra"/platform/*.h "$library"/libpmcli/include/pmcli/*.h "$library"/pm/*.h "$tests"/c_headers_both.h; do
  name=$(basename "$(dirname "$header")")/$(basename "$header")
  echo "#include \"$name\"" | tee "$scratch/${name//\//.}.c" >"$scratch/${name//\//.}.cpp"
  count=$((count + 1))
done
[ "$count" -gt 40 ] || fail "found only $count headers"

# compile_all COMPILER STANDARD SUFFIX
compile_all() {
  printf '%s\n' "$scratch"/*."$3" |
    xargs -P "$(nproc)" -I{} "$1" "-std=$2" -Wall -Wextra -Wpedantic -Werror -fsyntax-only \
      -I "$infra" -I "$library" -I "$library/libpmcli/include" -I "$tests/.." {} >"$scratch/messages" 2>&1 ||
    fail "$(head -n 20 "$scratch/messages")"
}

step "every header alone is C11"
compile_all "$c_compiler" c11 c
step "every header alone is C++17"
compile_all "$cxx_compiler" c++17 cpp
step "every header alone is C++20"
compile_all "$cxx_compiler" c++20 cpp
