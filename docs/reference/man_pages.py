"""Writes the manual pages of section 3, one for each topic of the headers: man_pages.py <XML folder> <output folder>

Reads what Doxygen makes of the headers, in the folders stream, classic and kit of the XML folder. A topic is a group there; its text and its members in the order of the header become a page in man(7). The same input gives the same bytes.

Doxygen's own manual pages (GENERATE_MAN, 1.9.4) were tried instead: their NAME line has the group alone, so apropos finds no function, "\\x1b[8m" is shown as "b[8m", and each carries the day of its making.
"""

import pathlib
import re
import sys
import textwrap
import xml.etree.ElementTree as ElementTree

HERE = pathlib.Path(__file__).parent
HEADERS = {
    "stream": ("kestry/hueline_stream.hpp", "kestry::Hueline"),
    "classic": ("kestry/hueline_classic.hpp", "kestry"),
    "kit": ("kestry/kit/{}.hpp", "kestry::kit"), # a header for each topic, hueline_kit_text for example
}
LIBRARIES = {"kit": "Kit of the terminal colour library (libhueline\\-kit, \\-lhueline\\-kit)"}
PREFIXES = {"kit": "kit::"} # of names that others have too, such as truncate(2)
SYNOPSIS_WIDTH = 68


# ---------------------------------------------------------------------------------------------
# Text
# ---------------------------------------------------------------------------------------------


def escaped(text):
    """Text as roff has to see it: nothing in it is a request, and each character is the one that was meant."""
    text = text.replace("\\", "\\e")
    for character, name in {"'": "\\(aq", "`": "\\(ga", "~": "\\(ti", "^": "\\(ha"}.items():
        text = text.replace(character, name)
    return text


def code(text):
    return escaped(text).replace("-", "\\-")


def inline(node):
    """The text of a node, with its markup as font changes."""
    parts = [escaped(node.text or "")]
    for child in node:
        if child.tag == "computeroutput":
            plain = "".join(child.itertext())
            if plain.startswith('"') and len(plain) < 40:
                parts.append(code(plain).replace(" ", "\\~")) # bytes: each blank counts
            else:
                parts.append(f"\\fB{code(plain)}\\fR")
        elif child.tag in ("ref", "bold", "emphasis", "ulink"):
            parts.append(inline(child))
        elif child.tag not in BLOCKS:
            raise ValueError(f"no idea how <{child.tag}> looks in a manual page")
        parts.append(escaped(child.tail or ""))
    return "".join(parts)


def lines_of(text):
    """Filled text, each sentence on a line of its own."""
    text = " ".join(text.split())
    lines = []
    for sentence in re.split(r"(?<=[^.][.!?]) ", text):
        lines += textwrap.wrap(sentence, 80, break_long_words=False, break_on_hyphens=False)
    lines = ["\\&" + line if line[0] in ".'" else line for line in lines]
    return [line + "\\&" if line.endswith("..") else line for line in lines] # no end of a sentence


def listing(node):
    """The lines of an example."""
    return [listed_text(line).rstrip() for line in node.iter("codeline")]


def listed_text(node):
    """The text of a part of an example, where <sp/> is a blank."""
    blank = " " if node.tag == "sp" else ""
    return blank + (node.text or "") + "".join(listed_text(child) + (child.tail or "") for child in node)


def literal(text_lines):
    return [".EX", *(("\\&" if line[:1] in (".", "'") else "") + code(line) for line in text_lines), ".EE"]


def example(node):
    return [".RS 4", *literal(listing(node)), ".RE"]


def verbatim(node):
    return [".RS 4", *literal(textwrap.dedent(node.text).strip("\n").split("\n")), ".RE"]


def numbered(node):
    items = node.findall("listitem")
    return tagged([([f"{number}."], blocks(item)) for number, item in enumerate(items, 1)], 4, close=True)


def bullets(node):
    return tagged([(["\\(bu"], blocks(item)) for item in node.findall("listitem")], 2, close=True)


def tagged(entries, width, close=False):
    """A list: entries of a tag's lines, and the lines of what it is. A close one has no room between the entries."""
    result = []
    for number, (tag, text) in enumerate(entries):
        result.append(f".TP {width}")
        for further in tag[:-1]:
            result += [further, ".TQ"]
        result += [tag[-1], *text]
        if close and number == 0:
            result.append(".PD 0")
    return result + [".PD"] if close else result


