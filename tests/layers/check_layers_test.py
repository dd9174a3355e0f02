#!/usr/bin/env python3
"""Shows that check_layers.py refuses what it must refuse."""
import unittest

import check_layers

TABLE = check_layers.read_table(
    "| Folder | What | May use |\n|---|---|---|\n"
    "| `util/` | a | – |\n| `platform/` | b | `util` |\n| `pane/` | c | `util`, `platform` |\n"
    "| `tests/` | d | everything |\n"
)


class CheckLayersTest(unittest.TestCase):
    def includes(self, folder, text):
        return list(check_layers.include_problems(TABLE, folder, "x.cpp", text))

    def test_table_is_read_with_its_limits(self):
        self.assertEqual(TABLE["util"], set())
        self.assertEqual(TABLE["pane"], {"util", "platform"})
        self.assertEqual(TABLE["tests"], check_layers.EVERYTHING)

    def test_include_of_a_lower_folder_is_accepted(self):
        self.assertEqual(self.includes("platform", '#include "util/result.h"\n#include "platform/bundle.h"\n'), [])

    def test_include_of_an_upper_folder_is_refused(self):
        self.assertEqual(len(self.includes("util", '#include "platform/bundle.h"\n')), 1)

    def test_qt_is_refused_below_the_pane(self):
        self.assertEqual(len(self.includes("platform", "#include <QString>\n")), 1)
        self.assertEqual(len(self.includes("platform", "#include <QtCore/QString>\n")), 1)
        self.assertEqual(self.includes("pane", "#include <QString>\n"), [])

    def test_tests_may_include_everything(self):
        self.assertEqual(self.includes("tests", '#include "pane/a.h"\n#include <QTest>\n'), [])

    def test_link_against_the_table_is_refused(self):
        targets = {"util": ("util", []), "platform_a": ("platform", ["util"]), "bad": ("util", ["platform_a"])}
        self.assertEqual(len(list(check_layers.link_problems(TABLE, targets))), 1)

    def test_folders_and_table_name_each_other(self):
        self.assertEqual(list(check_layers.folder_problems(TABLE, {"util", "platform", "pane", "tests"})), [])
        self.assertEqual(len(list(check_layers.folder_problems(TABLE, {"util", "platform", "pane", "x", "tests"}))), 1)
        self.assertEqual(len(list(check_layers.folder_problems(TABLE, {"util", "platform", "pane"}))), 1)


if __name__ == "__main__":
    unittest.main()
