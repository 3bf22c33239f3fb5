#!/usr/bin/env bash
# Writes the tool's manual page and its bash completion from what the tool itself prints: its
# --help, each command's --help and its list of sections. Run at build time, so both stay in step
# with the tool's commands and options.
#
#   tool-docs.sh TOOL OUTDIR     writes OUTDIR/protofix.1.gz and OUTDIR/protofix.bash-completion
set -euo pipefail
tool=$1 out=$2
mkdir -p "$out"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The help as records, one a line, fields separated by tabs:
#   desc TEXT | usage TEXT | group NAME | entry GROUP HEAD TEXT | more TEXT | footer TEXT
# An entry is a line indented by two spaces: its head (names, value, constraints) ends at the
# first run of two spaces, its description follows there or on the lines indented deeper ("more").
parse_help() {
    awk '
    BEGIN { OFS = "\t"; state = "desc" }
    /^Usage: / { sub(/^Usage: /, ""); print "usage", $0; state = "body"; next }
    state == "desc" { if ($0 != "") print "desc", $0; next }
    /^$/ { if (state == "entries") state = "after"; next }
    /^[^ ].*:$/ { group = $0; sub(/:$/, "", group); print "group", group; state = "entries"; next }
    /^  [^ ]/ && state == "entries" {
        line = substr($0, 3); head = line; text = ""
        if (match(line, /  +/)) { head = substr(line, 1, RSTART - 1); text = substr(line, RSTART + RLENGTH) }
        print "entry", group, head, text; next
    }
    /^   / && state == "entries" { sub(/^ +/, ""); print "more", $0; next }
    { state = "after"; print "footer", $0 }
    '
}

"$tool" --help | parse_help >"$work/top"
"$tool" --version >"$work/version"
"$tool" sections >"$work/sections"
awk -F '\t' '$1 == "entry" && $2 ~ /ubcommand/ { split($3, w, " "); print w[1] }' "$work/top" >"$work/commands"
[[ -s $work/commands ]] || { echo "tool-docs: no command in '$tool --help'" >&2; exit 1; }
while read -r command; do
    "$tool" "$command" --help | parse_help >"$work/command.$command"
done <"$work/commands"
# The section names: the first column of the list, below its heading line.
awk 'NR > 1 && NF { print $1 }' "$work/sections" >"$work/section-names"

# ---- the manual page --------------------------------------------------------------------------
# Text is escaped for roff: backslashes, every hyphen as a minus (options are typed as shown),
# and a line that would start with a control character.
# render_entries FILE [HEADINGS]: the entries of a help as tagged paragraphs, under the names of
# their groups when HEADINGS is given.
render_entries() {
    awk -F '\t' -v headings="${2:-}" '
    function esc(s) { gsub(/\\/, "\\e", s); gsub(/-/, "\\-", s); if (s ~ /^[.\047]/) s = "\\&" s; return s }
    $1 == "group" && headings != "" { print ".PP"; print ".I " esc($2) ":" }
    $1 == "entry" { print ".TP"; print ".B " esc($3); if ($4 != "") print esc($4) }
    $1 == "more" { print esc($2) }
    ' "$1"
}
footer_of() { awk -F '\t' '$1 == "footer" { print $2 }' "$1"; }
esc_lines() { sed -e 's/\\/\\e/g' -e 's/-/\\-/g' -e "s/^\\([.']\\)/\\\\\\&\\1/"; }

version=$(awk '{ print $NF; exit }' "$work/version")
{
    echo ".\\\" Written from the output of protofix --help at build time; do not edit."
    echo ".TH PROTOFIX 1 \"\" \"protofix $version\" \"User Commands\""
    echo ".SH NAME"
    echo "protofix \\- $(awk -F '\t' '$1 == "desc" { print $2 }' "$work/top" | tr '\n' ' ' | sed 's/ $//' | esc_lines)"
    echo ".SH SYNOPSIS"
    echo ".nf"
    while read -r command; do echo "$work/command.$command"; done <"$work/commands" |
        xargs awk -F '\t' '$1 == "usage" { print $2 }' "$work/top" | esc_lines
    echo ".fi"
    echo ".SH DESCRIPTION"
    awk -F '\t' '$1 == "desc" { print $2 }' "$work/top" | esc_lines
    echo ".SH OPTIONS"
    awk -F '\t' '!($1 == "entry" && $2 ~ /ubcommand/) && !($1 == "group" && $2 ~ /ubcommand/) && !($1 == "footer")' \
        "$work/top" >"$work/top-options"
    render_entries "$work/top-options"
    echo ".SH COMMANDS"
    while read -r command; do
        echo ".SS $command"
        awk -F '\t' '$1 == "desc" { print $2 }' "$work/command.$command" | esc_lines
        echo ".PP"
        echo ".B $(awk -F '\t' '$1 == "usage" { print $2 }' "$work/command.$command" | esc_lines)"
        awk -F '\t' '$1 != "footer"' "$work/command.$command" >"$work/entries"
        render_entries "$work/entries" headings
        # A command's own notes, when they are not the tool's.
        if ! diff -q <(footer_of "$work/top") <(footer_of "$work/command.$command") >/dev/null; then
            echo ".PP"
            footer_of "$work/command.$command" | esc_lines
        fi
    done <"$work/commands"
    echo ".SH SECTIONS"
    echo 'The sections, as \fBprotofix sections\fR lists them:'
    echo ".PP"
    echo ".nf"
    esc_lines <"$work/sections"
    echo ".fi"
    if [[ -n $(footer_of "$work/top") ]]; then
        echo ".SH NOTES"
        footer_of "$work/top" | esc_lines
    fi
} >"$work/protofix.1"
gzip -9 -n -c "$work/protofix.1" >"$out/protofix.1.gz"