BLOCKS = {
    "programlisting": example,
    "verbatim": verbatim,
    "itemizedlist": bullets,
    "orderedlist": numbered,
    "simplesect": None, # a fact: blocks() collects what stands together
    "para": None,
}


def paragraphs(node):
    """What a description says, piece by piece: ("text" | "block", lines) or ("fact", name, lines)."""
    for para in node.findall("para"):
        text = ElementTree.Element("para")
        text.text = para.text
        for child in para:
            if child.tag not in BLOCKS:
                text.append(child)
                continue
            yield "text", lines_of(inline(text))
            if child.tag == "simplesect":
                yield "fact", child.findtext("title"), blocks(child)
            else:
                yield "block", BLOCKS[child.tag](child)
            text = ElementTree.Element("para")
            text.text = child.tail
        yield "text", lines_of(inline(text))


def blocks(*nodes):
    """Descriptions: paragraphs, and then the facts as a list of their names."""
    result = []
    facts = []
    for node in nodes:
        for kind, *content in paragraphs(node) if node is not None else []:
            if not content[-1]:
                continue
            if kind == "fact":
                facts.append(([content[0]], content[1]))
            else:
                needs_room = result and not content[0][0].startswith(".TP")
                result += ([".PP"] if needs_room else []) + content[0]
    return result + (tagged(facts, 8, close=True) if facts else [])


def under_a_tag(lines, rest=()):
    """Lines as the text of an entry: its first paragraph, and then what is set in with it."""
    end = next((i for i, line in enumerate(lines) if re.match(r"\.(PP|TP|RS)\b", line)), len(lines))
    more = [*lines[end:], *rest]
    return [*lines[:end], *([".RS", *more, ".RE"] if more else [])]


# ---------------------------------------------------------------------------------------------
# What Doxygen found
# ---------------------------------------------------------------------------------------------


def tidy(type_text):
    """A type as the headers write it."""
    return re.sub(r"\s+([&*>])|(<)\s+", r"\1\2", " ".join(type_text.split()))


class Member:
    """A function, an enumeration or a field."""

    def __init__(self, node):
        self.node = node
        self.kind = node.get("kind")
        self.name = node.findtext("name")
        self.full_name = node.findtext("qualifiedname") or self.name # none in the global namespace
        self.line = int(node.find("location").get("line"))
        self.type = tidy("".join(node.find("type").itertext())) if node.find("type") is not None else ""
        self.brief = node.find("briefdescription")
        self.detail = node.find("detaileddescription")
        self.parameters = [
            (tidy("".join(p.find("type").itertext())), p.findtext("declname") or "") for p in node.findall("param")
        ]
        self.defaults = ["".join(d.itertext()) if (d := p.find("defval")) is not None else "" for p in node.findall("param")]
        self.template = [tidy(f"{''.join(p.find('type').itertext())} {p.findtext('declname') or ''}")
                         for p in node.findall("templateparamlist/param")]

    def is_documented(self):
        return any("".join(part.itertext()).strip() for part in (self.brief, self.detail))

    def is_for_the_kit(self):
        return "".join(self.brief.itertext()).strip().startswith("For the kit itself")

    def inserted(self):
        """The full name of the type that an operator inserts."""
        if self.name != "operator<<":
            return None
        last = re.sub(r"\bconst\b|[&\s]", "", self.parameters[-1][0])
        return self.full_name.removesuffix("operator<<") + last

    def is_manipulator(self):
        return self.type == "std::ostream&" and [t for t, _ in self.parameters] == ["std::ostream&"]

    def declaration(self, name):
        if self.kind == "enum":
            base = f" : {self.type}" if self.type else ""
            values = [
                v.findtext("name") + " " + v.findtext("initializer", "") for v in self.node.findall("enumvalue")
            ]
            return wrapped(f"enum class {name}{base} {{ ", [v.strip() for v in values], "\0};")
        before = "protected: " if self.node.get("prot") == "protected" else ""
        before += "static " if self.node.get("static") == "yes" else ""
        before += "virtual " if self.node.get("virt") != "non-virtual" and self.kind == "function" else ""
        before += "explicit " if self.node.get("explicit") == "yes" else ""
        before += self.type + " " if self.type else ""
        if self.kind == "variable":
            return [f"{before}{name};"]
        after = self.node.findtext("argsstring").rpartition(")")[2].replace("=default", " = default")
        after = after.replace("=0", " = 0").rstrip()
        declared = [" ".join(p).strip() + (f" = {d}" if d else "") for p, d in zip(self.parameters, self.defaults)]
        template = [f"template <{', '.join(self.template)}>"] if self.template else []
        return [*template, *wrapped(f"{before}{name}(", declared, f"){after};")]


