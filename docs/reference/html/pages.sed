# The pages of docs/ as pages of the reference: an anchor after the title, contents, and links to where things are here.
1{/^<!--/d}
s/^# Gallery$/& {#gallery}\n\n[TOC]/
s/\[(docs\/pictures\/)\]\(pictures\)/`\1`/
# Doxygen ends a fold at each paragraph, and begins another one.
s/^<details><summary>(.*)<\/summary>$/\\htmlonly[block]<details><summary>\1<\/summary>\\endhtmlonly/
s/^<\/details>$/\\htmlonly[block]<\/details>\\endhtmlonly/
s/\[([a-z_]+)\.cpp\]\(\.\.\/examples\/\1\.cpp\)/[\1.cpp](\1_8cpp-example.html)/g
1s/^# Surprises and recipes$/& {#recipes}\n\n[TOC]/
s/^# (Roles) on any ground$/& {#roles}\n\n[TOC]/
s/^# (Terminals)$/& {#terminals}\n\n[TOC]/
s/\[(roles|terminals)\.md\]\(\1\.md\)/\\ref \1/g
1s/^# Coming from elsewhere$/& {#coming_from}\n\n[TOC]/
s/\[recipes\.md\]\(recipes\.md\)/\\ref recipes/g
s/\[examples\/([a-z_]+)\.cpp\]\(\.\.\/examples\/\1\.cpp\)/[examples\/\1.cpp](\1_8cpp-example.html)/g
s/^```(cpp) (stream|classic|kit)$/```\1/
1s/^# The kit$/& {#kit}\n\n[TOC]/
s/^## (Policy|Styles|Lines|Text|Progress)$/& {#kit_\L\1}/
s/^## Hex views$/& {#kit_hex-views}/
s/^### What takes the answer$/& {#kit_what-takes-the-answer}/
s/^### The cursor$/& {#kit_the-cursor}/
s/^### Text from elsewhere$/& {#kit_text-from-elsewhere}/
s/\]\(#([a-z-]+)\)/](#kit_\1)/g
s/\]\(kit\.md(#[a-z-]+)?\)/](kit.html)/g
s/\]\(recipes\.md#[a-z-]+\)/](recipes.html)/g
s/\[(`<kestry\/kit\/[a-z]+\.hpp>`)\]\([^)]*\)/\1/g
s/`([^`|]*)\\\|([^`|]*)\\\|([^`|]*)`/<code>\1\\|\2\\|\3<\/code>/g
s/`([^`|]*)\\\|([^`|]*)`/<code>\1\\|\2<\/code>/g
