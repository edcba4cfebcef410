# The comments of the public headers for Doxygen; no line is added or taken, so that its messages name the right one.

# The first paragraph of a comment is what is said in brief. (The hold space has the line before.)
s/\/\/\/< /&\\brief /
x
/^ *\/\/\/( |$)/ {
    g
    b continues
}
g
s/^( *\/\/\/) ([^\\])/\1 \\brief \2/
: continues

# A friend is declared outside of its class too, and has its comment there.
s/^ *friend .*//

# An indented example stays as it is ...
/^\/\/\/ {5}[^ ]/b
/\/\/\// {
    # ... a fact, "/// Writes  nothing.", gets its name as a heading (\fact, common.doxyfile) ...
    s/^( *\/\/\/) (Writes|Gate|State|Stream|Units|Throws|Returns|Cost|Threads|Colours|Depth|Lines|Flushes|Nesting|Others|Ends|Fork|Faults)  +/\1 \\fact{\2} /
    s/^( *\/\/\/) {9}/\1 /
    # ... and bytes between quotes are code.
    s/"[^"]*"/`&`/g
    # Outside of them a percent sign is one too.
    s/(^| )%([A-Za-z])/\1\\%\2/g
}
# A function that has a second name by reference is shown as a function under both.
s/^inline constexpr std::ostream& \(&(\w+)\)\(std::ostream&\) = \w+;$/std::ostream\& \1(std::ostream\& os);/
