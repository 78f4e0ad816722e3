#!/usr/bin/env python3
"""Checks the rules of the source tree that no compiler checks.

    source_tree.py RULE ROOT

RULE is floors, views, system_headers, headers, types, checks or scripts. Prints each finding as FILE:LINE: TEXT; fails when there is one.
"""
import re
import subprocess
import sys
from pathlib import Path

# From the ground up; the floors of one row stand side by side and do not know each other.
FLOORS = [
    {"platform"},
    {"core"},
    {"text", "zip"},
    {"formula"},
    {"exchange", "recordset", "crypto"},
    {"mail", "file"},
    {"app"},
    {"ui", "cli"},
]

# Headers of libraries, and the floors that use them.
LIBRARIES = [
    (r"unicode/.*\.h", {"platform"}),
    (r"openssl/.*\.h", {"platform"}),
    (r"cryptopp/.*\.h", {"platform", "crypto"}),
    (r"(zlib|libdeflate|isa-l)\.h", {"zip"}),
    (r"sqlite3\.h", {"exchange"}),
    (r"emmintrin\.h", {"exchange"}),
    (r"pcre2\.h", {"text"}),
    (r"(Eigen|unsupported)/.*", {"formula"}),
    (r"boost/math/.*\.hpp", {"formula"}),
    (r"glpk\.h", {"formula"}),
    (r"(pugixml|pugiconfig)\.hpp", {"app"}),
    (r"CLI/.*\.hpp", {"cli"}),
    (r"(Qt[A-Z]\w*/)?Q[A-Z]\w*", {"ui"}),
    (r"Qsci/\w+\.h", {"ui"}),
]

STANDARD_HEADERS = set(
    """
    algorithm any array atomic barrier bit bitset cassert ccomplex cctype cerrno cfenv cfloat charconv chrono cinttypes
    climits clocale cmath codecvt compare complex concepts condition_variable coroutine csetjmp csignal cstdarg cstddef
    cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution filesystem format forward_list
    fstream functional future initializer_list iomanip ios iosfwd iostream istream iterator latch limits list locale map
    memory memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex scoped_allocator
    semaphore set shared_mutex source_location span sstream stack stdexcept stop_token streambuf string string_view
    syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map unordered_set utility valarray
    variant vector version
    """.split()
)

SYSTEM_MACRO = re.compile(r"\b(_WIN32|_WIN64|WIN32|__linux__|__linux|__unix__|__unix|__APPLE__|Q_OS_\w+)\b")
INCLUDE = re.compile(r'^\s*#\s*include\s*(?:<([^>]+)>|"([^"]+)")')
CODE = {".cpp", ".h"}
NOT_OURS = {".git", "build", "node_modules"}


def files_under(folder):
    """All files, without those that are built or fetched."""
    for path in sorted(folder.iterdir()) if folder.is_dir() else []:
        if path.is_dir():
            if path.name not in NOT_OURS and not path.is_symlink():
                yield from files_under(path)
        elif path.is_file():
            yield path


def code_lines(root):
    """(path below src, line number, line) of all code below src."""
    src = root / "src"
    for path in files_under(src):
        if path.suffix in CODE:
            for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
                yield path.relative_to(src), number, line


def floor_height(name):
    for height, row in enumerate(FLOORS):
        if name in row:
            return height
    return None


def included_file(src, path, name):
    """What NAME means in PATH, both below src; None when there is no such file."""
    for candidate in (src / path.parent / name, src / name):
        if candidate.is_file():
            return candidate.resolve().relative_to(src.resolve())
    return None


def floors(root):
    src = root / "src"
    for path, number, line in code_lines(root):
        where = f"src/{path}:{number}"
        floor = path.parts[0]
        if floor_height(floor) is None or len(path.parts) == 1:
            yield f"{where}: not in a folder that is a floor"
            continue
        match = INCLUDE.match(line)
        if not match or not match[2]:
            continue
        target = included_file(src, path, match[2])
        if target is None:
            if not match[2].endswith(".moc"):
                yield f"{where}: no file {match[2]} below src"
            continue
        other = target.parts[0]
        if floor != other and not floor_height(other) < floor_height(floor):
            yield f"{where}: {floor} must not include {target}"


