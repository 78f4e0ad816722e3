#!/usr/bin/env python3
"""Each rule of source_tree.py accepts a good tree and finds what is wrong in a bad one."""
import tempfile
import unittest
from pathlib import Path

import source_tree


class Tree(unittest.TestCase):
    def findings(self, rule, files):
        """What the rule says about a tree of FILES: path -> text, or (text, mode)."""
        with tempfile.TemporaryDirectory() as folder:
            for name, content in files.items():
                text, mode = content if isinstance(content, tuple) else (content, 0o644)
                path = Path(folder, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text, encoding="utf-8")
                path.chmod(mode)
            return list(rule(Path(folder)))


class Floors(Tree):
    ALL = {f"src/{name}/{name}.h": "// A floor.\n" for row in source_tree.FLOORS for name in row}

    def including(self, floor, include):
        return self.findings(source_tree.floors, {**self.ALL, f"src/{floor}/part.cpp": f"\n{include}\n"})

    def test_downwards_and_in_the_own_floor(self):
        self.assertEqual([], self.including("file", '#include "exchange/exchange.h"'))
        self.assertEqual([], self.including("file", '#include "file/file.h"'))
        self.assertEqual([], self.including("file", '#include "file.h"'))
        self.assertEqual([], self.including("cli", '#include "platform/platform.h"'))

    def test_upwards(self):
        self.assertEqual(
            ["src/core/part.cpp:2: core must not include file/file.h"],
            self.including("core", '#include "file/file.h"'),
        )
        self.assertEqual(1, len(self.including("platform/linux", '#include "../../core/core.h"')))
        self.assertEqual(1, len(self.including("formula", '  #  include "recordset/recordset.h"')))

    def test_side_by_side(self):
        for floor, other in (("exchange", "crypto"), ("crypto", "recordset"), ("file", "mail"), ("ui", "cli")):
            self.assertEqual(1, len(self.including(floor, f'#include "{other}/{other}.h"')), floor)

    def test_files_without_a_floor(self):
        self.assertEqual(1, len(self.including("core", '#include "core/lost.h"')))
        self.assertEqual(1, len(self.findings(source_tree.floors, {"src/attic/a.h": "int a;\n"})))
        self.assertEqual(1, len(self.findings(source_tree.floors, {"src/main.cpp": "int a;\n"})))


class Views(Tree):
    def including(self, path, name):
        files = {"src/ui/grid/grid.h": "// A grid.\n", "src/ui/pane/pane.h": "// A pane.\n"}
        return self.findings(source_tree.views, {**files, path: f'\n#include "{name}"\n'})

    def test_good(self):
        self.assertEqual([], self.including("src/ui/grid/a.cpp", "ui/grid/grid.h"))
        self.assertEqual([], self.including("src/ui/table_views.cpp", "ui/grid/grid.h"))
        self.assertEqual([], self.including("src/ui/main_frame.cpp", "ui/pane/pane.h"))

    def test_bad(self):
        found = self.including("src/ui/main_frame.cpp", "ui/grid/grid.h")
        self.assertEqual(["src/ui/main_frame.cpp:2: only src/ui/table_views.cpp makes the grid"], found)
        self.assertEqual(1, len(self.including("src/ui/pane/a.h", "../grid/grid.h")))
        self.assertEqual(1, len(self.including("src/ui/grid.cpp", "grid/grid.h")))


class SystemHeaders(Tree):
    def line(self, path, line):
        return self.findings(source_tree.system_headers, {path: f"\n{line}\n"})

    def test_where_they_may_stand(self):
        for line in ("#include <sys/stat.h>", "#include <windows.h>", "#include <unicode/ucnv.h>", "#ifdef _WIN32"):
            self.assertEqual([], self.line("src/platform/linux/a.cpp", line))
        for line in ("#include <vector>", "#include <cstring>", "#include <zlib.h>"):
            self.assertEqual([], self.line("src/zip/a.cpp", line))

    def test_system_headers_elsewhere(self):
        for name in ("unistd.h", "fcntl.h", "sys/types.h", "windows.h", "pthread.h", "dlfcn.h", "string.h"):
            self.assertEqual(
                [f"src/core/a.h:2: <{name}> belongs into platform"], self.line("src/core/a.h", f"#include <{name}>")
            )

    def test_libraries_in_other_floors(self):
        self.assertEqual(1, len(self.line("src/core/a.cpp", "#include <unicode/uchar.h>")))
        self.assertEqual(1, len(self.line("src/core/a.cpp", "# include <zlib.h>")))
        self.assertEqual(1, len(self.line("src/file/a.cpp", "#include <QString>")))

    def test_macros_elsewhere(self):
        for line in ("#ifdef _WIN32", "#if defined(__linux__)", "#ifndef __unix__", "#ifdef Q_OS_WIN"):
            self.assertEqual(1, len(self.line("src/ui/a.cpp", line)), line)


