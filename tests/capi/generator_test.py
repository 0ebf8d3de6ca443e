"""The check of the description against the class finds what it is there for, and so does that of the written files."""
import contextlib
import copy
import io
import re
import sys
import unittest
from pathlib import Path
from unittest import mock

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "capi"))

import agreement  # noqa: E402
import generate  # noqa: E402
import records  # noqa: E402
import sources  # noqa: E402
import words  # noqa: E402


class AgreementTest(unittest.TestCase):
    def setUp(self):
        self.description = sources.read_description()
        self.declarations = list(sources.read_class())

    def operation(self, name):
        return next(operation for operation in self.description.operations if operation.name == name)

    def faults(self):
        return list(agreement.faults(self.description, self.declarations))

    def test_the_description_as_it_is_has_no_fault(self):
        self.assertEqual(self.faults(), [])
        self.assertGreater(len(self.declarations), 70)

    def test_a_member_that_the_description_lacks(self):
        self.description.operations.remove(self.operation("getTabs"))
        del self.description.frame["pvw_cancel"]
        self.assertEqual(self.faults(), ["the class has cancel, and the description has not",
                                         "the class has getTabs, and the description has not"])

    def test_a_member_that_the_class_lacks(self):
        self.declarations = [found for found in self.declarations if found.name not in ("getTabs", "setLog")]
        self.assertEqual(self.faults(), ["the description has getTabs, and the class has not",
                                         "the description has setLog, and the class has not"])

    def test_parameters_that_are_others(self):
        self.operation("getTabs").parameters.pop()
        swapped = self.operation("createTab").parameters
        swapped[1], swapped[2] = swapped[2], swapped[1]
        self.assertEqual(len(self.faults()), 2)
        self.assertTrue(all("has the parameters" in fault for fault in self.faults()))

    def test_parameters_of_another_type(self):
        for kind, record in (("int", ""), ("list", "CZelMember"), ("list", "text"), ("record", "CZelTab")):
            parameter = self.operation("getTabs").parameters[2]
            parameter.kind, parameter.record = kind, record
            self.assertEqual(self.faults(), ["getTabs takes tabs as std::vector<CZelTab>&"])

    def test_a_text_that_goes_the_other_way(self):
        self.operation("cloneSession").parameters[2].goes_out = False
        self.assertEqual(self.faults(), ["cloneSession takes newCred as CStringT&"])

    def test_an_answer_of_another_type(self):
        self.operation("getRootCred").parameters[0].kind = "int"
        self.assertEqual(self.faults(), ["getRootCred answers with const CStringT&"])

    def test_an_ordinal_that_is_taken(self):
        self.operation("getTabs").ordinal = 1
        self.assertEqual(self.faults(), ["pvw_get_tabs and pvw_abi_version have the ordinal 1"])

    def test_a_function_of_a_version_to_come(self):
        self.operation("getTabs").since = 2
        self.assertEqual(self.faults(), ["a function is of version 2 of the interface, and abi is 1"])
        self.description.abi = 2
        self.assertEqual(self.faults(), [])

    def test_two_functions_of_one_name(self):
        for at in (0, len(self.declarations)):
            further = copy.copy(next(found for found in self.declarations if found.name == "getTabs"))
            declarations = self.declarations.copy()
            declarations.insert(at, further)
            self.assertEqual(list(agreement.faults(self.description, declarations)), ["the class has 2 of getTabs"])

    def test_a_member_that_the_table_of_its_record_lacks(self):
        headers = sources.record_headers()
        for place, line, fault in (
                ("    CStringT spaceIconURL;\n    int role = 0;", "    CStringT more;", "SpaceForList has more"),
                ("    CStringT spaceIconURL;\n    int role = 0;", "    unsigned int more[2] = {};  ///< a note",
                 "SpaceForList has more"),
                ("    int role = 0;  ///< 1 member, 2 administrator; 0 while unknown\n};\n\n/// An inv",
                 "    int also = toInt(status), more{7};", "SpaceForList has also, more"),
                ("    CStringT GetID() const", "    const CStringT& GetMore() const { return more_; }",
                 "CZelTab has GetMore"),
                ("    CStringT name;\n    CStringT ID;\n    CStringT description;\n\nprivate", "    bool more = false;",
                 "CZelTemplateItem has more")):
            grown = headers.replace(place, f"{line}\n{place}", 1)
            self.assertNotEqual(grown, headers)
            with self.assertRaises(sources.Fault) as caught:
                list(sources.read_records(self.description.records, grown))
            self.assertEqual(str(caught.exception), f"{fault}, and its table has not")

    def test_what_is_no_member(self):
        headers = sources.record_headers()
        place = "    CStringT workspaceID;\n    CStringT workspaceName;\n    CStringT status;"
        for line in ("    void more(int a);", "    int more() const { return 7; }", "    static int more;",
                     "    using More = std::vector<int>;", "    enum class More : int { one, two };",
                     "    friend struct More;", "    CStringT GetMore() const;", "    // CStringT more;"):
            self.assertEqual(headers.count(place), 1)
            grown = headers.replace(place, f"{line}\n{place}")
            self.assertEqual(len(list(sources.read_records(self.description.records, grown))),
                             len(self.description.records))

    def test_a_record_without_its_table(self):
        with self.assertRaises(sources.Fault):
            list(sources.read_records(["NoSuchRecord"]))


