#!/usr/bin/env bash
# The machine's own devices as a switch: kernel_test.sh PMSH
#
# In network namespaces of its own, with veth pairs and, where the kernel has them, bridges, VLAN devices, bonds and dummies.
# Figures must be those that ip(8) reports.
set -u
. "$(dirname "$0")/support/script.sh"
pmsh=$1

command -v ip >/dev/null || skip_all "ip(8) is missing"
here=pmclikernel$$
ip netns add "$here" 2>/dev/null || skip_all "network namespaces are not allowed here"
trap 'ip netns del "$here"; rm -rf "$map" "$map".* "$state" "$stored"' EXIT
map=$(mktemp)
state=$(mktemp -d)
stored=$(mktemp -d)
export XDG_STATE_HOME=$state
dev() { ip -n "$here" link "$@" 2>/dev/null; }
dev add left type veth peer name right || skip_all "veth devices are not allowed here"

run() { ip netns exec "$here" "$pmsh" --kernel "$@"; }

# The name of a device's interface in the map.
interface() { run -c "show kernel-map" | awk -v device="$1" '$1 == device { print $2, $3 }'; }
show() { run -c "show interface $(interface "$1")"; }

step "names and states"
[ "$(interface lo)" = "loopback 0" ] || fail "lo is '$(interface lo)'"
reason() { run -c "show kernel-map" "${@:2}" | awk -v device="$1" '$1 == device { print $4, $5 }'; }
[ "$(reason lo)" = "loopback " ] || fail "the reason of lo is '$(reason lo)'"
[ "$(reason left)" = "stored " ] || fail "the reason of a stored interface is '$(reason left)'"
[ "$(XDG_STATE_HOME=$map.other reason left)" = "device index" ] || fail "another reason: '$(reason left)'"
[ "$(run -c "show kernel-map | json" | jq -r '.devices[] | select(.device == "left") | .name_reason')" = stored ] ||
  fail "no reason in JSON"
