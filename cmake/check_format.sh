#!/usr/bin/env bash
# Checks the format of every source file: check_format.sh CLANG_FORMAT SOURCE_TREE
set -eu -o pipefail
cd "$2"
find infra host tests bench fuzz examples \( -name '*.h' -o -name '*.c' -o -name '*.cpp' \) -print0 |
  xargs -0 -n 64 -P "$(nproc)" "$1" --dry-run -Werror
