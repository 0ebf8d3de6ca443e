#!/usr/bin/env python3
"""Shows that a link that leads nowhere is found."""
import tempfile
import unittest
from pathlib import Path

import links


class Links(unittest.TestCase):
    def faults(self, text):
        with tempfile.TemporaryDirectory() as folder:
            root = Path(folder)
            (root / "docs").mkdir()
            (root / "docs/b.md").write_text("# One\n\n## The library's own way, to-day\n", encoding="utf-8")
            (root / "README.md").write_text(text, encoding="utf-8")
            return list(links.faults(root))

    def test_links_that_lead_somewhere_are_good(self):
        self.assertEqual(self.faults("# A\n[b](docs/b.md) [c](docs/b.md#the-librarys-own-way-to-day) [a](#a)\n"), [])
        self.assertEqual(self.faults("[elsewhere](https://host.example/x)\n"), [])

    def test_a_file_that_is_not_there_is_found(self):
        self.assertIn("leads nowhere", self.faults("[b](docs/c.md)")[0])

    def test_a_heading_that_is_not_there_is_found(self):
        self.assertIn("no heading", self.faults("[b](docs/b.md#two)")[0])
        self.assertIn("no heading", self.faults("[b](#two)")[0])


if __name__ == "__main__":
    unittest.main()