def views(root):
    """The window knows panes and views; what kinds of views there are is known to one file."""
    src = root / "src"
    grid = Path("ui", "grid")
    for path, number, line in code_lines(root):
        if path.parts[0] != "ui" or path.is_relative_to(grid) or path == Path("ui", "table_views.cpp"):
            continue
        match = INCLUDE.match(line)
        target = included_file(src, path, match[2]) if match and match[2] else None
        if target is not None and target.is_relative_to(grid):
            yield f"src/{path}:{number}: only src/ui/table_views.cpp makes the grid"


def system_headers(root):
    for path, number, line in code_lines(root):
        where = f"src/{path}:{number}"
        floor = path.parts[0]
        match = INCLUDE.match(line)
        if match and match[1] and match[1] not in STANDARD_HEADERS:
            library = next((users for pattern, users in LIBRARIES if re.fullmatch(pattern, match[1])), None)
            if library is not None and floor not in library:
                yield f"{where}: {floor} must not include <{match[1]}>"
            if library is None and floor != "platform":
                yield f"{where}: <{match[1]}> belongs into platform"
        macro = SYSTEM_MACRO.search(line)
        if macro and floor != "platform":
            yield f"{where}: {macro[1]} belongs into platform"


def headers(root):
    for folder in ("src", "tests", "bench"):
        for path in files_under(root / folder):
            if path.suffix != ".h":
                continue
            where = path.relative_to(root)
            lines = path.read_text(encoding="utf-8").splitlines()
            if "#pragma once" not in lines:
                yield f"{where}:1: no #pragma once"
            comment = re.match(r"(//|/\*)(.*)", lines[0]) if lines else None
            if not comment or len(re.findall(r"\w+", comment[2])) < 2:
                yield f"{where}:1: no comment that says what the header is for"


def types(root):
    """Two types of one name in one namespace are one type for the linker, whichever floor they are of."""
    found = {}
    namespace = ""
    for path, number, line in code_lines(root):
        if path.suffix != ".h":
            continue
        if match := re.match(r"namespace ([\w:]+) \{", line):
            namespace = match[1]
        match = re.match(r"(?:struct|class|union|enum class) (\w+)(?: final)?(?: : [^;]*)? \{", line)
        if not match:
            continue
        other = found.setdefault((namespace, match[1], path.parts[1] if path.parts[0] == "platform" else ""), path)
        if other != path:
            yield f"src/{path}:{number}: {match[1]} stands in src/{other} too"


def checks(root):
    """What is wrong with settings is said in one shape; whatever answers another is called something else."""
    for path, number, line in code_lines(root):
        declared = re.match(r"(?!\s*return\b)\s*((?:[\w:<>,*& ]*[\s*&])?)(check_\w+)\(", line)
        if path.suffix == ".h" and declared and not re.fullmatch(r"(?:\w+ )*Check ", declared[1]):
            yield f"src/{path}:{number}: {declared[2]} does not return a Check"


def scripts(root):
    for path in files_under(root):
        where = f"{path.relative_to(root)}:1"
        with path.open("rb") as file:
            first = file.readline(200).decode("utf-8", "replace").strip()
        if not first.startswith("#!"):
            if path.suffix == ".sh":
                yield f"{where}: no #! line"
            continue
        if not path.stat().st_mode & 0o111:
            yield f"{where}: not executable"
        shell = re.search(r"\b(sh|bash|dash)\b", first)
        if shell:
            result = subprocess.run([shell[1], "-n", str(path)], capture_output=True, text=True)
            if result.returncode != 0:
                yield f"{where}: {shell[1]} -n: {result.stderr.strip()}"


RULES = {rule.__name__: rule for rule in (floors, views, system_headers, headers, types, checks, scripts)}


def main():
    if len(sys.argv) != 3 or sys.argv[1] not in RULES:
        sys.exit(__doc__)
    root = Path(sys.argv[2])
    if not (root / "src").is_dir():
        sys.exit(f"there is no {root / 'src'}")
    findings = list(RULES[sys.argv[1]](root))
    for finding in findings:
        print(finding)
    sys.exit(1 if findings else 0)


if __name__ == "__main__":
    main()
