"""Checks the reference: check_reference.py <its folder> <list of exported symbols> <top folder>

- Every exported symbol is declared in it, with the same parameters, and its name stands in a manual page.
- Every name that a header of the kit declares stands in the manual page of that header.
- A search for any of these names finds it.
- Every link in the HTML pages leads to a page and an anchor that are there.
Says what is wrong, one line for each finding, and ends with 1 if there is any.
"""

import html.parser
import pathlib
import re
import sys
import urllib.parse

import finish
import man_pages


# ---------------------------------------------------------------------------------------------
# Exported symbols
# ---------------------------------------------------------------------------------------------


def plain_type(text):
    """A type without the names of our scopes, const after it as in the list of symbols."""
    text = re.sub(r"\bkestry::(\w+::)*", "", text)
    text = re.sub(r"^const (\w+)", r"\1 const", text)
    return re.sub(r"\bunsigned const\b", "unsigned int const", text)


def symbol(name, parameters):
    return f"{name}({', '.join(plain_type(p) for p in parameters)})"


def declared(interfaces):
    """What the reference declares, as symbols; types by their names."""
    found = set()
    for interface in interfaces:
        for compound in interface.compounds.values():
            if compound.kind in ("class", "struct"):
                found.add(compound.full_name)
            for member in compound.members():
                if member.kind == "variable":
                    found.add(member.full_name)
                elif member.kind == "function":
                    found.add(symbol(member.full_name, [t for t, _ in member.parameters]))
    return found


def exported(path):
    """The symbols of the list, in the same form."""
    for line in path.read_text(encoding="utf-8").splitlines():
        if line.startswith("#") or not line.strip():
            continue
        name = line.split("  ", 1)[1]
        name = re.sub(r" \[.*\]$| const$", "", name)
        name = re.sub(r"^(vtable|typeinfo|typeinfo name) for ", "", name)
        function, parenthesis, parameters = name.partition("(")
        if parenthesis:
            yield symbol(function, [p for p in parameters.removesuffix(")").split(", ") if p])
        else:
            yield name


def name_to_look_for(exported_symbol):
    """What a reader looks for: the type for a destructor and for an insertion, else the last name."""
    function = exported_symbol.partition("(")[0]
    if function.endswith("operator<<"):
        return re.search(r"(\w+) const&\)$", exported_symbol).group(1)
    return function.rpartition("::")[2].lstrip("~")


def missing_symbols(reference, exports):
    interfaces = [man_pages.Interface(reference / "xml" / name, name) for name in man_pages.HEADERS]
    known = declared(interfaces)
    manual = "\n".join(p.read_text(encoding="utf-8") for p in sorted((reference / "man3").glob("*.3"))).replace("\\-", "-")
    manual = re.sub(r"\\f.", "", manual)
    symbols = set(exported(exports))
    if not symbols:
        yield f"{exports} lists no symbol"
    for name in sorted(symbols):
        if name not in known:
            yield f"{name} is exported and not in the reference"
        if not re.search(rf"\b{re.escape(name_to_look_for(name))}\b", manual):
            yield f"{name} is exported and in no manual page"


# ---------------------------------------------------------------------------------------------
# The kit, and the search
# ---------------------------------------------------------------------------------------------


def names_declared(header):
    """The names that a header declares outside of a class, as its text has them."""
    text = re.sub(r"^namespace (kestry::kit::)?detail \{.*?^\} // namespace (kestry::kit::)?detail$", "", header,
                  flags=re.DOTALL | re.MULTILINE)
    text = re.sub(r"//.*", "", text)
    patterns = [
        r"^(?:class|struct|enum class)(?: \[\[nodiscard\]\])? (\w+)\b(?!;|::)",
        r"^inline constexpr [\w:]+ (\w+)\b",
        r"^(?:requires\(.*\) )?(?:\[\[nodiscard\]\] )?(?:constexpr )?[\w:<>]+(?: const)?[&*]? [&*]?(\w+)\(",
    ]
    found = {name for pattern in patterns for name in re.findall(pattern, text, re.MULTILINE)}
    return found - {"operator", "requires", "defined"}


def names_of_the_kit(reference, headers):
    """Names of the kit that its manual pages lack; and all of them."""
    missing, names = [], set()
    for header in sorted(headers.glob("*.hpp")):
        declared_here = names_declared(header.read_text(encoding="utf-8"))
        page = (reference / "man3" / f"hueline_kit_{header.stem}.3").read_text(encoding="utf-8")
        listed = set(re.findall(r"\w+", page.partition(".SH NAME")[2].partition(".SH")[0]))
        missing += [f"{name} of {header.name} is not in its manual page" for name in sorted(declared_here - listed)]
        names |= declared_here
    if not names:
        missing.append(f"{headers} declares nothing")
    return missing, names


def not_found_by_search(html, names, part):
    """Names of a part that the search of the first page does not lead to."""
    found = {}
    for _, name, places in finish.entries(html / "search"):
        found.setdefault(name, []).extend(url for url, _ in places)
    for name in sorted(names):
        if not any(url.startswith(part) for url in found.get(name, [])):
            yield f"a search does not find {name} in {part}"


# ---------------------------------------------------------------------------------------------
# Links
# ---------------------------------------------------------------------------------------------


class Links(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.targets = []
        self.anchors = set()
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        self.anchors.update(v for k, v in attributes if k == "id" or (k == "name" and tag == "a"))
        for key in ("href", "src"):
            if values.get(key):
                self.targets.append(values[key])


def broken_links(folder):
    pages = {p.resolve(): Links(p) for p in sorted(folder.rglob("*.html"))}
    for path, page in pages.items():
        for target in page.targets:
            url = urllib.parse.urlsplit(target)
            if url.scheme:
                continue
            there = (path.parent / urllib.parse.unquote(url.path)).resolve() if url.path else path
            if not there.exists():
                yield f"{path.relative_to(folder.resolve())}: {target} does not exist"
            elif url.fragment and there in pages and url.fragment not in pages[there].anchors:
                yield f"{path.relative_to(folder.resolve())}: {target} has no such anchor"


def main(reference, exports, top):
    without_page, names = names_of_the_kit(reference, top / "kit" / "include" / "kestry" / "kit")
    of_library = {name_to_look_for(symbol) for symbol in exported(exports)}
    findings = [
        *missing_symbols(reference, exports),
        *without_page,
        *not_found_by_search(reference / "html", names, "kit/"),
        *not_found_by_search(reference / "html", of_library, ("stream/", "classic/")),
        *broken_links(reference / "html"),
    ]
    for finding in findings:
        print(finding, file=sys.stderr)
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main(*map(pathlib.Path, sys.argv[1:])))
