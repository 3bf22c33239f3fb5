#!/usr/bin/env bash
# Installs a build of protofix into a staging prefix and uses it as an engineer would, with no
# environment: runs the installed tool, checks its manual page and completion, and builds a
# consumer against the install once with find_package(protofix) and once with the flags of
# protofix.pc alone. For a shared build, also every function of the headers is exported.
#
#   check-install.sh static|shared STAGE BUILD_DIR "CONFIGURE_FLAGS"
set -euo pipefail
kind=$1 stage=$2 build=$3 flags=${4:-}
here=$(cd "$(dirname "$0")" && pwd)
fail() { echo "check-install: $*" >&2; exit 1; }
unset LD_LIBRARY_PATH

rm -rf "$stage" "$build/consumer"
cmake --install "$build" --prefix "$stage" >/dev/null
lib=$(find "$stage" -name 'libprotofix*' -type f | head -n 1)
pc=$(find "$stage" -name protofix.pc)
[[ -n $lib && -n $pc ]] || fail "the library or protofix.pc was not installed"
[[ -d $stage/share/doc/protofix/examples ]] || fail "no examples installed"

if [[ $kind == shared ]]; then
    so=$(find "$stage" -name 'libprotofix.so.*' -type f | head -n 1)
    soname=$(objdump -p "$so" | awk '/SONAME/ {print $2}')
    [[ $soname =~ ^libprotofix\.so\.[0-9]+\.[0-9]+$ ]] || fail "unexpected SONAME '$soname'"
    # The public API only: nothing of the library's own namespace ...
    exported=$(nm -D -C --defined-only "$so")
    if grep -q ' protofix::' <<<"$exported"; then
        echo "check-install: internal symbols exported:" >&2
        grep ' protofix::' <<<"$exported" | head -n 5 >&2
        exit 1
    fi
    # ... and all of it.
    bash "$here/check-exports.sh" "$stage/include" "$so"
fi

# The installed tool starts from the staging prefix as it is, and a shared one loads the library
# installed beside it, not one of the build tree or the system.
"$stage/bin/protofix" --version | grep -qE '^protofix [0-9]+\.[0-9]+\.[0-9]+$' ||
    fail "the installed tool does not start: $("$stage/bin/protofix" --version 2>&1 | head -n 1)"
if [[ $kind == shared ]]; then
    loaded=$(ldd "$stage/bin/protofix" | awk '$1 ~ /^libprotofix/ { print $3 }')
    [[ $(realpath "$loaded") == "$(realpath "$so")" ]] ||
        fail "the installed tool loads '$loaded', not the library of its prefix"
fi
bash "$here/check-tool-docs.sh" "$stage"

# shellcheck disable=SC2086
cmake -S "$here" -B "$build/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$stage" $flags >/dev/null
cmake --build "$build/consumer" >/dev/null
"$build/consumer/consumer"
PKG_CONFIG_PATH=$(dirname "$pc") bash "$here/pkgconfig.sh"
echo "check-install: the $kind install runs its tool and builds a consumer with find_package and with pkg-config"
