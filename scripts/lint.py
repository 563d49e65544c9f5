"""Checks the house rules on the tracked files of a repository: python3 lint.py [ROOT]

Prints one line per finding, "file:line: what and why", then a summary, and exits with 1 when there
is a finding. Each check is a generator of findings over one `Tree`; `CHECKS` lists them.
"""

import re
import subprocess
import sys
from dataclasses import dataclass, field
from functools import cached_property
from pathlib import Path, PurePosixPath

STOREYS = {"Platform": 0, "Sources": 1, "Classes": 2, "Apps": 3}
# What stands beside the building and may look into any storey.
OUTSIDE = ("Tests", "Benchmarks", "Fuzz")
# Percent of the code's lines: from a quarter to a third.
TEST_SHARE = (25, 33)

# Where third-party headers are welcome, by the first part of their name; under Platform/ any other
# is welcome too.
TEST_LIBRARIES = {"gtest", "gmock", "benchmark"}
ORACLES = {"unicode", "cctz", "libical", "sqlite3"}
THIRD_PARTY = {
    "Apps/velloro/Options/Command.cpp": {"CLI"},
    "Tests": TEST_LIBRARIES | ORACLES,
    "Benchmarks": TEST_LIBRARIES | ORACLES | {"cairo"},
}
NOT_IN_PLATFORM = TEST_LIBRARIES | {"CLI"}

STANDARD_HEADERS = set(
    """
    algorithm any array atomic barrier bit bitset charconv chrono codecvt compare complex concepts
    condition_variable coroutine deque exception execution expected filesystem flat_map flat_set
    format forward_list fstream functional future generator initializer_list iomanip ios iosfwd
    iostream istream iterator latch limits list locale map mdspan memory memory_resource mutex new
    numbers numeric optional ostream print queue random ranges ratio regex scoped_allocator
    semaphore set shared_mutex source_location span spanstream sstream stack stacktrace stdexcept
    stdfloat stop_token streambuf string string_view strstream syncstream system_error thread tuple
    type_traits typeindex typeinfo unordered_map unordered_set utility valarray variant vector
    version cassert ccomplex cctype cerrno cfenv cfloat cinttypes ciso646 climits clocale cmath
    csetjmp csignal cstdalign cstdarg cstdbool cstddef cstdint cstdio cstdlib cstring ctgmath ctime
    cuchar cwchar cwctype assert.h complex.h ctype.h errno.h fenv.h float.h inttypes.h iso646.h
    limits.h locale.h math.h setjmp.h signal.h stdalign.h stdarg.h stdatomic.h stdbool.h stddef.h
    stdint.h stdio.h stdlib.h stdnoreturn.h string.h tgmath.h threads.h time.h uchar.h wchar.h
    wctype.h
    """.split()
)
SYSTEM_HEADERS = set(
    """
    aio.h alloca.h byteswap.h cpio.h cxxabi.h dirent.h dlfcn.h elf.h endian.h err.h error.h
    execinfo.h fcntl.h features.h fmtmsg.h fnmatch.h fts.h ftw.h getopt.h glob.h grp.h iconv.h
    ifaddrs.h immintrin.h langinfo.h libgen.h link.h malloc.h monetary.h mqueue.h ndbm.h netdb.h
    nl_types.h paths.h poll.h pthread.h pty.h pwd.h regex.h resolv.h sched.h search.h semaphore.h
    spawn.h strings.h stropts.h syscall.h sysexits.h syslog.h tar.h termios.h trace.h ucontext.h
    ulimit.h unistd.h utime.h utmpx.h wordexp.h x86intrin.h
    """.split()
)
SYSTEM_FOLDERS = ("sys/", "linux/", "asm/", "net/", "netinet/", "arpa/", "bits/")

