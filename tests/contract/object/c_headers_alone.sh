#!/usr/bin/env bash
# Compiles every header of the platform and of the library alone, and what uses them from either language, as C11, C++17
# and C++20, with the compilers of the build and with gcc and clang: c_headers_alone.sh C_COMPILER CXX_COMPILER INFRA_DIRECTORY
set -eu
. "$(dirname "$0")/../../support/script.sh"
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

# compile_with C_COMPILER CXX_COMPILER
compile_with() {
  step "every header alone is C11 to $(basename "$1")"
  compile_all "$1" c11 c
  step "every header alone is C++17 to $(basename "$2")"
  compile_all "$2" c++17 cpp
  step "every header alone is C++20 to $(basename "$2")"
  compile_all "$2" c++20 cpp
}

compile_with "$c_compiler" "$cxx_compiler"
for pair in "gcc g++" "clang clang++"; do
  read -r c cxx <<<"$pair"
  if [ "$(command -v "$cxx" || true)" = "$cxx_compiler" ]; then continue; fi
  if command -v "$c" >/dev/null && command -v "$cxx" >/dev/null; then compile_with "$c" "$cxx"; else skipped "headers with $c" "$c is not installed"; fi
done
