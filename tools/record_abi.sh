#!/usr/bin/env bash
# Writes the ABI of a library with debug information: record_abi.sh LIBRARY FILE
set -eu
exec abidw --no-corpus-path --no-comp-dir-path --no-show-locs --no-elf-needed --no-parameter-names --no-write-default-sizes \
  --exported-interfaces-only --drop-undefined-syms --type-id-style hash --out-file "$2" "$1"