def wrapped(head, items, tail):
    lines = textwrap.wrap(head + ", ".join(i.replace(" ", "\0") for i in items) + tail, SYNOPSIS_WIDTH,
                          subsequent_indent=" " * 4, break_long_words=False, break_on_hyphens=False)
    return [line.replace("\0", " ") for line in lines]


class Section:
    """Members that share facts (a \\name in the header), or stand alone."""

    def __init__(self, node):
        self.title = node.findtext("header")
        self.description = node.find("description")
        self.members = [m for m in map(Member, node.findall("memberdef")) if not m.is_for_the_kit()]


class Compound:
    """A class, a struct or a topic."""

    def __init__(self, node):
        self.id = node.get("id")
        self.kind = node.get("kind")
        self.full_name = node.findtext("compoundname")
        self.title = node.findtext("title")
        location = node.find("location")
        self.line = int(location.get("line", 0)) if location is not None else 0
        self.brief = node.find("briefdescription")
        self.detail = node.find("detaileddescription")
        self.sections = [Section(s) for s in node.findall("sectiondef")]
        self.inner = [i.get("refid") for i in node.findall("innerclass")]
        self.namespaces = [i.get("refid") for i in node.findall("innernamespace")]
        self.bases = [b.get("refid") for b in node.findall("basecompoundref") if b.get("refid")]
        self.base_names = [b.text for b in node.findall("basecompoundref")]
        self.name = self.full_name.rpartition("::")[2]

    def members(self):
        return sorted((m for s in self.sections for m in s.members), key=lambda m: m.line)

    def constructors(self):
        return [m for m in self.members() if m.name == self.name]

    def fields(self):
        return [m for m in self.members() if m.kind == "variable"]

    def is_value(self):
        """Whether it is made to be inserted: fields, and perhaps constructors."""
        return self.kind == "struct"


class Interface:
    """One of the two headers, or those of the kit."""

    def __init__(self, folder, name):
        self.header, self.scope = HEADERS[name]
        self.library = LIBRARIES.get(name, "Terminal colour library (libhueline, \\-lhueline)")
        self.prefix = PREFIXES.get(name, "")
        self.compounds = {}
        for path in sorted(folder.glob("*.xml")):
            for node in ElementTree.parse(path).iter("compounddef"):
                compound = Compound(node)
                self.compounds[compound.id] = compound
        self.topics = sorted((c for c in self.compounds.values() if c.kind == "group"), key=self.first_line)

    def first_line(self, topic):
        return min([m.line for m in topic.members()] + [self.compounds[i].line for i in topic.inner])

    def short(self, full_name):
        return full_name.removeprefix(self.scope + "::")

    def constructors(self, value):
        """Those of the type, or of what it is derived from."""
        found = value.constructors()
        for base in value.bases:
            found = found or self.compounds[base].constructors()
        return found


# ---------------------------------------------------------------------------------------------
# A page
# ---------------------------------------------------------------------------------------------


