#!/usr/bin/env bash
# Command libraries of others, good and wrong: command_libraries_test.sh SHELL SOURCE_TREE C_COMPILER SWITCH_FILE
set -eu
. "$(dirname "$0")/../support/script.sh"
shell=$1 source=$2 compiler=$3 switch=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# make_library NAME [FAULT]: a library in the work directory
make_library() {
  "$compiler" -shared -fPIC -Wno-pedantic -DFAULT="${2:-NONE}" -I"$source/infra" -I"$source/host/shell/include" \
    "$source/tests/libraries/faulty_library.c" -o "$work/$1.so"
}

# run ARGUMENT...: sets out, err and code
run() {
  code=0
  out=$("$shell" --switch "$switch" "$@" 2>"$work/err") || code=$?
  err=$(<"$work/err")
}

# refused NAME TEXT: the shell names the library and what is wrong, and runs no command
refused() {
  run --library "$work/$1.so" -c "show interface brief"
  [ "$code" -eq 1 ] || fail "$1: exit code $code: $out$err"
  has "$err" "pmsh: "
  has "$err" "$2"
  [ "$(wc -l <<<"$err")" -eq 1 ] || fail "$1: more than a line: $err"
  [ -z "$out" ] || fail "$1: a command ran: $out"
}

step "a good library"
make_library good
run --library "$work/good.so" -c "show interface ethernet 1/1-2 mood"
[ "$code" -eq 0 ] || fail "exit code $code: $err"
[ "$out" = $'Ethernet1/1 is calm\nEthernet1/2 is calm' ] || fail "shown: $out"

step "its structured form, help, completion, reference and schema"
run --library "$work/good.so" -c "show interface ethernet 1/1 mood | json"
jq -e '.interfaces == [{"interface": "Ethernet1/1", "mood": "calm"}] and .messages == []' <<<"$out" >/dev/null || fail "JSON: $out"
run --library "$work/good.so" -c "show interface ethernet 1/1 m?"
has "$out" "  mood"
has "$out" "How it feels"
run --library "$work/good.so" --print-command-reference
has_line "$out" '| `show interface [RANGE] mood` | How they feel | `mood` |'
run --library "$work/good.so" --print-json-schema
jq -e '."$defs".mood.properties.interfaces.items.properties | has("mood")' <<<"$out" >/dev/null || fail "no mood in the schema"

step "the walk over every display fails without a row for its command"
printf '#!/bin/sh\nexec "%s" --library "%s" "$@"\n' "$(realpath "$shell")" "$work/good.so" >"$work/shell"
chmod +x "$work/shell"
code=0
out=$("$source/tests/session/every_display.py" "$work/shell" 2>&1) || code=$?
[ "$code" -eq 1 ] || fail "exit code $code: $out"
has_line "$out" "'show interface [RANGE] mood' has no row in tests/session/every_display.py"
has "$out" "1 faults in"

step "a name without a slash is a file of this directory"
(cd "$work" && "$shell" --switch "$switch" --library good.so -c "show interface ethernet 1/1 mood" >/dev/null) || fail "not found"

step "an abbreviated command of a library, and a kind that it does not show"
run --library "$work/good.so" -c "sh int eth1/1 moo"
[ "$out" = "Ethernet1/1 is calm" ] || fail "shown: $out$err"
run --library "$work/good.so" -c "show interface mgmt 0 mood"
has "$err" "mgmt0: 'show interface mood' does not apply to this kind of interface."
[ "$code" -eq 3 ] || fail "it ends with $code"

step "files that are no library"
run --library "$work/none.so" -c help
[ "$code" -eq 1 ] || fail "a missing file: exit code $code"
has "$err" "$work/none.so"
: >"$work/empty.so"
refused empty "$work/empty.so"
printf 'hello\n' >"$work/text.so"
refused text "$work/text.so"
head -c 700 "$work/good.so" >"$work/cut.so"
refused cut "$work/cut.so"
mkdir "$work/directory.so"
refused directory "$work/directory.so"
mkfifo "$work/pipe.so"
refused pipe "$work/pipe.so: it is not a file"

step "a library for another machine"
if command -v powerpc-linux-gnu-gcc >/dev/null; then
  native=$compiler compiler=powerpc-linux-gnu-gcc
  make_library foreign
  compiler=$native
  refused foreign "$work/foreign.so"
