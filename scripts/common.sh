# What run and test share. Every failure is one line; the whole story is in build/log.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
logs="$root/build/log"
mkdir -p "$logs"
source "$root/scripts/packages.sh"

die() {
  echo "ostrelle: $*" >&2
  exit 1
}

as_root() {
  if [ "$(id -u)" = 0 ]; then "$@"
  elif command -v sudo >/dev/null; then sudo "$@"
  else die "needs root to install packages, and there is no sudo: apt-get install ${missing[*]}"
  fi
}

# Installs those of the given packages that are missing; says so only when there is something to do.
install_missing() {
  command -v dpkg-query >/dev/null || die "this is not Debian: install the packages of scripts/packages.sh by your own means"
  missing=()
  local present
  present=$(dpkg-query -W -f='${db:Status-Abbrev}${Package}\n' 2>/dev/null | sed -n 's/^ii //p')
  local package
  for package in "$@"; do
    grep -qxF "$package" <<<"$present" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  echo "Installing ${#missing[@]} packages ..."
  as_root apt-get update >"$logs/apt.log" 2>&1 || die "apt-get update failed: $(tail -n 1 "$logs/apt.log") ($logs/apt.log)"
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}" >>"$logs/apt.log" 2>&1 ||
    die "apt-get install failed: $(grep -m 1 '^E:' "$logs/apt.log" || tail -n 1 "$logs/apt.log") ($logs/apt.log)"
}

# build PRESET TARGET ...: configures once and builds; silent when there is nothing to do.
build() {
  local preset=$1
  shift
  local log="$logs/build-$preset.log"
  if [ ! -f "build/$preset/build.ninja" ]; then
    cmake --preset "$preset" >"$log" 2>&1 || die "configuring failed: $(grep -m 1 -A 2 'CMake Error' "$log" | tr '\n' ' ') ($log)"
  fi
  if ! ninja -C "build/$preset" -n "$@" 2>/dev/null | grep -q 'no work to do'; then
    echo "Building ($preset) ..."
    ninja -C "build/$preset" "$@" >"$log" 2>&1 || die "the build failed: $(grep -m 1 -E 'error:|FAILED:|ninja: error' "$log") ($log)"
  fi
}