class ClassTest(unittest.TestCase):
    """No public member of the class is overlooked, however it is written."""

    TEXT = sources.CLASS_HEADER.read_text(encoding="utf-8")
    PLACE = "    int getTabs("

    def names_with(self, line, place=PLACE):
        text = self.TEXT.replace(place, f"{line}\n{place}", 1)
        self.assertNotEqual(text, self.TEXT)
        return [found.name for found in sources.read_class(text)]

    def test_what_is_understood(self):
        own = [found.name for found in sources.read_class()]
        for line in ("    int further(int a);", "    [[nodiscard]] int further(int a) const noexcept;",
                     "    int further(int a);  // a note", "    int further(int a,\n                int b);"):
            names = self.names_with(line)
            self.assertEqual(sorted(names), sorted([*own, "further"]))
        self.assertEqual(self.names_with("    using Tabs = std::vector<CZelTab>;"), own)

    def test_what_nobody_understands(self):
        for line in ("    virtual int further(int a) = 0;", "    int further(int a) { return a; }",
                     "    int further(int a)\n    {\n        return a;\n    }", "    int further = 0;"):
            with self.assertRaises(sources.Fault):
                self.names_with(line)

    def test_what_stands_elsewhere(self):
        for line, place in (("    int further(int a);", "    // ---- Life -"),
                            ("public:\n    int further(int a);\nprivate:\n", "    friend struct ")):
            with self.assertRaises(sources.Fault):
                self.names_with(line, place)


class HeaderTest(unittest.TestCase):
    def setUp(self):
        self.header = (sources.ROOT / "capi/pvwapi_c.h").read_text(encoding="utf-8")

    def faults_without(self, text):
        self.assertIn(text, self.header)
        return list(agreement.header_faults(self.header.replace(text, "")))

    def test_each_constant_of_the_class(self):
        self.assertEqual(list(agreement.header_faults(self.header)), [])
        self.assertGreater(len(list(sources.read_enumerations())), 28)
        self.assertEqual(self.faults_without("PVW_END_VOICE = 4,"), ["END_VOICE is 4, and PVW_END_VOICE is None"])
        self.assertEqual(len(self.faults_without("PVW_METHOD_GET = 0, ")), 1)
        self.assertEqual(len(self.faults_without("PVW_INVITEAS_MEMBER = 1, ")), 1)
        self.assertEqual(len(self.faults_without("PVW_NETWORK_REFUSED = 3,")), 1)

    def test_each_member_of_an_exchange(self):
        [fault] = self.faults_without("    unsigned int milliseconds;  ///< how long it took\n")
        self.assertIn("and that of C method, url, headers, body, status, reply", fault)


class RecordsTest(unittest.TestCase):
    def test_one_that_has_grown_is_taken_from_an_earlier_host(self):
        description = sources.read_description()
        members = {record: (above, of_it) for record, above, of_it in sources.read_records(description.records)}
        description.grown = {"CZelTab": "position"}
        text = records.conversions_header(description, members)
        self.assertIn("kLeast = offsetof(pvw_tab, position);", text)
        self.assertIn("kLeast = sizeof(pvw_invitation);", text)


