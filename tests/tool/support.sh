# What the tool's test scripts share, sourced after they have read their arguments: a work
# directory removed when the script ends, the counts of cases and failures, and fail.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0
cases=0

# fail NAME MESSAGE: one failed case, said on standard error.
fail() {
    echo "FAIL [$1]: $2" >&2
    failures=$((failures + 1))
}
