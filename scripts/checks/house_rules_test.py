#!/usr/bin/env python3
"""Shows that each house rule can fail, and that it fails only where it should."""
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import house_rules  # noqa: E402 (found through the line above)

PACKAGE = "set(PVWAPI_PUBLIC_HEADERS\n    client/WapiClient.h\n    pvutil/StringEx.h\n)\n"


class HouseRules(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.root = Path(self.folder.name)
        self.write("cmake/Package.cmake", PACKAGE)
        self.write("CMakeLists.txt", "project(pvWapi)\n")

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(text.encode("utf-8"))

    def faults(self, name, text):
        if name.endswith(".h") and "#pragma once" not in text:
            text = "#pragma once\n" + text
        self.write(name, text)
        return list(house_rules.check(self.root))

    def bad(self, name, text, words):
        found = self.faults(name, text)
        self.assertEqual(len(found), 1, f"one fault expected in {text!r}, found {found}")
        self.assertTrue(found[0].startswith(name + ":"), found[0])
        self.assertIn(words, found[0])
        (self.root / name).unlink()

    def good(self, name, text):
        self.assertEqual(self.faults(name, text), [])
        (self.root / name).unlink()

    def test_file_lengths(self):
        self.bad("client/A.cpp", "int a;\n" * 401, "401 lines")
        self.good("client/A.cpp", "int a;\n" * 400)
        self.bad("client/A.h", "#pragma once\n" + "int a;\n" * 200, "201 lines")
        self.good("client/A.h", "#pragma once\n" + "int a;\n" * 199)
        self.good("client/WapiClient.h", "#pragma once\n" + "int a;\n" * 300)

    def test_line_length_and_blanks(self):
        self.bad("client/A.cpp", "//" + "x" * 119 + "\n", "121 columns")
        self.good("client/A.cpp", "//" + "\u00e4" * 118 + "\n")
        self.bad("client/A.cpp", "int a; \n", "blanks at the end")
        self.bad("client/A.cpp", "\tint a;\n", "a tab")
        self.bad("scripts/run", "#" * 121 + "\n", "121 columns")
        self.bad("tests/CMakeLists.txt", "#" * 121 + "\n", "121 columns")

    def test_line_ends_and_pragma(self):
        self.bad("client/A.cpp", "int a;", "line feed")
        self.write("client/A.h", "int a;\n")
        self.assertIn("#pragma once is missing", list(house_rules.check(self.root))[0])

    def test_conditionals(self):
        for line in ("#ifdef X", "#ifndef X", "# if 1", "#elif X", "int a = _WIN32;"):
            self.bad("client/A.cpp", line + "\n", "conditional")
            self.good("pvutil/win32/A.cpp", line + "\n")
        self.good("pvutil/posix/A.cpp", "#if 1\n")
        self.good("pvtrace/A.cpp", "#ifdef _WIN32\n")
        self.good("pvutil/Platform.h", "#ifdef _WIN32\n")
        self.bad("pvutil/Other.h", "#ifdef _WIN32\n", "conditional")

    def test_banned_words(self):
        self.bad("client/A.cpp", "auto a = new int;\n", "new:")
        self.bad("client/A.cpp", "auto a = new (std::nothrow) int;\n", "new:")
        self.bad("client/A.cpp", "delete a;\n", "delete:")
        self.bad("client/A.cpp", "delete[] a;\n", "delete:")
        self.bad("client/A.cpp", "void* a = malloc(1);\n", "C heap")
        self.bad("client/A.cpp", "std::free(a);\n", "C heap")
        self.bad("client/A.cpp", "std::sprintf(a, b);\n", "sprintf")
        self.bad("client/A.cpp", "vsprintf(a, b, c);\n", "sprintf")
        self.bad("client/A.cpp", "std::unordered_map<int, int> a;\n", "hash table")
        self.bad("client/A.cpp", "std::unordered_multiset<int> a;\n", "hash table")
        self.bad("client/A.cpp", "auto a = 1'000; auto b = new int; auto c = 'x';\n", "new:")

    def test_words_that_are_not_banned(self):
        self.good("client/A.cpp", "struct A { A(const A&) = delete; };\n")
        self.good("client/A.cpp", "#include <new>\n#include <unordered_map>\n")
        self.good("client/A.cpp", '// a new one\n/* delete\nnew */ const char* a = "new \\" delete"; char b = \'"\';\n')
        self.good("client/A.cpp", 'const char* a = R"(new\ndelete)"; int renewed, newest;\n')

    def test_include_directions(self):
        self.bad("pvutil/A.cpp", '#include "client/WapiClient.h"\n', "pvutil/ may not include")
        self.bad("pvutil/A.cpp", "#include <curl/curl.h>\n", "pvutil/ may not include <curl/curl.h>")
        self.good("pvutil/A.cpp", '#include <expat.h>\n#include <string>\n#include "pvutil/StringEx.h"\n')
        self.good("pvutil/posix/A.cpp", "#include <curl/curl.h>\n")
        self.bad("pvtrace/A.cpp", '#include "pvutil/StringEx.h"\n', "pvtrace/ may not include")
        self.bad("records/A.h", '#include "pvutil/HttpClient.h"\n', "records/ may not include")
        self.bad("client/A.cpp", '#include "spaces/A.h"\n', "client/ may not include")
        self.bad("client/A.cpp", "#include <windows.h>\n", "client/ may not include <windows.h>")
        self.bad("spaces/A.cpp", '#include "account/A.h"\n', "spaces/ may not include")
        self.bad("account/A.cpp", '#include "access/A.h"\n', "account/ may not include")
        self.good("access/A.cpp", '#include "spaces/A.h"\n#include "client/A.h"\n')
        self.bad("host/A.cpp", '#include "client/FormBody.h"\n', "host/ may not include")
        self.bad("log/A.cpp", '#include "client/WapiClient.h"\n', "log/ may not include")
        self.bad("log/A.h", "#include <windows.h>\n", "log/ may not include")
        self.good("log/A.cpp", '#include <CLI/CLI.hpp>\n#include <nlohmann/json.hpp>\n#include "log/A.h"\n')
        self.good("host/A.cpp", '#include <CLI/CLI.hpp>\n#include "client/WapiClient.h"\n#include "host/A.h"\n')
        self.bad("service/http/A.cpp", '#include "pvutil/StringEx.h"\n', "service/ may not include")
        self.bad("examples/a/A.cpp", '#include "client/FormBody.h"\n', "examples/ may not include")
        self.bad("tests/A.cpp", '#include "A.h"\n', "not rooted")

    def test_public_headers(self):
        self.bad("client/WapiClient.h", '#include "client/FormBody.h"\n', "may not include")
        self.bad("client/WapiClient.h", "#include <unistd.h>\n", "a public header may not include <unistd.h>")
        self.bad("pvutil/StringEx.h", "#include <expat.h>\n", "a public header may not include <expat.h>")
        self.good("client/WapiClient.h", '#include <vector>\n#include "pvutil/StringEx.h"\n')


if __name__ == "__main__":
    unittest.main()