class BindingsTest(unittest.TestCase):
    def test_a_function_of_the_frame_that_a_binding_lacks(self):
        description = sources.read_description()
        whole = " ".join(description.frame)
        words.expect_frame(description, {"binding": whole})
        with self.assertRaises(sources.Fault) as caught:
            words.expect_frame(description, {"binding": whole.replace("pvw_cancel", "pvw_cancelled")})
        self.assertEqual(str(caught.exception), "binding has nothing of pvw_cancel")

    def test_each_operation_is_in_each_binding(self):
        files = generate.written_files()
        for operation in sources.read_description().operations:
            for name, found in (("capi/pvwapi.hpp", f"CWapiClient::{operation.name}("),
                                ("bindings/python/pvwapi/_operations.py", f'"{operation.c_name}"'),
                                ("bindings/csharp/PvWapi.cs", f"Native.{operation.c_name}(")):
                self.assertIn(found, files[name])

    def test_constants(self):
        header = "PVW_NETWORK_NONE = 0,\n PVW_METHOD_GET = 0, PVW_END_VOICE = 4,  ///< over\n"
        self.assertEqual(list(words.enumeration("NetworkCause", header)), [("NONE", 0, "")])
        self.assertEqual(list(words.enumeration("Event", header)), [("END_VOICE", 4, "over")])


class WordsTest(unittest.TestCase):
    """A binding speaks of results as its language has them."""

    @classmethod
    def setUpClass(cls):
        cls.files = generate.written_files()

    def test_what_an_operation_returns_in_c(self):
        in_c = re.sub(r"\s*(?:///)?\s+(?:///)?\s*", " ", self.files["capi/pvwapi_c.h"])
        for phrase in words.RESULTS:
            self.assertIn(phrase, in_c)
        for name in ("bindings/python/pvwapi/_operations.py", "bindings/python/pvwapi/_records.py",
                     "bindings/csharp/PvWapi.cs"):
            text = re.sub(r"\s*(?:///)?\s+", " ", self.files[name])
            self.assertIsNone(re.search(r"returns [01]\b|[01] returned|returned [01]\b|Always [01]|result is [01]\b|"
                                        r"[.] [01] where", text))
            self.assertEqual(text.count("Succeeds whatever comes of it"), text.count("Sends cmd=logout."))

    def test_lines_are_not_broken_within_a_parameter(self):
        text = self.files["bindings/python/pvwapi/_operations.py"]
        broken = re.findall(r"\(\n((?: +.*\n)+?) *\)", text)
        self.assertGreater(len(broken), 20)
        for lines in (block.splitlines() for block in broken):
            self.assertTrue(all(line.endswith(",") for line in lines[:-1]), lines)
            self.assertTrue(all(line.count("(") == line.count(")") for line in lines), lines)
        in_csharp = self.files["bindings/csharp/PvWapi.cs"]
        for statement in re.findall(r"extern ([^;]*);", in_csharp):
            self.assertTrue(all(line.endswith(",") for line in statement.splitlines()[:-1]), statement)


class VersionScriptTest(unittest.TestCase):
    def test_a_function_that_came_later_has_a_version_of_its_own(self):
        description = sources.read_description()
        first, *_, last = description.operations
        description.frame = {"pvw_cancel": {"ordinal": 1}, "pvw_later": {"ordinal": 99, "since": 3}}
        description.operations = [first, last]
        last.since = 2
        lines = [line.strip() for line in generate.version_script(description).splitlines()[1:]]
        self.assertEqual(lines, ["PVWAPI_C_1 {", "global:", "pvw_cancel;", f"{first.c_name};", "local:", "*;", "};",
                                 "PVWAPI_C_2 {", "global:", f"{last.c_name};", "} PVWAPI_C_1;",
                                 "PVWAPI_C_3 {", "global:", "pvw_later;", "} PVWAPI_C_2;"])


class WrittenFilesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.files = generate.written_files()

    def test_a_file_that_was_changed_by_hand(self):
        for name in self.files:
            changed = copy.copy(self.files)
            changed[name] += "\n"
            with mock.patch.object(generate, "written_files", lambda text=changed: text):
                with self.assertRaises(sources.Fault) as caught, contextlib.redirect_stdout(io.StringIO()):
                    generate.main(["--check"])
            self.assertEqual(str(caught.exception), f"{name} is not what capi/generate.py writes\n")

    def test_names_in_snake_case(self):
        for name, wanted in (("getTabs", "get_tabs"), ("GetWkspList", "get_wksp_list"), ("getOpURL", "get_op_url"),
                             ("createRDQAVAccount", "create_rdqav_account"), ("login", "login"),
                             ("workspaceIDs", "workspace_ids"), ("URLs", "urls"), ("ISProviders", "is_providers"),
                             ("VoIPInt", "voip_int"), ("QueltAVToken", "quelt_av_token"), ("IMExt", "im_ext"),
                             ("probeSpaceAccess2", "probe_space_access2"), ("getUserID", "get_user_id")):
            self.assertEqual(sources.snake(name), wanted)


if __name__ == "__main__":
    unittest.main()
