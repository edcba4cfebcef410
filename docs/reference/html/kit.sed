# The headers of the kit before comments.sed sees them; no line is added or taken. TOPIC is the topic of the header, which gets
# what its first comment says, and everything in its namespace.
1s/^\/\/\/ \\file$/\/\/\/ \\addtogroup TOPIC/
1,/^#ifndef/s/^\/\/\/ \\name (.*)/\/\/\/ \\par \1/
s/^namespace kestry::kit(::progress)? \{$/& \/** \\addtogroup TOPIC *\/ \/** \\{ *\//
s/^\} \/\/ namespace kestry::kit(::progress)?$/\/** \\} *\/ &/
# What Doxygen 1.9.4 takes for a function: a constraint.
s/^( *)requires [a-z].*$/\1/
s/^( *)requires\(.*\) (constexpr auto )/\1\2/
# A friend that is defined in its class is listed with its members.
s/^( *)friend (.*[^;])$/\1\2/
# In a comment: an option and a header stay as they are.
/\/\/\//{
    s/(^|[ `])--([a-z])/\1\\--\2/g
    s/<([a-z]+\.h)>/`<\1>`/g
}
# A table of keys stays as it is laid out.
s/^\/\/\/ \{(msg|rate|bar)\}  /\/\/\/     {\1}  /
