# Turns the snippets of the reference's pages into C++: a function for each, and a table of them.
#     awk -v interface=stream -f reference.awk docs/reference/html/stream.dox > reference_stream.cpp

BEGIN {
    print "#include \"kestry/hueline_" interface ".hpp\"\n"
    print "#include \"examples/reference.hpp\"\n"
    print "#include <cstdlib>\n#include <iostream>\n"
    print "namespace hueline::test {\n\nnamespace {\n"
    print "using namespace kestry" (interface == "stream" ? "::Hueline" : "") ";\n"
}

/^\/\*\* \\defgroup/ { group = $3 }
/^\\endcode$/ { print "}\n"; inside = 0 }
inside { print "    " $0 }
/^\\code\{\.cpp\}$/ {
    name = group "_" ++number[group]
    table = table "        {\"" name "\", " name "},\n"
    print "void " name "()\n{"
    inside = 1
}

END {
    print "} // namespace\n"
    print "std::vector<Snippet> " interface "_snippets()\n{\n    return {\n" table "    };\n}\n"
    print "} // namespace hueline::test"
}
