#!/usr/bin/env bash
# Installed, and used outside the tree: install_test.sh SOURCE_TREE. Needs the optimised builds for this machine and the target.
set -eu
. "$(dirname "$0")/../support/script.sh"
source=$1
native=$source/build/release target=$source/build/powerpc
[ -e "$native/lib/libpmhost.so" ] || skip_all "build/release is not built"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix="$work/an empty prefix"
warnings="-Wall -Wextra -Wno-missing-field-initializers -Werror"

# build_project NAME ARGUMENT...: the examples as a project of its own
build_project() {
  local name=$1
  shift
  cmake -G Ninja -S "$source/tests/install" -B "$work/$name" -DEXAMPLES="$source/examples" "$@" >"$work/log" 2>&1 &&
    cmake --build "$work/$name" >>"$work/log" 2>&1 || fail "$name: $(tail -20 "$work/log")"
}

# shows_four_ports TEXT
shows_four_ports() {
  has "$1" "Ethernet1/1 is up"
  has "$1" "Ethernet1/4 is up"
  grep '^{"schema_version' -A 1000 <<<"$1" | jq -e '.interfaces | length == 4' >/dev/null || fail "no JSON of four ports: $1"
}

step "into an empty prefix with blanks"
cmake --install "$native" --prefix "$prefix" >"$work/log" || fail "$(tail -5 "$work/log")"
for file in bin/pmsh bin/pmshd lib/systemd/system/pmshd@.service lib/systemd/system/pmshd@.socket lib/libpmcli_common.so lib/libpmcli_common.so.1 lib/libpmhost.so.1 lib/pmcli/libstatcl.so lib/pmsh/libpmcli_sibling.so \
  lib/pkgconfig/pmcli.pc lib/pkgconfig/pmhost.pc lib/cmake/pmcli/pmcliConfig.cmake share/pmcli/switches/campus.yaml \
  share/pmcli/prometheus/pmshd-rules.yaml; do
  [ -e "$prefix/$file" ] || fail "$file is missing"