else
  skipped "a library for another machine" "no cross compiler"
fi

step "tables that lie"
while read -r fault text; do
  make_library "$fault" "$fault"
  refused "$fault" "$work/$fault.so"
  has "$err" "$text"
done <<'TABLE'
NO_WORDS command 1 of its table: it has no words
NO_HANDLER 'show interface [RANGE] mood': it has no handler
MISSING_HANDLER 'show interface [RANGE] mood': it does not export 'show_temper'
DUPLICATE_IN_TABLE there is such a command already, of
DUPLICATE_OF_SHELL 'show interface [RANGE] brief': there is such a command already, of the shell
UNKNOWN_KIND its kinds 0x4 are not kinds of interface
TOO_MANY has 10000 commands; 256 is the most
NO_TABLE it does not export 'pmsh_commands'
SHORT_TABLE 'pmsh_commands' is not a table of pmsh_command_t
NO_HELP_OF_WORD it has no help of a word
UPPER_CASE_WORD 'Mood' is neither a word in lower case nor a known argument
NO_KINDS it takes a RANGE, but has no kinds of interface
UNKNOWN_FIELD_TYPE the type of the field 'mood' is unknown
WRONG_TYPE_CODE the type code of the tuple id of 'mood' does not fit its type
TAKEN_TUPLE the tuple id of 'mood' belongs to the field 'member_of'
TAKEN_DISPLAY the display 'brief' exists already
NOT_A_SHOW_COMMAND it does not begin with 'show'
TWELVE_WORDS it has more than
NO_FIELDS its display has no fields
ESCAPE_IN_HELP its help of a field has control characters
UNKNOWN_FLAG its flags are unknown
ENDLESS_FIELDS its list of fields has no end
REPLACES_NOTHING there is no command with these words to replace
MISSING_SYMBOL nobody_has_this
OBJECT_FOR_HANDLER 'no_function' is not a function
DISPLAY_OF_DOCUMENTS every document has a member 'interfaces'
SAME_LINES 'show interface RANGE brief': there is such a command already, of the shell
TWO_RANGES it takes more than one RANGE
HELP_OF_NO_WORD it has help for 'good mood', which is not a word in lower case
KEY_OF_TWO_TYPES the field 'mood' has two types
TABLE

step "two libraries with the same command"
cp "$work/good.so" "$work/second.so"
run --library "$work/good.so" --library "$work/second.so" -c help
[ "$code" -eq 1 ] || fail "exit code $code"
has "$err" "$work/second.so: 'show interface [RANGE] mood': there is such a command already, of $work/good.so"

step "a handler that does not return 0"
make_library garbage GARBAGE
run --library "$work/garbage.so" -c "show interface ethernet 1/1 mood"
[ "$code" -eq 2 ] || fail "exit code $code"
[ "$out" = "Ethernet1/1 is calm" ] || fail "shown: $out"
has "$err" "show_mood of $work/garbage.so failed: it returned 3735928559."

step "a handler that prints without end"
make_library endless ENDLESS_TEXT
"$shell" --switch "$switch" --library "$work/endless.so" -c "show interface ethernet 1/1 mood" 2>/dev/null | head -1000 >"$work/out" || true
[ "$(sort -u "$work/out")" = "on and on" ] || fail "shown: $(head -2 "$work/out")"
for endless in ENDLESS_TEXT ENDLESS_LINE; do
  for form in "" " | json"; do
    make_library endless "$endless"
    "$shell" --switch "$switch" --library "$work/endless.so" -c "show interface ethernet 1/1 mood$form" >/dev/null 2>"$work/err" &
    process=$!
    # It has printed for a while when it has used a second of a processor.
    until_true awk '{ exit $14 + $15 < 100 }' "/proc/$process/stat"
    resident=$(awk '/VmRSS/ { print $2 }' "/proc/$process/status")
    while kill -INT "$process" 2>/dev/null; do sleep 0.2; done
    code=0
    wait "$process" || code=$?
    [ "$code" -eq 130 ] || fail "$endless$form: exit code $code"
    has "$(<"$work/err")" "pmsh: the command does not end, so the shell does."
    [ "$resident" -lt 600000 ] || fail "$endless$form: $resident KiB of memory"
  done
done
