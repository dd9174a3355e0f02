#!/usr/bin/env python3
"""Shows that check_commands.py refuses what it must refuse."""
import unittest

import check_commands

TESTS = {"a/b_test.cpp": {"Suite.Name"}, "e/f_test.py": {"test_it"}}


def problems(row):
    return list(check_commands.problems(row, TESTS.get))


class CheckCommandsTest(unittest.TestCase):
    def test_row_with_tests_is_accepted(self):
        self.assertEqual(problems("| 1 | Click | clicks | driver | X11: `a/b_test.cpp: Suite.Name`; sway: `e/f_test.py: test_it` |"), [])

    def test_row_without_a_test_is_refused(self):
        self.assertEqual(len(problems("| 1 | Click | clicks | driver | X11 |")), 1)
        self.assertEqual(len(problems("| 1 | Click | clicks | driver | |")), 1)
        self.assertEqual(len(problems("| 1 | Click | clicks | driver |")), 1)

    def test_unknown_test_is_refused(self):
        self.assertEqual(len(problems("| 1 | Click | clicks | driver | X11: `a/b_test.cpp: Suite.Gone` |")), 1)
        self.assertEqual(len(problems("| 1 | Click | clicks | driver | X11: `a/gone_test.cpp: Suite.Name` |")), 1)

    def test_row_with_a_check_by_hand_is_accepted_when_the_check_has_the_command(self):
        codes = {"d/g_check.py": check_commands.codes_in("CHECKS = {\n    1: Check(seen),\n    3: Check(seen),\n}\n")}
        def found(row):
            return list(check_commands.problems(row, TESTS.get, lambda script: codes.get(script, set())))
        self.assertEqual(found("| 1 | Click | clicks | driver | GNOME, by hand: `d/g_check.py: 1` |"), [])
        self.assertEqual(len(found("| 2 | Click | clicks | driver | GNOME, by hand: `d/g_check.py: 2` |")), 1)
        self.assertEqual(len(found("| 1 | Click | clicks | driver | GNOME, by hand: `d/g_check.py: 3` |")), 1)
        self.assertEqual(len(found("| 1 | Click | clicks | driver | GNOME, by hand: `d/gone_check.py: 1` |")), 1)

    def test_page_without_commands_is_refused(self):
        self.assertEqual(len(problems("nothing")), 1)


if __name__ == "__main__":
    unittest.main()
