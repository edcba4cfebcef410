# The pages of docs/ as pages of the reference: an anchor behind the title, contents, and links to where things are here.
1{/^<!--/d}
s/^# Gallery$/& {#gallery}\n\n[TOC]/
s/\[pictures\/\]\(\.\.\/pictures\)/`pictures\/`/
s/\[([a-z_]+)\.cpp\]\(\.\.\/examples\/\1\.cpp\)/[\1.cpp](\1_8cpp-example.html)/g
1s/^# Surprises and recipes$/& {#recipes}\n\n[TOC]/
1s/^# Coming from elsewhere$/& {#coming_from}\n\n[TOC]/
s/\[recipes\.md\]\(recipes\.md\)/\\ref recipes/g
s/\[examples\/([a-z_]+)\.cpp\]\(\.\.\/examples\/\1\.cpp\)/[examples\/\1.cpp](\1_8cpp-example.html)/g
s/^```(cpp) (stream|strings)$/```\1/
