#!/usr/bin/env bash
# The vocabulary of tuple ids (infra/platform/tags.h): tags_test.sh CXX_COMPILER SOURCE_TREE
set -eu
. "$(dirname "$0")/../../support/script.sh"
export LC_ALL=C
compiler=$1 tree=$2
tags=$tree/infra/platform/tags.h
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

step "no two names have the same id"
# The type code aside: a tag has one type.
sed -nE 's/^inline constexpr tuple_id<CMD_TYPE_[A-Z0-9_]+> ([a-z0-9_]+)\{0x[0-9A-F]{2}([0-9A-F]{6})\};$/\2 \1/p' "$tags" | sort >"$scratch/names"
test -s "$scratch/names" || fail "$tags names no id"
test "$(wc -l <"$scratch/names")" -eq "$(grep -c 0x "$tags")" || fail "an id of $tags is not written as the others are"
twice=$(cut -d' ' -f1 "$scratch/names" | uniq -d)
test -z "$twice" || fail "one id, several names: $(grep -F "$twice" "$scratch/names" | tr '\n' ' ')"

# compiles CODE STANDARD
compiles() {
  printf '#include "platform/tags.h"\n%s\n' "$1" >"$scratch/code.cpp"
  "$compiler" "-std=$2" -I "$tree/infra" -fsyntax-only "$scratch/code.cpp" >"$scratch/messages" 2>&1
}

step "no other source has a tuple id as a number"
numbers=$(grep -rniE '0x[0-9a-f]{2}2a[0-9a-f]{4}' --include='*.h' --include='*.c' --include='*.cpp' "$tree/infra" "$tree/host" | grep -vF "$tags:" || true)
test -z "$numbers" || fail "$numbers"

for standard in c++17 c++20; do
  step "the type code of an id is that of its name's type, in $standard"
  compiles 'constexpr tag::tuple_id<CMD_TYPE_UINT32> id{0x142A0000};' "$standard" || fail "$(cat "$scratch/messages")"
  ! compiles 'constexpr tag::tuple_id<CMD_TYPE_UINT32> id{0x152A0000};' "$standard" || fail "a 64-bit id is one of 32 bits"
  ! compiles 'void print(tag::tuple_id<CMD_TYPE_UINT32>); void f() { print(0x142A0278); }' "$standard" || fail "a number is an id"
  step "a name converts to its 16-bit tag and to no wider integer, in $standard"
  compiles 'constexpr uint16 mtu = tag::mtu; static_assert(mtu == 0x0278);' "$standard" || fail "$(cat "$scratch/messages")"
  ! compiles 'constexpr uint32 mtu = tag::mtu;' "$standard" || fail "a tag is taken for an id"
done