left=$(interface left)
[[ $left == ethernet\ 1/* ]] || fail "a veth device is '$left'"
has "$(show left)" " is down (Administratively down)"
dev set left up
has "$(show left)" " is down (Parent interface down)"
dev set right up
grep -q "^Ethernet1/[0-9]* is up$" <<<"$(show left)" || fail "not up: $(show left)"
dev set right down
has "$(show left)" " is down (Parent interface down)"
dev set right up

# A device keeps its interface under another name, and when others come and go.
dev set left down && dev set left name renamed && dev set renamed up
[ "$(interface renamed)" = "$left" ] || fail "renamed from $left to $(interface renamed)"
dev set renamed down && dev set renamed name left && dev set left up

step "names of devices are ranges"
dev set left alias ''
of_names() { run -c "show interface $1 mac-address | json" | jq -r '[.interfaces[] | .device] | join(" ")'; }
[ "$(of_names left)" = left ] || fail "left is $(of_names left)"
[ "$(of_names "right, left")" = "right left" ] || fail "right, left are $(of_names "right, left")"
[ "$(of_names "'lef*','right'")" = "left right" ] || fail "the patterns are $(of_names "'lef*','right'")"
index() { ip -n "$here" -j link show dev "$1" | jq '.[0].ifindex'; }
[ "$(run -c "show interface left | json" | jq -c '.interfaces[0] | [.device, .ifindex, .device_type]')" = \
  "[\"left\",$(index left),\"veth\"]" ] || fail "the record of left: $(run -c "show interface left | json")"

# A name is never that of another interface, also one that looks like an abbreviation.
dev add v1 type veth peer name e1
[ "$(of_names v1)" = v1 ] || fail "v1 is $(of_names v1)"
[ "$(of_names e1)" = e1 ] || fail "e1 is $(of_names e1)"
dev del v1
has "$(run -c "show interface v1" 2>&1)" "no such interface: vethernet 1."

# Alternative names, with all that the kernel lets them have.
if ip -n "$here" link property add dev left altname "uplink, of 'the' lab" 2>/dev/null; then
  [ "$(of_names "\"uplink, of 'the' lab\"")" = left ] || fail "an alternative name is not known"
  ip -n "$here" link property add dev left altname uplink0
  [ "$(of_names uplink0)" = left ] || fail "uplink0 is $(of_names uplink0)"
fi

step "types of devices, with the device below and the master"
type_of() { run -c "show interface overview | json" | jq -c ".interfaces[] | select(.device == \"$1\") | [.device_type, .parent_device, .master_device]"; }
[ "$(type_of lo)" = '["loopback",null,null]' ] || fail "lo is $(type_of lo)"
if dev add tunnel type vxlan id 42 dev left dstport 4789; then
  [ "$(type_of tunnel)" = '["vxlan 42 over left","left",null]' ] || fail "the tunnel is $(type_of tunnel)"
  dev del tunnel
fi
if dev add upper link left type macvlan; then
  [ "$(type_of upper)" = '["macvlan of left","left",null]' ] || fail "upper is $(type_of upper)"
  dev del upper
fi
if dev add switch0 type bridge && dev set right master switch0; then
  [ "$(type_of switch0)" = '["bridge",null,null]' ] || fail "the bridge is $(type_of switch0)"
  [ "$(type_of right)" = '["veth",null,"switch0"]' ] || fail "right is $(type_of right)"
  dev del switch0
fi

step "what the kernel reports of a device"
dev set left mtu 4000
has "$(show left)" "  MTU 4000 bytes"
dev set left alias 'to the lab, 100% of it %s %n'
has_line "$(show left)" "  Description: to the lab, 100% of it %s %n"
ip -n "$here" addr add 198.51.100.1/24 dev left
has_line "$(show left)" "  Internet Address is 198.51.100.1/24"

step "what the kernel does not report is absent"
of_left() { run -c "show interface $left $1 | json" | jq -c "[.interfaces[0] | $2]"; }
[ "$(of_left counters '.input_unicast_packets, .output_unicast_packets, .output_broadcast_packets')" = '[null,null,null]' ] ||
  fail "a veth device separates unicasts: $(of_left counters .)"
[ "$(of_left counters '.input_multicast_packets != null')" = '[true]' ] || fail "multicasts are absent: $(of_left counters .)"
[ "$(of_left "" '.port_mode, .delay_usec, .rate_mode')" = '[null,null,null]' ] || fail "invented: $(of_left "" .)"
[ "$(of_left "counters brief" '.input_megabytes_per_second, .input_packets_per_second, .output_packets_per_second')" = '[null,null,null]' ] ||
  fail "one reading has rates: $(of_left "counters brief" .)"
[ "$(run -c "show interface $left counters brief" | awk '/^Eth/ { print $2, $3, $4, $5 }')" = "-- -- -- --" ] ||
  fail "one reading has rates: $(run -c "show interface $left counters brief")"
[ "$(of_left flowcontrol 'to_entries[] | select(.key | test("flow_control|pause")) | .value' | tr -d 'nul,')" = '[]' ] ||
  fail "a veth device has flow control: $(of_left flowcontrol .)"

step "settings"
set_on() { printf 'configure\ninterface %s\n%s\n' "$1" "$2" | run "${@:3}" 2>&1; }
[ -z "$(set_on "$left" $'shutdown\ndescription set here\nswitchport mtu 5000')" ] || fail "settings are refused"
is_so() { [ "$(ip -n "$here" -j link show left | jq -r "$1")" = "$2" ] || fail "not '$2': $(ip -n "$here" -j link show left)"; }
is_so '.[0].flags | index("UP")' null
is_so '.[0].ifalias' 'set here'
is_so '.[0].mtu' 5000
set_on "$left" $'no shutdown' >/dev/null
[ "$(set_on "$left" $'shutdown\nundo')" = "Undone for $left." ] || fail "undo"
is_so '.[0].flags | index("UP") != null' true
set_on "$left" $'no shutdown\nno description\nswitchport mtu 4000' >/dev/null
is_so '.[0].flags | index("UP") != null' true
is_so '.[0].ifalias' null

step "the running configuration"
set_on "$left" $'description as it was\nswitchport mtu 4321' >/dev/null
run -c "show running-config interface $left" >"$map.config"
grep -q '!.*no command' "$map.config" && fail "settings without a command: $(cat "$map.config")"
set_on "$left" $'no description\nno switchport mtu' >/dev/null
is_so '.[0].mtu' 1500
run -f "$map.config" || fail "the running configuration is refused"
is_so '.[0].mtu' 4321
is_so '.[0].ifalias' 'as it was'
set_on "$left" $'no description\nswitchport mtu 4000' >/dev/null

step "the running configuration of any alias and MTU"
round_trip() {  # ALIAS MTU
  dev set left alias "$1" || fail "the kernel refuses the alias $(printf %q "$1")"
  dev set left mtu "$2" || fail "the kernel refuses the MTU $2"
  before=$(ip -n "$here" -j link show left)
  run -c "show running-config interface $left" >"$map.config" || fail "no running configuration of $(printf %q "$1")"
  set_on "$left" $'no description\nno switchport mtu' >/dev/null
  [ "$(ip -n "$here" -j link show left)" != "$before" ] || fail "nothing to restore of $(printf %q "$1")"
  run --config "$map.config" </dev/null || fail "refused: $(cat "$map.config")"
  [ "$(ip -n "$here" -j link show left)" = "$before" ] ||
    fail "not as it was: $(cat -v "$map.config") is $(ip -n "$here" -j link show left | cat -v), not $before"
}
mtu=68
for alias in 'a "quoted" word' '"' "it's" "'" '\' '\n\x41' ' leading' '   ' 'trailing ' '! no comment' '!' '# hash' 'a | json' '?' \
  'no description' 'exit' '$HOME `id` %s %n' $'two\nlines' $'\n' $'ends\n' $'a\ttab' $'\e[31mred\e[0m' $'cr\r' 'grün 日本'; do
  round_trip "$alias" "$mtu"
  mtu=$((mtu * 13 % 65467 + 68))
done
for first in $(seq 1 50 255); do
  codes=$(seq "$first" "$((first + 49 < 255 ? first + 49 : 255))")
  round_trip "$(printf "$(printf '\\x%02x' $codes)"; echo .)" 65535
done
set_on "$left" $'no description\nswitchport mtu 4000' >/dev/null

step "refused settings, by port"
right=$(interface right)
said=$(set_on "$left, $right" 'flowcontrol receive on')
has_line "$said" "Ethernet${left#ethernet } failed for flowcontrol receive on with Operation not supported"
has_line "$said" "Ethernet${right#ethernet } failed for flowcontrol receive on with Operation not supported"
said=$(set_on "$left, $right" 'switchport speed 25000')
has_line "$said" "Ethernet${left#ethernet } failed for switchport speed 25000 with Operation not supported"
has_line "$said" "Ethernet${right#ethernet } failed for switchport speed 25000 with Operation not supported"
has "$(set_on "$left" 'switchport mtu 67')" "value out of range"
has "$(set_on "$left" 'switchport beacon')" "Operation not supported"
has "$(set_on "$left" 'switchport access vlan 7')" "with the device is not a port of a bridge"

if command -v setpriv >/dev/null; then
  step "a plain user"
  plain() { ip netns exec "$here" setpriv --reuid 65534 --clear-groups --bounding-set=-all "$pmsh" --kernel; }
  said=$(printf 'configure\ninterface %s\nshutdown\n' "$left" | plain 2>&1) && fail "a plain user switches devices off"
  has "$said" "not permitted: the right CAP_NET_ADMIN is missing"
  is_so '.[0].flags | index("UP") != null' true
  grep -q "^Ethernet${left#ethernet } " <<<"$(echo 'show interface brief' | plain)" || fail "a plain user reads nothing"
else
  skipped "a plain user" "setpriv(1) is missing"
fi

step "a question before the user's own connection is cut; without a terminal the answer is no"
ip -n "$here" addr add 203.0.113.1/24 dev left
export SSH_CONNECTION='203.0.113.9 50000 203.0.113.1 22'
said=$(set_on "$left" shutdown) && fail "the user's way was cut"
has_line "$said" "pmsh: nothing was changed: this may cut your own connection through $left. Start the shell with --yes to change it anyway, or use 'configure candidate' and 'commit confirmed SECONDS', which is rolled back unless you confirm it."
is_so '.[0].flags | index("UP") != null' true
said=$(printf 'configure\nno interface %s\n' "$left" | run 2>&1) && fail "the user's way was deleted"
has_line "$said" "pmsh: nothing was changed: this may cut your own connection through $left. Start the shell with --yes to change it anyway, or use 'configure candidate' and 'commit confirmed SECONDS', which is rolled back unless you confirm it."
set_on "$right" 'description the other end' >/dev/null || fail "another port is not set"
set_on "$left" shutdown --yes >/dev/null || fail "--yes does not cut the way"
is_so '.[0].flags | index("UP")' null
unset SSH_CONNECTION
ip -n "$here" addr del 203.0.113.1/24 dev left
set_on "$left" 'no shutdown' >/dev/null

if dev add '<a>"b$;' type veth peer name odd; then
  step "names with odd characters"
  has "$(run -c 'show kernel-map')" '<a>"b$; '
else
  skipped "names with odd characters" "the kernel refuses them"
fi

step "counters"
for _ in $(seq 20); do
  ip netns exec "$here" bash -c 'for i in 1 2 3 4 5; do echo $i >/dev/udp/198.51.100.2/9; done' 2>/dev/null
done
printf 'left: {routed: yes}\n' >"$map"  # the view of a routed port has its counters
counted() { ip -n "$here" -j -s link show left | jq -r '.[0].stats64 | "\(.rx.packets) \(.rx.bytes) \(.tx.packets) \(.tx.bytes)"'; }
for _ in $(seq 20); do
  before=$(counted)
  shown=$(run --map "$map" -c "show interface $left")
  [ "$before" = "$(counted)" ] && break
done
read -r rx_packets rx_bytes tx_packets tx_bytes <<<"$before"
[ "$tx_packets" -gt 0 ] || fail "the kernel sent nothing on left"
has "$shown" "$rx_packets packets input, $rx_bytes bytes"
has "$shown" "$tx_packets packets output, $tx_bytes bytes"

step "cleared counters, for every shell of the user and for nobody else"
counted_by_shell() { run --map "$map" "$@" -c "show interface $left counters | json" | jq -r ".interfaces[0].output_bytes"; }
has "$(run --session-counters --map "$map" -c "clear counters interface $left")" "for this session"
[ "$(counted_by_shell)" -ge "$tx_bytes" ] || fail "a clear for one session holds for another"
said=$(run --map "$map" -c "clear counters interface $left") || fail "counters are not cleared"
has "$said" "$XDG_STATE_HOME/pmsh/cleared-counters."
[ "$(counted_by_shell)" -lt "$tx_bytes" ] || fail "cleared counters go on for another shell"
[ "$(XDG_STATE_HOME=$map.other counted_by_shell)" -ge "$tx_bytes" ] || fail "somebody else's counters were cleared"
said=$(XDG_STATE_HOME=/proc/nowhere run --map "$map" -c "clear counters interface $left" 2>&1) && fail "a clear that is not kept succeeds"
has "$said" "for this session only"

step "rates of a watch: what the kernel counted between two readings, by the time between them"
ip -n "$here" neigh replace 198.51.100.2 lladdr 02:00:00:00:00:02 dev left
(for _ in $(seq 100); do ip netns exec "$here" bash -c 'echo >/dev/udp/198.51.100.2/9'; sleep 0.05; done) 2>/dev/null &
traffic=$!
watched=$(run -c "watch 1 show interface $left counters detailed | json" | head -3)
kill "$traffic"
# The documents name their time in whole seconds, so that the rates may be a second off.
jq -es '. as [$a, $b, $c]
  | def off($from; $to): ($to.interfaces[0].output_packets - $from.interfaces[0].output_packets)
        / $to.interfaces[0].rates.output_packets_per_second - (($to.time | fromdate) - ($from.time | fromdate));
    $a.interfaces[0].rates == null and ([off($a; $b), off($b; $c)] | all(. > -1.1 and . < 1.1))' <<<"$watched" >/dev/null ||
  fail "rates of a watch: $watched"

step "absent values are not made up"
[ "$(run -c "show interface $left transceiver | json" | jq -r '.interfaces[0].temperature_c')" = null ] ||
  fail "a temperature of a device without a module"

# So are counters that the kernel does not have; what it tells is there.
said=$(run -c "show interface $left counters errors | json" | jq -c '.interfaces[0] | [.giants, .symbol_errors, .input_errors]')
[ "$said" = '[null,null,0]' ] || fail "counters that nobody tells: $said"
has "$(run -c "show interface $left")" "DLY -- usec"
[ "$(run -c "show interface $left debounce | json" | jq -c '.interfaces[0].debounce_msec')" = null ] || fail "a made-up debounce time"

step "stored interfaces"
ip -n "$here" route add default dev left || fail "no default route"
[ "$(interface left)" = "$left" ] || fail "a device is called anew: '$(interface left)'"
export XDG_STATE_HOME=$stored
[ "$(reason left)" = "default route" ] || fail "the reason of the management port is '$(reason left)'"
[ "$(interface left)" = "mgmt 0" ] || fail "the device of the default route is '$(interface left)'"
ip -n "$here" route del default dev left
[ "$(interface left)" = "mgmt 0" ] || fail "the device of the default route that was is '$(interface left)'"
dev add newer type veth peer name newest && newer=$(interface newer)
dev del newer && dev add other type veth peer name newer
[ "$(interface newer)" = "$newer" ] || fail "newer was $newer and is '$(interface newer)'"
[ "$(interface other)" != "$newer" ] || fail "the interface of a device is given twice"
dev del newer
said=$(XDG_STATE_HOME=/proc/nowhere run -c "show interface brief" 2>&1 >/dev/null)
[ "$(grep -c . <<<"$said")" = 1 ] && has "$said" "pmsh: the interfaces of devices are not stored: " || fail "without a directory: $said"

step "the default route and the map file"
ip -n "$here" route add default dev left || fail "no default route"
printf 'left: ethernet 4/1\n' >"$map"
[ "$(reason left --map "$map")" = "map file" ] || fail "the reason of a map file is '$(reason left --map "$map")'"
[ "$(run --map "$map" -c 'show kernel-map' | awk '$1 == "left" { print $2, $3 }')" = "ethernet 4/1" ] || fail "the map file"
printf 'left: nowhere 4/1\n' >"$map"
said=$(run --map "$map" -c 'show kernel-map' 2>&1) && fail "a wrong map file is taken"
has "$said" "$map:1"
ip -n "$here" route del default dev left

step "the management port keeps its name when its route is lost"
rm -r "$stored"
ip -n "$here" route add default dev left
mkfifo "$map.route"
run --yes <"$map.route" >"$map.said" 2>&1 &
shell=$!
exec 9>"$map.route"
printf 'show kernel-map\nconfigure\ninterface mgmt 0\nshutdown\nshow interface mgmt 0 status\n' >&9
until_true grep -q '^mgmt0 ' "$map.said"
[ -z "$(ip -n "$here" route show default)" ] || fail "the default route outlives its device"
printf 'undo\nend\nshow kernel-map\n' >&9
exec 9>&-
wait "$shell" || fail "the management port was lost: $(cat "$map.said")"
export XDG_STATE_HOME=$state
[ "$(grep -c '^left  *mgmt 0  *default route$' "$map.said")" = 2 ] || fail "the management port has another name: $(cat "$map.said")"
dev set left up

# ---- Other kinds of devices ----
is_up() { [[ $(run -c "show interface $(interface "$1") status") == *" up "* ]]; }
if { dev add br0 type bridge vlan_filtering 1 || dev add br0 type bridge; } && dev add in type veth peer name out; then
  step "bridges"
  dev set in master br0 && dev set in up && dev set out up && dev set br0 up
  until_true is_up in
  [[ $(interface br0) == vethernet\ * ]] || fail "a bridge is '$(interface br0)'"
  if ip netns exec "$here" bridge vlan add dev in vid 20-22 2>/dev/null; then
    step "VLANs of a bridge"
    has "$(run -c "show interface $(interface in) trunk")" "trunking"
  else
    skipped "VLANs of a bridge" "this kernel has none"
  fi
else
  skipped "bridges" "this kernel has none"
  skipped "VLANs of a bridge" "this kernel has no bridges"
fi

# Has the kernel such a device? device KIND NAME ARGUMENT...
device() {
  if dev add "${@:2}"; then
    step "$1"
  else
    skipped "$1" "this kernel has none"
    return 1
  fi
}
device "VLAN devices" link left name left.10 type vlan id 10 &&
  { [ "$(interface left.10)" = "$left.10" ] || fail "a VLAN device is '$(interface left.10)'"; }
device "bonds" bond7 type bond &&
  { [[ $(interface bond7) == port-channel\ * ]] || fail "a bond is '$(interface bond7)'"; }
device "dummies" dummy7 type dummy &&
  { [[ $(interface dummy7) == loopback\ * ]] || fail "a dummy is '$(interface dummy7)'"; }

# Interfaces that the shell creates; each is deleted again.
create() { printf 'configure\ninterface %s\ndescription made here\nend\nshow running-config interface %s\n' "$1" "$1" | run 2>&1; }
delete() { printf 'configure\nno interface %s\n' "$1" | run 2>&1; }
# creates KIND INTERFACE DEVICE: the device is there and up, the running configuration makes it again.
creates() {
  said=$(create "$2") || fail "$2 is not created: $said"
  [ "$(interface "$3")" = "$2" ] || fail "$3 is '$(interface "$3")'"
  ip -n "$here" -j -d link show "$3" | jq -e --arg kind "$1" '.[0] | .linkinfo.info_kind == $kind and (.flags | index("UP"))' >/dev/null ||
    fail "not a $1 that is up: $(ip -n "$here" -d link show "$3")"
  printf '%s\n' "$said" >"$map.config"
  has_line "$said" "interface $2"
  said=$(delete "$2") && [ -z "$said" ] || fail "$2 is not deleted: $said"
  [ -z "$(interface "$3")" ] || fail "$3 is still there"
  run -f "$map.config" || fail "the running configuration does not create $2"
  [ "$(ip -n "$here" -j link show "$3" | jq -r '.[0].ifalias')" = "made here" ] || fail "another $3"
  run -f "$map.config" || fail "the running configuration is refused where $2 exists"
  delete "$2" >/dev/null
  said=$(printf 'configure\ninterface %s\nundo\n' "$2" | run 2>&1)
  [ "$said" = "Undone for $2." ] && [ -z "$(interface "$3")" ] || fail "the creation is not undone: $said"
  create "$2" >/dev/null
  said=$(printf 'configure\nno interface %s\nundo\n' "$2" | run 2>&1)
  [ "$said" = "Undone for $2." ] || fail "the deletion is not undone: $said"
  [ "$(ip -n "$here" -j link show "$3" | jq -r '.[0].ifalias')" = "made here" ] || fail "another $3 after undo"
  delete "$2" >/dev/null
}
# refuses INTERFACE: the kernel has no such device, which it says in its own words.
refuses() {
  said=$(create "$1") && fail "$1 is created"
  has "$said" "pmsh: cannot create $1: "
  printf 'configure\ninterface %s\n' "$1" | run >/dev/null 2>&1
  [ $? = 2 ] || fail "exit code of a refusal"
}
step "created loopbacks"
if dev add probe type dummy; then
  dev del probe
  creates dummy "loopback 7777" lo7777
else
  refuses "loopback 7777"
fi
step "created sub-interfaces"
if dev add link left name probe type vlan id 77; then
  dev del probe
  creates vlan "$left.77" left.77
else
  refuses "$left.77"
fi
step "devices that are not to be deleted"
has_line "$(delete "loopback 0")" "pmsh: cannot delete loopback 0: the device lo is not one that commands create."
delete "$left" >/dev/null && fail "a port is deleted"
[ "$(interface left)" = "$left" ] || fail "a port was deleted"

step "a device that vanishes between two commands"
dev del left
[ -z "$(interface left)" ] || fail "a device that is gone is in the map"
run -c "show interface $left" 2>/dev/null && fail "an interface that is gone is shown"
dev add going type veth peer name staying
going=$(interface going)
mkfifo "$map.lines"
run <"$map.lines" >"$map.said" 2>&1 &
shell=$!
exec 9>"$map.lines"
printf 'configure\ninterface %s\nshow kernel-map\n' "$going" >&9
until_true grep -q '^going ' "$map.said"
dev del going
printf 'shutdown\n' >&9
exec 9>&-
wait "$shell" && fail "a device that is gone is set"
has "$(cat "$map.said")" ": no such interface"

step "devices that come and go while they are read"
while :; do
  dev add coming type veth peer name leaving
  dev del coming
done &
churning=$!
for _ in $(seq 20); do
  run -c "show interface brief" -c "show interface" -c "show interface counters" >/dev/null || said=failed
done
kill "$churning" && wait "$churning" 2>/dev/null
[ "$said" != failed ] || fail "a command fails while devices come and go"

# The number of system calls depends on the machine, not on how many devices it has, once their interfaces are stored.
step "the number of system calls"
calls() { run -c "show kernel-map" >/dev/null; ASAN_OPTIONS=detect_leaks=0 ip netns exec "$here" strace -f -c -o "$map" "$pmsh" --kernel -c "show interface" >/dev/null && awk '$NF == "total" { print $(NF - 2) }' "$map"; }
if few=$(calls) && [ -n "$few" ]; then
  for i in $(seq 50); do printf 'link add few%s type veth peer name other%s\n' "$i" "$i"; done | ip -n "$here" -batch -
  many=$(calls)
  [ $((many - few)) -lt 50 ] || fail "$few system calls, and $many with 100 devices more"
  for i in $(seq 50); do printf 'link del few%s\n' "$i"; done | ip -n "$here" -batch -
else
  fail "strace counts no system calls"
fi

step "2,000 devices"
for i in $(seq 1000); do printf 'link add many%s type veth peer name other%s\n' "$i" "$i"; done |
  ip -n "$here" -batch - || fail "2,000 devices"
shown=$(run -c "show interface brief" | grep -c '^Ethernet')
[ "$shown" -ge 2000 ] || fail "$shown ports of 2,000"
