"""The comparison with the lists finds what it is there for, and the list of types is whole."""
import io
import sys
import tempfile
import unittest
from contextlib import redirect_stderr
from pathlib import Path
from unittest import mock

sys.path.insert(0, str(Path(__file__).parent))

import compare  # noqa: E402
import interface  # noqa: E402

SYMBOLS = """                 U PvTraceWrite
                 w __cxa_finalize
                 U strlen@GLIBC_2.2.5
0000000000000000 A PVWAPI_C_1
0000000000001000 T pvw_cancel@@PVWAPI_C_1
0000000000002000 V _ZTV11CWapiClient
"""
ELF = "Dynamic Section:\n  NEEDED               libc.so.6\n  SONAME               libpvwapi_c.so.1\n"
DLL = """\tDLL Name: pvtrace.dll
\tvma:  Hint/Ord Member-Name Bound-To
\t80000008\t    8  <none>
\t5761c\t   21  PvTraceSetSink

Name \t\t\t\t0000703a some.dll
Ordinal Base \t\t\t6

Export Address Table -- Ordinal Base 6
\t[   0] +base[   6] 2434 Export RVA
\t[   1] +base[   7] 241c Export RVA
\t[   3] +base[   9] 23c0 Export RVA

[Ordinal/Name Pointer] Table
\t[   1] PvTraceSetSink
\t[   3] +base[   9] 0001 Other

"""
LAYOUTS = "type pvw_tab size 64, align 8\nmember pvw_tab.ID at 8, size 16\nvalue PVW_METHOD_POST 1\n"
LIST = ["export _ZTV11CWapiClient", "export pvw_cancel PVWAPI_C_1", "file libpvwapi_c.so.1", "import PvTraceWrite",
        "member pvw_tab.ID at 8, size 16", "type pvw_tab size 64, align 8", "value PVW_METHOD_POST 1"]


