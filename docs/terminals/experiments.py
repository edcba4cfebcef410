"""What is done in every terminal, and what is found: each experiment writes with the library, looks, and says in a word."""

import time

import screens

SAMPLE = "Hamb Hamb"  # with a blank, through which a line goes on
WIDTH = len(SAMPLE)


def near(a, b, most=24):
    return screens.distance(a, b) <= most


# ---------------------------------------------------------------------------------------------
# Attributes
# ---------------------------------------------------------------------------------------------


def is_bold(plain, look):
    return look.weight > 1.06 * plain.weight or not near(plain.ink, look.ink)


def bold_word(plain, look):
    heavier, other = look.weight > 1.06 * plain.weight, not near(plain.ink, look.ink)
    return "yes, and brighter" if heavier and other else "yes" if heavier else "another colour"


def is_faint(plain, look):
    return is_other_ink(plain, look) and \
        screens.distance(look.ink, look.ground) < 0.92 * screens.distance(plain.ink, plain.ground)


def is_hardly_faint(plain, look):
    return is_other_ink(plain, look) and \
        screens.distance(look.ink, look.ground) < screens.distance(plain.ink, plain.ground)


def is_other_ink(plain, look):
    return near(plain.ground, look.ground) and not near(plain.ink, look.ink, 12) and not look.empty


def is_same(plain, look):
    return near(plain.ground, look.ground) and near(plain.ink, look.ink) and look.lines == plain.lines and \
        abs(look.weight - plain.weight) < 0.03 * plain.weight


def is_reverse(plain, look):
    return near(look.ground, plain.ink, 60) and near(look.ink, plain.ground, 60)


def is_slanted(plain, look):
    return near(plain.ink, look.ink) and near(plain.ground, look.ground) and not look.lines and \
        look.shape != plain.shape and look.weight < 1.3 * plain.weight


ATTRIBUTES = {
    "bold": is_bold,
    "dark": is_faint,
    "italic": is_slanted,
    "underline": lambda plain, look: look.lines == {"under"},
    "reverse": is_reverse,
    "concealed": lambda plain, look: look.empty,
    "crossed": lambda plain, look: look.lines == {"through"},
}


def instead(plain, look):
    """What an attribute looks like that does not look as it should."""
    if is_same(plain, look):
        return "no"
    if is_reverse(plain, look):
        return "reversed"
    if look.lines:
        return "a line"
    if is_faint(plain, look):
        return "fainter"
    if is_hardly_faint(plain, look):
        return "hardly"
    if is_other_ink(plain, look):
        return "another colour"
    return "otherwise"


def blinking(terminal, row):
    if terminal.changes(row, 4, WIDTH):
        return "yes"
    for i in range(12):
        before = terminal.look(row, 4, WIDTH)
        time.sleep(0.07 * i)  # or each look might come at the same time of a turn
        terminal.do("hide_cursor" if i % 2 else "show_cursor")
        if terminal.look(row, 4, WIDTH).empty != before.empty:
            return "with later output only"
    return None


