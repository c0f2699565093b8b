#!/usr/bin/env bash
# Commits to the kernel's devices that are rolled back unless they are confirmed: commit_confirmed_test.sh PMSH
#
# In network namespaces of its own, with veth pairs. The shell is killed, and loses the link by which it is reached.
set -u
. "$(dirname "$0")/support/script.sh"
pmsh=$1

command -v ip >/dev/null || skip_all "ip(8) is missing"
command -v jq >/dev/null || skip_all "jq(1) is missing"
command -v pgrep >/dev/null || skip_all "pgrep(1) is missing"
here=pmcliconfirm$$
there=pmcliuser$$
ip netns add "$here" 2>/dev/null || skip_all "network namespaces are not allowed here"
trap 'ip netns del "$here"; ip netns del "$there" 2>/dev/null; rm -rf "$work"' EXIT
work=$(mktemp -d)
export XDG_STATE_HOME=$work
ip -n "$here" link add left type veth peer name right 2>/dev/null || skip_all "veth devices are not allowed here"
ip -n "$here" link set left up
ip -n "$here" link set right up

run() { ip netns exec "$here" "$pmsh" --kernel "$@"; }
left=$(run -c "show kernel-map" | awk '$1 == "left" { print $2, $3 }')
value() { ip -n "$here" -j link show left | jq -r ".[0].$1"; }
is() { [ "$(value "$1")" = "$2" ]; }
expect() { is "$1" "$2" || fail "$1 is '$(value "$1")', not '$2'"; }
is_up() { [ "$(value 'flags | index("UP") != null')" = true ]; }
candidate() { printf 'configure candidate\ninterface %s\n%s\n' "$left" "$1"; }

# A shell that reads its lines from the descriptor 9 and writes to $work/said.
start_shell() {
  rm -f "$work/lines" "$work/said"
  mkfifo "$work/lines"
  ip netns exec "$here" "$pmsh" --kernel "$@" <"$work/lines" >"$work/said" 2>&1 7</dev/zero &
  shell=$!
  exec 9>"$work/lines"
}
end_shell() {
  exec 9>&-
  wait "$shell"
}
said() { grep -qsF -- "$1" "$work/said"; }

step "a dry run and a candidate change nothing"
said_of_trial=$(printf 'configure dry-run\ninterface %s\nswitchport mtu 5000\nshutdown\n' "$left" | run) || fail "a dry run fails"
has_line "$said_of_trial" "Ethernet${left#ethernet }: switchport mtu 1500 -> switchport mtu 5000"
candidate $'switchport mtu 5000\nshutdown\nshow diff' | run >"$work/said" 2>&1 || fail "a candidate fails"
said '  + switchport mtu 5000' || fail "no difference: $(cat "$work/said")"
expect mtu 1500
is_up || fail "the device is down"

step "a commit makes the settings, and takes those back that the kernel refuses half-way"
candidate $'switchport mtu 5000\ncommit' | run >/dev/null || fail "a commit fails"
expect mtu 5000
candidate $'shutdown\ndescription new\nflowcontrol receive on\nswitchport mtu 6000\ncommit' | run >"$work/said" 2>&1 && fail "a refused commit succeeds"
said "Ethernet${left#ethernet } failed for commit with Operation not supported" || fail "no reason: $(cat "$work/said")"
expect mtu 5000
expect ifalias null
is_up || fail "the device is down"

step "a commit that is confirmed stays"
candidate $'switchport mtu 5100\ncommit confirmed 600\nconfirm' | run >/dev/null || fail "a commit is not confirmed"
expect mtu 5100

step "a commit is rolled back at the end of the shell, which says so"
candidate $'switchport mtu 5200\ndescription new\ncommit confirmed 600' | run >"$work/said" 2>&1
[ $? = 1 ] || fail "the exit code is not 1"
said "pmsh: the commit was not confirmed: it was rolled back for $left." || fail "$(cat "$work/said")"
expect mtu 5100
expect ifalias null

step "a commit is rolled back when its time is over by the shell's clock"
candidate $'switchport mtu 5200\ncommit confirmed 600\nclock advance 600\nshow diff' | run >"$work/said" 2>&1
said "pmsh: the commit was not confirmed in time: it was rolled back for $left." || fail "$(cat "$work/said")"
said "  + switchport mtu 5200" || fail "the candidate lost it: $(cat "$work/said")"
expect mtu 5100

step "a commit is rolled back when its time is over and the shell does nothing; other settings stay"
start_shell
candidate $'switchport mtu 5300\ncommit confirmed 1' >&9
until_true said "Committed for $left."
ip -n "$here" link set left alias 'set meanwhile'
ip -n "$here" link set right mtu 4000
until_true is mtu 5100
expect ifalias 'set meanwhile'
echo 'show diff' >&9
until_true said "pmsh: the commit was not confirmed in time: it was rolled back for $left."
end_shell
differences=$(grep '^  [-+]' "$work/said")
[ "$differences" = $'  - switchport mtu 5100\n  + switchport mtu 5300' ] || fail "others are in the candidate: $(cat "$work/said")"
ip -n "$here" link set left alias ''
ip -n "$here" link set right mtu 1500

for signal in KILL TERM HUP; do
  step "a commit is rolled back when the shell ends by SIG$signal"
  start_shell
  candidate $'switchport mtu 5400\ncommit confirmed 600' >&9
  until_true said "Committed for $left."
  expect mtu 5400
  kill -"$signal" "$shell"
  end_shell 2>/dev/null
  until_true is mtu 5100
done

