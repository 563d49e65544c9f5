"""Writes the examples of headers as tests: python3 examples.py OUTPUT FIXTURE HEADER…

An example is a block of comment lines that are indented by four blanks more than the text above
them, after an empty comment line. A block whose first line does not look so, for instance because
it is fenced by ```, is no example. FIXTURE is the class with what the examples take as given.

Each block becomes one test case. What it declares (types, templates, functions) goes to a namespace
of the header, where later blocks see it. A statement that is an expression with a result behind it or
on the next line is checked:

    range.smaller(7.2);     // 7              a number, a text in quotes, true, false, a name::of_a_case
    range.middle();         // 3.33…          a number that is not written to its end
    range.color();          // Color{.r = 1}  a value, or a list of values in braces
    range.bigger(20);       // absent         an optional, result or pointer that holds nothing
    range.decode("x");      // throws DecodingError: "not a number"     (the text may be left out)
    encode(range);          // {"from":1}     JSON, to the end of the line
    range.count();          // 3: why         what follows `:`, `;`, `,` or ` (` is for the reader

Any other comment is for the reader alone.
"""

import re
import sys
from pathlib import Path, PurePosixPath

TEXT = r'"(?:\\.|[^"\\])*"'
DECLARATION = re.compile(
    r"(enum|struct|class|inline|template|using \w+ =)\b|constexpr auto \w+\(|[\w:<>&]+ \w+\(.*\) \{"
)
NO_EXPRESSION = re.compile(
    r"(const|constexpr|auto|static|return|if|for|try|using|throw|while|struct|class|enum)\b|\}"
    r"|[\w:<>,]+[&*]? +\w+ *[={(;]"
)
RESULT = re.compile(
    rf"""
    (?P<json>(\{{"\w*":|\{{\}}|\[).*)
    | (?P<absent>absent\b)
    | (throws\ (?P<error>\w+(::\w+)*)(:\ (?P<text>{TEXT}))?
      | \{{(?P<list>.*?)\}}
      | (?P<value>{TEXT}|true|false|-?\d[\w.']*…?(\ /\ \d+)?|&?\w+(::\w+)+|[A-Z]\w+(::\w+)*[({{].*[)}}])
    )(?=$|[:;,](?!\d)|\ \()
    """,
    re.VERBOSE,
)


def blocks(text):
    """Yields the header's examples as lists of (line number, code)."""
    block, after_empty = [], False
    for number, line in enumerate(text.split("\n"), 1):
        code = re.match(r"^ */// {5}(.*\S)", line)
        empty = re.match(r"^ *///\s*$", line)
        if code and (block or after_empty):
            block.append((number, code[1]))
        elif empty and block:
            block.append((number, ""))
        elif block:
            yield block
            block = []
        after_empty = bool(empty)


def without_comment(line):
    """(code, comment) of a line."""
    match = re.match(rf'((?:R"\w*\(.*?\)\w*"|{TEXT}|[^"/]|/(?!/))*)(?://+ *(.*))?$', line)
    return (match[1].rstrip(), match[2] or "") if match else (line, "")


def statements(block):
    """[[line number, code, result]]: each ends with a semicolon or brace outside of any other."""
    found, code, depth = [], [], 0
    for number, line in block:
        bare, comment = without_comment(line)
        if bare:
            code.append(bare)
            plain = re.sub(TEXT, "", bare)
            depth += len(re.findall(r"[(\[{]", plain)) - len(re.findall(r"[)\]}]", plain))
            if depth == 0 and plain.endswith((";", "}")):
                found.append([number - len(code) + 1, "\n".join(code), comment])
                code = []
        elif found and not code and not found[-1][2]:
            found[-1][2] = comment
    return found if not code else [*found, [block[-1][0], "\n".join(code), ""]]


def checked(code, comment):
    result = RESULT.match(comment)
    if not result or NO_EXPRESSION.match(code):
        return code
    code = code.rstrip(";")
    if result["absent"]:
        return f"EXPECT_FALSE(({code}));"
    if error := result["error"]:
        text = result["text"] or "testing::_"
        return f"EXPECT_THAT(([&] {{ (void)({code}); }}), testing::ThrowsMessage<{error}>({text}));"
    if result["list"]:
        return f"EXPECT_THAT(({code}), testing::ElementsAre({result['list']}));"
    value = f'R"({result["json"]})"' if result["json"] else result["value"]
    if value.endswith("…"):
        value = f"{value[:-1]}, 1e-{len(value.partition('.')[2]) - 1}"
    return f"EXPECT_TRUE(example::is({code}, {value}));"


def case(header, block):
    """The test case of a block, and before it what it declares."""
    declared, done = [], []
    for number, code, comment in statements(block):
        line = f'#line {number} "{header}"'
        if DECLARATION.match(code):
            declared += [line, code]
        else:
            done += [line, checked(code, comment)]
    name = f"TEST_F({PurePosixPath(header).stem}Example, Line{block[0][0]})"
    return [*declared, f"{name} {{", *done, "}"] if done else declared


def main(output, fixture, headers):
    includes, cases = [f'#include "ExampleTests/{fixture}.h"'], []
    for header in headers:
        found = list(blocks(Path(header).read_text(encoding="utf-8")))
        if found:
            path = PurePosixPath(header)
            space = "platform" if "Platform" in path.parts else "velloro"
            includes.append(f'#include "{header}"')
            cases.append(f"namespace {space}::example_{path.stem} {{")
            cases.append(f"class {path.stem}Example : public {fixture} {{}};")
            for block in found:
                cases += case(header, block)
            cases.append("}")
    Path(output).write_text("\n".join([*includes, *cases, ""]), encoding="utf-8")


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2], sys.argv[3:])