# ---- the bash completion ----------------------------------------------------------------------
# What an option's value or a positional is, from the word the help shows for it: words joined
# by "|" are the choices, a *.json (or FILE, PATH) name is a file, DIR a directory, SECTION a
# section name; anything else is free text. A positional shown with "..." repeats.
kinds() {
    awk -F '\t' -v command="$1" '
    BEGIN { OFS = "\t" }
    function kind(name, value) {
        if (name == "SECTION" || value == "SECTION") return "section"
        if (value ~ /\|/) { gsub(/\|/, " ", value); return "words " value }
        if (value ~ /\.(json|jsonl|txt)$/ || value ~ /^(FILE|PATH)$/ || name ~ /^(FILE|PATH)S?$/) return "file"
        if (value == "DIR") return "dir"
        return "text"
    }
    $1 == "entry" && $2 !~ /ubcommand/ {
        n = split($3, w, " ")
        value = (n >= 2 && w[2] !~ /:$/ && w[2] != "REQUIRED" && w[2] !~ /^\[/) ? w[2] : ""
        if (w[1] ~ /^-/) {
            k = split(w[1], names, ",")
            for (i = 1; i <= k; ++i) {
                options = options " " names[i]
                if (value != "") print "value", command, names[i], kind("", value)
            }
        } else {
            print "positional", command, positionals++, kind(w[1], value), ($3 ~ /\.\.\.$/ ? "repeats" : "")
        }
    }
    END { print "options", command, substr(options, 2) }
    '
}
{
    kinds "" <"$work/top"
    while read -r command; do kinds "$command" <"$work/command.$command"; done <"$work/commands"
} >"$work/kinds"

{
    cat <<'EOF'
# bash completion for protofix: its commands, options, option values and section names.
# Written from the output of protofix --help and protofix sections at build time; do not edit.
EOF
    echo "_protofix_commands='$(tr '\n' ' ' <"$work/commands" | sed 's/ $//')'"
    echo "_protofix_sections='$(tr '\n' ' ' <"$work/section-names" | sed 's/ $//')'"
    echo
    echo "# The options of a command (none: the tool's own)."
    echo "_protofix_options() {"
    echo "    case \$1 in"
    awk -F '\t' '$1 == "options" { printf "    %s) echo \047%s\047 ;;\n", ($2 == "" ? "\"\"" : $2), $3 }' "$work/kinds"
    echo "    esac"
    echo "}"
    echo
    echo "# What the value of a command's option is; \"flag\" when it takes none."
    echo "_protofix_value() {"
    echo "    case \"\$1 \$2\" in"
    awk -F '\t' '$1 == "value" { printf "    \047%s %s\047) echo \047%s\047 ;;\n", $2, $3, $4 }' "$work/kinds"
    echo "    *) echo flag ;;"
    echo "    esac"
    echo "}"
    echo
    echo "# What a command's positional argument (counted from 0) is."
    echo "_protofix_positional() {"
    echo "    case \"\$1 \$2\" in"
    awk -F '\t' '$1 == "positional" { printf "    \047%s %s\047) echo \047%s\047 ;;\n", $2, $3, $4
                                      if ($5 == "repeats") printf "    \047%s \047*) echo \047%s\047 ;;\n", $2, $4 }' \
        "$work/kinds" | awk '!/\047\*\)/ { print; next } { held = held $0 "\n" } END { printf "%s", held }'
    echo "    *) echo none ;;"
    echo "    esac"
    echo "}"
    cat <<'EOF'

_protofix_complete_kind() {
    case $1 in
    section) mapfile -t COMPREPLY < <(compgen -W "$_protofix_sections" -- "$2") ;;
    file)
        compopt -o filenames 2>/dev/null || true
        mapfile -t COMPREPLY < <(compgen -f -- "$2")
        ;;
    dir)
        compopt -o filenames 2>/dev/null || true
        mapfile -t COMPREPLY < <(compgen -d -- "$2")
        ;;
    words\ *) mapfile -t COMPREPLY < <(compgen -W "${1#words }" -- "$2") ;;
    *) COMPREPLY=() ;;
    esac
}

_protofix() {
    local cur=${COMP_WORDS[COMP_CWORD]} command='' count=0 i word
    COMPREPLY=()
    # The command and the number of positionals before the cursor; an option's value is skipped.
    for ((i = 1; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        if [[ $word == -?* ]]; then
            if [[ $word != *=* && $(_protofix_value "$command" "$word") != flag ]]; then
                i=$((i + 1))
            fi
        elif [[ -z $command ]]; then
            command=$word
        else
            count=$((count + 1))
        fi
    done
    if ((COMP_CWORD > 1)) && [[ ${COMP_WORDS[COMP_CWORD - 1]} == -?* ]]; then
        local kind
        kind=$(_protofix_value "$command" "${COMP_WORDS[COMP_CWORD - 1]}")
        if [[ $kind != flag ]]; then
            # Only when that option is not itself the value of the one before it.
            local before=${COMP_WORDS[COMP_CWORD - 2]:-}
            if ((COMP_CWORD < 3)) || [[ $before != -?* ]] || [[ $(_protofix_value "$command" "$before") == flag ]]; then
                _protofix_complete_kind "$kind" "$cur"
                return
            fi
        fi
    fi
    if [[ $cur == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$(_protofix_options "$command")" -- "$cur")
    elif [[ -z $command ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$_protofix_commands" -- "$cur")
    else
        _protofix_complete_kind "$(_protofix_positional "$command" "$count")" "$cur"
    fi
}
complete -F _protofix protofix
EOF
} >"$out/protofix.bash-completion"
