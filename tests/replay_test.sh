#!/usr/bin/env bash
# What --capture stores is shown by --replay: replay_test.sh PMSH RECORDED_SHELL
#
# Of the devices of a network namespace and, by RECORDED_SHELL, of a machine with hardware. Both show the same bytes.
set -u
. "$(dirname "$0")/support/script.sh"
pmsh=$1
recorded=$2

place=$(mktemp -d)
here=pmclireplay$$
trap 'ip netns del "$here" 2>/dev/null; rm -rf "$place"' EXIT
export XDG_STATE_HOME=$place/state

commands=(-c "show interface" -c "show interface brief" -c "show interface status" -c "show interface counters"
  -c "show interface counters detailed" -c "show interface transceiver details" -c "show interface trunk"
  -c "show interface flowcontrol" -c "show interface overview" -c "show kernel-map" -c "show running-config" -c "show version"
  -c "show interface | json" -c "show interface counters | json" -c "show interface transceiver details | json"
  -c "show interface overview | json" -c "show kernel-map | json")

# compare NAME PROGRAM...: captures by a program, and compares what it shows with what the capture shows.
compare() {
  local folder=$place/$1
  "${@:2}" --kernel --clock 1795363200 --capture "$folder" --keep-going "${commands[@]}" >"$folder.live" 2>&1
  local live=$?
  "$pmsh" --replay "$folder" --keep-going "${commands[@]}" >"$folder.replayed" 2>&1
  local replayed=$?
  [ "$live" = "$replayed" ] || fail "$1: exit code $live, and $replayed of the capture: $(diff "$folder.live" "$folder.replayed")"
  cmp -s "$folder.live" "$folder.replayed" || fail "$1: $(diff "$folder.live" "$folder.replayed")"
  grep -q '^Ethernet1/' "$folder.live" || fail "$1 shows no port"
}

step "a machine with hardware"
compare hardware "$recorded"
grep -q 'FL-10G-SR' "$place/hardware.replayed" || fail "no module: $(cat "$place/hardware.replayed")"

# What it has is in tests/host/source/kernel/recorded_switch.h.
step "a capture of an earlier version"
kept=$(dirname "$0")/captures/hardware
shown() { "$pmsh" --replay "$kept" -c "$@" 2>&1 || fail "$* of the capture"; }
has "$(shown "show interface ethernet 1/5 trunk allowed")" "10,20-22,30"
has "$(shown "show interface ethernet 1/3 transceiver details")" "FL-10G-SR"
has "$(shown "show interface ethernet 1/5 transceiver details")" "WL-40G-SR4"
for lane in "  1        7.00 mA        -1.54 dBm       -2.21 dBm ++" "  4        7.60 mA        -1.36 dBm       -2.00 dBm ++"; do
  has_line "$(shown "show interface ethernet 1/5 transceiver")" "$lane"
  has_line "$(shown "show interface ethernet 1/5 transceiver details")" "$lane"
done
has_line "$(shown "show interface ethernet 1/5 transceiver violations")" "Ethernet1/5  swp3       3  Rx Power  -2.07  -2.22  dBm   ++"
has "$(shown "show interface ethernet 1/5 transceiver | json")" '{"lane":2,"current_ma":7.20,"current_mark":null,"tx_power_dbm":-1.48,"tx_power_mark":null,"rx_power_dbm":-2.14,"rx_power_mark":"high alarm"}'
has "$(shown "show interface port-channel 9")" "Members in this channel: Eth1/3, Eth1/4"
has "$(shown "show interface ethernet 1/6")" "Ethernet1/6 is down (Link failure: loss of sync)"
has "$(shown "show interface mgmt 0 counters | json")" '"input_bytes":420000'
has "$(shown "show version")" "Linux 6.1.0-lab"

