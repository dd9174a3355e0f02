#!/usr/bin/env python3
"""Shows which sources are joined for clang-tidy, and that nothing in them is lost by it."""
import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent.parent / "cmake"))
import tidy_batches  # noqa: E402

HEAD = '#include "a/b.h"\n\n#include <string>\n\nnamespace veltrix {\n'
INSIDE = "namespace {\n\nint one() {\n  return 1;\n}\n\n}  // namespace\n"
END = "}  // namespace veltrix\n"


class TidyBatchesTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def write(self, name, text):
        (self.folder / name).write_text(text, encoding="utf-8")
        return self.folder / name

    def entry(self, name, text, flags="-O1"):
        return {"file": str(self.write(name, text)), "command": f"ccache c++ {flags} -MD -MF x.d -o x.o -c {name}"}

    def sizes(self, *entries):
        return sorted(len(batch) for batch in tidy_batches.in_batches(list(entries)))

    def test_sources_of_one_shape_are_joined(self):
        self.assertEqual(self.sizes(*(self.entry(f"{i}.cpp", HEAD + INSIDE + END) for i in range(tidy_batches.BATCH + 2))),
                         [2, tidy_batches.BATCH])

    def test_other_shapes_stay_alone(self):
        for text in ("int main() {}\n", HEAD + "#define X\n" + INSIDE + END, HEAD + INSIDE + INSIDE + END,
                     '#include "near.h"\n' + HEAD + INSIDE + END, HEAD + INSIDE + END + "int three;\n",
                     "#define Y\n" + HEAD + INSIDE + END):
            self.assertIsNone(tidy_batches.parts_of(text), text)
            self.assertEqual(self.sizes(self.entry("a.cpp", text), self.entry("b.cpp", HEAD + INSIDE + END)), [1, 1])

    def test_sources_that_declare_the_same_names_are_not_joined(self):
        rest = "int two() {\n  return one();\n}\n"
        for inside, sizes in ((INSIDE, [1, 1]), (INSIDE.replace("int one()", "int more(int one)"), [2]),
                              ("namespace {\nclass one {};\n}  // namespace\n", [1, 1]),
                              ("namespace {\nconstexpr int one = 1;\n}  // namespace\n", [1, 1])):
            self.assertEqual(self.sizes(self.entry("a.cpp", HEAD + INSIDE + rest + END),
                                        self.entry("b.cpp", HEAD + inside + rest + END)), sizes, inside)
        self.assertEqual(self.sizes(self.entry("a.cpp", HEAD + INSIDE + rest + END), self.entry("b.cpp", HEAD + INSIDE + END)), [2])

    def test_sources_with_other_flags_are_not_joined(self):
        self.assertEqual(self.sizes(self.entry("a.cpp", HEAD + INSIDE + END), self.entry("b.cpp", HEAD + INSIDE + END, "-O2")),
                         [1, 1])

    def test_flags_are_those_of_the_compiler(self):
        entry = {"command": 'ccache c++ -DX=\\"a\\" -isystem /q -O1 -MD -MT x.o -MF x.d -o x.o -c a.cpp'}
        self.assertEqual(tidy_batches.flags_of(entry), ('-DX="a"', "-isystem", "/q", "-O1"))

    def test_what_is_unnamed_gets_a_name_of_its_own(self):
        text = tidy_batches.joined([self.write("a.cpp", HEAD + INSIDE + END), self.write("b.cpp", HEAD + INSIDE + END)])
        self.assertEqual(text.count("#include <string>\n"), 1)
        self.assertEqual(text.count("int one() {\n  return 1;\n}\n"), 2)
        self.assertIn("namespace source_0 {\n", text)
        self.assertIn("namespace source_1 {\n", text)
        self.assertNotIn("namespace {\n", text)


if __name__ == "__main__":
    unittest.main()