def attributes(terminal):
    names = [*ATTRIBUTES, "blink"]
    rows = {name: 2 * i + 2 for i, name in enumerate(names)}
    terminal.do("hide_cursor", "reset", "thin", "cls")
    for row in rows.values():
        terminal.do(f"cup {row} 4", f"text {SAMPLE}{SAMPLE}")
    picture = terminal.settle()
    plain = {name: terminal.look(row, 4, WIDTH, picture) for name, row in rows.items()}
    after = 4 + WIDTH + 1, WIDTH - 1  # without the cell that a slanted letter reaches into
    plain_after = {name: terminal.look(row, *after, picture) for name, row in rows.items()}

    terminal.do("cls")
    for name, row in rows.items():
        terminal.do(f"cup {row} 4", "reset", "thin", name, f"text {SAMPLE}", "normal", f"text {SAMPLE}")
    found = {"blink": blinking(terminal, rows["blink"])}
    picture = terminal.settle()
    for name, row in rows.items():
        look = terminal.look(row, 4, WIDTH, picture)
        if name == "blink":
            found[name] = found[name] or instead(plain[name], look)
        elif name == "bold":
            found[name] = bold_word(plain[name], look) if is_bold(plain[name], look) else "no"
        else:
            found[name] = "yes" if ATTRIBUTES[name](plain[name], look) else instead(plain[name], look)
    last = [name for name, row in rows.items()
            if not is_same(plain_after[name], terminal.look(row, *after, picture))]
    found["ends"] = "not after " + ", ".join(last) if last else "yes"

    # Faint ink may be computed from the colour: black stays black.
    if found["dark"] == "no":
        terminal.do("cls", "cup 2 4", "reset", "thin", "next 2", f"text {SAMPLE}")
        terminal.do("cup 4 4", "dark", f"text {SAMPLE}", "reset")
        picture = terminal.settle()
        if is_other_ink(terminal.look(2, 4, WIDTH, picture), terminal.look(4, 4, WIDTH, picture)):
            found["dark"] = "not black text"
    terminal.do("reset", "cls")
    return found


# ---------------------------------------------------------------------------------------------
# Colours
# ---------------------------------------------------------------------------------------------


