#!/usr/bin/env bash
# Installs a build of protofix into a staging prefix and builds a consumer against it, once with
# find_package(protofix) and once with the flags of protofix.pc alone.
#
#   check-install.sh static|shared STAGE BUILD_DIR "CONFIGURE_FLAGS"
set -euo pipefail
kind=$1 stage=$2 build=$3 flags=${4:-}
here=$(cd "$(dirname "$0")" && pwd)

rm -rf "$stage" "$build/consumer"
cmake --install "$build" --prefix "$stage" >/dev/null
lib=$(find "$stage" -name 'libprotofix*' -type f | head -n 1)
pc=$(find "$stage" -name protofix.pc)
[[ -n $lib && -n $pc ]] || { echo "check-install: the library or protofix.pc was not installed" >&2; exit 1; }
[[ -d $stage/share/doc/protofix/examples ]] || { echo "check-install: no examples installed" >&2; exit 1; }

if [[ $kind == shared ]]; then
    so=$(find "$stage" -name 'libprotofix.so.*' -type f | head -n 1)
    soname=$(objdump -p "$so" | awk '/SONAME/ {print $2}')
    [[ $soname =~ ^libprotofix\.so\.[0-9]+\.[0-9]+$ ]] ||
        { echo "check-install: unexpected SONAME '$soname'" >&2; exit 1; }
    # Only the public API: the request classes and the text helpers, nothing of the library's
    # own namespace.
    exported=$(nm -D -C --defined-only "$so")
    grep -q 'CReqConfigProtocolFix::Serialize' <<<"$exported" ||
        { echo "check-install: CReqConfigProtocolFix is not exported" >&2; exit 1; }
    if grep -q ' protofix::' <<<"$exported"; then
        echo "check-install: internal symbols exported:" >&2
        grep ' protofix::' <<<"$exported" | head -n 5 >&2
        exit 1
    fi
    export LD_LIBRARY_PATH=$(dirname "$so")${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
fi

# shellcheck disable=SC2086
cmake -S "$here" -B "$build/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$stage" $flags >/dev/null
cmake --build "$build/consumer" >/dev/null
"$build/consumer/consumer"
PKG_CONFIG_PATH=$(dirname "$pc") bash "$here/pkgconfig.sh"
echo "check-install: the $kind install builds a consumer with find_package and with pkg-config"
