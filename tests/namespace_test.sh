#!/usr/bin/env bash
# The management port and the in-band interface over real kernel devices: namespace_test.sh PMSH SWITCH_FILE
#
# In a network namespace of its own: the management device is one end of a veth pair whose other end is in a second
# namespace, "eth2" one end of another. Their counters must be those that ip(8) tells. Exits with 77 where namespaces are not
# allowed.
set -u
pmsh=$1 switch=$2

skip() {
  printf '*** SKIPPED: %s. The management port was NOT tested over a kernel device. ***\n' "$1"
  exit 77
}

command -v ip >/dev/null || skip "ip(8) is missing"
here=pmcli$$a there=pmcli$$b
ip netns add "$here" 2>/dev/null || skip "network namespaces are not allowed here"
trap 'ip netns del "$here"; ip netns del "$there"' EXIT
ip netns add "$there"
ip -n "$here" link add mgt0 type veth peer name peer0 netns "$there" 2>/dev/null || skip "veth devices are not allowed here"
ip -n "$here" link add eth2 type veth peer name peer2 netns "$there"
ip -n "$here" addr add 192.0.2.1/24 dev mgt0
ip -n "$there" addr add 192.0.2.2/24 dev peer0

fail() {
  printf 'FAILED: %s\n' "$*"
  exit 1
}

run() { ip netns exec "$here" "$pmsh" --switch "$switch" "$@"; }

# Prints a figure of a device as the kernel knows it: kernel DEVICE FILE
kernel() { ip netns exec "$here" cat "/sys/class/net/$1/statistics/$2"; }

has_line() { grep -qxF -- "$2" <<<"$1" || fail "no line '$2' in: $1"; }

# Before the devices are up.
has_line "$(run -c 'show interface sup-fc 0 status')" "sup-fc0 is down"
for device in mgt0 eth2; do ip -n "$here" link set "$device" up; done
for device in peer0 peer2; do ip -n "$there" link set "$device" up; done
has_line "$(run -c 'show interface sup-fc 0 status')" "sup-fc0 is up"

# Real packets: five echoes each way, besides what the neighbours say of themselves.
ip netns exec "$there" ping -c 5 -i 0.01 -q 192.0.2.1 >/dev/null 2>&1 ||
  ip netns exec "$there" bash -c 'for i in 1 2 3 4 5; do echo $i >/dev/udp/192.0.2.1/9; done' 2>/dev/null
for _ in $(seq 50); do [ "$(kernel mgt0 rx_packets)" -ge 5 ] && break; sleep 0.1; done
[ "$(kernel mgt0 rx_packets)" -ge 5 ] || fail "the kernel received nothing on mgt0"

# The counters may move between two looks, so the same figures are wanted before and after.
for _ in $(seq 20); do
  before="$(kernel mgt0 rx_packets) $(kernel mgt0 rx_bytes) $(kernel mgt0 tx_packets) $(kernel mgt0 tx_bytes)"
  shown=$(run -c "show interface mgmt 0")
  after="$(kernel mgt0 rx_packets) $(kernel mgt0 rx_bytes) $(kernel mgt0 tx_packets) $(kernel mgt0 tx_bytes)"
  [ "$before" = "$after" ] && break
done
read -r rx_packets rx_bytes tx_packets tx_bytes <<<"$after"
has_line "$shown" "    $rx_packets packets input, $rx_bytes bytes"
has_line "$shown" "    $tx_packets packets output, $tx_bytes bytes"

# Cleared, they count from 0 within one session, and the kernel's own go on.
cleared=$(run -c "clear counters mgmt 0" -c "show interface mgmt 0 counters detailed")
grep -q "Input Packets: *$rx_packets\$" <<<"$cleared" && fail "the counters were not cleared: $cleared"
[ "$(kernel mgt0 rx_packets)" -ge "$rx_packets" ] || fail "the kernel's own counters were touched"

# A device that has vanished is told, and ends nothing.
ip -n "$here" link del mgt0
gone=$(run -c "show interface mgmt 0")
has_line "$gone" "mgmt0 is up"
has_line "$gone" "error: pm_get_interface_counters failed"
has_line "$gone" "No counters available."
ip -n "$here" link del eth2
grep -q "sup-fc0" <<<"$(run -c 'show interface sup-fc 0 status')" && fail "an in-band device that is not there has a state"
printf 'tested over kernel devices\n'