class Headers(Tree):
    def header(self, text):
        return self.findings(source_tree.headers, {"src/core/a.h": text})

    def test_good(self):
        self.assertEqual([], self.header("// One table.\n#pragma once\n\nint a;\n"))

    def test_bad(self):
        self.assertEqual(["src/core/a.h:1: no #pragma once"], self.header("// One table.\nint a;\n"))
        self.assertEqual(1, len(self.header("#pragma once\n// One table.\n")))
        self.assertEqual(1, len(self.header("//\n#pragma once\n")))
        self.assertEqual(2, len(self.header("")))


class Types(Tree):
    def headers(self, first, second):
        return self.findings(source_tree.types, {"src/core/a.h": first, "src/ui/b.h": second})

    def test_good(self):
        self.assertEqual([], self.headers("namespace rowvane {\nclass A {\n", "namespace rowvane {\nclass A;\nclass B {\n"))
        self.assertEqual([], self.headers("namespace rowvane {\nclass A {\n", "namespace rowvane::ui {\nclass A {\n"))

    def test_bad(self):
        for line in ("class A {", "struct A final : B {", "enum class A {"):
            found = self.headers("namespace rowvane {\nstruct A {\n", f"namespace rowvane {{\n{line}\n")
            self.assertEqual(["src/ui/b.h:2: A stands in src/core/a.h too"], found)


class Checks(Tree):
    def header(self, line, name="src/core/a.h"):
        return self.findings(source_tree.checks, {name: f"\n{line}\n"})

    def test_good(self):
        for line in (
            "Check check_search(const Search& search);",
            "  static Check check_name(std::string_view name);",
            "// The text must have passed check_pattern().",
            "ErrorCode verify_end();",
            "  void recheck_all();",
            "  inline static Check check_width(int width) {",
            "    return check_width(1).passes();",
            "    if (const Check check = check_width(1); check.passes()) return;",
        ):
            self.assertEqual([], self.header(line), line)
        self.assertEqual([], self.header("bool check_all() {", "src/core/a.cpp"))

    def test_bad(self):
        self.assertEqual(
            ["src/core/a.h:2: check_sort does not return a Check"], self.header("ErrorCode check_sort(Keys keys);")
        )
        for line in (
            "void check_case(Options& options);",
            "  virtual bool check_licence() = 0;",
            "std::optional<Check> check_field(size_t field) const;",
            "    check_on_a_line_of_its_own(size_t field);",
            "CheckList check_all();",
        ):
            self.assertEqual(1, len(self.header(line)), line)


class Scripts(Tree):
    def script(self, text, mode=0o755, name="tools/a"):
        return self.findings(source_tree.scripts, {name: (text, mode)})

    def test_good(self):
        self.assertEqual([], self.script("#!/bin/sh\necho a\n"))
        self.assertEqual([], self.script("#!/usr/bin/env bash\na=(1 2)\n"))
        self.assertEqual([], self.script("fi\n", name="notes.txt"))

    def test_bad(self):
        self.assertEqual(["tools/a:1: not executable"], self.script("#!/bin/sh\necho a\n", 0o644))
        self.assertEqual(1, len(self.script("#!/usr/bin/env bash\nif true; then\n")))
        self.assertEqual(1, len(self.script("#!/bin/sh\na=(\n", name=".ci/run")))
        self.assertEqual(1, len(self.script("echo a\n", name="tools/a.sh")))

    def test_what_is_built_is_left_out(self):
        self.assertEqual([], self.script("#!/bin/sh\nfi\n", name="build/a"))


if __name__ == "__main__":
    unittest.main()
