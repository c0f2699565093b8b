#!/usr/bin/env bash
# The page of exported functions: what it is made from, and what its maker refuses. reference_test.sh SOURCE_TREE
set -eu
. "$(dirname "$0")/support/script.sh"
root=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

step "the page is what the public headers say"
"$root/tools/reference.py" "$root" || fail "run: tools/reference.py . --write"

# A library of two headers. make_library: writes it and its page.
library=$scratch/infra/port_manager
make_library() {
  rm -rf "$scratch/infra" "$scratch/docs"
  mkdir -p "$library/libpmcli/include/pmcli" "$library/pm" "$scratch/docs"
  printf '%s\n' fan_speed fan_start fan_stop fan_text >"$library/libpmcli/exports.txt"
  cat >"$library/libpmcli/include/pmcli/fans.h" <<'HEADER'
/*
 * Fan trays: what moves the air.
 *
 * Trays count from 1.
 */
#ifndef FANS_H
#define FANS_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A tray. Native. */
typedef struct fan_t {
  int speed; /* revolutions per minute */
} fan_t;

/* ---- Speed ------------------------------------------------------------------------------------------------------ */

/*
 * The speed of a tray, from the environment service, into `*speed`. Returns
 * - 0, or
 * - -1 for a tray that is
 *   not there.
 */
int fan_speed(unsigned tray,
              int* speed);

/* Each switches a tray. Returns 0. */
int fan_start(unsigned tray); /* on */
int fan_stop(unsigned tray);

#ifdef __cplusplus
}
#endif
#endif
HEADER
  printf '%s\n' '/* Texts. */' '/* The name of the last tray. */' 'extern char fan_text[20];' >"$library/pm/texts.h"
  "$root/tools/reference.py" "$scratch" --write || fail "the library of the test has a fault"
}
header=$library/libpmcli/include/pmcli/fans.h

# refuses TEXT...: the maker fails and prints each text.
refuses() {
  local printed
  if printed=$("$root/tools/reference.py" "$scratch" 2>&1); then fail "no fault was found; expected: $*"; fi
  for text in "$@"; do has "$printed" "$text"; done
}

step "a page has the introduction, the headings, the prototypes and the contracts of each header"
make_library
sed -n '/^## /,$p' "$scratch/docs/reference.md" >"$scratch/made"
cat >"$scratch/expected" <<'PAGE'
## `pmcli/fans.h`

Fan trays: what moves the air.

Trays count from 1.

### Speed

```c
int fan_speed(unsigned tray,
              int* speed);
```

The speed of a tray, from the environment service, into `*speed`. Returns

- 0, or
- -1 for a tray that is not there.

```c
int fan_start(unsigned tray);
int fan_stop(unsigned tray);
```

Each switches a tray. Returns 0.

- `fan_start`: on

## `pm/texts.h`

Texts.

```c
extern char fan_text[20];
```

The name of the last tray.
PAGE
diff -u "$scratch/expected" "$scratch/made" || fail "the page differs"
"$root/tools/reference.py" "$scratch" || fail "a page that was just written is stale"

step "a stale page fails with the command that renews it"
sed -i 's/Each switches/Each starts or stops/' "$header"
refuses "docs/reference.md is stale" "tools/reference.py . --write"
"$root/tools/reference.py" "$scratch" --write || fail "the page is not renewed"
"$root/tools/reference.py" "$scratch" || fail "the renewed page is stale"
rm "$scratch/docs/reference.md"
refuses "docs/reference.md is stale"

step "a function without a contract is named"
make_library
sed -i '/^\/\* Each switches/d' "$header"
refuses "fan_stop in pmcli/fans.h has no contract"

step "an empty line ends a group of functions that share a contract"
make_library
sed -i 's/^int fan_stop/\n&/' "$header"
refuses "fan_stop in pmcli/fans.h has no contract"

step "the comment of a type is no contract of the function after it"
make_library
sed -i -e '/^\/\*$/,/^ \*\/$/d' -e '/^\/\* ----/d' -e '/^} fan_t;/,/^int fan_speed/{/^$/d}' "$header"
refuses "fan_speed in pmcli/fans.h has no contract"

step "a page with a fault is not written"
rm "$scratch/docs/reference.md"
if "$root/tools/reference.py" "$scratch" --write 2>/dev/null; then fail "a header with a fault was accepted"; fi
test ! -e "$scratch/docs/reference.md" || fail "a page was written"

step "exports and declarations are the same functions"
make_library
sed -i '/fan_stop/d' "$library/libpmcli/exports.txt"
echo fan_pause >>"$library/libpmcli/exports.txt"
refuses "fan_stop in pmcli/fans.h is not exported" "fan_pause is declared 0 times in the public headers"
