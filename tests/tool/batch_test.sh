#!/usr/bin/env bash
# Tests of `protofix batch`: JSON Lines of requests in, one result line per request out.
#
#   batch_test.sh TOOL EXAMPLES_DIR
#
# 1. Every section's examples as requests give what the single commands give: the same exit
#    status, the same output (compared as JSON: a batch holds a record view as an object, the
#    command line prints it in the record's field order), the same warnings and the same error,
#    the inputs' names aside (a file's path on the command line, 'line N "table"' in a batch).
# 2. Bad lines are error results with exit 2 and the batch goes on; blank lines are passed over
#    but counted; the batch exits with the highest status of its lines.
# 3. The same requests through GNU parallel in chunks give the results of one process, line for
#    line, their numbers aside.
# 4. A request written into a pipe that stays open is answered before the writer closes it.
# 5. Progress is shown on a terminal only, for a long batch.
set -euo pipefail

if [[ $# -ne 2 ]]; then
    echo "usage: $0 TOOL EXAMPLES_DIR" >&2
    exit 2
fi
tool=$1
ex=$2
command -v jq >/dev/null || { echo "$0: jq is needed (scripts/install-deps)" >&2; exit 2; }

# shellcheck source=tests/tool/support.sh
source "$(dirname "$0")/support.sh"
cleanup() {
    # The coprocesses of the pipe tests, if a check left one running.
    [[ -n ${pipe_pid:-} ]] && kill "$pipe_pid" 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT

# expect NAME CONDITION-STATUS MESSAGE: one case, failed when the status is not 0.
expect() {
    cases=$((cases + 1))
    [[ $2 -eq 0 ]] || fail "$1" "$3"
}

# ---- 1. the examples, one request each, against the single commands ----------------------------

# The cases: the single command's arguments (words separated by \x1f), the request, and the files
# the inputs come from (member=path, separated by \x1f) to tell the inputs' names apart.
case_args=()
case_requests=()
case_files=()

# Each example's JSON on one line (all read by one jq), and a text as a JSON string.
declare -A compact
example_files=("$ex"/*.json)
mapfile -t example_lines < <(jq -c . "${example_files[@]}")
[[ ${#example_lines[@]} -eq ${#example_files[@]} ]] || { echo "$0: an example in $ex is not one JSON text" >&2; exit 2; }
for i in "${!example_files[@]}"; do compact[${example_files[$i]}]=${example_lines[$i]}; done
json_of() {
    [[ -n ${compact[$1]:-} ]] || { echo "$0: no example $1" >&2; return 1; }
    printf '%s' "${compact[$1]}"
}
json_string() { jq -Rs . <"$1" | tr -d '\n'; }

# add REQUEST-MEMBERS -- ARGS... -- MEMBER=PATH...: a case; the request is the section and the
# command (the first two words of ARGS) with the members given (JSON text, without braces).
add() {
    local members=$1 args=() files=()
    shift 2
    while [[ $1 != -- ]]; do args+=("$1"); shift; done
    shift
    files=("$@")
    case_args+=("$(IFS=$'\x1f'; echo "${args[*]}")")
    case_requests+=("{\"section\":\"${args[1]}\",\"command\":\"${args[0]}\"${members:+,$members}}")
    case_files+=("$(IFS=$'\x1f'; echo "${files[*]}")")
}

sections=0
while read -r name modes _; do
    sections=$((sections + 1))
    lower=${name,,}
    rec=$ex/$lower.record.json tab=$ex/$lower.table.json f5=$ex/$lower.f5.json base=$ex/$lower.base.json
    if [[ $modes == *record* ]]; then
        add "\"record\":$(json_of "$rec")" -- serialize "$name" "$rec" -- "record=$rec"
        add "\"record\":$(json_of "$rec")" -- view "$name" "$rec" -- "record=$rec"
    else
        add "\"f5\":$(json_of "$f5")" -- serialize "$name" --f5 "$f5" -- "f5=$f5"
    fi
    if [[ -f $base ]]; then
        for command in deserialize roundtrip; do
            json=()
            [[ $command == roundtrip ]] && json=(--json)
            add "\"table\":$(json_of "$tab"),\"base\":$(json_of "$base")" \
                -- "$command" "$name" "$tab" --base "$base" "${json[@]}" -- "table=$tab" "base=$base"
        done
    else
        add "\"table\":$(json_of "$tab")" -- deserialize "$name" "$tab" -- "table=$tab"
        add "\"table\":$(json_of "$tab")" -- roundtrip "$name" "$tab" --json -- "table=$tab"
    fi
    if [[ $modes == *text* ]]; then
        # The F5 text as a JSON value, then as a string holding the file's text.
        add "\"f5\":$(json_of "$f5")" -- serialize "$name" --f5 "$f5" -- "f5=$f5"
        add "\"f5\":$(json_string "$f5"),\"table\":$(json_of "$tab")" \
            -- deserialize "$name" --f5 "$f5" "$tab" -- "f5=$f5" "table=$tab"
    fi
done < <("$tool" sections | tail -n +2)
expect sections-listed $((sections > 0 ? 0 : 1)) "no section listed by '$tool sections'"

# Each request member in place of its option, where the option changes the output or warns.
net=$ex/network.record.json
add "\"record\":$(json_of "$net"),\"channel\":3,\"id\":42" \
    -- serialize Network "$net" --channel 3 --id 42 -- "record=$net"
add "\"record\":$(json_of "$net"),\"channel\":-1,\"standard\":\"NTSC\"" \
    -- serialize Network "$net" --channel -1 --standard NTSC -- "record=$net"
add "\"record\":$(json_of "$net"),\"standard\":\"ntsc\",\"strict\":true" \
    -- serialize Network "$net" --standard ntsc --strict -- "record=$net"
encode=$ex/encode.record.json
add "\"record\":$(json_of "$encode"),\"standard\":\"ntsc\"" \
    -- serialize Encode "$encode" --standard ntsc -- "record=$encode"
locales=$ex/locales.record.json current=$ex/locales.current.json
add "\"record\":$(json_of "$locales"),\"sub-mode\":1,\"current\":$(json_of "$current")" \
    -- serialize Locales "$locales" --sub-mode 1 --current "$current" -- "record=$locales" "current=$current"
add "\"record\":$(json_of "$locales"),\"sub-mode\":1" \
    -- serialize Locales "$locales" --sub-mode 1 -- "record=$locales"
alarm=$ex/alarm.table.json alarm_f5=$ex/alarm.f5.json change=$ex/alarm.change.json
add "\"table\":$(json_of "$alarm"),\"raw\":true" -- deserialize Alarm "$alarm" --raw -- "table=$alarm"
add "\"table\":$(json_of "$alarm"),\"channel\":2,\"strict\":true" \
    -- deserialize Alarm "$alarm" --channel 2 --strict -- "table=$alarm"
add "\"f5\":$(json_string "$alarm_f5"),\"table\":$(json_of "$change"),\"capacity\":100" \
    -- deserialize Alarm --f5 "$alarm_f5" "$change" --capacity 100 -- "f5=$alarm_f5" "table=$change"
add "\"f5\":$(json_of "$alarm_f5")" -- roundtrip Alarm --f5 "$alarm_f5" --json -- "f5=$alarm_f5"
printf '{"NetAlarm":{"En":1}}' >"$work/no-member.f5.json"
printf '{"Enable":false}' >"$work/disable.json"
for add_member in --add-member ""; do
    add "\"f5\":\"{\\\"NetAlarm\\\":{\\\"En\\\":1}}\",\"table\":{\"Enable\":false}${add_member:+,\"add-member\":true}" \
        -- deserialize Alarm --f5 "$work/no-member.f5.json" "$work/disable.json" ${add_member:+"$add_member"} \
        -- "f5=$work/no-member.f5.json" "table=$work/disable.json"
done
printf '2a02' >"$work/rtsp.hex"
add '"record":"2a02"' -- serialize RTSP "$work/rtsp.hex" -- "record=$work/rtsp.hex"

printf '%s\n' "${case_requests[@]}" >"$work/requests.jsonl"
batch_status=0
"$tool" batch "$work/requests.jsonl" >"$work/results.jsonl" 2>"$work/batch.err" || batch_status=$?
expect examples-count $(($(wc -l <"$work/results.jsonl") == ${#case_requests[@]} ? 0 : 1)) \
    "$(wc -l <"$work/results.jsonl") results for ${#case_requests[@]} requests"
expect examples-quiet $(($(wc -c <"$work/batch.err") == 0 ? 0 : 1)) \
    "standard error of the batch: $(head -c 300 "$work/batch.err")"

# Each result as five lines: its line number, exit, the output (null when none), warnings and
# error. Inputs are named 'line N "member"' in a batch; "<member>" names them here.
mapfile -t views < <(jq -cS 'def norm: gsub("line [0-9]+ \"(?<m>[a-z0-9-]+)\""; "<\(.m)>");
    .line, .exit,
    (del(.line, .exit, .warnings, .error) | to_entries | if length == 1 then .[0].value else null end),
    (.warnings | map(norm)),
    (if .error == null then null else .error | norm end)' "$work/results.jsonl")
# The same of a single command's exit status, standard output and standard error; its inputs
# are named by their paths. Fails when the output is not JSON.
single_view() {
    jq -cSn --argjson exit "$1" --slurpfile out "$work/out" --rawfile err "$work/err" --arg files "$2" '
        def norm: reduce ($files | split("\u001f")[] | capture("^(?<m>[^=]+)=(?<path>.*)$")) as $f
                    (.; split($f.path) | join("<\($f.m)>"));
        ($err | split("\n") | map(select(length > 0))) as $lines
        | $exit,
          (if ($out | length) == 1 then $out[0] else null end),
          ($lines | map(select(startswith("protofix: warning: ")) | ltrimstr("protofix: warning: ") | norm)),
          ($lines | map(select(startswith("protofix: warning: ") | not)) | last
           | if . == null then null else ltrimstr("protofix: ") | sub("^--strict: "; "strict: ") | norm end)'
}

highest=0
for i in "${!case_requests[@]}"; do
    IFS=$'\x1f' read -r -a args <<<"${case_args[$i]}"
    status=0
    "$tool" "${args[@]}" >"$work/out" 2>"$work/err" </dev/null || status=$?
    ((status > highest)) && highest=$status
    name="example-$((i + 1))-${args[0]}-${args[1]}"
    cases=$((cases + 1))
    if [[ $status -gt 2 ]]; then
        fail "$name" "'${args[*]}' exited $status"
        continue
    fi
    first=$((5 * i))
    if [[ ${views[$first]:-} != $((i + 1)) ]]; then
        fail "$name" "no result numbered $((i + 1)) in its place"
        continue
    fi
    if ! want=$(single_view "$status" "${case_files[$i]}"); then
        fail "$name" "the single command's output is not JSON: $(head -c 200 "$work/out")"
        continue
    fi
    got=$(printf '%s\n' "${views[@]:first+1:4}")
    [[ $want == "$got" ]] || fail "$name" "'${args[*]}' and its request differ:
    single: $(head -c 600 <<<"$want")
    batch:  $(head -c 600 <<<"$got")"
done
expect examples-exit $((batch_status == highest ? 0 : 1)) \
    "the batch exited $batch_status, the highest status of its lines is $highest"
# The cases hold each kind of answer, or they compare less than they seem to.
expect examples-kinds "$(jq -s '[any(.exit == 0), any(.exit == 1), any(.exit == 2),
                                 any(.warnings | length > 0)] | all | not | if . then 1 else 0 end' \
                         "$work/results.jsonl")" "the results lack an exit status or a warning"

# ---- 2. bad lines, blank lines and the exit status -----------------------------------------------

good='{"section":"RTSP","command":"deserialize","table":{"Port":554}}'
# name | line | exit | extended regular expression the error must match ("" for none)
bad_cases=(
    'not-json|{"section":"RTSP",|2|^line [0-9]+: invalid JSON at column 19: '
    'not-json-garbage|xx|2|^line [0-9]+: invalid JSON at column 1: '
    'not-an-object|[1,2]|2|^line [0-9]+: a request is a JSON object$'
    'not-an-object-string|"RTSP"|2|^line [0-9]+: a request is a JSON object$'
    'not-an-object-null|null|2|^line [0-9]+: a request is a JSON object$'
    'two-requests|'"$good $good"'|2|^line [0-9]+: more after the request at column 65: one request a line$'
    'unknown-member|{"section":"RTSP","command":"deserialize","tabel":{"Port":554}}|2|^line [0-9]+: "tabel" is not a member of a request \(did you mean "table"\?\)$'
    'unknown-member-no-match|{"section":"RTSP","command":"deserialize","zzzzzz":1}|2|^line [0-9]+: "zzzzzz" is not a member of a request$'
    'unknown-section|{"section":"RSTP","command":"deserialize","table":{"Port":554}}|2|^line [0-9]+ "section": unknown section "RSTP" \(did you mean "RTSP"\?\)'
    'missing-section|{"command":"deserialize","table":{"Port":554}}|2|^line [0-9]+ "section": a section name is required$'
    'section-not-text|{"section":5,"command":"deserialize","table":{"Port":554}}|2|^line [0-9]+ "section": a section name is required$'
    'missing-command|{"section":"RTSP","table":{"Port":554}}|2|^line [0-9]+ "command": expected serialize, deserialize, roundtrip or view$'
    'unknown-command|{"section":"RTSP","command":"convert","table":{"Port":554}}|2|^line [0-9]+ "command": expected serialize'
    'missing-table|{"section":"RTSP","command":"deserialize"}|2|^line [0-9]+ "table": this request needs one$'
    'missing-record|{"section":"RTSP","command":"serialize"}|2|^line [0-9]+ "record": this request needs one$'
    'record-for-table|{"section":"RTSP","command":"deserialize","record":{"port":554}}|2|^line [0-9]+ "record": a deserialize or roundtrip request takes a "table"$'
    'table-for-record|{"section":"RTSP","command":"view","table":{"Port":554}}|2|^line [0-9]+ "table": a serialize or view request takes a "record"$'
    'base-on-serialize|{"section":"RTSP","command":"serialize","record":{"port":554},"base":{}}|2|^line [0-9]+ "base": not a member of a serialize request \(deserialize, roundtrip take it\)$'
    'channel-on-view|{"section":"RTSP","command":"view","record":{"port":554},"channel":1}|2|^line [0-9]+ "channel": not a member of a view request'
    'raw-on-roundtrip|{"section":"RTSP","command":"roundtrip","table":{"Port":554},"raw":true}|2|^line [0-9]+ "raw": not a member of a roundtrip request \(deserialize, view take it\)$'
    'f5-and-base|{"section":"Alarm","command":"deserialize","f5":{"Alarm":{}},"table":{},"base":{}}|2|^line [0-9]+ "f5": goes with neither "base" nor a "record"$'
    'f5-and-record|{"section":"Alarm","command":"serialize","f5":{"Alarm":{}},"record":{}}|2|^line [0-9]+ "f5": goes with neither'
    'add-member-without-f5|{"section":"RTSP","command":"deserialize","table":{"Port":554},"add-member":true}|2|^line [0-9]+ "add-member": goes only with "f5"$'
    'capacity-without-f5|{"section":"RTSP","command":"deserialize","table":{"Port":554},"capacity":100}|2|^line [0-9]+ "capacity": from 1 to the input limit, with "f5"$'
    'capacity-zero|{"section":"Alarm","command":"deserialize","f5":{"Alarm":{}},"table":{},"capacity":0}|2|"capacity": from 1 to the input limit'
    'capacity-over-limit|{"section":"Alarm","command":"deserialize","f5":{"Alarm":{}},"table":{},"capacity":67108865}|2|"capacity": from 1 to the input limit'
    'channel-text|{"section":"RTSP","command":"deserialize","table":{"Port":554},"channel":"3"}|2|^line [0-9]+ "channel": expected a whole number from -2147483648 to 2147483647$'
    'channel-fraction|{"section":"RTSP","command":"deserialize","table":{"Port":554},"channel":1.5}|2|"channel": expected a whole number'
    'channel-too-large|{"section":"RTSP","command":"deserialize","table":{"Port":554},"channel":2147483648}|2|"channel": expected a whole number'
    'id-negative|{"section":"RTSP","command":"deserialize","table":{"Port":554},"id":-1}|2|^line [0-9]+ "id": expected a whole number from 0 to 4294967295$'
    'id-too-large|{"section":"RTSP","command":"deserialize","table":{"Port":554},"id":4294967296}|2|"id": expected a whole number'
    'sub-mode-flag|{"section":"RTSP","command":"deserialize","table":{"Port":554},"sub-mode":true}|2|"sub-mode": expected a whole number'
    'strict-text|{"section":"RTSP","command":"deserialize","table":{"Port":554},"strict":"yes"}|2|^line [0-9]+ "strict": expected true or false$'
    'raw-number|{"section":"RTSP","command":"deserialize","table":{"Port":554},"raw":1}|2|"raw": expected true or false'
    'standard-unknown|{"section":"RTSP","command":"deserialize","table":{"Port":554},"standard":"secam"}|2|^line [0-9]+ "standard": expected "pal" or "ntsc"$'
    'standard-number|{"section":"RTSP","command":"deserialize","table":{"Port":554},"standard":1}|2|"standard": expected "pal" or "ntsc"'
    'table-bad-json-text|{"section":"RTSP","command":"deserialize","table":"{\"Port\":554}"}|1|refused the table'
    'record-not-a-view|{"section":"RTSP","command":"serialize","record":{"port":70000}}|2|^line [0-9]+ "record": not a view of KZDEV_RTSP_CFG: port'
    'refused|{"section":"RTSP","command":"deserialize","table":{}}|1|^line [0-9]+ "table": section RTSP refused the table'
    'crlf|'"$good"$'\r''|0|'
    'spaces-around|  '"$good"'  |0|'
)
: >"$work/bad.jsonl"
lines=0
declare -A want_at
for entry in "${bad_cases[@]}"; do
    IFS='|' read -r name line status pattern <<<"$entry"
    # Blank lines between: empty, blanks, a tab, a lone carriage return.
    printf '\n \n\t\n\r\n' >>"$work/bad.jsonl"
    lines=$((lines + 4))
    printf '%s\n%s\n' "$line" "$good" >>"$work/bad.jsonl"
    want_at[$((lines + 1))]="$name|$status|$pattern"
    want_at[$((lines + 2))]="after-$name|0|"
    lines=$((lines + 2))
done
# The last line has no newline.
printf '%s' "$good" >>"$work/bad.jsonl"
want_at[$((lines + 1))]="last-without-newline|0|"
batch_status=0
"$tool" batch "$work/bad.jsonl" >"$work/bad.out" 2>"$work/bad.err" || batch_status=$?
expect bad-batch-exit $((batch_status == 2 ? 0 : 1)) "the batch of bad lines exited $batch_status, not 2"
expect bad-batch-results $(($(wc -l <"$work/bad.out") == ${#want_at[@]} ? 0 : 1)) \
    "$(wc -l <"$work/bad.out") results for ${#want_at[@]} requests (blank lines are passed over)"
expect bad-batch-quiet $(($(wc -c <"$work/bad.err") == 0 ? 0 : 1)) "standard error: $(head -c 300 "$work/bad.err")"
while IFS=$'\t' read -r number exit output error warnings; do
    IFS='|' read -r name status pattern <<<"${want_at[$number]:-unexpected|-|}"
    cases=$((cases + 1))
    if [[ $name == unexpected ]]; then
        fail "bad-line-$number" "a result for line $number, which is blank or not there"
        continue
    fi
    [[ $exit == "$status" ]] || { fail "$name" "exit $exit, expected $status: $error"; continue; }
    [[ $warnings == 0 ]] || fail "$name" "$warnings warnings"
    if [[ $status -eq 0 ]]; then
        [[ $output == '{"port":554}' && $error == - ]] || fail "$name" "output $output, error $error"
    else
        [[ $error =~ $pattern ]] || fail "$name" "error '$error' does not match /$pattern/"
        [[ $error == "line $number"* ]] || [[ $error == *"line $number "* ]] ||
            fail "$name" "error '$error' does not name line $number"
        [[ $status -eq 2 && $output == - ]] || [[ $status -ne 2 ]] || fail "$name" "an output beside exit 2: $output"
    fi
done < <(jq -r '[.line, .exit, (if .record then (.record | tojson) else "-" end), (.error // "-"),
                 (.warnings | length)] | @tsv' "$work/bad.out")

# The highest status of the lines, wherever it is; nothing at all is status 0.
status_of() {
    local status=0
    printf '%b' "$1" | "$tool" batch >/dev/null 2>&1 || status=$?
    echo "$status"
}
refused='{"section":"RTSP","command":"deserialize","table":{}}'
# name | exit status | the lines (printf %b)
for entry in "all-good|0|$good\n$good\n" \
             "refused-in-middle|1|$good\n$refused\n$good\n" \
             "bad-first|2|[]\n$good\n$refused\n" \
             "empty-input|0|" \
             "only-blank-lines|0|\n  \n\n"; do
    IFS='|' read -r name want lines <<<"$entry"
    got=$(status_of "$lines")
    expect "status-$name" $((got == want ? 0 : 1)) "exit $got, expected $want"
done
expect empty-no-output $(($(printf '' | "$tool" batch | wc -c) == 0 ? 0 : 1)) "output for an empty batch"

# --max-input bounds a line: a request padded to exactly the limit converts, one byte more is an
# error result, and the batch goes on after it.
pad() { printf '%s%*s' "$good" $(($1 - ${#good})) ''; }
{ pad 1024; echo; pad 1025; echo; echo "$good"; } >"$work/long.jsonl"
long_status=0
"$tool" batch --max-input 1k "$work/long.jsonl" >"$work/long.out" 2>&1 || long_status=$?
expect long-status $((long_status == 2 ? 0 : 1)) "exit $long_status: $(head -c 300 "$work/long.out")"
expect long-results "$(jq -s '[.[] | [.line, .exit]] == [[1,0],[2,2],[3,0]] | not | if . then 1 else 0 end' "$work/long.out")" \
    "results $(jq -c '[.line, .exit]' "$work/long.out" | paste -sd' ')"
expect long-message "$(jq -s '.[1].error | test("^line 2: longer than the input limit of 1 KiB \\(--max-input raises it\\)$") | not | if . then 1 else 0 end' "$work/long.out")" \
    "$(jq -s '.[1].error' "$work/long.out")"

status=0
"$tool" batch /nonexistent/requests.jsonl >/dev/null 2>"$work/err" || status=$?
expect missing-requests $((status == 2 ? 0 : 1)) "exit $status"
expect missing-requests-message "$(grep -q '^protofix: /nonexistent/requests.jsonl: cannot open: ' "$work/err"; echo $?)" \
    "$(cat "$work/err")"

# ---- 3. GNU parallel: chunks of the same requests in two processes, in order --------------------

if ! command -v parallel >/dev/null; then
    fail parallel "GNU parallel is not installed (scripts/install-deps installs it)"
else
    for _ in 1 2 3; do cat "$work/requests.jsonl"; done >"$work/many.jsonl"
    "$tool" batch "$work/many.jsonl" >"$work/one.out" 2>/dev/null || true
    parallel --pipe -N 50 -j2 --keep-order "$tool" batch <"$work/many.jsonl" >"$work/parallel.out" 2>"$work/parallel.err" || true
    expect parallel-lines $(($(wc -l <"$work/parallel.out") == $(wc -l <"$work/many.jsonl") ? 0 : 1)) \
        "$(wc -l <"$work/parallel.out") results for $(wc -l <"$work/many.jsonl") requests: $(head -c 300 "$work/parallel.err")"
    # Each chunk numbers its lines from 1: the results of one process, numbered so (in "line" and
    # in the messages that name the line), are the chunks' results.
    jq -c '((.line - 1) % 50 + 1) as $n | .line as $old
           | def renumber: gsub("line \($old)(?<end>[ :])"; "line \($n)\(.end)");
           .line = $n | .warnings |= map(renumber) | if .error then .error |= renumber else . end' \
        "$work/one.out" >"$work/one-renumbered.out"
    expect parallel-same "$(cmp -s "$work/one-renumbered.out" <(jq -c . "$work/parallel.out"); echo $?)" \
        "the chunks' results differ from one process's: $(diff "$work/one-renumbered.out" <(jq -c . "$work/parallel.out") | head -c 600)"
fi

# ---- 4. answered line by line, through a pipe kept open ------------------------------------------

# pipe_test NAME: the coprocess PIPE runs the batch; a request written to it is answered while
# the pipe stays open, the next one too, and closing it ends the batch with the highest status.
pipe_test() {
    local name=$1 answer status=0
    echo "$good" >&"${PIPE[1]}"
    if read -r -t 20 -u "${PIPE[0]}" answer; then
        expect "$name-first" "$(jq -e '.line == 1 and .exit == 0' <<<"$answer" >/dev/null; echo $?)" "$answer"
    else
        fail "$name-first" "no answer within 20 s while the pipe is open"
    fi
    echo '{"section":"RTSP"}' >&"${PIPE[1]}"
    if read -r -t 20 -u "${PIPE[0]}" answer; then
        expect "$name-second" "$(jq -e '.line == 2 and .exit == 2' <<<"$answer" >/dev/null; echo $?)" "$answer"
    else
        fail "$name-second" "no answer to the second request within 20 s"
    fi
    local writer=${PIPE[1]}
    exec {writer}>&-
    wait "$pipe_pid" || status=$?
    pipe_pid=
    expect "$name-exit" $((status == 2 ? 0 : 1)) "the batch exited $status after its pipe closed"
}

coproc PIPE { exec timeout 60 "$tool" batch 2>/dev/null; }
# shellcheck disable=SC2153 # PIPE_PID is the coprocess's, set by coproc
pipe_pid=$PIPE_PID
pipe_test stdin
mkfifo "$work/fifo"
coproc PIPE { exec timeout 60 "$tool" batch "$work/fifo" 2>/dev/null; }
pipe_pid=$PIPE_PID
# The coprocess's input is the FIFO: write there instead.
exec {fifo}>"$work/fifo"
writer=${PIPE[1]}
exec {writer}>&-
PIPE[1]=$fifo
pipe_test fifo

# ---- 5. progress on a terminal -------------------------------------------------------------------

for ((i = 0; i < 6000; i++)); do echo "$good"; done >"$work/long-batch.jsonl"
"$tool" batch "$work/long-batch.jsonl" >/dev/null 2>"$work/err" || true
expect progress-not-terminal $(($(wc -c <"$work/err") == 0 ? 0 : 1)) "standard error: $(head -c 200 "$work/err")"
if command -v script >/dev/null; then
    script -qefc "'$tool' batch '$work/long-batch.jsonl' >/dev/null" /dev/null </dev/null >"$work/terminal" 2>&1 || true
    expect progress-terminal "$(grep -q 'protofix: batch: 6000 lines, [0-9]* a second' "$work/terminal"; echo $?)" \
        "no progress shown: $(head -c 200 "$work/terminal")"
    for ((i = 0; i < 4000; i++)); do echo "$good"; done >"$work/short-batch.jsonl"
    script -qefc "'$tool' batch '$work/short-batch.jsonl' >/dev/null" /dev/null </dev/null >"$work/terminal" 2>&1 || true
    expect progress-short "$(! grep -q 'protofix: batch' "$work/terminal"; echo $?)" \
        "progress shown for 4000 lines: $(head -c 200 "$work/terminal")"
fi

echo "batch: $((cases - failures)) passed, $failures failed"
[[ $failures -eq 0 ]]