# What Sources/ is given instead; the log alone dates its lines by the clock.
READS_OF_THE_PROCESS = re.compile(
    r"Date::now\(|(?:TimeZone|Locale)::current\b|"
    r"Environment::current\(\)\s*\.\s*(?:now|mediaTime|timeZone|locale)\b"
)
DATES_ITS_LINES = "Sources/OxLog/"
LITERAL_KEY = re.compile(r'(?m)^(?! *//).*\blocalized(?:String)?\(\s*("[^"]*")')
INCLUDE = re.compile(r'^\s*#\s*include\s*(?:<([^>]+)>|"([^"]+)")', re.MULTILINE)
CMAKE_COMMAND = re.compile(r"^\s*(\w+)\s*\(([^)]*)\)", re.MULTILINE)
TARGET_COMMAND = re.compile(r"add_library|add_executable|velloro_(?!precompiled)\w+")


@dataclass(frozen=True, order=True)
class Finding:
    file: str
    line: int
    text: str

    def __str__(self):
        return f"{self.file}:{self.line}: {self.text}"


@dataclass(frozen=True)
class Include:
    file: str
    line: int
    name: str
    quoted: bool


@dataclass
class Target:
    name: str
    folder: str
    sources: list
    links: dict = field(default_factory=dict)  # name of a target: (visibility, file, line)


def line_of(text, offset):
    return text.count("\n", 0, offset) + 1


def top(path):
    return path.partition("/")[0]


def storey(path):
    return STOREYS.get(top(path), len(STOREYS))


class Tree:
    """A repository's files, and what they say of targets and includes."""

    def __init__(self, root, files):
        self.root = Path(root)
        self.files = sorted(f for f in files if (self.root / f).is_file())
        self.file_set = set(self.files)
        self.sources = [f for f in self.files if f.endswith((".h", ".cpp"))]
        self._texts = {}

    def text(self, file):
        """Absent for what is no text."""
        if file not in self._texts:
            data = (self.root / file).read_bytes()
            try:
                self._texts[file] = None if b"\0" in data else data.decode("utf-8")
            except UnicodeDecodeError:
                self._texts[file] = None
        return self._texts[file]

    @cached_property
    def targets(self):
        """{name: Target} from the text of every CMakeLists.txt."""
        targets, links = {}, []
        for file in self.files:
            if PurePosixPath(file).name != "CMakeLists.txt":
                continue
            # Comments keep their length, so that line numbers hold.
            text = re.sub(r"#.*", "", self.text(file) or "")
            for command in CMAKE_COMMAND.finditer(text):
                arguments = command[2].replace('"', " ").split()
                if not arguments or "ALIAS" in arguments:
                    continue
                if TARGET_COMMAND.fullmatch(command[1]):
                    folder = str(PurePosixPath(file).parent)
                    targets[arguments[0]] = Target(arguments[0], folder, arguments[1:])
                elif command[1] == "target_link_libraries":
                    links.append((file, line_of(text, command.start(1)), arguments))
        for file, line, (name, *libraries) in links:
            visibility = "PUBLIC"
            for library in libraries:
                if library in ("PUBLIC", "PRIVATE", "INTERFACE"):
                    visibility = library
                elif library in targets and name in targets:
                    targets[name].links[library] = (visibility, file, line)
        return targets

    @cached_property
    def targets_by_folder(self):
        by_folder = {}
        for target in self.targets.values():
            by_folder.setdefault(target.folder, []).append(target)
        return by_folder

    def targets_of(self, file):
        """The targets of the nearest folder above the file that has any; of several, those that
        list the file, or all where none does, as for a header."""
        for folder in map(str, PurePosixPath(file).parents):
            if folder in self.targets_by_folder:
                targets = self.targets_by_folder[folder]
                relative = str(PurePosixPath(file).relative_to(folder))
                return [t for t in targets if relative in t.sources] or targets
        return []

    def reachable(self, target):
        """The names of the targets whose headers a file of `target` may include."""
        seen = {target.name}
        waiting = [n for n, (visibility, *_) in target.links.items() if visibility != "INTERFACE"]
        while waiting:
            name = waiting.pop()
            if name not in seen:
                seen.add(name)
                links = self.targets[name].links.items()
                waiting += [n for n, (visibility, *_) in links if visibility != "PRIVATE"]
        return seen

    @cached_property
    def includes(self):
        return [
            Include(file, line_of(text, m.start(1 if m[1] else 2)), m[1] or m[2], bool(m[2]))
            for file in self.sources
            if (text := self.text(file))
            for m in INCLUDE.finditer(text)
        ]

    @cached_property
    def include_roots(self):
        return sorted({str(PurePosixPath(t.folder).parent) for t in self.targets.values()})

    def resolve(self, include):
        """The repository's file behind an include, absent for the header of a library."""
        beside = str(PurePosixPath(include.file).parent)
        for folder in (beside, *self.include_roots):
            path = str(PurePosixPath(folder) / include.name)
            if path in self.file_set:
                return path
        return None


