"""Runs the library in every terminal that is there, and writes docs/terminals.md: terminals.py <probe> <docs>

With names of terminals after that, only these are run, what was found is printed, and nothing is written.
"""

import datetime
import pathlib
import platform
import shutil
import subprocess
import sys
import textwrap

import experiments
import screens

FONT = "DejaVu Sans Mono"
XTERM = ["xterm", "-fa", FONT, "-fs", "11", "-geometry", "80x24", "-e"]

# Name, package, command up to the probe, and for a Wayland terminal the size of its compositor's screen. Each has the
# settings of a user who has set nothing, but for the size of the window, bars that a kiosk has no room for, and a font.
TERMINALS = [
    ("xterm", "xterm", XTERM, None),
    ("VTE", "xfce4-terminal", ["xfce4-terminal", "--disable-server", "--hide-menubar", "--hide-scrollbar",
                               "--geometry=80x24", "-x"], None),
    ("Konsole", "konsole", ["konsole", "--hide-menubar", "--hide-tabbar", "-p", "TerminalColumns=80",
                            "-p", "TerminalRows=24", "-p", f"Font={FONT},11", "-e"], None),
    ("kitty", "kitty", ["kitty", "-o", "remember_window_size=no", "-o", "initial_window_width=80c",
                        "-o", "initial_window_height=24c"], None),
    ("Alacritty", "alacritty", ["alacritty", "-o", "window.dimensions.columns=80",
                                "-o", "window.dimensions.lines=24", "-e"], None),
    ("foot", "foot", ["foot"], (567, 350)),
    ("urxvt", "rxvt-unicode", ["urxvt", "-fn", f"xft:{FONT}:size=11", "-geometry", "80x24", "-e"], None),
    ("mlterm", "mlterm", ["mlterm", "-g", "80x24", "-e"], None),
    ("st", "stterm", ["st", "-f", f"{FONT}:size=11", "-g", "80x24", "-e"], None),
    ("tmux", "tmux", [*XTERM, "tmux -f /dev/null new-session '{probe}' ';' set -g status off"], None),
    ("screen", "screen", [*XTERM, "screen", "-c", "/dev/null"], None),
]

