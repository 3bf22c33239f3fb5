#!/usr/bin/env bash
# The installed tool's manual page and bash completion against the tool itself.
#
#   check-tool-docs.sh PREFIX     (PREFIX/bin/protofix, PREFIX/share/man/man1/protofix.1.gz,
#                                  PREFIX/share/bash-completion/completions/protofix)
set -euo pipefail
prefix=$1
tool=$prefix/bin/protofix
page=$prefix/share/man/man1/protofix.1.gz
completion=$prefix/share/bash-completion/completions/protofix
fail() { echo "check-tool-docs: $*" >&2; exit 1; }
[[ -f $page ]] || fail "no manual page at $page"
[[ -f $completion ]] || fail "no bash completion at $completion"

# What the tool's help lists, read here with plain patterns: the commands under "Subcommands:",
# and every option name at the start of an entry of a command's help.
commands=$("$tool" --help | sed -n '/^Subcommands:/,/^$/p' | awk 'NR > 1 && NF { print $1 }')
[[ -n $commands ]] || fail "protofix --help lists no command"
options_of() { "$tool" "$@" --help | grep -E '^  -' | grep -oE -- '(^  |,)--?[A-Za-z][-A-Za-z0-9]*' | sed 's/^[ ,]*//'; }

# The manual page renders without a warning and names every command and option.
rendered=$(LC_ALL=C MANWIDTH=1000 man --warnings -l "$page" 2>"${TMPDIR:-/tmp}/protofix-man.$$")
warnings=$(cat "${TMPDIR:-/tmp}/protofix-man.$$"); rm -f "${TMPDIR:-/tmp}/protofix-man.$$"
[[ -z $warnings ]] || fail "the manual page renders with warnings: $warnings"
grep -q '^NAME' <<<"$rendered" || fail "the manual page has no NAME section"
for command in $commands; do
    grep -qE "^ +protofix $command( |$)" <<<"$rendered" || fail "the manual page has no synopsis of '$command'"
    for option in $(options_of "$command"); do
        grep -qE -- "(^|[ ,])$option( |,|$)" <<<"$rendered" || fail "the manual page lacks $command $option"
    done
done
for option in $(options_of); do
    grep -qE -- "(^|[ ,])$option( |,|$)" <<<"$rendered" || fail "the manual page lacks $option"
done

# The completion, as bash calls it: the words of the line and the index of the one completed.
# shellcheck disable=SC1090
source "$completion"
complete_words() {
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    COMPREPLY=()
    _protofix
    ((${#COMPREPLY[@]} == 0)) || printf '%s\n' "${COMPREPLY[@]}" | sort
}
expect() {
    local want=$1 got
    shift
    got=$(complete_words "$@")
    [[ $got == "$want" ]] || fail "completing '$*': got '${got//$'\n'/ }', want '${want//$'\n'/ }'"
}
sections=$("$tool" sections | awk 'NR > 1 && NF { print $1 }' | sort)
[[ $(wc -l <<<"$sections") -gt 1 ]] || fail "protofix sections lists no section"

expect "$(sort <<<"$commands")" protofix ''
expect "$sections" protofix serialize ''
expect "$(grep '^Remote' <<<"$sections")" protofix deserialize Remote
# An option's value is not a positional; a flag takes no value.
expect "$(grep '^Enc' <<<"$sections")" protofix deserialize --channel 3 Enc
expect "$(grep '^Enc' <<<"$sections")" protofix deserialize --pretty Enc
expect $'ntsc\npal' protofix serialize --standard ''
expect "" protofix serialize --channel ''
# A file where the command reads one, nothing past the last positional.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
touch "$work/rtsp.json"
expect "$work/rtsp.json" protofix serialize RTSP "$work/rt"
expect "$work/rtsp.json" protofix deserialize --f5 "$work/rt"
expect "" protofix view RTSP "$work/rtsp.json" ''
for command in $commands; do
    offered=$(complete_words protofix "$command" -)
    for option in $(options_of "$command"); do
        grep -qx -- "$option" <<<"$offered" || fail "completing '$command -' does not offer $option"
    done
done
echo "check-tool-docs: the manual page and the completion name every command and option"
