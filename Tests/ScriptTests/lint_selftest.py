"""Shows that each check of lint.py can fail: a small clean tree, and changes that spoil it."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import lint

HOUSE = Path(lint.__file__).parent.parent


def filler(count):
    """`count` lines of code, to keep the share of the tests where it belongs."""
    return "".join(f"int f{i}();\n" for i in range(count))


CLEAN = {
    ".clang-format": (HOUSE / ".clang-format").read_text(),
    "Platform/Base/CMakeLists.txt": "velloro_library(Base Base.cpp)\n",
    "Platform/Base/Base.cpp": '#include "Base/Private.h"\n\n#include <unistd.h>\n',
    "Platform/Base/Base.h": "#pragma once\n\n#include <vector>\n" + filler(100),
    "Platform/Base/Private.h": '#pragma once\n\n#include "Base/Base.h"\n\n#include <sqlite3.h>\n',
    "Sources/Kit/CMakeLists.txt": """\
velloro_library(Kit   # a comment (with a bracket)
  Kit.cpp)
target_link_libraries(Kit PUBLIC Base)
""",
    "Sources/Kit/Kit.cpp": '#include "Kit/Kit.h"\n',
    "Sources/Kit/Kit.h": '#pragma once\n\n#include "Base/Base.h"\n',
    "Sources/Other/CMakeLists.txt": """\
velloro_library(Other Other.cpp)
target_link_libraries(Other PRIVATE Kit)
""",
    "Sources/Other/Other.cpp": '#include "Base/Base.h"\n#include "Kit/Kit.h"\n',
    "Sources/Other/Other.h": "#pragma once\n",
    "Sources/Island/CMakeLists.txt": "velloro_library(Island Island.cpp)\n",
    "Sources/Island/Island.cpp": "// Needs nobody.\n",
    "Apps/app/CMakeLists.txt": """\
add_executable(app main.cpp)
target_link_libraries(app PRIVATE Other)
""",
    "Apps/app/main.cpp": '#include "Other/Other.h"\n',
    "Tests/KitTests/CMakeLists.txt": """\
