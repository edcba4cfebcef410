"""Finishes the pages that Doxygen has written: finish.py <HTML folder>

- One search for all parts. Doxygen runs once for each header, since two have a scope of the same name, and each run has an
  index of its own: in the folder search, a file for each first character.
- Names as the examples write them, csi::show and not kestry::Hueline::csi::show, where members are listed.
"""

import ast
import pathlib
import re
import sys

SCOPES = {"stream": "kestry::Hueline::", "classic": "kestry::", "kit": "kestry::kit::"}
# The folder of each part, and what the search says of a name without a scope.
PARTS = {"": "page", "stream/": "stream interface", "classic/": "string interface", "kit/": "the kit"}


def entries(folder):
    """What an index has: (key without its number, name, [(address from the folder above, scope)])."""
    for path in sorted(folder.glob("all_*.js")):
        listed = re.search(r"searchData=\s*(\[.*\])\s*;", path.read_text(encoding="utf-8"), re.DOTALL)
        for key, (name, *places) in ast.literal_eval(listed.group(1)):
            yield key.rpartition("_")[0], name, [(url.removeprefix("../"), scope) for url, _, scope in places]


def united(html):
    """The entries of all parts, those of one name together, with addresses from the top."""
    found = {}
    for part, title in PARTS.items():
        for key, name, places in entries(html / part / "search"):
            known = found.setdefault((key, name), [])
            known += [(part + url, scope or title) for url, scope in places]
    return found


def quoted(text):
    return "'" + text.replace("\\", "\\\\").replace("'", "\\'") + "'"


def write(folder, found, up):
    """Writes the index of a part, from whose search folder the top is up."""
    page = (folder / "all_0.html").read_text(encoding="utf-8")
    for old in [*folder.glob("*_*.js"), *folder.glob("*_*.html")]:
        old.unlink()
    characters = sorted({key[0] for key, _ in found})
    for number, character in enumerate(characters):
        lines = []
        for (key, name), places in sorted(found.items()):
            if key[0] == character:
                listed = ",".join(f"[{quoted(up + url)},1,{quoted(scope)}]" for url, scope in places)
                lines.append(f"  [{quoted(f'{key}_{len(lines)}')},[{quoted(name)},{listed}]]")
        (folder / f"all_{number:x}.js").write_text("var searchData=\n[\n" + ",\n".join(lines) + "\n];\n", encoding="utf-8")
        (folder / f"all_{number:x}.html").write_text(page.replace("all_0.js", f"all_{number:x}.js"), encoding="utf-8")
    (folder / "searchdata.js").write_text(
        f'var indexSectionsWithContent =\n{{\n  0: "{"".join(characters)}"\n}};\n\n'
        'var indexSectionNames =\n{\n  0: "all"\n};\n\nvar indexSectionLabels =\n{\n  0: "All"\n};\n', encoding="utf-8")


def shortened(page, scope):
    """A page whose tables of members have names without the scope."""
    return re.sub(rf'(class="(?:memItemRight|memname|memTemplItemRight)"[^\n]*?[> ;]){scope}(?=\w)', r"\1", page)


def main(html):
    for part, scope in SCOPES.items():
        for path in (html / part).glob("*.html"):
            path.write_text(shortened(path.read_text(encoding="utf-8"), scope), encoding="utf-8")
    found = united(html)
    for part in PARTS:
        write(html / part / "search", found, "../../" if part else "../")


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]))
