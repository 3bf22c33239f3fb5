#!/usr/bin/env bash
# Inspects the Debian packages that make package writes, unpacks them into a temporary root and
# uses them from there with no environment: the tool, its manual page and completion, and a
# consumer built with find_package and with pkg-config.
#
#   check-deb.sh PACKAGE_DIR "CONFIGURE_FLAGS"
set -euo pipefail
dir=$1 flags=${2:-}
here=$(cd "$(dirname "$0")" && pwd)
fail() { echo "check-deb: $*" >&2; exit 1; }
unset LD_LIBRARY_PATH
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT

deb_of() {
    local found
    found=$(find "$dir" -maxdepth 1 -name "$1_*.deb")
    [[ -n $found && $(wc -l <<<"$found") -eq 1 ]] || fail "not one package $1 in $dir"
    echo "$found"
}
field() { dpkg-deb --field "$2" "$1"; }
contents() { dpkg-deb --contents "$1" | awk '{ print $6 }' | sed 's|^\./|/|'; }
has() { grep -qE "$2" <<<"$(contents "$1")" || fail "$(basename "$1") holds no $2"; }
depends_on() {
    grep -qE "(^|, )$2( |,|$)" <<<"$(field Depends "$1")" ||
        fail "$(basename "$1") does not depend on $2: $(field Depends "$1")"
}

tool=$(deb_of protofix)
dev=$(deb_of libprotofix-dev)
# The runtime package is named for the library's SONAME, as Debian names library packages.
for deb in "$dir"/libprotofix[0-9]*.deb; do runtime=$deb; done
[[ -n ${runtime:-} && -f $runtime ]] || fail "no runtime package in $dir"
for deb in "$tool" "$dev" "$runtime"; do dpkg-deb -x "$deb" "$root"; done
so=$(find "$root" -name 'libprotofix.so.*' -type f)
soname=$(objdump -p "$so" | awk '/SONAME/ { print $2 }')
stem=${soname%%.so.*} soversion=${soname#*.so.}
if [[ $stem =~ [0-9]$ ]]; then expected=$stem-$soversion; else expected=$stem$soversion; fi
[[ $(field Package "$runtime") == "$expected" ]] ||
    fail "the runtime package $(field Package "$runtime") is not named for SONAME $soname"
runtimeName=$(field Package "$runtime")
version=$(field Version "$runtime")

# Dependencies: the JsonCpp runtime that the library was linked with, found from its NEEDED
# entry and the package that holds it here; the development package on the JsonCpp headers and
# this very library; the tool, linked to the shared library, on it too.
jsoncpp=$(objdump -p "$so" | awk '/NEEDED/ && $2 ~ /^libjsoncpp/ { print $2 }')
[[ -n $jsoncpp ]] || fail "the library does not need JsonCpp"
jsoncppPackage=$(dpkg-query -S "*/$jsoncpp" | head -n 1 | cut -d: -f1)
depends_on "$runtime" "$jsoncppPackage"
depends_on "$dev" "$runtimeName \(= $version\)"
jsonHeader=$(pkg-config --cflags-only-I jsoncpp | awk '{ sub(/^-I/, "", $1); print $1 }')/json/json.h
depends_on "$dev" "$(dpkg-query -S "$jsonHeader" | cut -d: -f1)"
depends_on "$tool" "$runtimeName \(= $version\)"
depends_on "$tool" "$jsoncppPackage"

# Contents: each file in one package only, each in the package it belongs to.
has "$runtime" '^/usr/lib/[^/]+/libprotofix\.so\.[0-9.]+$'
has "$dev" '^/usr/include/protofix/protofix\.h$'
has "$dev" '^/usr/include/protofix/records/alarm\.h$'
has "$dev" '^/usr/lib/[^/]+/libprotofix\.so$'
has "$dev" '^/usr/lib/[^/]+/cmake/protofix/protofixConfig\.cmake$'
has "$dev" '^/usr/lib/[^/]+/pkgconfig/protofix\.pc$'
has "$dev" '^/usr/share/doc/protofix/examples/rtsp\.record\.json$'
has "$dev" '^/usr/share/doc/protofix/README\.md$'
has "$tool" '^/usr/bin/protofix$'
has "$tool" '^/usr/share/man/man1/protofix\.1\.gz$'
has "$tool" '^/usr/share/bash-completion/completions/protofix$'
if grep -qE '\.h$' <<<"$(contents "$runtime")$(contents "$tool")"; then
    fail "a header outside the development package"
fi
shared=$(for deb in "$tool" "$dev" "$runtime"; do contents "$deb" | grep -v '/$'; done | sort | uniq -d)
[[ -z $shared ]] || fail "files in more than one package: $shared"

# The binaries carry no debug information; the -dbgsym packages hold it, by build id.
for binary in "$root/usr/bin/protofix" "$so"; do
    if readelf -S "$binary" | grep -q '\.debug_info'; then fail "$binary is not stripped"; fi
    id=$(readelf -n "$binary" | awk '/Build ID/ { print $3 }')
    debug=$(find "$dir" -maxdepth 1 -name '*-dbgsym_*.ddeb' -exec dpkg-deb --contents {} \; | grep -c "/usr/lib/debug/.build-id/${id:0:2}/${id:2}.debug" || true)
    ((debug == 1)) || fail "no debug information for $(basename "$binary") (build id $id)"
done

# From the unpacked root: the tool, its manual page and completion, and the consumer.
"$root/usr/bin/protofix" --version | grep -qx "protofix $version" ||
    fail "the unpacked tool does not start: $("$root/usr/bin/protofix" --version 2>&1 | head -n 1)"
[[ $(realpath "$(ldd "$root/usr/bin/protofix" | awk '$1 ~ /^libprotofix/ { print $3 }')") == "$(realpath "$so")" ]] ||
    fail "the unpacked tool does not load the library beside it"
LC_ALL=C man -l "$root/usr/share/man/man1/protofix.1.gz" | grep -q 'protofix serialize' ||
    fail "man -l does not show the manual page"
bash "$here/check-tool-docs.sh" "$root/usr"
build=$root/consumer
# shellcheck disable=SC2086
cmake -S "$here" -B "$build" -G Ninja -DCMAKE_PREFIX_PATH="$root/usr" $flags >/dev/null
cmake --build "$build" >/dev/null
"$build/consumer"
PKG_CONFIG_PATH=$(dirname "$(find "$root/usr/lib" -name protofix.pc)") bash "$here/pkgconfig.sh"
echo "check-deb: $(basename "$tool"), $(basename "$runtime") and $(basename "$dev") install and work"
