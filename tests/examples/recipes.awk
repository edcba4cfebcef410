# Turns the snippets of pages into C++: a function for each, and a table of what each writes.
#     awk -v interface=stream -f recipes.awk docs/recipes.md docs/reference/html/stream.dox > recipes_stream.cpp
#
# A snippet is a block that opens with "```cpp stream", "```cpp classic" or "```cpp kit". The block after it opens with
# "```text" and says what is written where, in the notation of readable(): "on a terminal: bytes". A line
# that starts with a blank goes on with the line before it. A snippet of the reference, stream.dox for example, stands between
# "\code{.cpp}" and "\endcode", and nothing is said of what it writes.

function fail(why)
{
    print FILENAME ":" FNR ": " why > "/dev/stderr"
    failed = 1
    exit 1
}

# The place that a line of a result starts with, or "" if it starts with none.
function place_of(line,    i)
{
    for (i = 1; i <= 5; ++i) {
        if (index(line, places[i] ": ") == 1) {
            return places[i]
        }
    }
    return ""
}

function raw(text) { return "R\"bytes(" text ")bytes\"" }

# What the snippet writes to a place that has a name of its own, or to all.
function written(place, is_output)
{
    if (place in result) {
        return raw(result[place])
    }
    return raw(is_output ? result["anywhere"] : "")
}

function begin_code()
{
    block = "code"
    code = ""
    first_line = FNR + 1
}

# A result continues its row of the table.
function end_snippet(result,    name)
{
    name = heading "_" ++snippets
    if (kind == interface) {
        print "void " name "()\n{\n#line " first_line " \"" FILENAME "\"\n" code "}"
        table = table "{\"" name "\", " name result "},\n"
    }
    block = kind = ""
}

BEGIN {
    split("on a terminal|in a pipe|standard error on a terminal|standard error in a pipe|anywhere", places, "|")
    kind = ""      # of the snippet that is being read, or whose result is to come
    block = ""     # "code" or "result"
    headers["stream"] = "kestry/hueline_stream.hpp"
    headers["classic"] = "kestry/hueline_classic.hpp"
    headers["kit"] = "kestry/kit/style.hpp"
    scopes["stream"] = "kestry::Hueline"
    scopes["classic"] = "kestry"
    scopes["kit"] = "kestry::kit"
    print "#include \"" headers[interface] "\""
    print "#include \"examples/recipes.hpp\""
    print "#include \"examples/recipes_include.hpp\""
    print "namespace {"
    print "using namespace " scopes[interface] ";"
    print "namespace kit = kestry::kit;"
}

block == "" && /^\/\*\* \\defgroup/ {
    heading = $3
    snippets = 0
}

block == "" && /^\\code\{\.cpp\}$/ {
    kind = FILENAME
    sub(/\.dox$/, "", kind)
    sub(/.*\//, "", kind)
    begin_code()
    next
}

block == "code" && /^\\endcode$/ {
    end_snippet("")
    next
}

block == "" && /^### / {
    heading = tolower(substr($0, 5))
    gsub(/[^a-z0-9]+/, "_", heading)
    sub(/^_/, "", heading)
    sub(/_$/, "", heading)
    snippets = 0
}

block == "" && /^```cpp/ && FILENAME !~ /\.dox$/ {
    if (kind != "") {
        fail("the snippet before this one has no result")
    }
    if (!($2 in headers)) {
        fail("a snippet is of \"stream\", of \"classic\" or of \"kit\"")
    }
    kind = $2
    begin_code()
    next
}

block == "" && /^```text/ {
    if (kind == "") {
        fail("a result without a snippet")
    }
    block = "result"
    place = ""
    split("", result)
    next
}

block == "code" && /^```$/ {
    block = ""
    next
}

block == "result" && /^```$/ {
    end_snippet(", true, " written("on a terminal", 1) ", " written("in a pipe", 1) ", " \
        written("standard error on a terminal", 0) ", " written("standard error in a pipe", 0))
    next
}

block == "code" { code = code $0 "\n" }

block == "result" {
    if (/^ /) {
        sub(/^ +/, "")
        result[place] = result[place] $0
    } else {
        place = place_of($0)
        if (place == "") {
            fail("no place is called so")
        }
        text = substr($0, length(place) + 2)
        sub(/^ +/, "", text)
        result[place] = text
    }
}

END {
    if (failed) {
        exit 1
    }
    if (block != "" || kind != "") {
        fail("the last snippet is not complete")
    }
    print "} // namespace"
    print "namespace hueline::test {"
    print "std::vector<Recipe> " interface "_recipes()\n{\nreturn {\n" table "};\n}"
    print "} // namespace hueline::test"
}
