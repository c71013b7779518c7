"""A tree with one fault of each kind: tools/check must name every one, and nothing in a clean tree."""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]

CLEAN = '''#include "lib/good.h"

#include "lib/xon.h"

int Good(int a)
{
    int result = 0;
    __enter
        result = Call(a); __test;
        auto twice = [](int b) { return 2 * b; };
        result = twice(result);
    __point
        Undo();
    __treat
    return result;
}
'''


class CheckTest(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.root)
        (self.root / "tools").mkdir()
        for name in ("tools/check", "tools/format", ".clang-format"):
            shutil.copy(SOURCE / name, self.root / name)
        subprocess.run(["git", "init", "-q", "."], cwd=self.root, check=True)
        for name in ("good.h", "xon.h"):
            self.put(f"lib/{name}", "")
        self.put("lib/good.cpp", CLEAN)
        self.put("lib/README.md", "# Library\n")
        self.put("tools/README.md", "# Tools\n")

    def put(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def findings(self):
        run = subprocess.run([self.root / "tools/check"], capture_output=True, text=True)
        self.assertEqual(run.returncode == 0, "clean" in run.stdout, run.stdout + run.stderr)
        return run.stdout

    def assert_finds(self, name, text, expected):
        self.put(name, text)
        self.assertIn(expected, self.findings())

    def test_a_clean_tree_is_clean(self):
        self.assertEqual(self.findings(), "tools/check: clean\n")

    def test_a_return_in_a_guarded_body_is_found(self):
        faulty = CLEAN.replace("        result = twice(result);\n", "        return result;\n")
        self.assert_finds("lib/good.cpp", faulty, "lib/good.cpp:11: return inside a guarded body")

    def test_an_include_behind_the_macros_is_found(self):
        faulty = CLEAN.replace('"lib/xon.h"', '"lib/other.h"')
        self.assert_finds("lib/good.cpp", faulty, "lib/xon.h must be the last include")

    def test_unpaired_macros_are_found(self):
        self.assert_finds("lib/good.cpp", CLEAN.replace("    __point\n", ""), "do not pair")

    def test_an_upward_include_is_found(self):
        self.assert_finds("lib/good.h", '#include "ker/emroom.h"\n', "lib may not include ker/emroom.h")

    def test_a_framework_file_that_knows_the_application_is_found(self):
        self.put("usr/README.md", "# User\n")
        self.assert_finds("usr/edcx.h", '#include "usr/zulpass.h"\n', "the framework may not include")

    def test_a_toolkit_header_is_found(self):
        self.assert_finds("lib/good.h", "#include <QWidget>\n", "toolkit header outside")

    def test_a_toolkit_name_is_found(self):
        self.assert_finds("lib/good.h", "class Q" + "Widget;\n", "lib/good.h:1: names the toolkit")

    def test_an_unformatted_file_is_found(self):
        self.assert_finds("lib/good.h", "int  a ;\n", "not formatted: lib/good.h")

    def test_a_forbidden_word_is_found(self):
        self.assert_finds("lib/good.h", "// see the speci" + "fication\n", "forbidden word")

    def test_a_leftover_is_found(self):
        self.assert_finds("lib/good.h", "// TO" + "DO: later\n", "forbidden word")

    def test_an_endless_file_is_found(self):
        self.assert_finds("lib/good.h", "\n" * 801, "lib/good.h: 801 lines")

    def test_a_folder_without_a_line_is_found(self):
        self.assert_finds("ker/good.h", "", "ker: no README.md")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