step "neighbors by LLDP"
cp -r "$kept" "$place/lldp"
cat >"$place/lldp/lldp-neighbors" <<'END'
neighbor 3 swp1
protocol LLDP
chassis-id 4 \x02\x1cs@\x02\x02
port-id 5 Eth1/1
system-name leaf\x1b[2J
port-description to spine
management-address 192.0.2.1
management-address 2001:db8::1
capabilities 20
enabled-capabilities 4
port-vlan 10
vlan 20
vlan 21
vlan 30
ttl 120
unchanged 33
neighbor 3 lan0
chassis-id 7 elsewhere
END
last=$(sed -n 's/^end //p' "$kept/index")
sed -i '$d' "$place/lldp/index"
printf 'answer %d lldp 0 lldp-neighbors lldp-neighbors %d 0 -\nend %d\n' $((last + 1)) "$(stat -c %s "$place/lldp/lldp-neighbors")" \
  $((last + 1)) >>"$place/lldp/index"
neighbors() { "$pmsh" --replay "$place/lldp" -c "show lldp neighbors ${1-}" 2>&1 || fail "show lldp neighbors ${1-}"; }
[ "$(neighbors)" = 'Interface    Device  Chassis ID      System name  Port ID  Port description  TTL  Age  Capabilities
Ethernet1/3  swp1    021c.7340.0202  leaf\x1b[2J  Eth1/1   to spine          120   33  bridge
             lan0    elsewhere' ] || fail "neighbors: $(neighbors | cat -A)"
[ "$(neighbors "ethernet 1/3 detail")" = 'Ethernet1/3 (swp1)
  Chassis ID:           021c.7340.0202 (mac)
  System name:          leaf\x1b[2J
  System description:   --
  Management addresses: 192.0.2.1,2001:db8::1
  Capabilities:         bridge,router
  Enabled capabilities: bridge
  Port ID:              Eth1/1 (ifname)
  Port description:     to spine
  Port VLAN:            10
  VLANs:                20-21,30
  Protocol:             LLDP
  TTL:                  120 seconds
  Age:                  33 seconds' ] || fail "detail: $(neighbors "ethernet 1/3 detail")"
[ "$(neighbors "ethernet 1/5")" = "There are no LLDP neighbors." ] || fail "others: $(neighbors "ethernet 1/5")"

step "what was not shown when it was captured"
"$recorded" --kernel --clock 1795363200 --capture "$place/brief" -c "show interface brief" >/dev/null || fail "no capture"
for command in "show interface" "show interface counters" "show interface transceiver details" "show interface | json"; do
  live=$("$recorded" --kernel --clock 1795363200 -c "$command" 2>&1)
  [ "$("$pmsh" --replay "$place/brief" -c "$command" 2>&1)" = "$live" ] || fail "$command differs from $live"
done

# The same tables, with other names and addresses: what identifies the machine is in no file.
step "anonymous captures"
"$recorded" --kernel --clock 1795363200 --capture "$place/anonymous" --anonymous -c "show version" >/dev/null || fail "no capture"
holds() { LC_ALL=C grep -qaP -- "$2" "$1"/*; }
for identity in swp1 eth0 veth0 br0 FL000123 WL000456 '\xc0\x00\x02\x0d'; do
  holds "$place/brief" "$identity" || fail "'$identity' is not in the capture with names"
  ! holds "$place/anonymous" "$identity" || fail "'$identity' is in $(LC_ALL=C grep -laP -- "$identity" "$place"/anonymous/*)"
done
grep -q "^switch switch$" "$place/anonymous/index" || fail "the name of the switch: $(cat "$place/anonymous/index")"
for command in "show interface status" "show interface trunk" "show interface counters"; do
  live=$("$recorded" --kernel --clock 1795363200 -c "$command" 2>&1)
  [ "$("$pmsh" --replay "$place/anonymous" -c "$command" 2>&1)" = "$live" ] || fail "$command differs from $live"
done
optics=$("$pmsh" --replay "$place/anonymous" -c "show interface transceiver details" 2>&1) || fail "optics: $optics"
has "$optics" "FL-10G-SR"
has "$optics" "0000000000000000"

step "nothing is changed"
printf 'configure\ninterface ethernet 1/3\nshutdown\n' | "$pmsh" --replay "$place/brief" >"$place/said" 2>&1
[ $? = 2 ] || [ $? = 3 ] || grep -q . "$place/said" || fail "a setting is taken"
has "$(cat "$place/said")" "the switch is replayed from a capture and cannot be changed"

step "folders that cannot be used"
said=$("$recorded" --kernel --capture "$place/brief" -c "show version" 2>&1) && fail "a full directory is taken"
[ "$said" = "pmsh: '$place/brief' is not empty. Give --capture a new or empty directory." ] || fail "said $said"
"$pmsh" --capture "$place/alone" -c "show version" >/dev/null 2>&1 && fail "--capture without --kernel"
[ ! -e "$place/alone" ] || fail "--capture without --kernel made a directory"
said=$("$pmsh" --replay "$place/none" -c "show version" 2>&1)
[ $? = 1 ] || fail "exit code of a missing folder"
has "$said" "pmsh: cannot read '$place/none/index': No such file or directory."
cp -r "$place/brief" "$place/damaged"
rm "$place/damaged/0001-links"
echo >"$place/damaged/notes"
said=$("$pmsh" --replay "$place/damaged" -c "show version" 2>&1) && fail "a damaged folder is taken"
has_line "$said" "pmsh: '$place/damaged/notes' is not part of the capture. Remove it."
has "$said" "pmsh: '$place/damaged/0001-links' is missing; "

step "devices of a network namespace"
if ! command -v ip >/dev/null || ! ip netns add "$here" 2>/dev/null; then
  skipped "devices of a network namespace" "network namespaces are not allowed here"
  exit 0
fi
dev() { ip -n "$here" link "$@" 2>/dev/null; }
dev set lo up
dev add left type veth peer name right || { skipped "devices of a network namespace" "no veth devices"; exit 0; }
dev set left up mtu 4000 alias "to the lab"
dev set right up
dev add br0 type bridge vlan_filtering 1 && dev set left master br0 && dev set br0 up
dev add bond7 type bond
ip -n "$here" addr add 198.51.100.1/24 dev right
ip -n "$here" route add default via 198.51.100.2
until_true grep -q LOWER_UP <<<"$(ip -n "$here" link show left)"
compare namespace ip netns exec "$here" "$pmsh"

step "cleared counters"
ip netns exec "$here" "$pmsh" --kernel -c "clear counters" >/dev/null || fail "clear counters"
compare cleared ip netns exec "$here" "$pmsh"