step "the guardian is not part of the shell's session, and ends with its commit"
start_shell
candidate $'switchport mtu 5500\ncommit confirmed 600' >&9
until_true said "Committed for $left."
guardian=$(pgrep -P "$shell") || fail "there is no guardian"
[ "$(ps -o sid= -p "$guardian" | tr -d ' ')" = "$guardian" ] || fail "it is in another session"
kill -HUP "$guardian" && kill -INT "$guardian" && kill -TERM "$guardian"
[ "$(readlink "/proc/$guardian/fd/1")" = /dev/null ] || fail "it holds the shell's output open"
held=$(find "/proc/$guardian/fd" -type l -printf '%l\n' | grep -vx /dev/null)
[[ $held =~ ^socket:\[[0-9]+\]$ ]] || fail "besides its socket it holds open: $held"
echo 'confirm' >&9
until_true said "Confirmed for $left."
[ -z "$(pgrep -P "$shell")" ] || fail "it is still there"
end_shell
expect mtu 5500

step "without its guardian, which was killed, the shell rolls back itself when the time is over"
start_shell
candidate $'switchport mtu 5700\ncommit confirmed 600' >&9
until_true said "Committed for $left."
kill -KILL "$(pgrep -P "$shell")"
printf 'show diff\nclock advance 500\nshow diff\nno-such-command\n' >&9
until_true said "no-such-command"
said "rolled back for" && fail "it is rolled back before the time is over: $(cat "$work/said")"
printf 'clock advance 100\nshow diff\n' >&9
until_true said "the commit was not confirmed in time: it was rolled back for $left."
end_shell
expect mtu 5500

step "without its guardian a commit is confirmed in time"
start_shell
candidate $'switchport mtu 5700\ncommit confirmed 600' >&9
until_true said "Committed for $left."
kill -KILL "$(pgrep -P "$shell")"
echo confirm >&9
until_true said "Confirmed for $left."
end_shell
expect mtu 5700
candidate $'switchport mtu 5500\ncommit' | run >/dev/null || fail "a commit fails"

if command -v setpriv >/dev/null && command -v prlimit >/dev/null; then
  step "a guardian that cannot start refuses the commit before anything is changed"
  candidate $'switchport mtu 5600\ncommit confirmed 600' |
    ip netns exec "$here" setpriv --reuid 65534 --clear-groups --inh-caps +net_admin --ambient-caps +net_admin \
      --bounding-set -all,+net_admin prlimit --nproc=1 "$pmsh" --kernel >"$work/said" 2>&1
  if said "not permitted"; then
    skipped "a guardian that cannot start" "a plain user cannot be given CAP_NET_ADMIN here"
  else
    said "pmsh: nothing was committed: the process that rolls back cannot start: Resource temporarily unavailable." ||
      fail "$(cat "$work/said")"
    expect mtu 5500
  fi
else
  skipped "a guardian that cannot start" "setpriv(1) or prlimit(1) is missing"
fi

if command -v python3 >/dev/null && ip netns add "$there" 2>/dev/null; then
  step "a commit that cuts the link by which the shell is reached is rolled back"
  ip -n "$here" link set right netns "$there"
  ip -n "$here" addr add 203.0.113.1/24 dev left
  ip -n "$here" link set left up
  ip -n "$there" addr add 203.0.113.9/24 dev right
  ip -n "$there" link set right up
  cat >"$work/serve.py" <<'PYTHON'
import os, socket, sys
listener = socket.create_server(("203.0.113.1", 4711))
open(sys.argv[1], "w").close()
connection, _ = listener.accept()
for descriptor in 0, 1, 2:
    os.dup2(connection.fileno(), descriptor)
listener.close()
connection.close()
os.environ["SSH_CONNECTION"] = "203.0.113.9 50000 203.0.113.1 22"
os.execv(sys.argv[2], [sys.argv[2], "--kernel"])
PYTHON
  ip netns exec "$here" python3 "$work/serve.py" "$work/listens" "$pmsh" &
  until_true test -e "$work/listens"
  lost() { ip netns exec "$here" cat /sys/class/net/left/carrier_down_count; }
  lost_before=$(lost)
  was_down() { [ "$(lost)" -gt "$lost_before" ]; }
  # The shell reports the rollback with a line that it runs afterwards.
  typed() { echo "$1" >&8; said "the commit was not confirmed in time"; }
  mkfifo "$work/typed"
  cat >"$work/connect.py" <<'PYTHON'
import os, socket, threading
connection = socket.create_connection(("203.0.113.1", 4711))
def show():
    while text := connection.recv(4096):
        os.write(1, text)
threading.Thread(target=show).start()
while text := os.read(0, 4096):
    connection.sendall(text)
connection.shutdown(socket.SHUT_WR)
PYTHON
  ip netns exec "$there" python3 "$work/connect.py" <"$work/typed" >"$work/said" 2>&1 &
  user=$!
  exec 8>"$work/typed"
  candidate $'shutdown\ncommit\ncommit confirmed 2' >&8
  until_true was_down
  until_true is_up
  # The user did not lose the connection.
  until_true said "Committed for $left. Type 'confirm', or it is rolled back in 2 seconds."
  said "use 'configure candidate' and 'commit confirmed SECONDS'" || fail "a commit is not asked for: $(cat "$work/said")"
  until_true typed 'show diff'
  until_true said "the commit was not confirmed in time: it was rolled back for $left."
  exec 8>&-
  wait "$user"
else
  skipped "the loss of the link" "python3 or a second namespace is missing"
fi
