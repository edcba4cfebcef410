"""Shows how much the tests ran, from a report of gcovr (--json) on standard input, and compares what they left with a list.

    coverage.py <list>

Fails where something of src/ or include/ was left that is not in the list, or was not left that is.
"""
import collections
import json
import pathlib
import sys


def code_of(file):
    """The lines of a file that there is something to run in."""
    return [line for line in file["lines"] if not line["gcovr/noncode"] and not line["gcovr/excluded"]]


def folder_of(file):
    return file["file"].split("/")[0] + "/"


def show_row(name, lines):
    branches = [branch for line in lines for branch in line["branches"]]
    counts = [f"{sum(part['count'] > 0 for part in parts):5} of {len(parts):4}" for parts in (lines, branches)]
    print(f"{name:34}{counts[0]:>15}{counts[1]:>15}")


def show_table(files):
    """A row for each file, then one for each folder."""
    print(f"{'':34}{'lines run':>15}{'branches taken':>15}")
    folders = collections.defaultdict(list)
    for file in files:
        show_row(file["file"], code_of(file))
        folders[folder_of(file)] += code_of(file)
    print()
    for name, lines in folders.items():
        show_row(name, lines)


def left(file):
    """The lines that were not run or not left by every branch, named by their text, since their numbers move."""
    texts = pathlib.Path(file["file"]).read_text(encoding="utf-8").splitlines()
    for line in code_of(file):
        branches = line["branches"]
        not_taken = sum(branch["count"] == 0 for branch in branches)
        text = texts[line["line_number"] - 1].strip()
        if line["count"] == 0:
            yield f"{file['file']}: not run: {text}"
        elif not_taken > 0:
            yield f"{file['file']}: {not_taken} of {len(branches)} branches: {text}"


def entries_of(path):
    """What a list names: neither its comments nor its reasons, which are indented."""
    lines = pathlib.Path(path).read_text(encoding="utf-8").splitlines()
    return [line for line in lines if line and not line.startswith(("#", " "))]


def main():
    files = json.load(sys.stdin)["files"]
    if not any(folder_of(file) == "src/" for file in files):
        sys.exit("The report has no file of src/.")
    show_table(files)

    found = collections.Counter(entry for file in files if folder_of(file) != "tools/" for entry in left(file))
    listed = collections.Counter(entries_of(sys.argv[1]))
    print(f"\nPlaces left in src/ and include/: {found.total()}; in {sys.argv[1]}: {listed.total()}.")
    for entry in (found - listed).elements():
        print(f"Not in the list: {entry}")
    for entry in (listed - found).elements():
        print(f"Not left: {entry}")
    sys.exit(found != listed)


main()
