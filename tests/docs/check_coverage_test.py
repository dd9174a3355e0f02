#!/usr/bin/env python3
"""Shows that check_coverage.py refuses what it must refuse."""
import json
import pathlib
import tempfile
import unittest

import check_coverage

TESTS = {"a/b_test.cpp": {"Suite.Name", "Suite.Other"}, "e/f_test.py": {"test_it"}}
HEAD = "# Title\n\n## Subject\n\n| Rule | Test |\n|---|---|\n"


def problems(text):
    return list(check_coverage.table_problems(text, TESTS.get))


class CheckCoverageTest(unittest.TestCase):
    def refuses(self, text, words):
        found = problems(text)
        self.assertEqual(len(found), 1, found)
        self.assertIn(words, found[0])

    def test_complete_table_is_accepted(self):
        self.assertEqual(problems(HEAD + "| x | `a/b_test.cpp: Suite.Name, Suite.Other` |\n"
                                         "| y | `a/b_test.cpp: Suite.Name`, `e/f_test.py: test_it` |\n"), [])

    def test_unknown_test_is_refused(self):
        self.refuses(HEAD + "| x | `a/b_test.cpp: Suite.Name, Suite.Gone` |\n", "no test Suite.Gone")
        self.refuses(HEAD + "| x | `e/f_test.py: test_gone` |\n", "no test test_gone")

    def test_unknown_file_is_refused(self):
        self.refuses(HEAD + "| x | `a/c_test.cpp: Suite.Name` |\n", "tests/a/c_test.cpp")

    def test_empty_cell_is_refused(self):
        self.refuses(HEAD + "| x | |\n", "no test holds")
        self.refuses(HEAD + "| | `a/b_test.cpp: Suite.Name` |\n", "rule is missing")
        self.assertEqual(len(problems(HEAD + "| | |\n")), 2)

    def test_row_of_another_number_of_cells_is_refused(self):
        self.refuses(HEAD + "| x |\n| y | `e/f_test.py: test_it` |\n", "cells")
        self.refuses(HEAD + "| x | `e/f_test.py: test_it` | z |\n| y | `e/f_test.py: test_it` |\n", "cells")

    def test_words_in_place_of_a_test_are_refused(self):
        self.refuses(HEAD + "| x | by hand |\n", "backticks")
        self.refuses(HEAD + "| x | `by hand` |\n", "no `file: test`")
        self.refuses(HEAD + "| x | `e/f_test.py: test_it` mostly |\n", "backticks")

    def test_rule_given_twice_is_refused(self):
        self.refuses(HEAD + "| x | `e/f_test.py: test_it` |\n| x | `e/f_test.py: test_it` |\n", "twice")

    def test_subject_or_document_without_rules_is_refused(self):
        self.refuses(HEAD + "| x | `e/f_test.py: test_it` |\n\n## Empty\n", "Empty")
        self.refuses("# Title\n", "no subject")

    def test_table_without_its_head_is_refused(self):
        self.refuses("## S\n\n| x | `e/f_test.py: test_it` |\n|---|---|\n| y | `e/f_test.py: test_it` |\n", "begins")

    def test_every_way_of_writing_a_test_is_read(self):
        self.assertEqual(
            check_coverage.tests_in("a.cpp", "TEST(A, B) {}\nTEST_F(C, D)\nTEST_P(\n    E, F)\nRC_GTEST_PROP(G, H, ())\n"),
            {"A.B", "C.D", "E.F", "G.H"})
        self.assertEqual(check_coverage.tests_in("a.py", "class T:\n    def test_x(self):\n"), {"test_x"})

    def test_test_in_a_comment_is_none(self):
        self.assertEqual(check_coverage.tests_in("a.cpp", "// TEST(A, B) {}\n/* TEST(C, D)\n TEST(E, F) */\n"), set())
        self.assertEqual(check_coverage.tests_in("a.py", "class T:\n    # def test_x(self):\n"), set())

    def test_source_that_nothing_builds_or_runs_has_no_tests(self):
        with tempfile.TemporaryDirectory() as name:
            tests, build = pathlib.Path(name) / "tests", pathlib.Path(name) / "build"
            for folder in (tests, build / "tests/a"):
                folder.mkdir(parents=True)
            for stem in ("built", "left"):
                (tests / f"{stem}_test.cpp").write_text("TEST(A, B) {}\n")
                (tests / f"{stem}_test.py").write_text("def test_it(self):\n")
            (build / "compile_commands.json").write_text(
                json.dumps([{"directory": str(build), "file": str(tests / "built_test.cpp")}]))
            (build / "tests/a/CTestTestfile.cmake").write_text(f'add_test(x "{tests / "built_test.py"}")\n')
            tests_of = check_coverage.source_reader(tests, check_coverage.built_sources(build))
            self.assertEqual(tests_of("built_test.cpp"), {"A.B"})
            self.assertEqual(tests_of("built_test.py"), {"test_it"})
            for gone in ("left_test.cpp", "left_test.py", "gone_test.cpp"):
                self.assertIsNone(tests_of(gone))


if __name__ == "__main__":
    unittest.main()
