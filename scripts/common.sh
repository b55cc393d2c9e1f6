# Shared by the scripts of this folder; to be sourced.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

say() { printf '\n== %s\n' "$*"; }

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# require_packages PACKAGE...: installs the Debian packages that are missing; quick when none is.
require_packages() {
    local missing=() package
    for package in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    say "Installing ${missing[*]}"
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "run as root, or install: ${missing[*]}"
        as_root=(sudo)
    fi
    local options=(-o DPkg::Lock::Timeout=300 -qq)
    "${as_root[@]}" apt-get "${options[@]}" update
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get "${options[@]}" install -y --no-install-recommends "${missing[@]}" >/dev/null
}

install_for_linux() {
    require_packages cmake ninja-build g++ libutfcpp-dev libspdlog-dev libpugixml-dev libcli11-dev nlohmann-json3-dev \
        libgtest-dev libgmock-dev
}

install_for_sanitizers() {
    install_for_linux
    require_packages clang libclang-rt-14-dev
}

install_for_windows() {
    install_for_linux
    # Without its preloader, Wine ends at once and silently when the random heap covers the address of Windows' shared data.
    require_packages g++-mingw-w64-x86-64-posix googletest wine wine64 wine64-preloader
}

# quietly LOG COMMAND...: shows what the command prints on a terminal; otherwise only if it fails. LOG has it in any case.
quietly() {
    local log=$1
    shift
    mkdir -p "$(dirname "$log")"
    if [ -t 1 ]; then
        "$@" 2>&1 | tee "$log"
    else
        "$@" >"$log" 2>&1 || { local status=$?; cat "$log"; return $status; }
    fi
}

# configure PRESET: unless that has been done.
configure() {
    [ -f "build/$1/build.ninja" ] || quietly "build/$1.configure.log" cmake --preset "$1" ||
        fail "configuring '$1' failed"
}

# build PRESET [TARGET...]: configures it if needed, and builds it, or only these targets.
build() {
    say "Building ($1)"
    configure "$1"
    quietly "build/$1.build.log" cmake --build --preset "$1" ${2:+--target "${@:2}"} || fail "building '$1' failed"
}

# The newest clang of Debian 12: its library is the first with the algorithms over ranges.
prepare_libcxx() {
    install_for_linux
    require_packages clang-16 libc++-16-dev libc++abi-16-dev googletest
    scripts/build-dependencies libcxx
}

# Makes what Windows programs are linked with and run in, once.
prepare_windows() {
    install_for_windows
    scripts/build-dependencies windows
    scripts/wine --prepare
}