class WholeTest(unittest.TestCase):
    """From what the tools say to the end of the program."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.list = Path(folder.name) / "some-target/library.txt"
        self.told = {"nm": SYMBOLS, "objdump": ELF, "layouts": LAYOUTS}
        self.run_with("--write")

    def run_with(self, *options):
        """What the program ends with; None is good."""
        arguments = ["compare.py", *options, "--list", str(self.list), "--library", "library.so", "--nm", "nm",
                     "--objdump", "objdump", "--", "layouts"]
        with mock.patch.object(compare, "output", lambda tool, *_: self.told[tool]), \
                mock.patch.object(sys, "argv", arguments), redirect_stderr(io.StringIO()):
            try:
                return compare.main()
            except SystemExit as end:
                return end.code or None

    def replace(self, tool, before, after):
        self.assertIn(before, self.told[tool])
        self.told[tool] = self.told[tool].replace(before, after)

    def expect_lines(self, *lines):
        said = self.run_with().split("\n")
        self.assertEqual([line for line in said if line.startswith(("- ", "+ "))], list(lines))
        self.assertIn("the target abi_lists", said[-1])
        return said

    def test_the_list_is_what_was_written(self):
        self.assertEqual(self.list.read_text(encoding="utf-8").splitlines(), LIST)
        self.assertIsNone(self.run_with())

    def test_no_list(self):
        self.list.unlink()
        self.expect_lines(*("+ " + line for line in LIST))

    def test_a_member_in_another_place(self):
        self.replace("layouts", "ID at 8", "ID at 12")
        said = self.expect_lines("- member pvw_tab.ID at 8, size 16", "+ member pvw_tab.ID at 12, size 16")
        self.assertTrue(said[1].startswith("Gone or changed"))

    def test_a_record_of_another_size(self):
        self.replace("layouts", "size 64", "size 72")
        self.expect_lines("- type pvw_tab size 64, align 8", "+ type pvw_tab size 72, align 8")

    def test_another_number(self):
        self.replace("layouts", "POST 1", "POST 2")
        self.expect_lines("- value PVW_METHOD_POST 1", "+ value PVW_METHOD_POST 2")

    def test_a_name_that_is_gone(self):
        self.replace("nm", "0000000000001000 T pvw_cancel@@PVWAPI_C_1\n", "")
        self.expect_lines("- export pvw_cancel PVWAPI_C_1")

    def test_a_name_of_another_version(self):
        self.replace("nm", "@@PVWAPI_C_1", "@@PVWAPI_C_2")
        self.expect_lines("- export pvw_cancel PVWAPI_C_1", "+ export pvw_cancel PVWAPI_C_2")

    def test_another_file(self):
        self.replace("objdump", "libpvwapi_c.so.1", "libpvwapi_c.so.2")
        self.expect_lines("- file libpvwapi_c.so.1", "+ file libpvwapi_c.so.2")

    def test_what_is_new_is_told_apart(self):
        self.replace("layouts", "value", "value PVW_METHOD_PUT 2\nvalue")
        said = self.expect_lines("+ value PVW_METHOD_PUT 2")
        self.assertEqual(said[1], "New:")

    def test_a_name_of_somebody_else(self):
        for name in ("XML_Parse", "curl_easy_init", "_ZNSt6vectorIiE", "_ZTISt9exception", "_Znwm"):
            self.told["nm"] = SYMBOLS + f"0000000000003000 T {name}\n"
            for options in ((), ("--write",)):
                self.assertEqual(self.run_with(*options), f"These names are not the library's own:\nexport {name}")


class DllTest(unittest.TestCase):
    def test_ordinals_where_they_are_fixed(self):
        self.assertEqual(list(compare.of_dll(DLL, True)),
                         ["file some.dll", "export @6 without a name", "export PvTraceSetSink @7", "export Other @9",
                          "import pvtrace.dll:@8", "import pvtrace.dll:PvTraceSetSink"])

    def test_ordinals_in_a_table_of_64_bits(self):
        text = DLL.replace("80000008\t    8 ", "8000000000000008\t    000000008 ")
        self.assertNotEqual(text, DLL)
        self.assertEqual(list(compare.of_dll(text, True)), list(compare.of_dll(DLL, True)))

    def test_names_elsewhere(self):
        self.assertIn("export PvTraceSetSink", list(compare.of_dll(DLL, False)))


class InterfaceTest(unittest.TestCase):
    def test_a_record_without_a_table(self):
        for text in ("struct NEW_RECORD {\n", "    struct NEW_RECORD {\n", "struct Exchange {\n"):
            with self.assertRaises(interface.sources.Fault):
                interface.of_class([text])

    def test_a_member_that_the_table_of_its_record_lacks(self):
        tables = interface.sources.read_tables()
        row = '    Member{"reply", &CWapiClient::Exchange::reply},\n'
        self.assertIn(row, tables)
        with mock.patch.object(interface.sources, "read_tables", lambda: tables.replace(row, "")):
            with self.assertRaises(interface.sources.Fault) as caught:
                interface.of_class(list(interface.declarations()))
        self.assertEqual(str(caught.exception), "CWapiClient::Exchange has reply, and its table has not")

    def test_enumerations(self):
        text = "enum A : int { ONE = 1, TWO };\n    enum B : int {\n        THREE,\n    };\n    enum class C { x };\n"
        self.assertEqual(list(interface.enumerations(text)),
                         [("A", ["ONE", "TWO"]), ("CWapiClient::B", ["CWapiClient::THREE"])])

    def test_all_of_c_is_there(self):
        header = interface.C_HEADER.read_text(encoding="utf-8")
        written = "".join(interface.of_c(header))
        self.assertEqual(written.count("type<"), header.count("typedef struct pvw_") - 2 + 1)  # two are handles
        self.assertIn('member("pvw_exchange.headerCount", ', written)
        self.assertIn('value("PVW_NETWORK_LOCAL", ', written)


if __name__ == "__main__":
    unittest.main()
