# Turns docs/kit.md into C++: a function for each block of code, and a check for each row that says what something writes.
#     awk -f kit_page.awk docs/kit.md > kit_page.cpp
#
# A block is compiled, with what kit_page.hpp takes for granted. One of expressions, without a semicolon, is a list of what
# holds. One that is followed by text is run by the test too, and has to write that. A block with std::format is compiled
# where the library has it, one with manipulators not here.

function literal(text) { return "R\"bytes(" text ")bytes\"" }

# What stands between the first two backticks of a cell.
function code_of(cell,    parts, known)
{
    known = split(cell, parts, "`")
    gsub("\002", "|", parts[2])
    return known >= 3 ? parts[2] : ""
}

# An expression as it can be compiled: "\e" is not of the standard, and <unistd.h> has another truncate.
function compiled(expression)
{
    gsub(/\\e/, "\\033", expression)
    gsub(/assert\(/, "EXPECT_TRUE(", expression)
    sub(/^truncate\(/, "kestry::kit::truncate(", expression)
    gsub(/\(truncate\(/, "(kestry::kit::truncate(", expression)
    return expression
}

function check(expression, expected)
{
    checks = checks "#line " FNR " \"" FILENAME "\"\n{R\"(" expression ")\", [] { return shown(" compiled(expression) "); }, " \
        literal(expected) "},\n"
}

BEGIN {
    FS = " *[|] *"
    print "#include \"examples/kit_page.hpp\""
    print "namespace hueline::test::kit_page {"
}

{ gsub(/\\[|]/, "\002") } # a bar in a cell

/^```cpp$/ && !in_block {
    in_block = 1
    code = ""
    first_line = FNR + 1
    next
}

/^```text$/ && !in_block {
    in_result = after_block
    result = ""
    next
}

in_block && /^```$/ {
    in_block = 0
    after_block = 1
    ++blocks
    name = "block_" blocks
    if (code ~ /using namespace kestry::Hueline/) {
        next
    }
    print "#line " first_line " \"" FILENAME "\""
    if (code ~ /^int main/) {
        sub(/^int main/, "[[maybe_unused]] void " name, code)
        print code
    } else if (code !~ /;( *\/\/[^\n]*)?\n/) {
        print "void " name "()\n{"
        split(code, lines, "\n")
        for (i = 1; lines[i] != ""; ++i) {
            print "EXPECT_TRUE(" compiled(lines[i]) ");"
        }
        print "}"
        facts = facts name "();\n"
    } else if (code ~ /std::format/) {
        print "#if defined(__cpp_lib_format)\n[[maybe_unused]] void " name "()\n{\n" compiled(code) "}\n#endif"
    } else {
        print "[[maybe_unused]] void " name "()\n{\n" compiled(code) "}"
    }
    if (code ~ /assert\(/) {
        facts = facts name "();\n"
    }
    next
}

in_block {
    gsub("\002", "\\|")
    code = code $0 "\n"
    next
}

in_result && /^```$/ {
    in_result = 0
    after_block = 0
    if (result !~ /COLORTERM|TERM/) { # which depends on where it runs
        runs = runs "{\"" name "\", " name ", " literal(result) "},\n"
    }
    next
}

in_result {
    result = result $0 "\n"
    next
}

/./ && !/^[|]/ { after_block = 0; column = "" }

/^[|]/ && column == "" {
    column = $2 "|" $3
    depth_of_what = code_of($2)
    next
}

/^[|]--/ { next }

/^[|]/ {
    first = code_of($2)
    second = code_of($3)
    if (column == "written|bytes" && first ~ /^styled/) {
        check(first, second)
    } else if (column ~ /, depth\)`\|bytes$/) {
        expression = depth_of_what
        sub(/, depth\)$/, ", " first ")", expression)
        check(expression, second)
    } else if (column == "expression|value" && (second != "" && $3 ~ /^`[^`]*`$/ || $3 ~ /^[0-9]+$/)) {
        check(first, second != "" ? second : $3)
    } else if (column ~ /^text\|/) {
        check("escape_untrusted(" (first ~ /^"/ ? first : literal(first)) ")", second)
    } else if (column == "layout|the same bytes") {
        check("first_line(hexdump(std::as_bytes(std::span(\"Hello\\n\")), {.layout = " first "}))", second)
    }
}

END {
    print "void check_facts()\n{\n" facts "}"
    print "std::vector<Check> checks()\n{\nreturn {\n" checks "};\n}"
    print "std::vector<Run> runs()\n{\nreturn {\n" runs "};\n}"
    print "} // namespace hueline::test::kit_page"
}
