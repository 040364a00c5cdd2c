# Reads the syntax tree of a unit that includes all installed headers, as Clang writes it in JSON, and prints the linker's name of
# every function, member and variable that a host can name in them and that they leave to the library.
# usage: awk -v headers=FOLDER/ -f declared-symbols.awk
#
# The JSON is one node at a time, indented by two: a node's "{" stands at a column divisible by four, its own keys two further.

# What can be named from outside: in a namespace, or in a class and not private there; a template's members are no symbols yet.
function holds_names(level) {
    if (kind[level] == "TranslationUnitDecl" || kind[level] == "NamespaceDecl" || kind[level] == "LinkageSpecDecl")
        return 1
    return kind[level] == "CXXRecordDecl" || kind[level] == "FriendDecl"
}

function is_reachable(level) {
    return level == 0 || (reachable[level - 1] && holds_names(level - 1) && access[level - 1] != "private")
}

function text_of(line) {
    sub(/^[^:]*: "/, "", line)
    sub(/",?$/, "", line)
    return line
}

function finish(level) {
    if (symbol[level] == "")
        return
    if (has_body[level])
        defined[symbol[level]] = 1
    else if (in_headers[level] && reachable[level] && !excused[level] &&
             (kind[level] ~ /^(Function|CXXMethod|CXXConstructor|CXXDestructor|CXXConversion)Decl$/ || kind[level] == "VarDecl"))
        declared[symbol[level]] = 1
}

/^ *{$/ {
    indent = length($0) - 1
    if (indent % 4)
        next
    level = indent / 4
    kind[level] = symbol[level] = access[level] = ""
    has_body[level] = excused[level] = in_headers[level] = 0
    reachable[level] = is_reachable(level)
    next
}
/^ *},?$/ {
    indent = index($0, "}") - 1
    if (indent % 4 == 0) {
        finish(indent / 4)
        level = indent / 4 - 1
    }
    in_included_from = 0
    next
}
/"includedFrom": {/ { in_included_from = 1; next }
/^ *"file": / {
    if (!in_included_from) # a place is written with its file only where that is another one than the last
        file = text_of($0)
    next
}
level < 0 || substr($0, level * 4 + 3, 1) != "\"" { next } # a key of something inside
/^ *"range": / { in_headers[level] = index(file, headers) == 1; next }
/^ *"kind": / {
    kind[level] = text_of($0)
    if (kind[level] == "CompoundStmt" && level > 0)
        has_body[level - 1] = 1
    next
}
/^ *"mangledName": / { symbol[level] = text_of($0); next }
/^ *"tagUsed": / { access[level] = /"class"/ ? "private" : "public"; next }
/^ *"access": / { if (kind[level] == "AccessSpecDecl") access[level - 1] = text_of($0); next }
/^ *"(isImplicit|explicitlyDeleted|constexpr|inline|pure)": true/ { excused[level] = !/"inline"/ || kind[level] == "VarDecl"; next }
/^ *"explicitlyDefaulted": / { excused[level] = 1; next }

END {
    for (name in declared)
        if (!(name in defined))
            print name
}
