#!/usr/bin/env bash
# The table of services in docs/embedding.md: services_table_test.sh SOURCE_TREE COMMAND... (which runs the contract tests)
set -eu
. "$(dirname "$0")/../support/script.sh"
root=$1
shift
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
page=$scratch/docs/embedding.md
mkdir -p "$scratch/docs" "$scratch/infra/port_manager/libpmcli/include/pmcli"
cp "$root/docs/embedding.md" "$page"
cp "$root/infra/port_manager/libpmcli/include/pmcli/displays.h" "$scratch/infra/port_manager/libpmcli/include/pmcli/"

# The recording is made once, by the first that asks for it: FILTER --gtest_output=json:FILE
recorded=("$scratch/recorded" "$scratch/recording.json" "$@")
cat >"$scratch/recorded" <<'END'
#!/usr/bin/env bash
recording=$1 filter=${@: -2:1} output=${@: -1}
[ -e "$recording" ] || "${@:2:$#-3}" "$filter" "--gtest_output=json:$recording" || exit 1
cp "$recording" "${output#--gtest_output=json:}"
END
chmod +x "$scratch/recorded"

# refused TEXT COMMAND...: the maker fails and prints the text
refused() {
  local text=$1 printed
  shift
  if printed=$("$root/tools/services_table.py" "$scratch" "$@" 2>&1); then fail "no fault was found; expected: $text"; fi
  has "$printed" "$text"
}

step "the table is what the displays ask"
"$root/tools/services_table.py" "$root" "${recorded[@]}" || fail "the table differs"

step "a stale table fails with the command that renews it, and is renewed"
sed -i '/^| DESCRIPTION/ s/`pm_cmi_get_port_config`/`pm_cmi_get_other_config`/' "$page"
refused "docs/embedding.md is stale: run ninja -C build/debug update_docs" "${recorded[@]}"
"$root/tools/services_table.py" --write "$scratch" "${recorded[@]}" || fail "it is not renewed"
cmp "$root/docs/embedding.md" "$page" || fail "the renewed page differs"

step "a page without the place of the table"
grep -v "services: begin" "$root/docs/embedding.md" >"$page"
refused "does not have the lines" "${recorded[@]}"
cp "$root/docs/embedding.md" "$page"

step "a recording that fails"
refused "the recording failed" false
refused "the recording failed" true

step "a command id that displays.h says prints nothing, but asks services"
sed -i '/DISPLAY_BRIEF = 5,/ s|brief table|prints nothing|' "$scratch/infra/port_manager/libpmcli/include/pmcli/displays.h"
refused "command id 5 has no row, but asks" "${recorded[@]}"