def check_format(tree):
    if not tree.sources:
        return
    run = subprocess.run(
        ["clang-format", "--dry-run", "-Werror", *tree.sources],
        cwd=tree.root, capture_output=True, text=True, check=False,
    )
    reported = set()
    for file, line in re.findall(r"^(.+?):(\d+):\d+: error:", run.stderr, re.MULTILINE):
        if file not in reported:
            reported.add(file)
            yield Finding(file, int(line), "is not formatted; run clang-format -i on the file")
    if run.returncode != 0 and not reported:
        raise RuntimeError(f"clang-format failed: {run.stderr.strip()}")


def check_links(tree):
    for target in tree.targets.values():
        for name, (_, file, line) in target.links.items():
            if storey(tree.targets[name].folder) > storey(target.folder):
                text = f"{target.name} links {name}, which stands a storey above"
                yield Finding(file, line, text)


def check_edges(tree):
    """Each include of a header of ours follows an edge that its target declares."""
    for include in tree.includes:
        path = tree.resolve(include)
        if path:
            text = missing_edge(tree, include, path)
        else:
            text = "is no file of this tree" if include.quoted else None
        if text:
            yield Finding(include.file, include.line, f'"{include.name}" {text}')


def missing_edge(tree, include, path):
    """What is wrong with an include of the file at `path`, absent when nothing is."""
    if storey(path) > storey(include.file):
        return "stands a storey above"
    wanted = {target.name for target in tree.targets_of(path)}
    for target in tree.targets_of(include.file):
        if wanted and not wanted & tree.reachable(target):
            edge = f"{target.name} → {'/'.join(sorted(wanted))}"
            return f"needs an edge {edge} in target_link_libraries"
    return None


def is_system(name):
    return name in SYSTEM_HEADERS or name.startswith(SYSTEM_FOLDERS)


def library_of(name):
    """"unicode" of <unicode/ucal.h>, "sqlite3" of <sqlite3.h>."""
    return re.split(r"[/.]", name)[0]


def is_third_party(tree, include):
    return not (
        include.quoted
        or include.name in STANDARD_HEADERS
        or is_system(include.name)
        or tree.resolve(include)
    )


def check_third_party(tree):
    for include in tree.includes:
        file = PurePosixPath(include.file)
        where = top(include.file)
        if is_system(include.name) and where not in ("Platform", *OUTSIDE):
            text = f"<{include.name}> is the operating system's; only Platform/ may ask it"
            yield Finding(include.file, include.line, text)
        if not is_third_party(tree, include):
            continue
        library = library_of(include.name)
        at_home = any(
            library in names and file.is_relative_to(home) for home, names in THIRD_PARTY.items()
        )
        if not at_home and (where != "Platform" or library in NOT_IN_PLATFORM):
            homes = ["Platform"]
            if library in NOT_IN_PLATFORM:
                homes = [home for home, names in THIRD_PARTY.items() if library in names]
            text = f"<{include.name}> belongs in {' and '.join(homes)}"
            yield Finding(include.file, include.line, text)