velloro_test(KitTests KitTests.cpp)
target_link_libraries(KitTests PRIVATE Kit)
""",
    "Tests/KitTests/KitTests.cpp": '#include "Kit/Kit.h"\n\n'
    "#include <gtest/gtest.h>\n#include <sys/wait.h>\n#include <unicode/ucal.h>\n" + filler(28),
    "docs/notes.md": "Parties share the work/life balance.\n",
}

HEADER = "#pragma once\n\n"
# What is changed, and every finding that must come of it: file, line, a piece of the text.
SPOILED = [
    ({"Sources/Kit/Kit.cpp": "int  a;\n"}, [("Sources/Kit/Kit.cpp", 1, "clang-format")]),
    # Edges: none at all; one that a PRIVATE link does not hand on; one upwards; no such file.
    (
        {"Sources/Island/Island.cpp": '#include "Base/Base.h"\n'},
        [("Sources/Island/Island.cpp", 1, "edge Island → Base")],
    ),
    (
        {"Apps/app/main.cpp": '#include "Kit/Kit.h"\n#include "Other/Other.h"\n'},
        [("Apps/app/main.cpp", 1, "edge app → Kit")],
    ),
    (
        {"Platform/Base/Base.h": HEADER + '#include "Kit/Kit.h"\n' + filler(100)},
        [("Platform/Base/Base.h", 3, "a storey above")],
    ),
    (
        {"Platform/Base/CMakeLists.txt": "velloro_library(Base Base.cpp)\n"
                                         "target_link_libraries(Base\n  PRIVATE Kit)\n"},
        [("Platform/Base/CMakeLists.txt", 2, "Base links Kit")],
    ),
    (
        {"Sources/Kit/Kit.cpp": '#include "sqlite3.h"\n'},
        [("Sources/Kit/Kit.cpp", 1, "no file of this tree")],
    ),
    # Libraries and the system's headers in places that are not theirs.
    (
        {"Sources/Kit/Kit.cpp": "#include <stdio.h>\n#include <unicode/ucal.h>\n"},
        [("Sources/Kit/Kit.cpp", 2, "belongs in Platform")],
    ),
    (
        {"Apps/app/main.cpp": '#include "Other/Other.h"\n\n#include <CLI/CLI.hpp>\n'},
        [("Apps/app/main.cpp", 3, "belongs in Apps/velloro/Options/Command.cpp")],
    ),
    (
        {"Platform/Base/Base.cpp": "#include <gtest/gtest.h>\n"},
        [("Platform/Base/Base.cpp", 1, "belongs in Tests")],
    ),
    (
        {"Apps/app/main.cpp": "#include <sys/stat.h>\n"},
        [("Apps/app/main.cpp", 1, "only Platform/")],
    ),
    # A library's header that leaves its folder through two headers.
    (
        {
            "Platform/Base/Outer.h": HEADER + '#include "Base/Private.h"\n',
            "Sources/Kit/Kit.cpp": '#include "Base/Outer.h"\n',
        },
        [("Sources/Kit/Kit.cpp", 1, "brings <sqlite3.h> out of Platform/Base/")],
    ),
    (
        {"Tests/KitTests/MoreTests.cpp": "\n", "Fuzz/Lost.cpp": "\n"},
        [
            ("Fuzz/Lost.cpp", 1, "in no target"),
            ("Tests/KitTests/MoreTests.cpp", 1, "in no target"),
        ],
    ),
    ({"Sources/Other/Other.h": "// Once.\n"}, [("Sources/Other/Other.h", 1, "#pragma once")]),
    (
        {"Sources/Kit/Kit.cpp": 'auto a = localized("Done");\n'},
        [("Sources/Kit/Kit.cpp", 1, "in no catalogue")],
    ),
    (
        {
            "Sources/Kit/Kit.cpp": "// Not Date::now().\nauto a = Date::now();\n"
                                   "auto b = Environment::current().timeZone();\n",
            "Sources/OxLog/CMakeLists.txt": "velloro_library(OxLog Log.cpp)\n",
            "Sources/OxLog/Log.cpp": "auto a = Date::now();\n",
        },
        [
            ("Sources/Kit/Kit.cpp", 2, "asks the process"),
            ("Sources/Kit/Kit.cpp", 3, "asks the process"),
        ],
    ),
    ({"Tests/KitTests/KitTests.cpp": "\n"}, [("Tests/CMakeLists.txt", 1, "not 25 to 33 %")]),
    (
        {"Platform/Base/Base.h": HEADER + filler(70)},
        [("Tests/CMakeLists.txt", 1, "not 25 to 33 %")],
    ),
]


class Lint(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="velloro-lint-")
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)

    def write(self, files):
        for name, text in files.items():
            path = self.root / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")

    def command(self):
        """The exit code and the lines of the program, as scripts/lint starts it."""
        subprocess.run(["git", "-C", self.root, "add", "."], check=True)
        run = subprocess.run(
            [sys.executable, "-B", lint.__file__, self.root],
            capture_output=True, text=True, check=False,
        )
        return run.returncode, run.stdout.splitlines()

    def test_program_reads_the_tracked_files(self):
        subprocess.run(["git", "init", "-q", self.root], check=True)
        self.write(CLEAN)
        code, lines = self.command()
        self.assertEqual(code, 0, lines)
        self.assertRegex(lines[-1], r"^lint: \d+ files, 0 findings; 32 lines of tests")
        self.write({"Sources/Other/Other.h": "// Once.\n"})
        code, lines = self.command()
        self.assertEqual(code, 1)
        self.assertTrue(lines[0].startswith("Sources/Other/Other.h:1: "), lines)
        self.assertEqual(len(lines), 2)

    def test_each_spoiled_tree_is_found_out(self):
        for change, expected in SPOILED:
            with self.subTest(change=list(change)):
                files = CLEAN | change
                self.write(files)
                found = lint.findings_of(lint.Tree(self.root, files))
                places = [(finding.file, finding.line) for finding in found]
                self.assertEqual(places, [place[:2] for place in expected], found)
                for finding, (_, _, text) in zip(found, expected):
                    self.assertIn(text, finding.text)


if __name__ == "__main__":
    unittest.main()
