# Sourced by ./run and ./test: installs what is missing, configures once, builds what changed. Says what it does on stderr.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

build_packages=(g++ cmake ninja-build pkgconf clang-format libedit-dev libcli11-dev libfmt-dev libmnl-dev
  libmicrohttpd-dev libyaml-dev libre2-dev libsystemd-dev)
test_packages=(abigail-tools googletest clang libclang-rt-14-dev g++-powerpc-linux-gnu qemu-user jq python3
  python3-jsonschema rapidjson-dev iproute2
  ethtool liblldpctl-dev less lldpd prometheus strace)

say() { printf '%s\n' "$*" >&2; }

# Installs the Debian packages that are missing, or says how.
need_packages() {
  local missing=() package
  for package in "$@"; do
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return

  local install="apt-get install -y --no-install-recommends ${missing[*]}" as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null || ! sudo -n true 2>/dev/null; then
      say "Some packages are missing. Please run this, then try again:"
      say "  sudo $install"
      exit 1
    fi
    as_root=(sudo)
  fi
  say "Installing ${missing[*]} ..."
  # Tests start a server of their own: that of the package is neither started nor enabled.
  if [[ " ${missing[*]} " == *" prometheus "* && -d /run/systemd/system ]]; then
    say "The service prometheus.service is masked: 'systemctl unmask prometheus' allows it."
    "${as_root[@]}" systemctl mask --quiet prometheus.service >&2
  fi
  # An old package index may lack what is asked for, so it is renewed first.
  if ! { "${as_root[@]}" apt-get update -q && "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive $install -q; } >&2; then
    say "The packages could not be installed. Please run this, then try again:"
    say "  $install"
    exit 1
  fi
}

# Configures a preset once; the build itself notices changes of its own files.
configure() {
  local preset=$1
  [ -f "$root/build/$preset/build.ninja" ] && return
  say "Configuring $preset ..."
  (cd "$root" && cmake --preset "$preset" -Wno-dev >"$root/build/$preset.log" 2>&1) || {
    cat "$root/build/$preset.log" >&2
    exit 1
  }
}

# Builds a preset: with its progress the first time, and without a word when there is nothing to do.
build() {
  local preset=$1 built="$root/build/$1/built"
  if [ -f "$built" ]; then
    (set -o pipefail && ninja -C "$root/build/$preset" --quiet | { grep -v '^ninja: no work to do' || true; } >&2)
  else
    ninja -C "$root/build/$preset" >&2
    touch "$built"
  fi
}
