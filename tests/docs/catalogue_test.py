#!/usr/bin/env python3
"""Shows that a gap in the catalogue is found, and so is what does not exist."""
import unittest

import catalogue

HEADER = """
    enum NETWORK_ERROR : int {
        NETWORK_NONE = 0,  ///< a reply came
        NETWORK_REFUSED = 3
    };
    int getNetworkError() const;
"""
PAGE = """
## No reply

| no. | kind | what |
|---|---|---|
| 0 | `NETWORK_NONE` | nothing, says `getNetworkError()` |
| 3 | `NETWORK_REFUSED` | nobody |

## The library's own reasons

| reason | what |
|---|---|
| `Too large: ` | too large |

## The service said no

| identifier | what |
|---|---|
| `KZN:Conflict` | not now |
"""


class Catalogue(unittest.TestCase):
    def faults(self, page=PAGE, reasons=frozenset({"Too large:"}), exceptions=frozenset({"KZN:Conflict"})):
        return list(catalogue.faults(page, catalogue.kinds_of(HEADER), reasons, exceptions, HEADER))

    def one_fault(self, words, **changed):
        found = self.faults(**changed)
        self.assertTrue(found, "no fault found")
        self.assertIn(words, found[0])

    def test_a_whole_page_has_no_fault(self):
        self.assertEqual(self.faults(), [])

    def test_a_gap_is_found(self):
        self.one_fault("'NETWORK_REFUSED', 3) is missing", page=PAGE.replace("| 3 | `NETWORK_REFUSED` | nobody |", ""))
        self.one_fault("'Not there.' is missing", reasons={"Too large:", "Not there."})
        self.one_fault("'KZN:BadXml' is missing", exceptions={"KZN:Conflict", "KZN:BadXml"})

    def test_what_does_not_exist_is_found(self):
        self.one_fault("NETWORK_LOST", page=PAGE.replace("nobody", "`NETWORK_LOST`"))
        self.one_fault("'Too large:' does not exist", reasons=set())
        self.one_fault("KZN:Lost", page=PAGE.replace("not now", "or `KZN:Lost`"))
        self.one_fault("no getLost()", page=PAGE.replace("getNetworkError", "getLost"))

    def test_a_wrong_number_is_found(self):
        self.one_fault("'NETWORK_REFUSED', 3) is missing", page=PAGE.replace("| 3 |", "| 4 |"))

    def test_reasons_are_found_wherever_they_are_given(self):
        source = """constexpr std::string_view kGone =
    "Gone to ";  // here
int a() { return refuse(b() ? "One: " : "Two: ", path); }
int b() { return refuse(kGone, wide("x")); }
void c() { keepFailure("three"); }
auto d = "<kznapi><reason>Four!</reason></kznapi>";
"""
        self.assertEqual(catalogue.reasons_of(source), {"Gone to", "One:", "Two:", "x", "three", "Four!"})


if __name__ == "__main__":
    unittest.main()
