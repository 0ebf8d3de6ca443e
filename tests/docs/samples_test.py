#!/usr/bin/env python3
"""Shows that a sample without a comment, or with a wrong one, is found."""
import unittest

import samples

FENCED = "Text.\n\n<!-- sample: {} -->\n```cpp\nint a = 1;\n```\n"
INDENTED = "Text.\n\n<!-- sample: {} -->\n\n    first\n\n    second\nText.\n"


def faults_of(text, only_cpp=False):
    return [fault for sample in samples.read_samples("a.md", text) for fault in samples.faults(sample, only_cpp)]


class Samples(unittest.TestCase):
    def test_a_fenced_block_has_its_place_and_its_text(self):
        sample, = samples.read_samples("a.md", FENCED.format('fragment context=user check="a == 1"'))
        self.assertEqual((sample.place, sample.language, sample.text), ("a.md:5", "cpp", "int a = 1;\n"))
        self.assertEqual(sample.values, {"context": "user", "check": "a == 1"})

    def test_an_indented_block_ends_with_its_last_line(self):
        sample, = samples.read_samples("a.md", INDENTED.format("shell expect=b"))
        self.assertEqual((sample.place, sample.kind, sample.text), ("a.md:5", "shell", "first\n\nsecond\n"))

    def test_a_block_in_a_list_loses_its_indent(self):
        sample, = samples.read_samples("a.md", "1. A\n\n   ```cpp\n   if (a)\n       b();\n   ```\n")
        self.assertEqual(sample.text, "if (a)\n    b();\n")

    def test_text_that_goes_on_in_a_list_is_no_block(self):
        self.assertEqual(list(samples.read_samples("a.md", "* one\n    and on\n")), [])

    def test_good_comments_are_no_faults(self):
        self.assertEqual(faults_of(FENCED.format("fragment check=a")), [])
        self.assertEqual(faults_of(INDENTED.format("none why=so")), [])

    def test_a_missing_comment_is_a_fault(self):
        self.assertIn("no comment", faults_of("\n```cpp\n```\n")[0])
        self.assertIn("no comment", faults_of("\n    a\n")[0])

    def test_other_documents_need_comments_for_cpp_alone(self):
        self.assertIn("no comment", faults_of("\n```cpp\n```\n", only_cpp=True)[0])
        self.assertEqual(faults_of("\n    a\n", only_cpp=True), [])

    def test_cpp_that_would_not_be_compiled_is_a_fault(self):
        self.assertIn("is no none", faults_of(FENCED.format("none why=so"))[0])
        self.assertIn("is no shell", faults_of(FENCED.format("shell expect=a"))[0])

    def test_c_that_stands_in_no_file_is_a_fault(self):
        in_c = FENCED.replace("```cpp", "```c")
        self.assertEqual(faults_of(in_c.format("source file=a.c")), [])
        self.assertIn("is no program", faults_of(in_c.format("program expect=a"))[0])
        self.assertIn("is no none", faults_of(in_c.format("none why=so"))[0])
        self.assertIn("is no source", faults_of(INDENTED.format("source file=a.c"))[0])

    def test_a_sample_that_checks_nothing_is_a_fault(self):
        self.assertIn("needs check=", faults_of(FENCED.format("fragment"))[0])
        self.assertIn("needs expect=", faults_of(INDENTED.format("shell"))[0])

    def test_an_unknown_kind_is_a_fault(self):
        self.assertIn("unknown kind", faults_of(FENCED.format("fragments check=a"))[0])


if __name__ == "__main__":
    unittest.main()