def cube(number):
    """A colour of the palette from 16 on, as xterm has it."""
    if number >= 232:
        return (8 + 10 * (number - 232),) * 3
    steps = [0, 95, 135, 175, 215, 255]
    return tuple(steps[(number - 16) // n % 6] for n in (36, 6, 1))


def all_eight(seen):
    different = len(set(seen))
    return "yes" if different == 8 else f"{different} differ"


def colors(terminal):
    terminal.do("hide_cursor", "reset", "thin", "cls", "cup 1 1", f"text {SAMPLE}")
    for i in range(8):
        terminal.do(f"cup {2 + i} 1", "reset", "thin", f"next {i}", "text HHHH")
        terminal.do(f"cup {2 + i} 11", "bold", "text HHHH")
        terminal.do(f"cup {2 + i} 21", "reset", "thin", f"on_next {i}", "text     ")
        terminal.do(f"cup {2 + i} 31", "reset", "thin", "normal", f"sgr {90 + i}", "text HHHH")
    terminal.do("reset")
    picture = terminal.settle()
    default = terminal.look(1, 1, WIDTH, picture)
    ink = [terminal.look(2 + i, 1, 4, picture).ink for i in range(8)]
    bold = [terminal.look(2 + i, 11, 4, picture).ink for i in range(8)]
    ground = [terminal.middle(2 + i, 21, 4, picture) for i in range(8)]
    bright = [terminal.look(2 + i, 31, 4, picture).ink for i in range(8)]
    found = {
        "default": (default.ink, default.ground),
        "named": ground,
        "bright": bright,
        "foreground": all_eight(ink),
        "background": all_eight(ground),
        "bright_count": all_eight(bright),
        "bold_brightens": "yes" if sum(not near(a, b) for a, b in zip(ink, bold)) >= 6 else "no",
    }

    terminal.do("cls")
    for i in range(256):
        terminal.do(f"cup {1 + i // 32} {1 + i % 32 * 2}", f"on_color {i}", "text   ")
        terminal.do(f"cup {11 + i // 32} {1 + i % 32 * 2}", f"on_rgb {i} {i * 7 % 256} {255 - i}", "text   ")
    terminal.do("reset")
    picture = terminal.settle()
    palette = [terminal.middle(1 + i // 32, 1 + i % 32 * 2, 2, picture) for i in range(256)]
    exact = sum(palette[i] == cube(i) for i in range(16, 256))
    found["palette_exact"] = "yes" if exact == 240 else f"{exact} exactly"
    true = [terminal.middle(11 + i // 32, 1 + i % 32 * 2, 2, picture) for i in range(256)]
    exact = sum(true[i] == (i, i * 7 % 256, 255 - i) for i in range(256))
    found["true"] = "yes" if exact == 256 else "some" if exact > 0 else "none"  # which ones differs from run to run

    terminal.do("cls")
    for row, command in ((1, "color 208"), (2, "rgb 250 120 10")):
        terminal.do(f"cup {row} 1", "thin", command, "text HHHH", "reset")
    picture = terminal.settle()
    found["palette_ink"] = "yes" if near(terminal.look(1, 1, 4, picture).ink, (255, 135, 0), 40) else "no"
    found["true_ink"] = "yes" if near(terminal.look(2, 1, 4, picture).ink, (250, 120, 10), 10) else "no"
    terminal.do("cls")
    return found


# ---------------------------------------------------------------------------------------------
# The cursor
# ---------------------------------------------------------------------------------------------

MOVES = {  # from row 10, column 20
    "cuu 3": (7, 20),
    "cud 3": (13, 20),
    "cuf 5": (10, 25),
    "cub 5": (10, 15),
    "cnl 2": (12, 1),
    "cpl 2": (8, 1),
    "cha 7": (10, 7),
    "cup 3 7": (3, 7),
    "hvp 4 9": (4, 9),
    "cr": (10, 1),
    "lf": (11, 20),
    "cup 999 999": (screens.ROWS, screens.COLS),
    "cuu 0": (9, 20),
}


def moves(terminal):
    found = {}
    for command, there in MOVES.items():
        terminal.do("reset", "cls", "cup 10 20", command)
        at = terminal.position()
        found[command] = "yes" if at == there else "stays" if at == (10, 20) else f"{at[0]};{at[1]}"
    terminal.do("cup 10 20", "scp", "cup 3 7", "rcp")
    at = terminal.position()
    found["scp"] = "yes" if at == (10, 20) else "stays" if at == (3, 7) else f"{at[0]};{at[1]}"
    return found


def cursor(terminal):
    """Each step is seen on the one before it."""
    steps = {
        "begin": ["show_cursor"],
        "hide": ["hide"],
        "hide_cursor": ["hide_cursor"],
        "show": ["show"],
        "normal": ["normal"],
        "show_cursor": ["show_cursor"],
    }
    found = {}
    terminal.do("reset", "cls")
    for name, commands in steps.items():
        terminal.do("cup 12 30", *commands)
        found[name] = "seen" if terminal.sees_cursor(12, 30) else "hidden"
    # Does the sequence print anything, or answer?
    terminal.do("hide_cursor", "cup 5 10")
    answer = terminal.answer("hide")
    stays = terminal.position() == (5, 10) and terminal.look(5, 10, 10).empty
    found["hide_else"] = "nothing" if not answer and stays else repr(answer) if answer else "prints"
    terminal.do("cup 5 9")
    found["dsr"] = readable(terminal.answer("dsr"))
    terminal.do("thin", "underline", "next 1")
    found["decrqss"] = readable(terminal.answer("raw 1b5024716d1b5c"))
    terminal.do("reset")
    found["synchronized"] = readable(terminal.answer("raw 1b5b3f323032362470"))
    terminal.do("show_cursor", "cls")
    return found


def readable(answer):
    text = "".join(chr(b) if 0x20 <= b < 0x7f else "\\e" if b == 0x1b else f"\\x{b:02x}" for b in answer)
    return text or "none"


# ---------------------------------------------------------------------------------------------
# Erasing and scrolling
# ---------------------------------------------------------------------------------------------

POINTS = [(9, 10), (9, 60), (10, 10), (10, 39), (10, 40), (10, 41), (10, 60), (11, 10), (11, 60)]
ERASING = {  # what is blank afterwards, with the cursor at row 10, column 40
    "ed 0": POINTS[4:],
    "ed 1": POINTS[:5],
    "ed 2": POINTS,
    "el 0": POINTS[4:7],
    "el 1": POINTS[2:5],
    "el 2": POINTS[2:7],
}


def erasing(terminal):
    found = {}
    for command, blank in ERASING.items():
        terminal.do("hide_cursor", "reset", "thin", "normal", "cls")
        for row in (9, 10, 11):
            terminal.do(f"cup {row} 1", "text " + "H" * screens.COLS)
        terminal.do("cup 10 40", command)
        stays = terminal.position() == (10, 40)
        picture = terminal.settle()
        seen = [p for p in POINTS if terminal.look(*p, 1, picture).empty]
        found[command] = "yes" if seen == blank and stays else "no" if not seen else "otherwise"
    terminal.do("cls", "cup 10 40", "on_next 1", "el 2", "reset")
    picture = terminal.settle()
    plain, red = terminal.middle(12, 60, 1, picture), terminal.middle(10, 60, 1, picture)
    found["erases_in_color"] = "yes" if not near(plain, red) else "no"
    for command, row in (("su 2", 8), ("sd 2", 12)):
        terminal.do("reset", "thin", "normal", "cls", "cup 10 40", "text HHHH", "cup 20 5", command)
        stays = terminal.position() == (20, 5)
        picture = terminal.settle()
        moved = not terminal.look(row, 40, 4, picture).empty and terminal.look(10, 40, 4, picture).empty
        found[command] = "yes" if moved and stays else "no" if not moved else "otherwise"
    terminal.do("cls")
    return found


# ---------------------------------------------------------------------------------------------
# Columns
# ---------------------------------------------------------------------------------------------

TEXTS = {
    "`日本`": "日本",
    "`é` of `e` and U+0301": "e\u0301",
    "`각` of U+1100, U+1161 and U+11A8": "\u1100\u1161\u11a8",
    "`ｱ`, half width": "ｱ",
    "`α`, of ambiguous width": "α",
    "a zero-width space, U+200B": "\u200b",
    "👍": "👍",
    "👍🏽, with a skin tone": "👍\U0001f3fd",
    "❤️, with U+FE0F": "❤\ufe0f",
    "🇩🇪, two letters": "\U0001f1e9\U0001f1ea",
    "👩‍👩‍👧, three joined": "👩\u200d👩\u200d👧",
}


def columns(terminal):
    """How far each text moves the cursor, and what the kit says."""
    found = {"kit": {}}
    for name, text in TEXTS.items():
        terminal.do("reset", "cls", "cup 3 1", f"text {text}")
        row, col = terminal.position()
        found[name] = str(col - 1) if row == 3 else "another row"
        found["kit"][name] = terminal.do(f"width {text}")
    terminal.do("cls")
    return found


# ---------------------------------------------------------------------------------------------
# All of it
# ---------------------------------------------------------------------------------------------


def sample(terminal):
    """Draws what the screenshots show, and returns how many rows it has."""
    terminal.do("hide_cursor", "reset", "thin", "cls", "cup 1 2")
    for name in ("bold", "dark", "italic", "underline", "blink", "reverse", "concealed", "crossed"):
        terminal.do("reset", "thin", name, f"text {name}", "reset", "thin", "normal", "text  ")
    names = ("grey", "red", "green", "yellow", "blue", "magenta", "cyan", "white")
    for row, commands in ((2, ["thin"]), (3, ["bold"]), (4, ["thin", "dark"])):
        terminal.do(f"cup {row} 2")
        for i, name in enumerate(names):
            terminal.do("reset", *commands, f"next {i}", f"text {name:9}")
    terminal.do("cup 5 2")
    for i, name in enumerate(names):
        terminal.do("normal", f"sgr {90 + i}", f"text {name:9}")
    terminal.do("cup 6 2")
    for i in range(8):
        terminal.do("reset", "thin", f"on_next {i}", f"text {'':9}")
    terminal.do("cup 7 2")
    for i in range(72):
        terminal.do("thin", f"on_color {16 + 3 * i}", "text  ")
    terminal.do("cup 8 2")
    for i in range(72):
        terminal.do(f"on_rgb {255 - 3 * i} {40 + i} {40 + 3 * i}", "text  ")
    terminal.do("reset", "thin", "normal", "cup 1 1")
    return 8


def all_of(terminal):
    found = {"environment": terminal.environment()}
    for experiment in (attributes, colors, moves, cursor, erasing, columns):
        found.update(experiment(terminal))
    return found
