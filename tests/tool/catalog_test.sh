#!/usr/bin/env bash
# The facts of the section catalog, checked against the tool: what the notes of the examples
# (examples/*.notes, examples/*.lost) say a section does, run on small inputs made here; and the
# rows that the catalog finds by experiment for the keys whose behaviour is known.
#
#   catalog_test.sh TOOL EXAMPLES_DIR
set -u

if [[ $# -ne 2 ]]; then
    echo "usage: $0 TOOL EXAMPLES_DIR" >&2
    exit 2
fi
tool=$1
ex=$2

# shellcheck source=tests/tool/support.sh
source "$(dirname "$0")/support.sh"

# write NAME TEXT: a small input file in the work directory.
write() { printf '%s\n' "$2" >"$work/$1"; }

# converted holds|lacks NAME FRAGMENT ARGS...: the tool converts, and its standard output holds
# (or does not hold) the fragment.
converted() {
    local want=$1 name=$2 fragment=$3
    shift 3
    cases=$((cases + 1))
    "$tool" "$@" >"$work/out" 2>"$work/err"
    local status=$?
    local found=lacks
    grep -qF -- "$fragment" "$work/out" && found=holds
    if [[ $status -ne 0 ]]; then
        fail "$name" "exit status $status: $(head -c 300 "$work/err")"
    elif [[ $found != "$want" ]]; then
        fail "$name" "the output $found '$fragment': $(head -c 300 "$work/out")"
    fi
}
output() { converted holds "$@"; }
lacks() { converted lacks "$@"; }

# record NAME SECTION VIEW ARGS...: deserialize ARGS gives the record that the named-field view
# VIEW describes (fields it does not name are zero), compared through the tool's own view.
record() {
    local name=$1 section=$2 view=$3
    shift 3
    cases=$((cases + 1))
    printf '%s\n' "$view" >"$work/want.json"
    if ! "$tool" deserialize "$section" "$@" >"$work/got.json" 2>"$work/err"; then
        fail "$name" "deserialize failed: $(head -c 300 "$work/err")"
        return
    fi
    "$tool" view "$section" "$work/got.json" >"$work/got-view" 2>&1
    if ! "$tool" view "$section" "$work/want.json" >"$work/want-view" 2>&1; then
        fail "$name" "the expected view does not read: $(head -c 300 "$work/want-view")"
        return
    fi
    cmp -s "$work/got-view" "$work/want-view" ||
        fail "$name" "another record: $(diff "$work/got-view" "$work/want-view" | head -6)"
}

# status NAME STATUS ARGS...: the tool's exit status.
status() {
    local name=$1 want=$2
    shift 2
    cases=$((cases + 1))
    "$tool" "$@" >/dev/null 2>"$work/err"
    local got=$?
    [[ $got -eq $want ]] || fail "$name" "exit status $got, expected $want: $(head -c 300 "$work/err")"
}

zeros32='0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0'

# ---- examples/motiondetect.notes, blinddetect.notes, lossdetect.notes -------------------------

motion_facts() {
    # A row mask's bit c is column c; a negative mask is the same 32 bits (column 31).
    write grid.json '{"Row":3,"Col":32,"Region":[1,2,-2147483648]}'
    record grid-bits MotionDetect \
        '{"rows":3,"cols":32,"region":[[1],[0,1],['"${zeros32%,0}"',1]]}' "$work/grid.json"
    # Column 31 set comes back as a negative number.
    output grid-negative '"Region":[1,2,-2147483648]' serialize MotionDetect "$work/got.json" --table
    # Only the cells within rows x cols are read: column 2 of a 2-column grid keeps its byte.
    write base.json '{"region":[[0,0,1]]}'
    write narrow.json '{"Row":1,"Col":2,"Region":[3]}'
    record grid-within MotionDetect '{"rows":1,"cols":2,"region":[[1,1,1]]}' \
        "$work/narrow.json" --base "$work/base.json"
    # Row and Col: the low 16 bits, then at most 32.
    write sizes.json '{"Row":65537,"Col":40}'
    record grid-sizes MotionDetect '{"rows":1,"cols":32}' "$work/sizes.json"
    # A cell holding 2 sets the column after it; a record with no rows gives no "Region".
    write cells.json '{"rows":1,"cols":3,"region":[[2,0,1]]}'
    output grid-spill '"Region":[6]' serialize MotionDetect "$work/cells.json" --table
    write norows.json '{"rows":0,"cols":3,"region":[[1,1,1]]}'
    lacks grid-no-rows '"Region"' serialize MotionDetect "$work/norows.json" --table

    # The F5 row text is read from its end; only '1' counts; 32 characters at most.
    write f5.json '{"MotionDetect":{"En":1,"Level":9,"Row":40,"Col":40,"Region":[{"En":"1"},{"En":"10"},{"En":"100000000000000000000000000000000"},{"En":"1xx2"}]}}'
    output f5-row-order '"Region":[1,2,0,8]' serialize MotionDetect --f5 "$work/f5.json" --table
    # Row and Col go from the F5 text to the table as they stand.
    output f5-sizes '"Row":40' serialize MotionDetect --f5 "$work/f5.json" --table
    # Into the F5 text: "Col" characters, column 0 last; 32 when "Col" is 0; wider columns dropped.
    write into.json '{"Col":4,"Region":[1,8,-2147483648]}'
    output f5-write '"Region":[{"En":"0001"},{"En":"1000"},{"En":"0000"}' \
        deserialize MotionDetect --f5 "$work/f5.json" "$work/into.json"
    write into32.json '{"Col":0,"Region":[1]}'
    output f5-write-32 '{"En":"00000000000000000000000000000001"}' \
        deserialize MotionDetect --f5 "$work/f5.json" "$work/into32.json"

    # Level: 16 bits in MotionDetect, 8 in BlindDetect, no range; a text raises.
    write level.json '{"Level":65537}'
    record level-motion MotionDetect '{"level":1}' "$work/level.json"
    write level-neg.json '{"Level":-1}'
    record level-motion-neg MotionDetect '{"level":65535}' "$work/level-neg.json"
    write level257.json '{"Level":257}'
    record level-blind BlindDetect '{"level":1}' "$work/level257.json"
    record level-blind-neg BlindDetect '{"level":255}' "$work/level-neg.json"
    write level-text.json '{"Level":"4"}'
    status level-text 2 deserialize MotionDetect "$work/level-text.json"
    output level-f5 '"Level":9' serialize MotionDetect --f5 "$work/f5.json" --table
    write big-level.json '{"Level":70000}'
    output level-f5-as-is '"Level":70000' deserialize MotionDetect --f5 "$work/f5.json" \
        "$work/big-level.json"
    # LossDetect has no sensitivity.
    write loss-f5.json '{"LossDetect":{"En":1,"Level":3}}'
    lacks loss-level '"Level"' serialize LossDetect --f5 "$work/loss-f5.json" --table
}

# ---- examples/network_dns.notes and .lost -----------------------------------------------------

dns_facts() {
    write top.json '{"DnsServers":["1.1.1.1","8.8.8.8"]}'
    record dns-top Network_DNS '{}' "$work/top.json"
    write eth0.json '{"eth0":{"DnsServers":["1.1.1.1","8.8.8.8"]}}'
    record dns-eth0 Network_DNS '{"primaryDns":"1.1.1.1","secondaryDns":"8.8.8.8"}' "$work/eth0.json"
    write named.json '{"DefaultInterface":"bond0","eth0":{"DnsServers":["1.1.1.1"]},"bond0":{"DnsServers":["9.9.9.9",5]}}'
    write dns-base.json '{"secondaryDns":"4.4.4.4"}'
    record dns-default-interface Network_DNS '{"primaryDns":"9.9.9.9","secondaryDns":"4.4.4.4"}' \
        "$work/named.json" --base "$work/dns-base.json"
    # Written over without clearing: "1.2.3.4", its NUL, then the old "100.100".
    write short.json '{"eth0":{"DnsServers":["1.2.3.4"]}}'
    write long-base.json '{"primaryDns":"192.168.100.100"}'
    output dns-no-clearing '312e322e332e3400313030' deserialize Network_DNS "$work/short.json" \
        --base "$work/long-base.json" --hex
}

# ---- examples/record.notes --------------------------------------------------------------------

record_facts() {
    write rec-f5.json '{"Record":{"PreRec":5,"TimeSection":[["1 08:00:00-18:00:00","2 08:00:00-18:00:00","6 08:00:00-18:00:00","0 01:00:00-02:00:00"]]}}'
    "$tool" serialize Record --f5 "$work/rec-f5.json" --table >"$work/rec-table.json" 2>/dev/null
    cases=$((cases + 1))
    grep -qF '["1 08:00:00-18:00:00","1 08:00:00-18:00:00","1 08:00:00-18:00:00","0 01:00:00-02:00:00"]' \
        "$work/rec-table.json" || fail record-f5-flags "$(head -c 300 "$work/rec-table.json")"
    output record-f5-back '["4 08:00:00-18:00:00","4 08:00:00-18:00:00","4 08:00:00-18:00:00","0 01:00:00-02:00:00"]' \
        deserialize Record --f5 "$work/rec-f5.json" "$work/rec-table.json"
    # The table's flag into the record's mask: 1 4, 2 1, 4 2, 6 3, 16 8, 8 0.
    write flags.json '{"TimeSection":[["1 00:00:00-01:00:00","2 00:00:00-01:00:00","4 00:00:00-01:00:00","6 00:00:00-01:00:00","16 00:00:00-01:00:00","8 00:00:00-01:00:00"]]}'
    record record-masks Record \
        '{"stSect":[["4 00:00:00-01:00:00","1 00:00:00-01:00:00","2 00:00:00-01:00:00","3 00:00:00-01:00:00","8 00:00:00-01:00:00","0 00:00:00-01:00:00"]]}' \
        "$work/flags.json"
    # A record's mask other than 0 comes back as 4.
    write mask3.json '{"stSect":[["3 01:00:00-02:00:00"]]}'
    "$tool" serialize Record "$work/mask3.json" --table >"$work/mask3-table.json" 2>/dev/null
    record record-mask-back Record '{"stSect":[["4 01:00:00-02:00:00"]]}' "$work/mask3-table.json"
    # An F5 entry read in part keeps the values of the entry before it.
    write partial.json '{"Record":{"TimeSection":[["1 08:00:00-18:00:00","2 09:00"]]}}'
    output record-partial '"TimeSection":[["1 08:00:00-18:00:00","1 09:00:00-18:00:00"]]' \
        serialize Record --f5 "$work/partial.json" --table
}

# ---- examples/recordsource.notes and .lost ----------------------------------------------------

source_facts() {
    write stream2.json '{"byVideoStream":2}'
    write bare.json '"Extra1"'
    # Not read: the tool says so (exit 1) rather than print the record as it started.
    status source-bare 1 deserialize RecordSource "$work/bare.json" --base "$work/stream2.json"
    write other.json '{"Other":1}'
    status source-no-stream 1 deserialize RecordSource "$work/other.json" --base "$work/stream2.json"
    write object.json '{"VideoStream":"Extra1"}'
    status source-object-raises 2 deserialize RecordSource "$work/object.json"
    write s3.json '{"Record":{"Stream":3}}'
    output source-f5-stream '{"VideoStream":"Extra3"}' serialize RecordSource --f5 "$work/s3.json" --table
    write s4.json '{"Record":{"Stream":4}}'
    lacks source-f5-other '"VideoStream"' serialize RecordSource --f5 "$work/s4.json" --table
    write lower.json '{"VideoStream":"extra2"}'
    output source-merge-case '"Stream":2' deserialize RecordSource --f5 "$work/s3.json" "$work/lower.json"
    write unknown.json '{"VideoStream":"Extra9"}'
    output source-merge-unknown '"Stream":3' deserialize RecordSource --f5 "$work/s3.json" "$work/unknown.json"
}

# ---- the catalog itself -----------------------------------------------------------------------

# The part of the catalog about one section, from its heading to the next.
part() { awk -v h="## $1" '$0 == h { on = 1; print; next } /^## / { on = 0 } on' "$work/catalog.md"; }

# row NAME SECTION ROW: the section's part of the catalog holds the row as it stands.
row() {
    cases=$((cases + 1))
    part "$2" | grep -qxF -- "$3" || fail "$1" "no row '$3' under $2"
}

# The rows hold Markdown's backquotes, not commands.
# shellcheck disable=SC2016
catalog_facts() {
    cases=$((cases + 1))
    if ! "$tool" sections --markdown --examples "$ex" >"$work/catalog.md" 2>"$work/err"; then
        fail catalog "the catalog is not written: $(head -c 300 "$work/err")"
        return
    fi
    local sections
    sections=$("$tool" sections | tail -n +2 | cut -d' ' -f1)

    # Every notes file belongs to a section, and each of its lines is in that section's part.
    local file lower name line field
    for file in "$ex"/*.notes "$ex"/*.lost; do
        [[ -e $file ]] || continue
        lower=$(basename "${file%.*}")
        name=$(grep -ixF -- "$lower" <<<"$sections")
        cases=$((cases + 1))
        if [[ -z $name ]]; then
            fail "notes-$lower" "$(basename "$file") names no section"
            continue
        fi
        part "$name" >"$work/part.md"
        while IFS= read -r line; do
            [[ -z $line ]] && continue
            if [[ $file == *.lost ]]; then
                if [[ $line == '#'* ]]; then
                    line=${line#\#}
                    line=${line# }
                else
                    field=${line%%:*}
                    line="- \`$field\`:${line#*:}"
                fi
                grep -qF -- "$line" "$work/part.md" ||
                    fail "notes-$lower" "not under $name: $line"
            else
                grep -qxF -- "$line" "$work/part.md" ||
                    fail "notes-$lower" "not under $name: $line"
            fi
        done <"$file"
    done

    # Rows the experiments must find. The motion grid's rows and the F5 text's row texts.
    row motion-region MotionDetect '| `Region[]` | `MotionDetect.Region[].En` | `region[][]` |'
    row motion-level MotionDetect '| `Level` | `MotionDetect.Level` | `level` |'
    # "Col" is also the width of the row texts written into the F5 text; "Row" and "Col" bound the
    # cells read from "Region".
    row motion-col MotionDetect '| `Col` | `MotionDetect.Col`, `MotionDetect.Region[].En` (deserialize only) | `cols`, `region[][]` |'
    row motion-row MotionDetect '| `Row` | `MotionDetect.Row` | `region[][]`, `rows` |'
    # The linkage's flags are bits of actionFlags: record 0x2, snapshot 0x400.
    row alarm-record-flag Alarm '| `EventHandler.RecordEnable` | `Alarm.EventHandler.RecordEn` | `handler.actionFlags` (bit 0x2) |'
    row alarm-snapshot-flag Alarm '| `EventHandler.SnapshotEnable` | `Alarm.EventHandler.SnapshotEn` | `handler.actionFlags` (bit 0x400) |'
    # A schedule entry fills a whole time section.
    row alarm-schedule Alarm '| `EventHandler.TimeSection[][]` | `Alarm.EventHandler.TimeSection[][]` | `timeSections[][]` |'
    # An interface's two flags: enable 0x1, DHCP 0x2.
    row network-dhcp Network '| `eth0.DhcpEnable` | `interfaces[].flags` (bit 0x2) |'
    row network-enable Network '| `eth0.Enable` | `interfaces[].flags` (bit 0x1) |'
    # The servers are written to the top of the table and read from elsewhere.
    row dns-top Network_DNS '| `DnsServers[]` | not read back; written from `primaryDns`, `secondaryDns` |'
    row ipv6-link-local IPv6 '| `eth0.LinkLocalAddress` | not read back; written from `linkLocalAddress` |'
    # IPv6 refuses a table whose "Enable" is not true.
    row ipv6-enable IPv6 '| `Enable` | none: the table does not convert when it changes |'
    row record-schedule Record '| `TimeSection[][]` | `Record.TimeSection[][]` | `stSect[][]` |'
    row source-stream RecordSource '| `VideoStream` | `Record.Stream` | not read back; written from `byVideoStream` |'
    cases=$((cases + 1))
    part RecordSource | grep -qF 'The example table is not read into the record: reading it raises' ||
        fail source-raises "the catalog does not say that the example table raises"
    # A table that is a single value.
    row language-whole Language '| `(table)` | `byLanguage` |'
    # A text-only section has no record column; a record-only one no F5 column.
    row healthmail-columns HealthMail '| Table key | F5 key |'
    row rtsp-columns RTSP '| Table key | Record field |'

    # A .lost line that is neither "field: why" nor a comment stops the catalog.
    mkdir "$work/bad"
    cp "$ex"/*.json "$work/bad/"
    printf 'no colon here\n' >"$work/bad/rtsp.lost"
    cases=$((cases + 1))
    "$tool" sections --markdown --examples "$work/bad" >"$work/out" 2>"$work/err"
    local got=$?
    if [[ $got -ne 2 ]] || ! grep -q 'rtsp.lost' "$work/err"; then
        fail bad-lost "exit status $got: $(head -c 300 "$work/err")"
    fi
}

motion_facts
dns_facts
record_facts
source_facts
catalog_facts
echo "catalog facts: $cases cases, $failures failed"
[[ $failures -eq 0 ]]
