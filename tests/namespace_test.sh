#!/usr/bin/env bash
# The management port and the in-band interface over real kernel devices: namespace_test.sh PMSH SWITCH_FILE
#
# In a network namespace of its own: the management device is one end of a veth pair whose other end is in a second
# namespace, "eth2" one end of another. Their counters must be those that ip(8) reports.
set -u
. "$(dirname "$0")/support/script.sh"
pmsh=$1 switch=$2

command -v ip >/dev/null || skip_all "ip(8) is missing"
here=pmcli$$a there=pmcli$$b
ip netns add "$here" 2>/dev/null || skip_all "network namespaces are not allowed here"
trap 'ip netns del "$here"; ip netns del "$there"' EXIT
ip netns add "$there"
ip -n "$here" link add mgt0 type veth peer name peer0 netns "$there" 2>/dev/null || skip_all "veth devices are not allowed here"
ip -n "$here" link add eth2 type veth peer name peer2 netns "$there"
ip -n "$here" addr add 192.0.2.1/24 dev mgt0
ip -n "$there" addr add 192.0.2.2/24 dev peer0

run() { ip netns exec "$here" "$pmsh" --switch "$switch" "$@"; }

# Prints a figure of a device as the kernel knows it: kernel DEVICE FILE
kernel() { ip netns exec "$here" cat "/sys/class/net/$1/statistics/$2"; }

step "the in-band interface before and after its device is up"
has_line "$(run -c 'show interface sup-fc 0 status')" "sup-fc0 is down"
for device in mgt0 eth2; do ip -n "$here" link set "$device" up; done
for device in peer0 peer2; do ip -n "$there" link set "$device" up; done
has_line "$(run -c 'show interface sup-fc 0 status')" "sup-fc0 is up"

step "counters of real packets: five echoes each way, besides what the neighbours send on their own"
ip netns exec "$there" ping -c 5 -i 0.01 -q 192.0.2.1 >/dev/null 2>&1 ||
  ip netns exec "$there" bash -c 'for i in 1 2 3 4 5; do echo $i >/dev/udp/192.0.2.1/9; done' 2>/dev/null
has_received_five() { [ "$(kernel mgt0 rx_packets)" -ge 5 ]; }
until_true has_received_five

# The counters may move between two readings, so the figures must be the same before and after.
while :; do
  before="$(kernel mgt0 rx_packets) $(kernel mgt0 rx_bytes) $(kernel mgt0 tx_packets) $(kernel mgt0 tx_bytes)"
  shown=$(run -c "show interface mgmt 0")
  after="$(kernel mgt0 rx_packets) $(kernel mgt0 rx_bytes) $(kernel mgt0 tx_packets) $(kernel mgt0 tx_bytes)"
  [ "$before" = "$after" ] && break
done
read -r rx_packets rx_bytes tx_packets tx_bytes <<<"$after"
has_line "$shown" "    $rx_packets packets input, $rx_bytes bytes"
has_line "$shown" "    $tx_packets packets output, $tx_bytes bytes"

step "cleared counters start from 0 within one session, and the kernel's own go on"
detailed="show interface mgmt 0 counters detailed"
shown=$(run -c "$detailed" -c "clear counters mgmt 0" -c "$detailed all")
mapfile -t counted < <(sed -nE 's/^ *(Input Packets:|[0-9]+\. *InPackets =) *([0-9]+)$/\2/p' <<<"$shown")
[ ${#counted[@]} -eq 2 ] || fail "not two counts of input packets: $shown"
[ "${counted[0]}" -ge "$rx_packets" ] && [ "${counted[1]}" -lt "$rx_packets" ] || fail "the counters were not cleared: $shown"
[ "$(kernel mgt0 rx_packets)" -ge "$rx_packets" ] || fail "the kernel's own counters were touched"

step "a device that has vanished"
ip -n "$here" link del mgt0
gone=$(run -c "show interface mgmt 0")
has_line "$gone" "mgmt0 is up"
has_line "$gone" "error: pm_get_interface_counters failed"
has_line "$gone" "No counters available."
ip -n "$here" link del eth2
shown=$(run -c 'show interface sup-fc 0 status') || fail "the in-band interface without a device: exit code $?"
! grep -q "sup-fc0" <<<"$shown" || fail "an in-band device that is not there has a state: $shown"
