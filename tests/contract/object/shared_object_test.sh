#!/usr/bin/env bash
# What a platform meets when it loads the library: shared_object_test.sh LIBRARY PLATFORM_HEADERS_DIRECTORY GUIDE
#
# The optimised library of this machine or of the target; readelf reads both.
set -eu
. "$(dirname "$0")/../../support/script.sh"
library=$1 platform=$2 guide=$3
[ -e "$library" ] || skip_all "$library is not built"

step "the name of the library and the version of its symbols"
has "$(readelf -dW "$library")" "Library soname: [libpmcli_common.so.1]"
unversioned=$(readelf --dyn-syms -W "$library" |
  awk '$5 == "GLOBAL" && $7 != "UND" && $7 != "ABS" && $8 !~ /@@PMCLI_1[.]0$/ { print $8 }')
[ -z "$unversioned" ] || fail "exported without the version PMCLI_1.0: $unversioned"

step "it needs libc and libm alone"
needed=$(readelf -dW "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | grep -vxE 'lib[cm]\.so\.6|ld.*\.so\.[0-9]+' || true)
[ -z "$needed" ] || fail "needs also: $needed"

# Weak symbols of the compiler's start files aside.
step "what it leaves undefined belongs to libc or is declared for the platform"
undefined=$(readelf --dyn-syms -W "$library" | awk '$7 == "UND" && $8 !~ /@GLIBC_/ && $8 !~ /^(_ITM_|__gmon_start__$)/ { print $8 }')
[ "$(wc -w <<<"$undefined")" -gt 50 ] || fail "only these are undefined: $undefined"
for name in $undefined; do
  grep -Eqr "(^|[^A-Za-z0-9_])$name *[[(]" "$platform" || fail "$name is in no header of the platform"
done

step "the guide lists each of them with its header, and nothing else"
functions=$(grep . <<<"$undefined" | grep -vx platform_runtime_param_array | sort)
listed=$(sed -nE 's/^\| `platform\/[a-z_]+\.h` \| [^|]* \| (`.*`) \|$/\1/p' "$guide" | grep -oE '[a-z0-9_]+' | sort)
diff <(echo "$functions") <(echo "$listed") || fail "$guide lists other functions than the library calls"
has "$(<"$guide")" "calls: $(wc -l <<<"$functions") functions, declared in"
while read -r header names; do
  for name in $names; do
    grep -Eq "(^|[^A-Za-z0-9_])$name *[(]" "$platform/$header" || fail "$name is not in $header, as $guide says"
  done
done < <(sed -nE 's/^\| `platform\/([a-z_]+\.h)` \| [^|]* \| (`.*`) \|$/\1 \2/p' "$guide" | tr -d '`,')

step "no function of the platform is bound by its address, so that it is looked for only when it is called"
by_address=$(readelf -rW "$library" | awk '$3 !~ /JU?MP_SLOT/ { print $5 }' | sort -u)
for name in $undefined; do
  # A table cannot be called; a platform may leave this one out.
  [ "$name" != platform_runtime_param_array ] || continue
  ! grep -qx "$name" <<<"$by_address" || fail "$name is bound by its address"
done
weak=$(readelf --dyn-syms -W "$library" | awk '$8 == "platform_runtime_param_array" { print $5 }')
[ "$weak" = WEAK ] || fail "the table of run-time parameters is '$weak'"
