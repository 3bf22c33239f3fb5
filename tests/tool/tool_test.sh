#!/usr/bin/env bash
# Runs the protofix tool on the bundled examples and on small inputs made here, one group of
# cases at a time.
#
#   tool_test.sh TOOL EXAMPLES_DIR SECTIONS_DEF GROUP
#
# A case gives the tool's arguments, the exit status expected and an extended regular expression
# expected in its standard output or standard error. Every run must also keep the tool's output
# rules: a failure writes exactly one line, "protofix: ...", on standard error, after any warnings;
# a success writes nothing there but warnings, "protofix: warning: ..."; a usage or input error
# (status 2) writes nothing on standard output.
set -u

if [[ $# -ne 4 ]]; then
    echo "usage: $0 TOOL EXAMPLES_DIR SECTIONS_DEF GROUP" >&2
    exit 2
fi
tool=$1
ex=$2
sections_def=$3
group=$4

# shellcheck source=tests/tool/support.sh
source "$(dirname "$0")/support.sh"

# run [< INPUT] ARGS...: the tool's exit status in $status, its streams in $work/out, $work/err.
run() {
    local input=/dev/null
    if [[ $# -ge 2 && $1 == "<" ]]; then
        input=$2
        shift 2
    fi
    "$tool" "$@" <"$input" >"$work/out" 2>"$work/err"
    status=$?
}

# check NAME STATUS out|err|only-err PATTERN [< INPUT] ARGS...
# only-err: the pattern is looked for on standard error, and standard output must be empty.
check() {
    local name=$1 want=$2 stream=$3 pattern=$4
    shift 4
    cases=$((cases + 1))
    run "$@"
    if [[ $stream == only-err ]]; then
        stream=err
        [[ -s $work/out ]] && fail "$name" "standard output is not empty: $(head -c 200 "$work/out")"
    fi
    if [[ $status -ne $want ]]; then
        fail "$name" "exit status $status, expected $want; stderr: $(head -c 300 "$work/err")"
        return
    fi
    if ! grep -Eq -- "$pattern" "$work/$stream"; then
        fail "$name" "no match for /$pattern/ in std$stream: $(head -c 300 "$work/$stream")"
    fi
    if grep -qv '^protofix: warning: ' "$work/err" 2>/dev/null; then
        if [[ $status -eq 0 ]]; then
            fail "$name" "standard error holds more than warnings: $(head -c 300 "$work/err")"
        else
            local lines
            lines=$(grep -cv '^protofix: warning: ' "$work/err")
            [[ $lines -ne 1 ]] && fail "$name" "$lines lines besides warnings on standard error, expected one"
            [[ $(tail -n 1 "$work/err" | head -c 10) != "protofix: " ]] &&
                fail "$name" "the error does not start with 'protofix: '"
        fi
    elif [[ $status -ne 0 ]]; then
        fail "$name" "exit status $status with no error line"
    fi
    if [[ $status -eq 2 && -s $work/out ]]; then
        fail "$name" "output written on a usage or input error"
    fi
}

# produce NAME FILE ARGS...: a run that must convert; its standard output goes to FILE.
produce() {
    local name=$1 file=$2
    shift 2
    run "$@"
    cp "$work/out" "$file"
    [[ $status -eq 0 && -s $file ]] ||
        fail "$name" "'$*' gave status $status: $(head -c 300 "$work/err")"
}

# same NAME FILE1 FILE2: the two outputs are byte for byte the same.
same() {
    cases=$((cases + 1))
    cmp -s "$2" "$3" || fail "$1" "outputs differ: $(diff "$2" "$3" | head -5)"
}

write() { printf '%s' "$2" >"$work/$1"; }

group_sections() {
    run sections
    cases=$((cases + 1))
    [[ $status -eq 0 ]] || fail sections-status "exit status $status"
    # Every row of the section table is listed, and nothing else but the heading.
    local names count
    names=$(sed -n 's/^PROTOFIX_SECTION("\([^"]*\)".*/\1/p' "$sections_def")
    count=$(grep -c '^PROTOFIX_SECTION(' "$sections_def")
    [[ $count -gt 0 ]] || fail sections-table "no rows read from $sections_def"
    for name in $names; do
        grep -Eq "^$name +" "$work/out" || fail sections-listed "$name not listed"
    done
    [[ $(wc -l <"$work/out") -eq $((count + 1)) ]] ||
        fail sections-lines "$(wc -l <"$work/out") lines for $count sections and a heading"

    #     name                    status stream pattern
    # Modes, record and record size: 4 + 16 + 12 + 4 + 8 x 188 bytes; 1 + 1 + 2 (padding)
    # + 7 x 6 x 28 + 956 bytes.
    check sections-network        0 out '^Network +record +KZDEV_NETWORK_CFG +1540$' sections
    check sections-alarm          0 out '^Alarm +record,text +KZDEV_ALARMIN_CFG +2136$' sections
    check sections-rtsp           0 out '^RTSP +record +KZDEV_RTSP_CFG +2$' sections
    check sections-extra-argument 2 err 'unexpected argument: Network' sections Network
}

group_serialize() {
    local record=$ex/network.record.json
    #     name                     status stream pattern                       arguments
    check record-result            0 out '"result":true'                       serialize Network "$record"
    check record-hostname          0 out '"Hostname":"nvr-lobby"'              serialize Network "$record"
    check record-default-interface 0 out '"DefaultInterface":"eth0"'           serialize Network "$record"
    check record-dhcp              0 out '"eth1":\{[^}]*"DhcpEnable":true'     serialize Network "$record"
    check record-bonding           0 out '"bond0":\{"Bonding":true,[^}]*"Mode":"ActiveBackup"' \
                                                                               serialize Network "$record"
    check record-envelope-defaults 0 out '^\{"channel":0,"id":0,"params":\{"table":\{' \
                                                                               serialize Network "$record"
    check record-channel-id        0 out '^\{"channel":3,"id":42,'             serialize Network "$record" --channel 3 --id 42
    check record-negative-channel  0 out '^\{"channel":-1,'                    serialize Network "$record" --channel -1
    check record-name-any-case     0 out '"result":true'                       serialize nEtWoRk "$record"
    check record-stdin-dash        0 out '"Hostname":"nvr-lobby"'              "<" "$record" serialize Network -
    check record-stdin-missing     0 out '"Hostname":"nvr-lobby"'              "<" "$record" serialize Network
    check record-standard-ntsc     0 out '"result":true'                       serialize Network "$record" --standard NTSC
    check record-empty-view        0 out '"table":\{"DefaultInterface":"","Hostname":""\}' \
                                                                               "<" <(echo '{}') serialize Network
    check record-hex               0 out '"table":\{"Port":554\}'              "<" <(echo '2a02') serialize RTSP --hex
    check record-hex-detected      0 out '"table":\{"Port":554\}'              "<" <(echo ' 2A 02') serialize RTSP
    check record-rtsp-view         0 out '"table":\{"Port":554\}'              "<" <(echo '{"port":554}') serialize RTSP
    check f5-enable                0 out '"Enable":true'                       serialize Alarm --f5 "$ex/alarm.f5.json"
    check f5-name                  0 out '"Name":"door"'                       serialize Alarm --f5 "$ex/alarm.f5.json"
    check f5-sensor                0 out '"SensorType":"NO"'                   serialize Alarm --f5 "$ex/alarm.f5.json"
    check f5-record-channels       0 out '"RecordChannels":\[0\]'              serialize Alarm --f5 "$ex/alarm.f5.json"
    check f5-stdin                 0 out '"Name":"door"'                       "<" "$ex/alarm.f5.json" serialize Alarm --f5 -
    check alarm-record             0 out '"SensorType":"NO"'                   serialize Alarm "$ex/alarm.record.json"
    check alarm-record-ptz         0 out '"PtzLink":\[\["Preset",5,0,0,3\]\]'  serialize Alarm "$ex/alarm.record.json"

    # An unknown name is a usage error, said before any input is read; a refusal prints nothing.
    check unknown-message          2 err 'unknown section "Nope"; .protofix sections. lists them$' serialize Nope "$record"
    check unknown-routine-spelling 2 err 'unknown section "Mulitcast" \(did you mean "Multicast"\?\)' serialize Mulitcast
    check unknown-unread-input     2 err 'unknown section'                     serialize Nope /nonexistent/record.json
    check no-text-mode-nothing     1 only-err 'does not accept F5 text'         serialize Network --f5 "$ex/alarm.f5.json"
    check no-text-mode-message     1 err 'alarm\.f5\.json: section Network does not accept F5 text' \
                                                                               serialize Network --f5 "$ex/alarm.f5.json"
}

group_deserialize() {
    local table=$ex/network.table.json base=$ex/network.base.json
    #     name                    status stream pattern                          arguments
    check table-hostname          0 out '"hostName":"nvr-lobby"'                 deserialize Network "$table" --base "$base"
    check table-count-kept        0 out '"interfaceCount":3'                     deserialize Network "$table" --base "$base"
    check table-dhcp-flags        0 out '"flags":3'                              deserialize Network "$table" --base "$base"
    check table-bonding-code      0 out '"bondingMode":3'                        deserialize Network "$table" --base "$base"
    check table-default           0 out '"isDefault":1'                          deserialize Network "$table" --base "$base"
    check table-pretty            0 out '^  "hostName": "nvr-lobby",$'           deserialize Network "$table" --base "$base" --pretty
    # Without --base the record starts zero: no interface is named, so none is read.
    check table-zero-start        0 out '"interfaceCount":0'                     deserialize Network "$table"
    check table-stdin-dash        0 out '"hostName":"nvr-lobby"'                 "<" "$table" deserialize Network -
    check table-stdin-missing     0 out '"hostName":"nvr-lobby"'                 "<" "$table" deserialize Network
    check table-base-stdin        0 out '"name":"bond0"'                         "<" "$base" deserialize Network "$table" --base -
    check table-rtsp              0 out '^\{"port":554\}$'                       "<" <(echo '{"Port":554}') deserialize RTSP
    check table-rtsp-truncated    0 out '^\{"port":4464\}$'                      "<" <(echo '{"Port":70000}') deserialize rtsp
    check table-rtsp-hex          0 out '^2a02$'                                 "<" <(echo '{"Port":554}') deserialize RTSP --hex
    check table-escaped-text      0 out '"hostName":"a\\"b\\\\c"'                "<" <(echo '{"Hostname":"a\"b\\c"}') deserialize Network
    check table-alarm-record      0 out '"recordChannels":\[1,0,1,0'             deserialize Alarm "$ex/alarm.table.json"
    check table-alarm-onto-base   0 out '"sensorType":0,'                        deserialize Alarm "$ex/alarm.change.json" \
                                                                                 --base "$ex/alarm.record.json"

    check refused-rtsp-port       1 err 'section RTSP refused the table'         "<" <(echo '{}') deserialize RTSP
    check refused-ipv6-disabled   1 err 'section IPv6 refused the table'         "<" <(echo '{"Enable":false}') deserialize IPv6
    check refused-no-text-mode    1 err 'section Network does not accept F5 text' \
                                                                                 deserialize Network --f5 "$ex/alarm.f5.json" "$table"
    check unknown-section         2 err 'unknown section "Nope".*protofix sections' deserialize Nope "$table"
    check unknown-no-output       2 err 'unknown section'                        deserialize Nope /nonexistent/table.json
}

group_f5() {
    local f5=$ex/alarm.f5.json table=$ex/alarm.change.json
    #     name                    status stream pattern                         arguments
    check merge-name              0 out '"Name":"back door"'                    deserialize Alarm --f5 "$f5" "$table"
    check merge-sensor            0 out '"SensorType":"NC"'                     deserialize Alarm --f5 "$f5" "$table"
    check merge-record-channels   0 out '"Record":\[\{"En":1\},\{"En":0\},\{"En":1\},\{"En":0\}\]' \
                                                                                deserialize Alarm --f5 "$f5" "$table"
    check merge-ptz-channel-3     0 out '"PtzLink":\[[^]]*\{"Type":"Preset","Value":5\}\]' \
                                                                                deserialize Alarm --f5 "$f5" "$table"
    check merge-keeps-array-length 0 out '"Tour":\[\{"En":0\},\{"En":0\},\{"En":0\},\{"En":0\}\]' \
                                                                                deserialize Alarm --f5 "$f5" "$table"
    check merge-netalarm-member   0 out '^\{"NetAlarm":\{"En":0\}\}$'           "<" <(echo '{"Enable":false}') \
                                                                                deserialize NetAlarm --f5 <(echo '{"NetAlarm":{"En":1}}')
    check merge-table-stdin       0 out '"Name":"back door"'                    "<" "$table" deserialize Alarm --f5 "$f5"

    # The merged text must fit the capacity: the refusal says how much it needs, and exactly that
    # much converts.
    write old.json '{"Alarm":{"En":1,"Name":"door"}}'
    write longer.json '{"Name":"the back door of the warehouse"}'
    local old=$work/old.json longer=$work/longer.json
    check capacity-refused        1 err 'old\.json: the merged F5 text is [0-9]+ bytes, more than --capacity 40' \
                                                                                deserialize Alarm --f5 "$old" "$longer" --capacity 40
    local needed
    needed=$(sed -n 's/.*give --capacity \([0-9]*\) or more.*/\1/p' "$work/err")
    run deserialize Alarm --f5 "$old" "$longer"
    cases=$((cases + 1))
    [[ -n $needed && $(wc -c <"$work/out") -eq $needed ]] ||
        fail capacity-needed "needed '$needed' is not the merged text's length $(wc -c <"$work/out")"
    if [[ -n $needed ]]; then
        check capacity-exact      0 out '"Name":"the back door of the warehouse"' \
                                                                                deserialize Alarm --f5 "$old" "$longer" --capacity "$needed"
        check capacity-one-short  1 err 'more than --capacity'                  deserialize Alarm --f5 "$old" "$longer" --capacity $((needed - 1))
    fi
    # The buffer must at least hold the old text and its NUL. Merging an empty table writes the
    # same text back with the writer's newline, which a buffer of that size cuts off.
    local with_nul=$(($(wc -c <"$old") + 1))
    check capacity-below-old      2 err "old\\.json: the F5 text needs $with_nul bytes with its NUL" \
                                                                                deserialize Alarm --f5 "$old" "$longer" --capacity $((with_nul - 1))
    check capacity-holds-old      0 out '^\{"Alarm":\{"En":1,"Name":"door"\}\}$' \
                                                                                "<" <(echo '{}') deserialize Alarm --f5 "$old" --capacity "$with_nul"
}

group_errors() {
    local record=$ex/network.record.json table=$ex/network.table.json
    write bad.json $'{\n  "a": 1,\n  "b" 2\n}\n'
    printf '{"Port":1}\0' >"$work/nul.json"
    write wrong-kind.json '{"Port":{"value":554}}'
    write f5-wrong-kind.json '{"Alarm":{"En":"on"}}'
    { printf '%.0s[' {1..5000}; printf '%.0s]' {1..5000}; } >"$work/deep.json"
    : >"$work/empty.json"
    printf '\xff\xfe\x13\x80binary' >"$work/binary.json"
    head -c 10485760 /dev/zero | tr '\0' 'x' >"$work/large.json"
    #     name                     status stream pattern                        arguments
    check deep-nesting             2 err 'deep\.json: invalid JSON: nested deeper than the parser allows' \
                                                                                deserialize RTSP "$work/deep.json"
    check empty-file               2 err 'empty\.json: invalid JSON at line 1, column 1' deserialize RTSP "$work/empty.json"
    check binary-garbage           2 err 'binary\.json: invalid JSON at line 1, column 1' deserialize RTSP "$work/binary.json"
    check binary-record            2 err 'binary\.json: (invalid JSON|hex record)' serialize RTSP "$work/binary.json"
    check large-text               2 err 'large\.json: invalid JSON at line 1, column 1' deserialize Network "$work/large.json"
    check view-out-of-range        2 err 'not a view of KZDEV_RTSP_CFG: port: 70000 out of range' \
                                                                                "<" <(echo '{"port":70000}') serialize RTSP
    check missing-file             2 err '/nonexistent/t\.json: cannot open: '  deserialize Network /nonexistent/t.json
    check directory                2 err ': is a directory$'                    deserialize Network "$work"
    check invalid-json-location    2 err 'bad\.json: invalid JSON at line 3, column 7: ' deserialize Network "$work/bad.json"
    check invalid-json-record      2 err 'bad\.json: invalid JSON at line 3, column 7: ' serialize Network "$work/bad.json"
    check invalid-json-base        2 err 'bad\.json: invalid JSON at line 3'    deserialize Network "$table" --base "$work/bad.json"
    check invalid-json-f5          2 err 'bad\.json: invalid JSON at line 3'    serialize Alarm --f5 "$work/bad.json"
    check invalid-json-old         2 err 'bad\.json: invalid JSON at line 3'    deserialize Alarm --f5 "$work/bad.json" "$ex/alarm.table.json"
    check invalid-json-current     2 err 'bad\.json: invalid JSON at line 3'    serialize Network "$record" --current "$work/bad.json"
    check invalid-json-stdin       2 err '<stdin>: invalid JSON at line 1, column 1' "<" /dev/null deserialize RTSP
    check nul-in-json              2 err 'nul\.json: invalid JSON at line 1, column 11' deserialize RTSP "$work/nul.json"
    check wrong-kind-table         2 err 'wrong-kind\.json: a value of the wrong JSON kind for section RTSP' \
                                                                                deserialize RTSP "$work/wrong-kind.json"
    check wrong-kind-ipv6          2 err 'a value of the wrong JSON kind for section IPv6' \
                                                                                "<" <(echo '{"Enable":{}}') deserialize IPv6
    check wrong-kind-f5            2 err 'f5-wrong-kind\.json: a value of the wrong JSON kind for section Alarm' \
                                                                                serialize Alarm --f5 "$work/f5-wrong-kind.json"
    # A table of the wrong shape is a table with the keys missing: the section's own answer.
    check wrong-shape-table        1 err 'section RTSP refused the table'                         "<" <(echo '[1]') deserialize RTSP
    check wrong-shape-no-internals 1 err '^protofix: [^J]*$'                    "<" <(echo '[1]') deserialize RTSP
    check wrong-shape-nested       0 out '"enable":1'                           "<" <(echo '{"Enable":true,"EventHandler":5}') deserialize Alarm
    check view-unknown-field       2 err 'not a view of KZDEV_NETWORK_CFG: bogus' "<" <(echo '{"bogus":1}') serialize Network
    check view-text-too-long       2 err 'not a view of KZDEV_NETWORK_CFG: hostName' \
                                                                                "<" <(echo '{"hostName":"a-host-name-of-17"}') serialize Network
    check view-bad-base            2 err 'not a view of KZDEV_NETWORK_CFG: interfaceCount' \
                                                                                "<" <(echo '{"interfaceCount":"3"}') deserialize Network "$table" --base -
    check hex-wrong-length         2 err 'hex record holds 3 bytes, KZDEV_RTSP_CFG has 2' "<" <(echo '2a0200') serialize RTSP
    check hex-odd-digits           2 err 'an odd number of hex digits'          "<" <(echo '2a0') serialize RTSP
    check hex-odd-digits-at-end    2 err 'an odd number of hex digits'          "<" <(printf '2a0') serialize RTSP
    check hex-split-byte           2 err 'a byte split by white space at line 1, column 2' "<" <(echo '2 a02') serialize RTSP
    check hex-required             2 err 'not a hex digit at line 1, column 1'  serialize RTSP --hex <(echo '{"port":1}')
    check hex-base-wrong-length    2 err 'hex record holds 1 bytes, KZDEV_NETWORK_CFG has 1540' \
                                                                                "<" <(echo '00') deserialize Network "$table" --base -
}

group_usage() {
    local record=$ex/network.record.json
    #     name                     status stream pattern                        arguments
    check help                     0 out 'Usage: protofix'                      --help
    check serialize-help           0 out 'serialize \[OPTIONS\] SECTION'        serialize --help
    check no-command               2 err 'a command is required: sections, serialize, deserialize, roundtrip, view or batch' 
    check unknown-command          2 err 'unknown command "convert"'            convert Network
    check missing-section          2 err 'SECTION is required'                  serialize
    check unknown-option           2 err '--bogus'                              serialize Network "$record" --bogus
    check record-and-f5            2 err 'RECORD and --f5 cannot be given together' serialize Alarm "$record" --f5 "$ex/alarm.f5.json"
    check hex-and-f5               2 err '--f5 and --hex cannot be given together' deserialize Alarm --f5 "$ex/alarm.f5.json" --hex
    check base-and-f5              2 err '--f5 and --base cannot be given together' deserialize Alarm --f5 "$ex/alarm.f5.json" --base "$record"
    check capacity-needs-f5        2 err '--capacity goes only with --f5'       deserialize Network --capacity 100
    check capacity-on-serialize    2 err '--capacity is an option of deserialize, roundtrip, not of serialize' \
                                                                                serialize Alarm --f5 "$ex/alarm.f5.json" --capacity 3000
    check version                  0 out '^protofix [0-9]+\.[0-9]+\.[0-9]+$'     --version
    check capacity-zero            2 err '--capacity'                           deserialize Alarm --f5 "$ex/alarm.f5.json" --capacity 0
    check capacity-capacity-text   2 err '--capacity lots: expected a whole number from 1 to 67108864' \
                                                                                deserialize Alarm --f5 "$ex/alarm.f5.json" --capacity lots
    check standard-unknown         2 err '^protofix: --standard secam: expected pal or ntsc$' \
                                                                                serialize Network "$record" --standard secam
    check id-negative              2 err '--id'                                 serialize Network "$record" --id -1
    check id-too-large             2 err '--id'                                 serialize Network "$record" --id 4294967296
    check stdin-twice              2 err 'standard input can be read only once' deserialize Network - --base -
    check stdin-twice-implicit     2 err 'standard input can be read only once' deserialize Alarm --f5 -
    check stdin-twice-current      2 err 'standard input can be read only once' serialize Network --current -
}

group_roundtrip() {
    local record=$ex/network.record.json table=$ex/network.table.json base=$ex/network.base.json
    # The examples describe the same configuration: the table read into the named base record
    # and serialised again gives the envelope of the record example, through the view and
    # through the hex bytes alike.
    produce roundtrip "$work/from-record" serialize Network "$record"
    produce roundtrip "$work/view" deserialize Network "$table" --base "$base"
    produce roundtrip "$work/from-view" serialize Network "$work/view"
    same view-round-trip "$work/from-record" "$work/from-view"

    produce roundtrip "$work/hex" deserialize Network "$table" --base "$base" --hex
    produce roundtrip "$work/from-hex" serialize Network --hex "$work/hex"
    same hex-round-trip "$work/from-record" "$work/from-hex"
    cases=$((cases + 1))
    [[ $(tr -cd '0-9a-f' <"$work/hex" | wc -c) -eq $((2 * 1540)) ]] ||
        fail hex-digits "the hex record is not 1540 bytes"

    # A hex base is read as the record it prints: deserialising the same table onto it changes
    # nothing.
    produce roundtrip "$work/hex-again" deserialize Network "$table" --base "$work/hex" --hex
    same hex-base "$work/hex" "$work/hex-again"

    # The printed view reads back byte for byte, escapes and UTF-8 included.
    echo '{"Hostname":"q\"u\\o/t\u00e9"}' >"$work/escaped.json"
    produce roundtrip "$work/escaped-hex" deserialize Network "$work/escaped.json" --hex
    produce roundtrip "$work/escaped-view" deserialize Network "$work/escaped.json"
    produce roundtrip "$work/from-escaped-hex" serialize Network --hex "$work/escaped-hex"
    produce roundtrip "$work/from-escaped-view" serialize Network "$work/escaped-view"
    same escaped-view "$work/from-escaped-hex" "$work/from-escaped-view"

    # The F5 text serialised gives the table that, merged into the same text, leaves its values.
    produce roundtrip "$work/f5-envelope" serialize Alarm --f5 "$ex/alarm.f5.json"
    sed -n 's/^{"channel":0,"id":0,"params":{"table":\(.*\)},"result":true}$/\1/p' \
        "$work/f5-envelope" >"$work/f5-table"
    produce roundtrip "$work/f5-merged" deserialize Alarm --f5 "$ex/alarm.f5.json" "$work/f5-table"
    produce roundtrip "$work/f5-envelope-2" serialize Alarm --f5 "$work/f5-merged"
    same f5-round-trip "$work/f5-envelope" "$work/f5-envelope-2"
}

# Every section's examples, through the tool in both directions: the table is what serialize
# prints for the record; the table read onto a zero record (or the example's base) gives the
# record back, but for the top-level fields its .lost file names with the reason ("(table)" there:
# the table as a whole does not read back, and deserialize must say so); an F5 text serialised,
# merged into itself and serialised again gives the same table.
group_examples() {
    local name lower modes rec tab f5 base lost without
    while read -r name modes _; do
        lower=$(tr '[:upper:]' '[:lower:]' <<<"$name")
        rec=$ex/$lower.record.json tab=$ex/$lower.table.json f5=$ex/$lower.f5.json
        base=$ex/$lower.base.json lost=$ex/$lower.lost
        cases=$((cases + 1))
        if [[ ! -f $tab ]]; then
            fail "examples-$lower" "no $lower.table.json"
            continue
        fi
        if [[ $modes == *record* ]]; then
            [[ -f $rec ]] || { fail "examples-$lower" "no $lower.record.json"; continue; }
            run serialize "$name" "$rec" --table --pretty
            cmp -s "$work/out" "$tab" ||
                fail "examples-$lower-table" "serialize differs: $(diff "$work/out" "$tab" | head -4)"
            without=()
            if [[ -f $lost ]] && grep -q '^(table):' "$lost"; then
                run deserialize "$name" "$tab"
                [[ $status -eq 2 ]] ||
                    fail "examples-$lower-record" "the table reads back though $lower.lost says it does not"
            else
                if [[ -f $lost ]]; then
                    without=(--without "$(grep -v '^#' "$lost" | cut -d: -f1 | paste -sd, -)")
                fi
                if [[ -f $base ]]; then
                    "$tool" deserialize "$name" "$tab" --base "$base" >"$work/got" 2>/dev/null
                else
                    "$tool" deserialize "$name" "$tab" >"$work/got" 2>/dev/null
                fi
                "$tool" view "$name" "$work/got" "${without[@]}" >"$work/got-view" &&
                    "$tool" view "$name" "$rec" "${without[@]}" >"$work/want-view" ||
                    fail "examples-$lower-view" "the record or the view of the table does not read"
                cmp -s "$work/got-view" "$work/want-view" ||
                    fail "examples-$lower-record" "the table gives another record: $(diff "$work/got-view" "$work/want-view" | head -4)"
            fi
        elif [[ -f $f5 ]]; then
            run serialize "$name" --f5 "$f5" --table --pretty
            cmp -s "$work/out" "$tab" ||
                fail "examples-$lower-table" "serialize --f5 differs: $(diff "$work/out" "$tab" | head -4)"
        fi
        if [[ $modes == *text* ]]; then
            [[ -f $f5 ]] || { fail "examples-$lower-f5" "no $lower.f5.json"; continue; }
            "$tool" serialize "$name" --f5 "$f5" --table --pretty >"$work/t1" 2>/dev/null &&
                "$tool" deserialize "$name" --f5 "$f5" "$work/t1" >"$work/merged" 2>/dev/null &&
                "$tool" serialize "$name" --f5 "$work/merged" --table --pretty >"$work/t2" 2>/dev/null ||
                fail "examples-$lower-f5" "the F5 text does not convert both ways"
            cmp -s "$work/t1" "$work/t2" ||
                fail "examples-$lower-f5" "the merged F5 text gives another table: $(diff "$work/t1" "$work/t2" | head -4)"
        fi
    done < <("$tool" sections | tail -n +2)
}

# What could surprise a support engineer is said on standard error, one warning a line, and the
# exit status stays 0 unless --strict; the envelope of serialize pipes into deserialize.
group_warnings() {
    local record=$ex/network.record.json table=$ex/network.table.json base=$ex/network.base.json
    produce envelope "$work/envelope.json" serialize Network "$record"
    write refused-envelope.json '{"channel":0,"id":0,"params":{"table":{"Port":554}},"result":false}'
    write long-name.json '{"Hostname":"a-hostname-of-25-letters!"}'
    write unknown-and-long.json '{"Hostname":"a-hostname-of-25-letters!","Bogus":1}'
    printf '\xef\xbb\xbf{"Port":5}' >"$work/bom.json"
    produce alarm-table "$work/alarm-table.json" serialize Alarm "$ex/alarm.record.json"
    sed -n 's/^{"channel":0,"id":0,"params":{"table":\(.*\)},"result":true}$/\1/p' \
        "$work/alarm-table.json" >"$work/alarm-bare.json"
    #     name                     status stream pattern                        arguments
    check envelope-piped           0 out '"hostName":"nvr-lobby"'               deserialize Network "$work/envelope.json" --base "$base"
    check envelope-same-record     0 out '"isDefault":1'                        deserialize Network "$work/envelope.json" --base "$base"
    check envelope-refused         0 err 'refused-envelope\.json: the envelope.s "result" is false' \
                                                                                deserialize RTSP "$work/refused-envelope.json"
    check no-base-names            0 err 'network\.table\.json: eth0: not read by section Network .*give --base' \
                                                                                deserialize Network "$table"
    check f5-given-as-table        1 err 'alarm\.f5\.json: section Alarm read nothing of the table; it looks like the F5 text of section Alarm \(--f5 takes it\)$' \
                                                                                deserialize Alarm "$ex/alarm.f5.json"
    check narrowed-number          0 err '<stdin>: Port: 70000 became 4464 in the record' \
                                                                                "<" <(echo '{"Port":70000}') deserialize RTSP
    check text-cut                 0 err 'Hostname: "a-hostname-of-25-letters!" became "a-hostname-of-2" in the record' \
                                                                                deserialize Network "$work/long-name.json"
    check key-case                 1 err 'requires "Port"; "port" is not a key of the section \(did you mean "Port"\?\)$' \
                                                                                "<" <(echo '{"port":554}') deserialize RTSP
    check f5-without-member        1 err 'alarm\.f5\.json: the F5 text has no "NetAlarm" member: section NetAlarm reads nothing of it; it looks like the F5 text of section Alarm$' \
                                                                                serialize NetAlarm --f5 "$ex/alarm.f5.json"
    check f5-member-not-added      1 err 'the F5 text has no "NetAlarm" member: the merge would add one \(--add-member lets it\)' \
                                                                                "<" <(echo '{"Enable":true}') deserialize NetAlarm --f5 "$ex/alarm.f5.json"
    check f5-member-added          0 out '"NetAlarm":\{"En":1\}'               "<" <(echo '{"Enable":true}') deserialize NetAlarm --f5 "$ex/alarm.f5.json" --add-member
    check option-not-read          0 err 'warning: --standard made no difference to section RTSP' \
                                                                                "<" <(echo '{"Port":5}') deserialize RTSP --standard ntsc
    check option-not-read-packet   0 err 'warning: --sub-mode made no difference to section Network' \
                                                                                serialize Network "$record" --sub-mode 1
    check strict                   1 err '^protofix: --strict: 1 warning$'      "<" <(echo '{"Port":70000}') deserialize RTSP --strict
    check strict-no-warning        0 out '"port":554'                           "<" <(echo '{"Port":554}') deserialize RTSP --strict
    check byte-order-mark          0 out '"port":5'                             deserialize RTSP "$work/bom.json"
    check pretty                   0 out '^  "channel": 0,$'                   "<" <(echo '{"port":554}') serialize RTSP --pretty
    check wrong-kind-not-read      0 err '<stdin>: EventHandler: not read by section Alarm$' \
                                                                                "<" <(echo '{"Enable":true,"EventHandler":5}') deserialize Alarm
    check wrong-kind-nothing-read  1 only-err '<stdin>: section Alarm read nothing of the table$' \
                                                                                "<" <(echo '{"EventHandler":5}') deserialize Alarm
    check roundtrip-nothing-lost   0 out '^nothing lost'                        roundtrip Alarm "$work/alarm-bare.json"
    check roundtrip-unknown-key    1 out '^Bogus: 1 -> \(absent\): not read by the section$' \
                                                                                roundtrip Network "$work/unknown-and-long.json"
    check roundtrip-cut-name       1 out '^Hostname: "a-hostname-of-25-letters!" -> "a-hostname-of-2"$' \
                                                                                roundtrip Network "$work/unknown-and-long.json"
    check roundtrip-exit-message   1 err 'unknown-and-long\.json: 2 values do not survive the round trip through the record' \
                                                                                roundtrip Network "$work/unknown-and-long.json"
    if command -v script >/dev/null; then
        # A terminal on standard input is said, not waited on.
        cases=$((cases + 1))
        script -qec "$tool serialize RTSP" /dev/null </dev/null >"$work/tty" 2>&1
        grep -q 'standard input is a terminal' "$work/tty" ||
            fail terminal-stdin "$(head -c 300 "$work/tty")"
    fi
}

# The answers a support engineer acts on: an input the section reads nothing of is a refusal that
# says what the input looks like, with nothing on standard output; a loss reported is a real one;
# the old text's own losses can be asked for; every refusal says the reason the tool can see.
group_trust() {
    local alarm=$ex/alarm.f5.json
    write alarm-member.json '{"alarm":{"En":1,"Name":"door"}}'
    write f5-wrong-kind.json '{"Alarm":{"En":"yes"}}'
    sed 's/"Enable"/"enable"/' "$ex/alarm.table.json" >"$work/alarm-enable.json"
    python3 -c 'print("{\"Hostname\":\"" + "x" * 100000 + "\"}")' >"$work/long-value.json" 2>/dev/null ||
        { printf '{"Hostname":"'; head -c 100000 /dev/zero | tr '\0' x; printf '"}\n'; } >"$work/long-value.json"
    #     name                     status stream   pattern                        arguments
    # A wrong file converted: each says what the input is, never "give --base".
    check table-of-other-section   1 only-err 'network\.table\.json: section Alarm read nothing of the table; it looks like the table of section Network$' \
                                                                                  deserialize Alarm "$ex/network.table.json"
    check record-given-as-table    1 only-err 'alarm\.record\.json: section Alarm read nothing of the table; it looks like a record of section Alarm in the named-field form \(KZDEV_ALARMIN_CFG; serialize reads it\)$' \
                                                                                  deserialize Alarm "$ex/alarm.record.json"
    check f5-given-as-table        1 only-err 'it looks like the F5 text of section Alarm \(--f5 takes it\)$' \
                                                                                  deserialize Alarm "$alarm"
    check f5-of-other-section      1 only-err 'alarm\.f5\.json: the F5 text has no "MotionDetect" member: section MotionDetect reads nothing of it; it looks like the F5 text of section Alarm$' \
                                                                                  serialize MotionDetect --f5 "$alarm" --table
    check f5-member-misspelt       1 only-err 'alarm-member\.json: the F5 text has no "Alarm" member: section Alarm reads nothing of it; its "alarm" is spelt otherwise than the device.s "Alarm"$' \
                                                                                  serialize Alarm --f5 "$work/alarm-member.json"
    check merge-adds-no-member     1 only-err 'alarm\.f5\.json: the F5 text has no "MotionDetect" member: the merge would add one \(--add-member lets it\); it looks like the F5 text of section Alarm$' \
                                                                                  deserialize MotionDetect --f5 "$alarm" "$ex/motiondetect.table.json"
    check merge-adds-when-asked    0 out '"MotionDetect":\{'                     deserialize MotionDetect --f5 "$alarm" "$ex/motiondetect.table.json" --add-member
    check record-given-as-record-of-table 2 only-err 'not a view of KZDEV_ALARMIN_CFG: .*; it looks like the table of section Alarm \(deserialize reads it\)$' \
                                                                                  serialize Alarm "$ex/alarm.table.json"
    # No false loss: the F5 text places a PTZ link by its channel.
    check change-ptz-link-kept     1 out '^EventHandler\.MailDetail: .* -> \(absent\): not read by the section$' \
                                                                                  roundtrip Alarm "$ex/alarm.change.json" --f5 "$alarm"
    cases=$((cases + 1))
    grep -q PtzLink "$work/out" && fail change-ptz-link-kept "a PTZ link reported lost: $(grep PtzLink "$work/out")"
    check channel-list-order       0 out '^nothing lost'                          "<" <(echo '{"EventHandler":{"RecordChannels":[2,0,2]}}') roundtrip Alarm
    check channel-out-of-range     1 out '^EventHandler\.RecordChannels\[1\]: 40 -> \(absent\): not given back$' \
                                                                                  "<" <(echo '{"EventHandler":{"RecordChannels":[2,40]}}') roundtrip Alarm
    check time-text-same-numbers   0 out '^nothing lost'                          "<" <(echo '{"EventHandler":{"TimeSection":[["1 8:00:00-18:00:00"]]}}') roundtrip Alarm
    check flag-from-number         0 out '^nothing lost'                          "<" <(echo '{"Enable":1}') roundtrip Alarm
    # The old text's own losses.
    check f5-own-flags             1 out '^Record\.TimeSection\[[0-9]\]\[[0-9]\]: "1 [0-9:-]+" -> "4 [0-9:-]+"$' \
                                                                                  roundtrip Record --f5 "$ex/record.f5.json"
    check f5-own-losses-said       1 err 'record\.f5\.json: [0-9]+ values of the F5 text come back otherwise through the table$' \
                                                                                  roundtrip Record --f5 "$ex/record.f5.json"
    check f5-own-fps               1 out '^Encode\.SnapFormat\[0\]\.Video\.FPS: -5 -> 0\.2'  roundtrip Encode --f5 "$ex/encode.f5.json"
    check f5-own-nothing-lost      0 out '^nothing lost: every value of the F5 text came back' roundtrip Alarm --f5 "$alarm"
    check f5-own-json              1 out '"loss":"changed","path":\["Record","TimeSection",[0-9],[0-9]\]' \
                                                                                  roundtrip Record --f5 "$ex/record.f5.json" --json
    # The smaller ones.
    check unknown-section-suggests 2 only-err 'unknown section "MotionDetekt" \(did you mean "MotionDetect"\?\)' \
                                                                                  serialize MotionDetekt "$ex/motiondetect.record.json"
    check unknown-section-near     2 only-err 'unknown section "motion_detect" \(did you mean "MotionDetect"\?\)' serialize motion_detect
    check key-one-letter-off       0 err 'alarm-enable\.json: enable: not read by section Alarm \(did you mean "Enable"\?\)$' \
                                                                                  deserialize Alarm "$work/alarm-enable.json"
    check strict-prints-nothing    1 only-err '^protofix: --strict: 1 warning$'   "<" <(echo '{"Port":70000}') deserialize RTSP --strict
    check pretty-record            0 out '^  "sensorType": 1,$'                   deserialize Alarm "$ex/alarm.table.json" --pretty
    check pretty-roundtrip-json    1 out '^    "loss": "not read",$'              roundtrip Alarm "$ex/alarm.change.json" --f5 "$alarm" --json --pretty
    check pretty-roundtrip-lines   2 only-err '--pretty goes only with --json on roundtrip' roundtrip Alarm "$ex/alarm.change.json" --pretty
    check sub-mode-needs-current   1 only-err 'refused the record: in sub-mode 1 section General writes into the device.s current reply: give it with --current$' \
                                                                                  serialize General "$ex/general.record.json" --sub-mode 1
    check ptz-channel-range        1 only-err 'refused the record: section Ptz has channels 0 to 15 \(--channel 16\)$' \
                                                                                  serialize Ptz "$ex/ptz.record.json" --channel 16
    check f5-wrong-kind-path       2 only-err 'f5-wrong-kind\.json: a value of the wrong JSON kind for section Alarm at Alarm\.En \(a number was expected\)$' \
                                                                                  serialize Alarm --f5 "$work/f5-wrong-kind.json"
    check value-cut-in-warning     0 err 'Hostname: "x{60,}\.\.\. \(100002 bytes\) became "x{15}" in the record$' \
                                                                                  deserialize Network "$work/long-value.json"
    cases=$((cases + 1))
    [[ $(awk '{ if (length($0) > m) m = length($0) } END { print m }' "$work/err") -lt 300 ]] ||
        fail value-cut-in-warning "a warning line longer than 300 characters"
    check sections-json            0 out '^\[\{"modes":\["record","text"\],"name":"Alarm","record":"KZDEV_ALARMIN_CFG",' sections --json
    # Linear, not quadratic: one conversion, one walk, and a few runs to find the value to blame.
    { printf '{"Port":"x"'; for i in $(seq 8000); do printf ',"k%d":%d' "$i" "$i"; done; printf '}\n'; } >"$work/keys-8000.json"
    timed 5 many-keys-blame check many-keys-blame 2 only-err 'keys-8000\.json: a value of the wrong JSON kind for section RTSP at Port \(a number was expected\)$' \
                                                                                  deserialize RTSP "$work/keys-8000.json"
}

# timed SECONDS NAME ARGS...: the check's run ends within the seconds given.
timed() {
    local seconds=$1 name=$2
    shift 2
    local start=$SECONDS
    "$@"
    (( SECONDS - start <= seconds )) || fail "$name" "took $((SECONDS - start)) s, more than $seconds s"
}

# The peak memory of a run in MiB, when /usr/bin/time is there and the tool is not built with a
# sanitizer (whose shadow memory counts); empty otherwise.
peak_mib() {
    [[ -x /usr/bin/time ]] || return 0
    ldd "$tool" 2>/dev/null | grep -q 'lib[at]san' && return 0
    /usr/bin/time -f %M -o "$work/peak" "$tool" "$@" >/dev/null 2>&1
    echo $(($(tail -n 1 "$work/peak") / 1024))
}

# No input makes the tool read, hold or wait without a bound, and no output is lost unsaid.
group_limits() {
    local table=$ex/rtsp.table.json f5=$ex/alarm.f5.json peak input file example capacity
    head -c 3000 /dev/zero | tr '\0' ' ' >"$work/blank-3k.json"
    echo '{"Port":554}' >>"$work/blank-3k.json"
    mkfifo "$work/fifo"
    #     name                     status stream pattern                        arguments
    timed 5 dev-zero check dev-zero 2 err '^protofix: /dev/zero: larger than the input limit of 64 MiB \(--max-input raises it\)$' \
                                                                                deserialize RTSP /dev/zero
    timed 5 stdin-zero check stdin-zero 2 err '^protofix: <stdin>: larger than the input limit of 64 MiB' \
                                                                                "<" /dev/zero deserialize RTSP
    check limit-raised             0 out '"port":554'                           deserialize RTSP "$work/blank-3k.json" --max-input 3k
    check limit-file               2 err 'blank-3k\.json: larger than the input limit of 2 KiB' \
                                                                                deserialize RTSP "$work/blank-3k.json" --max-input 2k
    check limit-pipe               2 err '<stdin>: larger than the input limit of 2 KiB' \
                                                                                "<" <(cat "$work/blank-3k.json") deserialize RTSP --max-input 2K
    check limit-view               2 err 'larger than the input limit of 10 bytes' view RTSP "$ex/rtsp.record.json" --max-input 10
    check limit-f5                 2 err 'alarm\.f5\.json: larger than the input limit of 1 KiB' \
                                                                                serialize Alarm --f5 "$f5" --max-input 1KiB
    check limit-unit               2 err '^protofix: --max-input 64X: expected a size in bytes' deserialize RTSP "$table" --max-input 64X
    check limit-above-int          2 err '^protofix: --max-input 2G: expected a size' deserialize RTSP "$table" --max-input 2G
    check limit-empty              2 err '^protofix: --max-input "": expected a size' deserialize RTSP "$table" --max-input ''
    # A FIFO is read as a pipe: once its writer comes, to the end of what it writes.
    { sleep 1; cat "$table" >"$work/fifo"; } &
    timed 5 fifo check fifo        0 out '"port":554'                           deserialize RTSP "$work/fifo"
    wait
    timed 5 capacity-largest check capacity-largest 2 err '^protofix: --capacity 2147483647: expected a whole number from 1 to 67108864 \(the input limit; --max-input raises it\)$' \
                                                                                deserialize Alarm --f5 "$f5" "$ex/alarm.table.json" --capacity 2147483647
    check capacity-raised          0 out '"Alarm"'                              deserialize Alarm --f5 "$f5" "$ex/alarm.table.json" --capacity 100000000 --max-input 128M
    # Every whole-number option alike: no empty value, no blank around the digits.
    local option
    for option in --channel --id --sub-mode --capacity; do
        check "empty$option"       2 err "^protofix: $option \"\": expected a whole number" deserialize Alarm --f5 "$f5" "$ex/alarm.table.json" "$option" ''
        check "blank$option"       2 err "^protofix: $option \" 1\": expected a whole number" deserialize Alarm --f5 "$f5" "$ex/alarm.table.json" "$option" ' 1'
    done
    # Output that cannot be written is an error, whatever the command.
    local args
    for args in "sections" "serialize RTSP $ex/rtsp.record.json" "deserialize RTSP $table"; do
        cases=$((cases + 1))
        # shellcheck disable=SC2086
        "$tool" $args >/dev/full 2>"$work/err"
        status=$?
        [[ $status -eq 2 ]] && grep -q '^protofix: standard output: cannot write: No space left' "$work/err" ||
            fail "full-disk $args" "exit status $status: $(head -c 300 "$work/err")"
        cases=$((cases + 1))
        # shellcheck disable=SC2086
        "$tool" $args >&- 2>"$work/err"
        status=$?
        [[ $status -eq 2 ]] && grep -q '^protofix: standard output: cannot write: Bad file descriptor' "$work/err" ||
            fail "closed-output $args" "exit status $status: $(head -c 300 "$work/err")"
    done
    # A reader that leaves early ends the tool by SIGPIPE, as any command of a pipeline.
    cases=$((cases + 1))
    "$tool" deserialize Alarm "$ex/alarm.table.json" 2>/dev/null | head -c 1 >/dev/null
    [[ ${PIPESTATUS[0]} -eq 0 || ${PIPESTATUS[0]} -eq 141 ]] || fail sigpipe "exit status ${PIPESTATUS[0]}"
    # Merges whose text cannot fit are refused as soon as that is certain, by the library and by
    # the tool's explanation alike: a 40 KB grid of rows 100,000 wide, a 300 KB schedule of
    # 100,000 channels.
    { printf '{"Col":100000,"Region":[0'; for i in $(seq 19999); do printf ',0'; done; printf ']}\n'; } >"$work/wide-grid.json"
    { printf '[{"Channels":[{}'; for i in $(seq 99999); do printf ',{}'; done; printf ']}]\n'; } >"$work/many-channels.json"
    timed 10 wide-grid check wide-grid 1 only-err 'the merged F5 text is longer than [0-9]+ bytes, more than --capacity 100002 holds' \
                                                                                deserialize MotionDetect --f5 "$ex/motiondetect.f5.json" "$work/wide-grid.json" --capacity 100002
    timed 10 many-channels check many-channels 1 only-err 'the merged F5 text is longer than [0-9]+ bytes, more than --capacity 5633 holds' \
                                                                                deserialize RemoteStorageLimit --f5 "$ex/remotestoragelimit.f5.json" "$work/many-channels.json" --capacity 5633
    for input in wide-grid:motiondetect:100002 many-channels:remotestoragelimit:5633; do
        IFS=: read -r file example capacity <<<"$input"
        peak=$(peak_mib deserialize "$example" --f5 "$ex/$example.f5.json" "$work/$file.json" --capacity "$capacity")
        cases=$((cases + 1))
        [[ -z $peak || $peak -lt 100 ]] || fail "memory-$file" "$peak MiB to refuse the merge"
    done
    # Memory in proportion to the input: a 64 MiB file of blanks is refused holding it once.
    head -c $((64 << 20)) /dev/zero | tr '\0' ' ' >"$work/blank-64m.json"
    peak=$(peak_mib deserialize RTSP "$work/blank-64m.json" --max-input 63M)
    cases=$((cases + 1))
    [[ -z $peak || $peak -lt 20 ]] || fail memory-refused-file "$peak MiB to refuse a file by its size"
    peak=$(peak_mib deserialize RTSP - --max-input 64M <"$work/blank-64m.json")
    cases=$((cases + 1))
    [[ -z $peak || $peak -lt 200 ]] || fail memory-whole-file "$peak MiB to read a 64 MiB text"
}

if ! declare -F "group_$group" >/dev/null; then
    echo "unknown group $group" >&2
    exit 2
fi
"group_$group"
echo "$group: $cases cases, $failures failed"
[[ $failures -eq 0 ]]
