#!/usr/bin/env bash
# Every function that the installed public headers declare is exported by the shared library.
#
#   check-exports.sh INCLUDE_DIR LIBRARY.so
#
# The list comes from the headers themselves: clang parses every header under
# INCLUDE_DIR/protofix and dumps its declarations; the functions declared there (free functions,
# and the member functions of the classes defined there) that are not defined inline, defaulted,
# deleted or pure must each be a defined dynamic symbol of the library, as many overloads as the
# headers declare. A polymorphic class also needs its vtable and typeinfo, so that a program can
# derive from it or catch and cast it across the library's boundary.
set -euo pipefail
inc=$(cd "$1" && pwd) so=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# One translation unit that includes every public header on its own terms.
find "$inc/protofix" -name '*.h' | sort | sed "s|^$inc/|#include <|; s|$|>|" >"$work/all.cpp"
# shellcheck disable=SC2046
clang++ -std=c++17 -fsyntax-only -fno-color-diagnostics -I"$inc" $(pkg-config --cflags jsoncpp) \
    -Xclang -ast-dump "$work/all.cpp" >"$work/ast.txt"

# The dump is a tree, one node a line; a node's depth is where its kind starts. A location names
# its file only when the file changes, so the current file is the last one named. A top-level
# declaration is ours when its file is under INCLUDE_DIR/protofix; the scopes below it (classes,
# namespaces, extern "C") qualify the names of the functions they hold. Prints "function NAME"
# for each function the library must define and "class NAME" for each polymorphic class.
awk -v ours="$inc/protofix/" '
function flush() {
    if (pending != "" && !defined) print "function " pending
    pending = ""
}
function qualifier(depth,    d, q) {
    q = ""
    for (d = 1; d < depth; ++d) if (d in scope) q = q scope[d]
    return q
}
{
    start = match($0, /[A-Za-z<]/)
    depth = (start - 1) / 2
    rest = substr($0, start)
    kind = rest; sub(/ .*/, "", kind)
    name = ""
    if (match(rest, /[~A-Za-z_0-9]+ \047/)) name = substr(rest, RSTART, RLENGTH - 2)
    flags = rest; sub(/^[^\047]*\047[^\047]*\047/, "", flags)   # what follows the type
    bare = rest; gsub(/\047[^\047]*\047/, "", bare)             # a type may name a file too
    while (match(bare, /(<[a-z -]+>|\/[^ :<>,()]+):[0-9]+:[0-9]+/)) {
        file = substr(bare, RSTART, RLENGTH); sub(/:[0-9]+:[0-9]+$/, "", file)
        bare = substr(bare, RSTART + RLENGTH)
    }

    if (pending != "" && depth == pendingDepth + 1 && kind == "CompoundStmt") defined = 1
    if (pending != "" && depth <= pendingDepth) flush()
    for (d = depth; d <= maxDepth; ++d) delete scope[d]
    if (skip && depth > skipDepth) next
    skip = 0
    if (depth == 1) inOurs = index(file, ours) == 1
    if (!inOurs) next
    if (depth > maxDepth) maxDepth = depth

    if (kind == "DefinitionData" && depth == classDepth + 1 && rest ~ / polymorphic/) print "class " className
    if (kind == "FriendDecl") { skip = 1; skipDepth = depth; next }
    if (kind == "NamespaceDecl") { n = rest; sub(/ *$/, "", n); sub(/.* /, "", n); scope[depth] = n "::"; next }
    if (kind == "LinkageSpecDecl") { scope[depth] = ""; next }
    if (kind == "CXXRecordDecl") {
        if (rest ~ / definition$/ && rest !~ / implicit /) {
            n = rest; sub(/ definition$/, "", n); sub(/.* /, "", n)
            className = qualifier(depth) n; classDepth = depth; scope[depth] = n "::"
        } else { skip = 1; skipDepth = depth }
        next
    }
    if (kind !~ /^(FunctionDecl|CXXMethodDecl|CXXConstructorDecl|CXXDestructorDecl|CXXConversionDecl)$/) {
        # Templates, variables, enumerations: no function the library defines below them.
        if (kind ~ /Decl$/) { skip = 1; skipDepth = depth }
        next
    }
    if (rest ~ / implicit / || flags ~ /(^| )(pure|default|delete|inline)( |$)/) next
    if (kind == "FunctionDecl" && flags ~ /(^| )static( |$)/) next
    pending = qualifier(depth) name; pendingDepth = depth; defined = 0
}
END { flush() }
' "$work/ast.txt" >"$work/list"
sed -n 's/^function //p' "$work/list" | sort | uniq -c | awk '{print $2, $1}' >"$work/declared"

# The library's defined dynamic symbols: name (without the ABI tag) and how many distinct
# signatures carry it; constructor and destructor variants demangle to one signature.
nm -D -C --defined-only "$so" | awk '$2 ~ /^[TW]$/ {
    $1 = ""; $2 = ""; sub(/^  /, "")
    signature = $0; name = $0
    sub(/\(.*/, "", name); gsub(/\[abi:[^]]*\]/, "", name)
    if (!(signature in seen)) { seen[signature] = 1; count[name]++ }
} END { for (n in count) print n, count[n] }' | sort >"$work/exported"

# A dump this reader no longer understands would list nothing and pass: a function of each kind
# (member, free in a class's header, free in the base's header) must be among the declarations.
for name in CReqConfigProtocolFix::Serialize ConvertVideoCompressionJsonToEnum parseJsonNodeToStr; do
    grep -q "^$name " "$work/declared" || {
        echo "check-exports: $name not found among the declarations of the headers" >&2
        exit 1
    }
done

missing=0
while read -r name want; do
    have=$(awk -v n="$name" '$1 == n {print $2}' "$work/exported")
    if ((${have:-0} < want)); then
        echo "check-exports: $name: $want declared, ${have:-0} exported" >&2
        missing=1
    fi
done <"$work/declared"

# Polymorphic classes of the headers: their vtable and typeinfo.
symbols=$(nm -D -C --defined-only "$so")
for class in $(sed -n 's/^class //p' "$work/list"); do
    for what in vtable typeinfo; do
        grep -q " $what for $class$" <<<"$symbols" || {
            echo "check-exports: no $what for $class" >&2
            missing=1
        }
    done
done
((missing == 0)) || exit 1
echo "check-exports: the $(awk '{ n += $2 } END { print n }' "$work/declared") functions the headers declare are exported"
