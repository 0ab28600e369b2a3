# Shared by the scripts of this repository. Source it: . "$(dirname "$0")/tools/common.sh"

Root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
CacheDirectory=${XDG_CACHE_HOME:-$HOME/.cache}/korvadex

# What each kind of build needs, as packages of Debian 12.
BuildPackages=(g++ cmake ninja-build pkg-config zlib1g-dev libzip-dev libdeflate-dev libisal-dev libarchive-dev libgtest-dev libgmock-dev)
QtPackages=(qt6-base-dev librsvg2-bin)
ClangPackages=(clang libclang-rt-14-dev)
WindowsPackages=(g++-mingw-w64-x86-64-posix libz-mingw-w64-dev googletest qt6-base-dev-tools dpkg-dev make nasm perl
    icoutils nsis zip wine wine64 fonts-wine xvfb openbox xdotool imagemagick)
FormatPackages=(clang-format)
DebianPackages=(dpkg-dev desktop-file-utils appstream gzip)

# Fail TEXT: one line on stderr, and out.
Fail() {
    printf '%s: %s\n' "$0" "$1" >&2
    exit 1
}

IsInstalled() {
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null || true)" = installed ]
}

# InstallPackages NAME...: installs those that are missing. A machine that has them all needs no network.
InstallPackages() {
    local name missing=() elevate=() log
    command -v dpkg-query >/dev/null && command -v apt-get >/dev/null ||
        Fail "this script installs what it needs with apt-get, which this machine does not have"
    for name in "$@"; do
        IsInstalled "$name" || missing+=("$name")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null ||
            Fail "please install these packages as root first: ${missing[*]}"
        elevate=(sudo)
    fi
    printf 'Installing %s\n' "${missing[*]}"
    log=$(mktemp)
    # apt-get update only warns about a source that it cannot reach; the installation then tells.
    if ! { "${elevate[@]}" apt-get update -qq &&
        "${elevate[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
        tail -n 20 "$log" >&2
        rm -f "$log"
        Fail "could not install ${missing[*]} (no network, or the package sources of this machine do not answer)"
    fi
    rm -f "$log"
}

# SourceTime: gives what is packed the time of the commit, so that the same commit gives the same bytes.
SourceTime() {
    SOURCE_DATE_EPOCH=$(git -C "$Root" log -1 --format=%ct) || Fail "the time of the commit takes a git clone"
    export SOURCE_DATE_EPOCH TZ=UTC LC_ALL=C.UTF-8
    umask 022
}

# Step TEXT COMMAND...: runs it quietly; what it printed is shown only when it fails.
Step() {
    local text=$1 log
    shift
    log=$(mktemp)
    if ! "$@" >"$log" 2>&1; then
        tail -n 30 "$log" >&2
        rm -f "$log"
        Fail "$text failed"
    fi
    rm -f "$log"
}

# Configure PRESET [OPTION...], Build PRESET [TARGET...], Test PRESET: in build/PRESET.
Configure() {
    local preset=$1 log=$Root/build/$1/configure.log
    shift
    mkdir -p "${log%/*}"
    if ! (cd "$Root" && cmake --preset "$preset" "$@") >"$log" 2>&1; then
        cat "$log" >&2
        Fail "configuring the preset '$preset' failed"
    fi
}

Build() {
    local preset=$1
    shift
    cmake --build "$Root/build/$preset" ${1:+--target "$@"} || Fail "building the preset '$preset' failed"
}

Test() {
    (cd "$Root" && ctest --preset "$1") || Fail "tests of the preset '$1' failed"
}