ATTRIBUTES = [
    ("`bold`", r"`\e[1m`", "bold"),
    ("`dark`", r"`\e[2m`", "dark"),
    ("`italic`", r"`\e[3m`", "italic"),
    ("`underline`", r"`\e[4m`", "underline"),
    ("`blink`", r"`\e[5m`", "blink"),
    ("`reverse`", r"`\e[7m`", "reverse"),
    ("`concealed`", r"`\e[8m`", "concealed"),
    ("`crossed`", r"`\e[9m`", "crossed"),
    ("`normal` ends them all", r"`\e[00m`", "ends"),
]
COLORS = [
    ("`grey` ... `white`, eight that differ", r"`\e[30m` ... `\e[37m`", "foreground"),
    ("`on_grey` ... `on_white`, eight that differ", r"`\e[40m` ... `\e[47m`", "background"),
    ("bold text has the bright colour", r"`\e[1m\e[31m`", "bold_brightens"),
    ("`csi::sgr{90}` ... `csi::sgr{97}`", r"`\e[90m` ... `\e[97m`", "bright_count"),
    ("`color{208}`", r"`\e[38;5;208m`", "palette_ink"),
    ("`on_color{16}` ... `on_color{255}`, the 240 of xterm", r"`\e[48;5;16m` ...", "palette_exact"),
    ("`rgb{250, 120, 10}`", r"`\e[38;2;250;120;10m`", "true_ink"),
    ("`on_rgb`, 256 of them, exactly", r"`\e[48;2;0;0;255m` ...", "true"),
]
MOVES = [
    ("`csi::cuu{3}`", r"`\e[3A`", "cuu 3"),
    ("`csi::cud{3}`", r"`\e[3B`", "cud 3"),
    ("`csi::cuf{5}`", r"`\e[5C`", "cuf 5"),
    ("`csi::cub{5}`", r"`\e[5D`", "cub 5"),
    ("`csi::cnl{2}`", r"`\e[2E`", "cnl 2"),
    ("`csi::cpl{2}`", r"`\e[2F`", "cpl 2"),
    ("`csi::cha{7}`", r"`\e[7G`", "cha 7"),
    ("`csi::cup{3, 7}`", r"`\e[3;7H`", "cup 3 7"),
    ("`csi::hvp{4, 9}`", r"`\e[4;9f`", "hvp 4 9"),
    ("`csi::cup{999, 999}`: the last corner", r"`\e[999;999H`", "cup 999 999"),
    ("`csi::cuu{0}`: moves by 1", r"`\e[0A`", "cuu 0"),
    ("`csi::cr`", r"`\r`", "cr"),
    ("`csi::lf`: down, in the same column", r"`\n`", "lf"),
    ("`csi::scp` ... `csi::rcp`", r"`\e[s` ... `\e[u`", "scp"),
]
CURSOR = [
    ("`csi::hide`", r"`\e[25i`", "hide"),
    ("`hide_cursor` of the kit", r"`\e[?25l`", "hide_cursor"),
    ("`csi::show`, after that", r"`\e[25h`", "show"),
    ("`normal`, after that", r"`\e[00m\e[25h`", "normal"),
    ("`show_cursor` of the kit", r"`\e[?25h`", "show_cursor"),
]
ERASING = [
    ("`csi::ed{0}`", r"`\e[0J`", "ed 0"),
    ("`csi::ed{1}`", r"`\e[1J`", "ed 1"),
    ("`csi::ed{2}`, `csi::cls`", r"`\e[2J`", "ed 2"),
    ("`csi::el{0}`", r"`\e[0K`", "el 0"),
    ("`csi::el{1}`", r"`\e[1K`", "el 1"),
    ("`csi::el{2}`", r"`\e[2K`", "el 2"),
    ("erased cells have the background colour", r"`\e[41m\e[2K`", "erases_in_color"),
    ("`csi::su{2}`", r"`\e[2S`", "su 2"),
    ("`csi::sd{2}`", r"`\e[2T`", "sd 2"),
]


# ---------------------------------------------------------------------------------------------
# Running
# ---------------------------------------------------------------------------------------------


def say(text):
    print(text, file=sys.stderr, flush=True)


def run(name, command, size, probe, images):
    terminal = screens.Terminal(command, probe, size)
    try:
        found = experiments.all_of(terminal)
        rows = experiments.sample(terminal)
        terminal.settle()
        if images is not None:
            terminal.save(images / f"{name.lower()}.png", rows)
        return found
    finally:
        terminal.close()


def run_all(probe, images, wanted):
    """What was found, by name, and what could not be run, by name, with the reason."""
    found, missing = {}, {}
    for name, package, command, size in TERMINALS:
        if wanted and name not in wanted:
            continue
        programs = {"tmux": "tmux", "screen": "screen"}  # in an xterm
        program = programs.get(name, command[0])
        if shutil.which(program) is None:
            missing[name] = f"`{program}` is not installed"
            continue
        say(f"{name} ({version(package)}), some 25 seconds")
        try:
            found[name] = run(name, command, size, probe, images)
        except (OSError, RuntimeError, EOFError) as e:
            missing[name] = f"it did not come up: {type(e).__name__}"
            say(f"{name} could not be run: {e}")
    return found, missing


def version(package):
    run = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", package], capture_output=True, text=True, check=False)
    return run.stdout.strip() or "unknown"


# ---------------------------------------------------------------------------------------------
# The page
# ---------------------------------------------------------------------------------------------


def table(heading, lines):
    return ["| " + " | ".join(heading) + " |", "|" + "---|" * len(heading),
            *("| " + " | ".join(line) + " |" for line in lines), ""]


def widths(found):
    """The columns of each text, those that are not the kit's in bold."""
    def shown(name, terminal):
        width, kit = found[terminal][name], found[terminal]["kit"][name]
        return width if width == kit else f"**{width}**"

    kit = next(iter(found.values()))["kit"]
    return table(["", "kit", *found],
                 [[name, kit[name], *(shown(name, terminal) for terminal in found)] for name in experiments.TEXTS])


