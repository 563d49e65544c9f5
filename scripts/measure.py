"""Prints the sizes of the tracked C++ code: python3 measure.py [FOLDER…]

A function is what has a parameter list and a body outside any other function, found by its braces;
its length counts the lines from its head to its closing brace. Files are counted in lines.
"""

import re
import subprocess
import sys
from collections import Counter
from pathlib import Path, PurePosixPath

DEFAULT_FOLDERS = ["Platform", "Sources", "Classes", "Apps"]
LONG_FUNCTION = 60
FULL_FOLDER = 40

# Comments and literals, which may hold braces; line breaks stay, so that lines can be counted.
NOISE = re.compile(
    r'//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|(?<![0-9A-Fa-f])\'(?:\\.|[^\'\\\n])+\''
    r"|^[ \t]*#(?:\\\n|[^\n])*",
    re.DOTALL | re.MULTILINE,
)
NO_FUNCTION = re.compile(r"\b(namespace|struct|class|union|enum|extern)\b[^()]*$|[=,(\[]\s*$")


def without_noise(text):
    return NOISE.sub(lambda match: "\n" * match[0].count("\n"), text)


def parameters(head):
    """How many parameters the first list in parentheses has."""
    depth, commas, is_empty = 0, 0, True
    for character in head[head.index("(") :]:
        if character in "([{<":
            depth += 1
        elif character in ")]}>":
            depth -= 1
            if depth == 0 and character == ")":
                break
        elif character == "," and depth == 1:
            commas += 1
        if depth >= 1 and character not in "( \n":
            is_empty = False
    return 0 if is_empty else commas + 1


def functions(text):
    """[(name, line, lines, parameters)] of one file's text."""
    text = without_noise(text)
    found, blocks = [], []  # a block: its function, or None for a namespace, type or initialiser
    start = 0
    for match in re.finditer(r"[{};]", text):
        inside = any(blocks)
        if match[0] == "{":
            head = text[start : match.start()]
            function = None
            if not inside and "(" in head and not NO_FUNCTION.search(head):
                first = start + len(head) - len(head.lstrip())
                name = re.search(r"([\w:~]+|operator[^\w(]+)\s*\(", head)
                line = text.count("\n", 0, first) + 1
                function = (name[1] if name else "(", line, parameters(head))
            blocks.append(function)
        elif match[0] == "}" and blocks:
            function = blocks.pop()
            if function:
                name, line, count = function
                found.append((name, line, text.count("\n", 0, match.start()) + 2 - line, count))
        # A brace inside parentheses or of an initialiser doesn't end a head.
        head = text[start : match.start()]
        if head.count("(") <= head.count(")") or match[0] == ";":
            start = match.end()
    return found


def spread(name, numbers):
    numbers = sorted(numbers)
    if not numbers:
        return f"{name:<20} none"
    half, most, nearly_all = (numbers[int(share * (len(numbers) - 1))] for share in (0.5, 0.9, 0.99))
    return (
        f"{name:<20} {len(numbers):>6}  median {half:>4}  p90 {most:>4}"
        f"  p99 {nearly_all:>4}  most {numbers[-1]:>5}"
    )


def main(folders):
    listing = subprocess.run(
        ["git", "ls-files", "-z", "--", *folders], capture_output=True, text=True, check=True
    )
    files = [f for f in listing.stdout.split("\0") if f.endswith((".h", ".cpp")) and Path(f).is_file()]
    texts = {file: Path(file).read_text(encoding="utf-8") for file in files}
    lines = {file: text.count("\n") for file, text in texts.items()}
    found = [(file, *function) for file in files for function in functions(texts[file])]
    sizes = Counter(str(PurePosixPath(file).parent) for file in files)

    print(spread("lines of a header", [n for f, n in lines.items() if f.endswith(".h")]))
    print(spread("lines of a source", [n for f, n in lines.items() if f.endswith(".cpp")]))
    print(spread("lines of a function", [function[3] for function in found]))
    print(spread("its parameters", [function[4] for function in found]))
    print(spread("files of a folder", sizes.values()))
    for file, name, line, length, _ in sorted(found, key=lambda function: -function[3]):
        if length > LONG_FUNCTION:
            print(f"{file}:{line}: {name} has {length} lines")
    for folder, count in sizes.most_common():
        if count > FULL_FOLDER:
            print(f"{folder}: {count} files")


if __name__ == "__main__":
    main(sys.argv[1:] or DEFAULT_FOLDERS)
