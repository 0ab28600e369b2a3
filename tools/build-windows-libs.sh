#!/bin/bash
# Builds the libraries that the Windows build links and that Debian has only for Linux: libzip and libdeflate,
# static, from Debian's own source packages. They stay in a cache outside of the clone and are built again when
# they are missing or when this recipe or the toolchain file has changed.
#
# usage: tools/build-windows-libs.sh
set -euo pipefail
. "$(dirname "$0")/common.sh"
[ $# -eq 0 ] || Fail "unknown option '$1' (this script takes none)"

prefix=${WIN_PREFIX:-$CacheDirectory/windows-libs}
toolchain=$Root/cmake/mingw64-toolchain.cmake
recipe=$(cat "$0" "$toolchain" | sha256sum | cut -d' ' -f1)
[ "$(cat "$prefix/.complete" 2>/dev/null || true)" != "$recipe" ] || exit 0

InstallPackages "${BuildPackages[@]}" "${WindowsPackages[@]}"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
log=$work/log

# Step TEXT COMMAND...: runs it quietly; what it printed is shown only when it fails.
Step() {
    local text=$1
    shift
    "$@" >"$log" 2>&1 && return
    tail -n 30 "$log" >&2
    Fail "$text failed"
}

# The machine's own package sources, turned into source package lists of our own: nothing of the system is
# changed, so that this works without root as well.
mkdir -p "$work/apt/parts" "$work/apt/lists/partial" "$work/apt/cache/archives/partial" "$work/src"
for file in /etc/apt/sources.list.d/*.sources; do
    [ ! -f "$file" ] || sed 's/^Types:.*$/Types: deb-src/' "$file" >"$work/apt/parts/${file##*/}"
done
for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ ! -f "$file" ] || sed -n 's/^deb /deb-src /p' "$file" >"$work/apt/parts/${file##*/}.list"
done
AptGet() {
    apt-get -qq -o Dir::Etc::SourceList=/dev/null -o Dir::Etc::SourceParts="$work/apt/parts" \
        -o Dir::State::Lists="$work/apt/lists" -o Dir::Cache="$work/apt/cache" \
        -o APT::Sandbox::User= -o Acquire::Languages=none "$@"
}
FetchSources() {
    AptGet update && cd "$work/src" && AptGet source libzip libdeflate
}
Step "fetching the source packages of libzip and libdeflate (no network, or no source packages at this machine's package sources)" \
    FetchSources
libzip=$(echo "$work"/src/libzip-*/)
libdeflate=$(echo "$work"/src/libdeflate-*/)

rm -rf "$prefix"
mkdir -p "$prefix/include" "$prefix/lib"
export WIN_PREFIX=$prefix
zlib=/usr/x86_64-w64-mingw32
# Windows brings the cipher for AES members; the other methods of compression have no Windows build in Debian.
Step "configuring libzip for Windows" cmake -S "$libzip" -B "$work/libzip" -G Ninja \
    -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" \
    -DBUILD_SHARED_LIBS=OFF -DZLIB_INCLUDE_DIR=$zlib/include -DZLIB_LIBRARY=$zlib/lib/libz.a \
    -DENABLE_WINDOWS_CRYPTO=ON -DENABLE_COMMONCRYPTO=OFF -DENABLE_GNUTLS=OFF -DENABLE_MBEDTLS=OFF \
    -DENABLE_OPENSSL=OFF -DENABLE_BZIP2=OFF -DENABLE_LZMA=OFF -DENABLE_ZSTD=OFF \
    -DBUILD_TOOLS=OFF -DBUILD_REGRESS=OFF -DBUILD_EXAMPLES=OFF -DBUILD_DOC=OFF
Step "building libzip for Windows" cmake --build "$work/libzip"
Step "installing libzip for Windows" cmake --install "$work/libzip"
Step "building libdeflate for Windows" make -C "$libdeflate" -j"$(nproc)" \
    CC=x86_64-w64-mingw32-gcc-posix AR=x86_64-w64-mingw32-ar libdeflatestatic.lib
cp "$libdeflate/libdeflate.h" "$prefix/include/"
cp "$libdeflate/libdeflatestatic.lib" "$prefix/lib/libdeflate.a"
printf '%s\n' "$recipe" >"$prefix/.complete"