def results(rows, found):
    def shown(word):
        return word if word in ("yes", "seen", "hidden") else f"**{word}**"

    return table(["", "bytes", *found],
                 [[name, sent, *(shown(found[t][key]) for t in found)] for name, sent, key in rows])


def those(found, key, word):
    """The terminals where something was found, as a phrase."""
    names = [name for name in found if found[name][key] == word]
    others = [name for name in found if found[name][key] != word]
    if not others:
        return f"all {len(found)}"
    return "none" if not names else f"all but {listed(others)}" if len(others) <= 4 else listed(names)


def listed(names):
    return ", ".join(names[:-1]) + (" and " if len(names) > 1 else "") + names[-1]


def bullet(text):
    return textwrap.wrap(text, 118, initial_indent="- ", subsequent_indent="  ", break_on_hyphens=False)


def hexadecimal(color):
    return "#" + "".join(f"{c:02x}" for c in color)


def code(text):
    return "none" if text == "none" else f"`{text}`"


def page(found, missing):
    os_name = platform.freedesktop_os_release()["PRETTY_NAME"]
    packages = {name: package for name, package, _, _ in TERMINALS}
    lines = [
        "<!-- Written by script/terminals; change docs/terminals/terminals.py, not this page. -->",
        "# Terminals",
        "",
        "What each sequence of the library does in real terminals: `script/terminals` starts each of them on a virtual X server,",
        "runs a program in it that writes with the library (`docs/terminals/probe.cpp`), asks the terminal where the cursor is, and",
        "reads everything else off the pixels of its window. Nothing here was taken from a manual, but for the Linux console, which",
        "has no window.",
        "",
        *textwrap.wrap(f"Run on {datetime.date.today().isoformat()}, {os_name}, with its packages and the settings of a user"
                       f" who has set nothing but the font and a window of {screens.COLS} x {screens.ROWS} cells. tmux and screen"
                       " ran in that xterm.", 118),
        "",
        "What to take from it:",
        "",
        *bullet(f"`csi::hide` hides the cursor in {those(found, 'hide', 'hidden')} of them, and writes no text in"
                f" {those(found, 'hide_else', 'nothing')}. `csi::show`, which `normal` and `reset` write too, leaves a hidden"
                f" cursor hidden in {those(found, 'show', 'hidden')}. To hide the cursor, write `hide_cursor` and"
                " `show_cursor` of the kit, or the functions of these names in the string interface."),
        *bullet(f"`csi::scp` and `csi::rcp` work in {those(found, 'scp', 'yes')}."),
        *bullet(f"The answer to `csi::dsr` at row 5, column 9 is `\\e[5;9R` in {those(found, 'dsr', chr(92) + 'e[5;9R')}."),
        *bullet(f"24-bit colours are exact in {those(found, 'true', 'yes')}. The colours 16 to 255 of the palette are those of"
                f" xterm in {those(found, 'palette_exact', 'yes')}."),
        *bullet(f"Bold text is drawn in the bright colour by {those(found, 'bold_brightens', 'yes')}: there, `bold` and `thin`"
                " decide about the colour too."),
        *bullet(f"Concealed text cannot be seen in {those(found, 'concealed', 'yes')}; blinking text blinks in"
                f" {those(found, 'blink', 'yes')}. Say nothing with them alone."),
        "",
        "## The terminals",
        "",
        "DECRQSS asks for the rendition after `thin`, `underline` and `red`. Mode 2026 holds a frame back until it is whole: the kit's",
        "bars use it; 1 and 2 say that the terminal can, 0 and 4 that it cannot.",
        "",
    ]
    lines += table(
        ["terminal", "package", "`TERM`", "`COLORTERM`", "DSR at 5;9", "DECRQSS", "mode 2026"],
        [[name, f"{packages[name]} {version(packages[name])}", f["environment"][0], f["environment"][1], code(f["dsr"]),
          code(f["decrqss"]), code(f["synchronized"])] for name, f in found.items()])
    for name, why in missing.items():
        lines += [f"{name} was not run: {why}.", ""]
    lines += [
        "## Attributes",
        "",
        "A word in place of yes says what is seen instead; no means that the text looks as before. Not black text: coloured text",
        "has other ink, black text has not. With later output only: the text goes and comes when something else is written, not by",
        "itself. Not after concealed: the word right after concealed text stays hidden, up to the next blank.",
        "",
        *results(ATTRIBUTES, found),
        "## Colours",
        "",
        *results(COLORS, found),
        "The named colours are each terminal's own; [roles.md](roles.md) tells what that means for reading:",
        "",
        *table(["terminal", "text", "ground", *(str(i) for i in range(8)), *(f"bright {i}" for i in range(8))],
               [[name, *(hexadecimal(c) for c in (*f["default"], *f["named"], *f["bright"]))] for name, f in found.items()]),
        "## The cursor",
        "",
        "Moves start at row 10, column 20. Where the cursor did not go where it should, the cell says where it went.",
        "",
        *results(MOVES, found),
        "Whether it can be seen, each step after the one above it:",
        "",
        *results(CURSOR, found),
        "## Erasing and scrolling",
        "",
        *results(ERASING, found),
        "## Columns",
        "",
        "How far a text moves the cursor, and what `display_width` of the kit says; where the two differ, a table that is padded by",
        "the kit is out of line in that terminal.",
        "",
        *widths(found),
        "## The Linux console",
        "",
        *textwrap.wrap("It was not run: it needs a machine with a screen. What its manual page says of these sequences,"
                       f" `console_codes(4)` of Debian's package manpages ({version('manpages')}):", 118),
        "",
        *bullet("It lists every control of `csi` but `csi::su`, `csi::sd`, `csi::show` and `csi::hide` (`S`, `T`, `25h` and `25i`)."
                " It lists `\\e[?25h` and `\\e[?25l`."),
        *bullet("Of the attributes it lists bold, half-bright, italic, underscore, blink and reverse; half-bright, italic and"
                " underscore are \"simulated with color on a color display\". It lists neither 8 nor 9, concealed and crossed"
                " out."),
        *bullet("256 colours and 24-bit colours are \"shoehorned into 16 basic colors\" as text and into 8 as background; 90 to"
                " 97 are bright text."),
        *bullet("The answer to `\\e[6n` is `\\e[y;xR`."),
        "",
        "## Screenshots",
        "",
        "The attributes; the eight colours `thin`, `bold` and `dark`; `csi::sgr` 90 to 97; the eight backgrounds; every third",
        "colour of the palette; a band of 24-bit colours.",
        "",
    ]
    for name in found:
        lines += [f"**{name}**", "", f"![Attributes and colours in {name}](images/terminals/{name.lower()}.png)", ""]
    return "\n".join(lines).rstrip("\n") + "\n"


def palettes(found):
    """What roles.md reads: a line for each terminal, with tabs between the name, text, ground and sixteen colours."""
    lines = ["# Written by script/terminals: terminal, whether bold text is bright, its text and ground, colours 0 to 15"]
    in_another = [name for name, _, command, _ in TERMINALS if command is not XTERM and command[0] == "xterm"]
    for name, f in found.items():
        if name not in in_another:
            lines.append("\t".join([name, f["bold_brightens"], *(hexadecimal(c) for c in (*f["default"], *f["named"], *f["bright"]))]))
    return "\n".join(lines) + "\n"


def main(probe, docs, *wanted):
    docs = pathlib.Path(docs)
    images = None if wanted else docs / "images" / "terminals"
    if images is not None:
        images.mkdir(parents=True, exist_ok=True)
    found, missing = run_all(pathlib.Path(probe).resolve(), images, wanted)
    if wanted:
        for name, f in found.items():
            print(name, *(f"    {key}: {value}" for key, value in f.items()), sep="\n")
        return 0 if not missing else 1
    (docs / "terminals.md").write_text(page(found, missing), encoding="utf-8")
    (docs / "terminals" / "palettes.tsv").write_text(palettes(found), encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
