#!/usr/bin/env python3
"""Shows that a version which is not the library's is found."""
import tempfile
import unittest
from pathlib import Path

import version


class Version(unittest.TestCase):
    def of_changes(self, *headings):
        return list(version.faults_of_changes("".join(f"## {heading}\n\n* x\n\n" for heading in headings), "1.2.0"))

    def test_good_changes(self):
        self.assertEqual(self.of_changes("1.2.0 - 2026-02-01"), [])
        self.assertEqual(self.of_changes("Unreleased", "1.2.0 - 2026-02-01", "1.1.10 - 2026-01-31"), [])

    def test_changes_of_another_version(self):
        for headings in ([], ["Unreleased"], ["1.1.0 - 2026-02-01"], ["1.3.0 - 2026-02-01", "1.2.0 - 2026-01-01"]):
            self.assertEqual(self.of_changes(*headings), ["CHANGELOG.md: the newest version is not 1.2.0"])

    def test_versions_out_of_order(self):
        for headings in (["1.2.0 - 2026-02-01", "1.3.0 - 2026-01-01"], ["1.2.0 - 2026-02-01", "1.1.0 - 2026-03-01"],
                         ["1.2.0 - 2026-02-01", "1.2.0 - 2026-01-01"]):
            self.assertEqual(self.of_changes(*headings), ["CHANGELOG.md: the versions are not in their order"])

    def test_a_heading_that_is_no_version(self):
        for heading in ("1.2.0", "1.2 - 2026-02-01", "1.2.0 - soon"):
            self.assertIn("is no version with its day", self.of_changes(heading)[0])

    def test_texts(self):
        for text, good in (("pvwapi 1.2.0\n", True), ("Version: 1.2.0", True), ("no", False), ("1.2.1", False),
                           ("11.2.0", False), ("1.2.0.1", False), ("1.2.0 and 1.1.0", False)):
            self.assertEqual(not list(version.faults_of_text("x", text, "1.2.0")), good, text)

    def test_documents(self):
        with tempfile.TemporaryDirectory() as folder:
            root = Path(folder)
            (root / "docs").mkdir()
            (root / "docs/a.md").write_text('{"version":"1.2.0"} {"version": "1.1.0"}\n', encoding="utf-8")
            self.assertEqual(list(version.faults_of_documents(root, "1.2.0")),
                             ["docs/a.md: names 1.1.0, and not 1.2.0"])

    def test_programs(self):
        self.assertEqual(version.commands(["a", "b", "--", "c", "--"]), [["a", "b"], ["c"]])


if __name__ == "__main__":
    unittest.main()