class Page:
    def __init__(self, interface, topic):
        self.interface = interface
        self.topic = topic
        self.classes = {i: interface.compounds[i] for i in topic.inner}
        self.explained = False # what a name alone stands for in the synopsis
        self.insertions = {m.inserted(): m for m in topic.members()} # by the full name of the type

    # The synopsis ----------------------------------------------------------------------------

    def synopsis(self):
        parts = sorted(
            [(c.line, self.class_synopsis, c) for c in self.classes.values()]
            + [(s.members[0].line, self.section_synopsis, s) for s in self.topic.sections],
            key=lambda part: part[0])
        lines = [f"using namespace {self.interface.scope};"]
        follows_value = False
        for _, write, what in parts:
            part = write(what)
            is_value = write == self.class_synopsis and (len(part) == 1 or not part[0].endswith("{"))
            if part and not (is_value and follows_value):
                lines.append("")
            lines += part
            follows_value = is_value if part else follows_value
        return lines

    def section_synopsis(self, section):
        names = [self.interface.short(m.full_name) for m in section.members if m.is_manipulator()]
        lines = []
        if names:
            if not self.explained:
                lines = ["// std::ostream& name(std::ostream& os), inserted as std::cout << name:"]
                self.explained = True
            lines += textwrap.wrap(" ".join(names), SYNOPSIS_WIDTH, break_on_hyphens=False)
        others = [m for m in section.members if not m.is_manipulator() and m.inserted() is None]
        lines += [""] if names and others else []
        return lines + [l for m in others for l in m.declaration(self.interface.short(m.full_name))]

    def class_synopsis(self, cls):
        name = self.interface.short(cls.full_name)
        if cls.is_value():
            fields = " ".join(f"{f.type} {f.name};" for f in cls.fields())
            made = self.interface.constructors(cls)
            if not made:
                one_line = f"struct {name} {{ {fields} }};"
                if len(one_line) <= SYNOPSIS_WIDTH:
                    return [one_line]
                return [f"struct {name} {{", *(f"    {f.type} {f.name};" for f in cls.fields()), "};"]
            return [line.removeprefix("explicit ") for m in made for line in m.declaration(name)]
        shown = [m for m in cls.members() if m.is_documented() or m.node.get("virt") == "pure-virtual"]
        if all(m.name.lstrip("~") == cls.name and not m.parameters for m in shown):
            return [f"class {name};"]
        bases = ", ".join(self.interface.short(b) for b in cls.base_names)
        name += f" : public {bases}" if bases else ""
        return [f"class {name} {{", *("    " + l for m in shown for l in m.declaration(m.name)), "};"]

    # The description -------------------------------------------------------------------------

    def tag(self, member, name):
        if member.kind == "enum":
            return f"enum class \\fB{code(name)}\\fR"
        if member.kind == "variable" or member.is_manipulator():
            return f"\\fB{code(name)}\\fR"
        parameters = ", ".join(f"{code(t)} \\fI{code(n)}\\fR" if n else code(t) for t, n in member.parameters)
        return f"\\fB{code(name)}\\fR({parameters})"

    def entry(self, member, name):
        values = [([f"\\fB{v.findtext('name')}\\fR"], blocks(v.find("briefdescription")))
                  for v in member.node.findall("enumvalue")]
        rest = tagged(values, widest(values), close=True) if values else []
        return [self.tag(member, name)], under_a_tag(blocks(member.brief, member.detail), rest)

    def value_entry(self, value):
        """A type that is made to be inserted, with what its insertion does."""
        name = self.interface.short(value.full_name)
        insertion = self.insertions.get(value.full_name)
        fields = value.fields()
        tags = [self.tag(m, name) for m in self.interface.constructors(value)]
        if not tags:
            tags = [f"\\fB{code(name)}\\fR{{" + ", ".join(f"\\fI{f.name}\\fR" for f in fields) + "}"]
        says_what = insertion is not None and "".join(insertion.brief.itertext()).strip()[:1].isupper()
        says_more = "".join(value.detail.itertext()).strip() != ""
        own = [] if says_what and not says_more else [value.brief, value.detail]
        text = blocks(*own)
        if insertion is not None:
            is_text = bool(text) and not any(line.startswith(".") for line in text)
            theirs = blocks(insertion.brief, insertion.detail)
            text += ([".br"] if is_text and not says_what else [".PP"] if text else []) + theirs
        listed = [([f"\\fI{f.name}\\fR"], blocks(f.brief, f.detail)) for f in fields if f.is_documented()]
        rest = tagged(listed, widest(listed), close=True) if listed else []
        return tags, under_a_tag(text, rest)

    def class_entries(self, cls):
        """A class: what it is, and its members, those that share facts under their own titles."""
        name = self.interface.short(cls.full_name)
        single = [m for s in cls.sections if s.title is None for m in s.members if m.is_documented()]
        single = [m for m in sorted(single, key=lambda m: m.line) if m.inserted() is None]
        members = [self.entry(m, m.name) for m in single]
        insertion = self.insertions.get(cls.full_name)
        if insertion:
            members.append(([f"std::cout << \\fB{code(name)}\\fR"],
                            under_a_tag(blocks(insertion.brief, insertion.detail))))
        rest = tagged(members, 8) if members else []
        entry = [f"class \\fB{code(name)}\\fR"], under_a_tag(blocks(cls.brief, cls.detail), rest)
        sections = []
        for section in cls.sections:
            elsewhere = all(not m.node.get("id").startswith(cls.id) for m in section.members)
            if section.title is not None and not elsewhere:
                sections.append((section, [self.entry(m, f"{cls.name}::{m.name}") for m in section.members]))
        return entry, sections

    def description(self):
        ungrouped = [] # (line, entry)
        titled = []    # (line, title, description, entries)
        placed = set()
        for section in self.topic.sections:
            entries = []
            for member in section.members:
                name = self.interface.short(member.full_name)
                target = next((c for c in self.classes.values() if c.full_name == member.inserted()), None)
                if target is None:
                    entries.append((member.line, self.entry(member, name)))
                elif target.is_value():
                    entries.append((member.line, self.value_entry(target)))
                    placed.add(target.id)
            if section.title is None:
                ungrouped += entries
            else:
                titled.append((section.members[0].line, section.title, section.description, [e for _, e in entries]))
        for cls in self.classes.values():
            if cls.id in placed:
                continue
            if cls.is_value():
                ungrouped.append((cls.line, self.value_entry(cls)))
                continue
            entry, sections = self.class_entries(cls)
            ungrouped.append((cls.line, entry))
            titled += [(s.members[0].line, s.title, s.description, entries) for s, entries in sections]

        namespaces = [self.interface.compounds[i] for i in self.topic.namespaces]
        lines = blocks(self.topic.brief, self.topic.detail)
        lines += entry_list([([f"namespace \\fB{self.interface.short(n.full_name)}\\fR"],
                              under_a_tag(blocks(n.brief, n.detail))) for n in namespaces])
        lines += entry_list([e for _, e in sorted(ungrouped, key=lambda item: item[0])])
        for _, title, description, entries in sorted(titled, key=lambda item: item[0]):
            lines += [f".SS {title}", *blocks(description), *entry_list(entries)]
        return lines

    # All of it -------------------------------------------------------------------------------

    def names(self):
        """What apropos(1) and whatis(1) find the page by: its own name, and each public name that it explains."""
        found = [self.topic.full_name]
        parts = [(c.line, c.full_name) for c in self.classes.values()]
        parts += [(m.line, m.full_name) for m in self.topic.members() if m.inserted() is None]
        parts += [(m.line, m.full_name) for c in self.classes.values() if not c.is_value()
                  for m in c.members() if m.is_documented() and m.inserted() is None]
        for _, full_name in sorted(parts):
            name = self.interface.short(full_name)
            if not re.search(r"~|operator|\b(\w+)::\1$", name) and name not in found:
                found.append(name)
        return found[:1] + [self.interface.prefix + name for name in found[1:]]

    def header(self):
        return self.interface.header.format(self.topic.full_name.rpartition("_")[2])

    def text(self, date, release, neighbours):
        title = self.topic.title
        others = [n for n in neighbours if n != self.topic.full_name]
        return "\n".join([
            '.\\" Written by docs/reference/man_pages.py from the comments of the header: change them, not this page.',
            f'.TH {self.topic.full_name.upper()} 3 "{date}" "{release}" "Hueline manual"',
            ".nr HY 0", # names stay whole
            ".ad l",
            ".SH NAME",
            ".nh",
            *textwrap.wrap(", ".join(self.names()), 100, break_on_hyphens=False),
            f"\\- {title[:1].lower() + title[1:]}",
            ".SH LIBRARY",
            self.interface.library,
            ".SH SYNOPSIS",
            *literal([f"#include <{self.header()}>", "", *self.synopsis()]),
            ".SH DESCRIPTION",
            *self.description(),
            ".SH SEE ALSO",
            *(f".BR {name} (3)," for name in others),
            ".BR hueline (7)",
        ]) + "\n"


def shown_width(tag):
    return len(re.sub(r"\\f.|\\&", "", tag).replace("\\-", "-"))


def widest(entries):
    return max(shown_width(tag) for tags, _ in entries for tag in tags) + 2


def entry_list(entries):
    """Short entries stand in two columns close together, others below their tags."""
    if not entries:
        return []
    is_short = all(len(tags) == 1 and len(" ".join(text)) < 160 and not any(t.startswith(".") for t in text)
                   for tags, text in entries)
    if is_short and widest(entries) <= 30:
        return tagged(entries, widest(entries), close=True)
    return tagged(entries, 8)


def main(source, target):
    heading = (HERE / "man" / "hueline.7").read_text(encoding="utf-8") # has the date and the release
    date, release = re.search(r'^\.TH \S+ 7 "([^"]*)" "([^"]*)"', heading, re.MULTILINE).groups()
    interfaces = [Interface(source / name, name) for name in HEADERS]
    names = sorted(t.full_name for i in interfaces for t in i.topics)
    target.mkdir(parents=True, exist_ok=True)
    for interface in interfaces:
        for topic in interface.topics:
            page = Page(interface, topic).text(date, release, names)
            (target / f"{topic.full_name}.3").write_text(page, encoding="utf-8")


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]))
