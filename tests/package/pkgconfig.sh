#!/usr/bin/env bash
# Builds the consumer again with the flags of the installed protofix.pc alone, and runs it with no
# environment. protofix.pc names no run path (a system prefix needs none once ldconfig has run),
# so for a shared library in another prefix the build gives one itself, as README says.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
pkg-config --exists protofix
# shellcheck disable=SC2046
c++ -std=c++17 -o "$out/consumer" "$here/consumer.cpp" $(pkg-config --cflags --libs protofix) \
    -Wl,-rpath,"$(pkg-config --variable=libdir protofix)"
env -u LD_LIBRARY_PATH "$out/consumer"
