#!/usr/bin/env bash
# Checks which folder includes which: check_arrows.sh [SOURCE_TREE]
#
# Each rule is a folder and the folders of ours that it may include. The rooms of host/shell and the folders of host/source
# know each other by rules of their own: a room includes what is below it. The library and the platform include nothing of
# other projects but the headers of the language and of libc. ARCHITECTURE.md draws the same arrows.
set -eu
cd "${1:-.}"

library="platform pm pmcli support command config interface counters transceiver vlan module"
rules="
infra/platform:     platform
infra/port_manager: $library
host/base:          platform base
host/messages:      platform base messages
host/switch:        platform base switch
host/settings:      platform pmcli base switch settings
host/store:         platform base messages switch settings store
host/source:        platform pmcli base switch settings source
host/transport:     platform base messages transport
host/service:       platform base messages switch settings transport service
host/client:        platform base messages transport client
host/shell:         platform pm pmcli pmsh base messages switch settings transport shell
host/daemon:        platform base messages switch settings transport service daemon
host/embed:         platform pm pmcli pmhost pmsh base messages switch settings source transport service client shell embed
host/sibling:       platform pm pmcli pmsh sibling
"
rooms="
host/source/chassis:   chassis yaml
host/source/kernel:    kernel yaml
host/source/replay:    replay kernel
host/source/yaml:      yaml
host/source/open:      chassis kernel replay yaml open
host/shell/output:     output
host/shell/grammar:    output grammar
host/shell/library:    output grammar library
host/shell/platform:   output grammar platform
host/shell/session:    output grammar library platform session
host/shell/commands:   output grammar library platform session commands
host/shell/published:  output grammar published
"
# Programs, and what reads their options, wire all together.
wiring="host/shell/main.cpp host/shell/options.cpp host/shell/options.h
  host/daemon/main.cpp host/daemon/options.cpp host/daemon/options.h"
ours="$library pmsh pmhost base messages switch settings store source transport service client shell sibling daemon"
libc='assert|arpa/inet|dlfcn|errno|fcntl|net/if|netinet/in|stdbool|stddef|stdint|sys/ioctl|sys/socket|unistd'

awk -v rules="$rules $rooms" -v wiring="$wiring" -v ours="$ours" -v libc="$libc" '
  BEGIN {
    count = split(rules, lines, "\n")
    for (i = 1; i <= count; i++) {
      if (split(lines[i], part, ": *") < 2) continue
      may = split(part[2], names, " ")
      for (j = 1; j <= may; j++) allowed[part[1], names[j]] = 1
    }
    split(ours, names, " ")
    for (i in names) our[names[i]] = 1
    split(wiring, names, " ")
    for (i in names) wires[names[i]] = 1
  }
  FNR == 1 { split(FILENAME, path, "/"); folder = path[1] "/" path[2]; room = folder "/" path[3] }
  /^[ \t]*#[ \t]*include/ {
    name = $0
    sub(/^[^<"]*[<"]/, "", name)
    sub(/[>"].*/, "", name)
    split(name, part, "/")
    top = part[1]
    if (FILENAME in wires) good = 1
    else if (folder == "host/" top && (top == "source" || top == "shell")) good = (room, part[2]) in allowed
    else if (name ~ /\// && top in our) good = (folder, top) in allowed
    else good = folder !~ /^infra\// || name ~ "^(" libc ")\\.h$" || name ~ /^[a-z_]+$/
    if (!good) { print FILENAME ":" FNR ": " (top == "shell" || top == "source" ? room : folder) " may not include " name; failed = 1 }
  }
  END { exit failed }
' $(find infra host -name '*.h' -o -name '*.c' -o -name '*.cpp')