done
for header in "$source"/infra/platform/*.h "$source"/infra/port_manager/libpmcli/include/pmcli/*.h "$source"/infra/port_manager/pm/*.h; do
  cmp "$header" "$prefix/include/$(basename "$(dirname "$header")")/$(basename "$header")" || fail "$header"
done
! grep -rlF "$source" "$prefix/lib/pkgconfig" "$prefix/lib/cmake" || fail "these files name the source tree"

step "the installed shell"
out=$(cd / && "$prefix/bin/pmsh" -c "show interface ethernet 1/1" -c "show interface ethernet 2/3") || fail "pmsh ends with $?"
has "$out" "Ethernet1/1 is up"
has "$out" "packets input"
has "$("$prefix/bin/pmsh" -c "show vlan")" "VLAN  Name"

step "without permission"
: >"$work/file"
! cmake --install "$native" --prefix "$work/file" >"$work/log" 2>&1 || fail "installed into a file"
has "$(<"$work/log")" "$work/file"

step "find_package, in C and as C++"
build_project package -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_C_FLAGS="$warnings" -DCMAKE_CXX_FLAGS="$warnings" -DCOMPONENTS="platform;common;host"
for program in show_interface show_interface_cpp; do shows_four_ports "$("$work/package/$program" 2>/dev/null)"; done
for program in own_platform own_platform_cpp; do has_line "$("$work/package/$program")" "Ethernet1/3              Desk 3"; done
! cmake -G Ninja -S "$source/tests/install" -B "$work/unknown" -DEXAMPLES="$source/examples" -DCMAKE_PREFIX_PATH="$prefix" \
  -DCOMPONENTS=teapot >"$work/log" 2>&1 || fail "a component that does not exist is found"
has "$(<"$work/log")" "without teapot"

step "the calls of pmhost.h"
out=$("$work/package/host_calls" "$source/tests/session/lab.yaml" 2>"$work/errors") || fail "$out"
has_line "$out" "all calls are good"
[ "$(wc -l <"$work/errors")" -eq 4 ] || fail "on standard error: $(<"$work/errors")"
[ "$(grep -c "^no such interface: ethernet 63/1\." "$work/errors")" -eq 2 ] || fail "on standard error: $(<"$work/errors")"
sed -n '/^{"schema_version/,/^end$/p' <<<"$out" | sed '$d' | jq -e '.interfaces | length > 5' >/dev/null || fail "no document from a callback"

step "without a client library"
statistics=$(find "$prefix" -name libstatcl.so)
mv "$statistics" "$work/libstatcl.so"
! out=$("$work/package/show_interface" 2>&1) || fail "a host opens without the statistics client"
mv "$work/libstatcl.so" "$statistics"
has "$out" "cannot load a client library: "
has "$out" "libstatcl.so"

step "a command library from outside"
out=$("$prefix/bin/pmsh" --library "$work/package/libmy_command.so" -c "show interface ethernet 1/1 access-vlan | json")
jq -e '.interfaces[0].access_vlan | type == "number"' <<<"$out" >/dev/null || fail "shown: $out"

step "pkg-config, and a tree that was moved"
mv "$prefix" "$work/moved"
export PKG_CONFIG_PATH=$work/moved/lib/pkgconfig
# shellcheck disable=SC2046 # flags
for program in own_platform:pmcli show_interface:pmhost; do
  name=${program%:*}
  cc -std=c11 $warnings "$source/examples/$name.c" $(pkg-config --cflags --libs "${program#*:}") -o "$work/$name"
  c++ -std=c++20 $warnings -x c++ "$source/examples/$name.c" -x none $(pkg-config --cflags --libs "${program#*:}") -o "$work/${name}_cpp"
done
export LD_LIBRARY_PATH=$work/moved/lib
shows_four_ports "$("$work/show_interface" 2>/dev/null)"
shows_four_ports "$("$work/show_interface_cpp" 2>/dev/null)"
has_line "$("$work/own_platform")" "Ethernet1/1              Desk 1"
has_line "$("$work/own_platform_cpp")" "Ethernet1/1              Desk 1"
unset LD_LIBRARY_PATH
"$work/moved/bin/pmsh" -c "show interface brief" >/dev/null || fail "the moved shell ends with $?"

step "libpmhost offers what the command library asks of a platform, and no function of libc"
offered=$(nm -D --defined-only "$work/moved/lib/libpmhost.so" | sed -n 's/.* [TWDBR] \([^@]*\).*/\1/p' | sort)
asked=$(nm -D --undefined-only "$work/moved/lib/libpmcli_common.so" | awk '{ print $2 }' | grep -v @ | grep -vE '^(_ITM_|__gmon_start__)' | sort)
[ "$(wc -w <<<"$asked")" -gt 50 ] || fail "the library asks only for: $asked"
missing=$(comm -13 <(echo "$offered") <(echo "$asked"))
[ -z "$missing" ] || fail "missing: $missing"
! grep -qxE 'time|system|malloc' <<<"$offered" || fail "libpmhost replaces functions of libc"

step "in the tree of another project"
cmake -G Ninja -S "$source/tests/install" -B "$work/fetched" -DEXAMPLES="$source/examples" -DPMCLI_SOURCE="$source" -DPMCLI_HOST=OFF \
  >"$work/log" 2>&1 || fail "$(tail -20 "$work/log")"
ninja -C "$work/fetched" CMakeFiles/own_platform.dir"$source"/examples/own_platform.c.o >"$work/log" 2>&1 || fail "$(tail -20 "$work/log")"
! grep -q GTest "$work/fetched/CMakeCache.txt" || fail "the tests are part of it"

step "for the target, into its own prefix"
[ -e "$target/lib/libpmcli_common.so" ] || { skipped "the target" "build/powerpc is not built"; exit 0; }
cmake --install "$target" --prefix "$work/target" >"$work/log" || fail "$(tail -5 "$work/log")"
build_project target_package -DCMAKE_PREFIX_PATH="$work/target" -DCMAKE_TOOLCHAIN_FILE="$source/cmake/powerpc.cmake" \
  -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=BOTH -DCOMPONENTS=common
for program in own_platform own_platform_cpp; do
  out=$(qemu-ppc -L /usr/powerpc-linux-gnu "$work/target_package/$program") || fail "$program ends with $?"
  has_line "$out" "Ethernet1/2              Desk 2"
done
