# Makes an older libhueline of tests/api/exports.txt, in assembly: everything that is exported, with its kind and its
# size, and nothing in it. What is linked with it has to run with the library as it is now.

function defined(symbol, kind, size)
{
    printf ".globl %s\n.type %s, %%%s\n.size %s, %d\n%s: .zero %d\n", symbol, symbol, kind, symbol, size, symbol, size
}

function data(symbol, size)
{
    print ".data\n.balign 16"
    defined(symbol, "object", size)
}

BEGIN {
    word = 8
    print ".section .note.GNU-stack, \"\", %progbits"
}

/^#/ { next }

# A vtable: two words, then the slots.
$1 ~ /^_ZTV/ { data($1, ($1 ~ /Exception/ ? 2 + 3 : 2 + 4) * word); next }

# Type information: two words, and one for the base.
$1 ~ /^_ZTI/ { data($1, ($1 ~ /7HuelineE$/ ? 2 : 3) * word); next }

# The name of a type, and a NUL.
$1 ~ /^_ZTS/ { data($1, length($1) - length("_ZTS") + 1); next }

# A switch.
$1 ~ /(_longDumps|_useColor|_noFrillsMode)E$/ { data($1, 1); next }

{
    print ".text"
    defined($1, "function", 16)
}