def check_leaks(tree):
    """A header of Platform/ that brings a third-party header along stays inside its folder."""
    carried = {}  # header: the third-party header that it brings along
    includers = {}
    for include in tree.includes:
        if path := tree.resolve(include):
            includers.setdefault(path, []).append(include)
        elif (
            top(include.file) == "Platform"
            and include.file.endswith(".h")
            and is_third_party(tree, include)
        ):
            carried[include.file] = include.name
    waiting = list(carried)
    while waiting:
        header = waiting.pop()
        home = {t.folder for t in tree.targets_of(header)}
        for include in includers.get(header, []):
            if home != {t.folder for t in tree.targets_of(include.file)}:
                text = f'"{include.name}" brings <{carried[header]}> out of {"/".join(home)}/'
                yield Finding(include.file, include.line, text)
            elif include.file.endswith(".h") and include.file not in carried:
                carried[include.file] = carried[header]
                waiting.append(include.file)


def check_registration(tree):
    for file in tree.sources:
        if not file.endswith(".cpp") or top(file) not in (*STOREYS, *OUTSIDE):
            continue
        listed = {f"{t.folder}/{source}" for t in tree.targets_of(file) for source in t.sources}
        if file not in listed:
            yield Finding(file, 1, "is in no target of its folder's CMakeLists.txt")


def check_pragma(tree):
    for file in tree.sources:
        if file.endswith(".h") and not re.search(r"^#pragma once$", tree.text(file) or "", re.M):
            yield Finding(file, 1, "has no #pragma once")


def check_text_keys(tree):
    """Keys outside the catalogue are missed by the test that walks the string tables."""
    for file in tree.sources:
        house = 0 < storey(file) < len(STOREYS)
        text = (tree.text(file) or "") if house else ""
        for match in LITERAL_KEY.finditer(text):
            why = "is a text's key in no catalogue; see OxKit/LocalizedKey.h"
            yield Finding(file, line_of(text, match.start(1)), f"{match[1]} {why}")


def check_clock(tree):
    """Code of Sources/ is given the instant, the zone and the locale, and asks for none of them."""
    for file in tree.sources:
        if top(file) != "Sources" or file.startswith(DATES_ITS_LINES):
            continue
        code = re.sub(r"//[^\n]*", "", tree.text(file) or "")
        for match in READS_OF_THE_PROCESS.finditer(code):
            text = f"{match[0]} asks the process; take the instant, the zone or the locale"
            yield Finding(file, line_of(code, match.start()), text)


def count_lines(tree):
    """Non-blank lines of (tests, code)."""
    tests = code = 0
    for file in tree.sources:
        lines = sum(1 for line in (tree.text(file) or "").splitlines() if line.strip())
        tests += lines if top(file) == "Tests" else 0
        code += lines if top(file) in STOREYS else 0
    return tests, code


def check_test_share(tree):
    tests, code = count_lines(tree)
    low, high = TEST_SHARE
    # Without code there is nothing to compare with.
    if code and not low * code <= 100 * tests <= high * code:
        share = f"{100 * tests / code:.1f} %"
        text = f"{tests} lines of tests are {share} of {code} lines of code, not {low} to {high} %"
        yield Finding("Tests/CMakeLists.txt", 1, text)


CHECKS = [
    check_format,
    check_links,
    check_edges,
    check_third_party,
    check_leaks,
    check_registration,
    check_pragma,
    check_text_keys,
    check_clock,
    check_test_share,
]


def findings_of(tree):
    return sorted({finding for check in CHECKS for finding in check(tree)})


def tracked_files(root):
    listing = subprocess.run(
        ["git", "-C", root, "ls-files", "-z"], capture_output=True, text=True, check=True
    )
    return [file for file in listing.stdout.split("\0") if file]


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else "."
    tree = Tree(root, tracked_files(root))
    findings = findings_of(tree)
    for finding in findings:
        print(finding)
    tests, code = count_lines(tree)
    share = f"{100 * tests / code:.1f} %" if code else "no share"
    print(
        f"lint: {len(tree.files)} files, {len(findings)} findings; "
        f"{tests} lines of tests to {code} of code ({share})"
    )
    sys.exit(1 if findings else 0)


if __name__ == "__main__":
    main()
