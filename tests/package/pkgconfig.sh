#!/usr/bin/env bash
# Builds the consumer again with the flags of the installed protofix.pc alone.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
pkg-config --exists protofix
# shellcheck disable=SC2046
c++ -std=c++17 -o "$out/consumer" "$here/consumer.cpp" $(pkg-config --cflags --libs protofix)
"$out/consumer"
