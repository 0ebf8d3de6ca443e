#!/usr/bin/env python3
"""The inspector in a real browser."""
import ipaddress
import re
import sys
import unittest

from browser import Browser
from story import TOKEN, Story

LISTBOX = "#exchanges [role=listbox]"
OPTIONS = "[...document.querySelectorAll('#exchanges [role=option]')]"
CHOSEN = "document.querySelector('#exchanges [aria-selected=true]')"
FOCUS = "document.activeElement"


def row(text):
    return f"{OPTIONS}.find((row) => row.textContent.includes({text!r}))"


class Inspector(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.browser = Browser()
        cls.addClassCleanup(cls.browser.close)

    def setUp(self):
        self.story = Story()
        self.addCleanup(self.story.end)
        self.page = self.browser.page()
        self.addCleanup(self.page.close)

    def open(self):
        self.page.open(self.story.page)
        self.page.wait("document.getElementById('connection').textContent === 'live'")

    def choose(self, text):
        self.page.wait(row(text))
        self.page.run(f"{row(text)}.click()")
        self.page.wait(f"document.querySelector('#detail h2').textContent.includes({text!r})")

    def tearDown(self):
        """Whatever a test does: the page asks nobody but the service, and nothing in it goes wrong."""
        for request in self.page.events("Network.requestWillBeSent"):
            url = request["request"]["url"]
            self.assertTrue(url.startswith((self.story.origin + "/", "about:blank")), url)
        for entry in self.page.events("Log.entryAdded"):
            self.assertNotIn("ecurity", entry["entry"]["text"])
        self.assertEqual(self.page.events("Runtime.exceptionThrown"), [])

    def test_what_the_library_does_appears(self):
        self.open()
        made = self.story.host("spaces", "create", "Project Äther")
        self.assertEqual(made.returncode, 0, made.stderr)
        self.choose("createSpace")
        detail = self.page.text("#detail")
        self.assertIn("anna", detail)
        self.assertIn("<workspaceName>Project Äther</workspaceName>", detail)
        self.assertIn("<result>SUCCESS</result>", detail)
        self.assertGreater(self.page.run("document.querySelectorAll('#detail pre .tag').length"), 10)
        self.choose("login")
        self.assertIn("***", self.page.text("#detail"))
        self.assertNotIn("anna-demo-1", self.page.run("document.documentElement.textContent"))

    def test_the_token_does_not_stay_in_the_address(self):
        self.open()
        self.assertNotIn(TOKEN, self.page.run("location.href"))
        self.page.call("Page.reload")
        self.page.wait("document.getElementById('connection').textContent === 'live'")

    def test_without_a_token_it_is_asked_for(self):
        self.page.open(self.story.origin + "/")
        self.page.wait("document.getElementById('ask').open")
        self.page.type("wrong")
        self.page.key("Enter")
        self.page.wait("document.getElementById('ask-error').textContent")
        self.page.run("document.getElementById('token').value = ''")
        self.page.run("document.getElementById('token').focus()")
        self.page.type(TOKEN)
        self.page.key("Enter")
        self.page.wait("document.getElementById('connection').textContent === 'live'")
        self.assertFalse(self.page.run("document.getElementById('ask').open"))

    def test_hostile_names_stay_text(self):
        names = ["<script>window.hit = 1</script>", "<img src=x onerror='window.hit = 2'>",
                 "\u202eexe.gnp \u05d0\u05d1", "&lt;b&gt; ]]> --> \"'", "x" * 999]
        self.open()
        for name in names:
            self.assertEqual(self.story.host("spaces", "create", name).returncode, 0, name)
        refused = self.story.host("spaces", "create", "long " * 2000)
        self.assertEqual(refused.returncode, 1, refused.stderr)
        count = self.story.control("GET", "journal")["count"]
        self.page.wait(f"document.getElementById('count').textContent.startsWith('{count} exchanges')")
        for at in range(count):
            self.page.run(f"document.getElementById('exchanges-{at}').click()")
            self.page.wait(f"document.querySelector('#detail h2').textContent.startsWith('Exchange {at + 1}:')")
            self.nothing_hit()
        self.page.click("#tab-state")
        self.page.wait("document.querySelectorAll('#state details').length === 9")
        self.page.run("document.querySelectorAll('#state details').forEach((each) => { each.open = true; })")
        summaries = self.page.run("[...document.querySelectorAll('#state summary')].map((s) => s.textContent).join()")
        self.assertIn(names[0], summaries)
        self.assertIn(names[1], summaries)
        self.assertIn("\\u202eexe.gnp", summaries)
        self.assertNotIn("\u202e", summaries)
        self.nothing_hit()

    def nothing_hit(self):
        self.assertIsNone(self.page.run("window.hit"))
        self.assertEqual(self.page.run("document.querySelectorAll('main script, main img, main b').length"), 0)
        self.assertLessEqual(self.page.run("document.documentElement.scrollWidth - innerWidth"), 0)

    def test_a_user_without_a_mouse(self):
        self.open()
        self.story.host("spaces", "create", "First")
        self.story.host("spaces", "create", "Second")
        self.page.key("/")
        self.page.wait(f"{FOCUS}.id === 'search'")
        self.page.type("workspaceName")
        self.page.wait("document.getElementById('count').textContent === '2 exchanges found'")
        self.page.key("ArrowDown")
        self.page.wait(f"{FOCUS}.matches({LISTBOX!r})")
        self.page.key("Home")
        self.page.wait("document.querySelector('#detail h2').textContent === 'Exchange 2: createSpace'")
        self.assertEqual(self.page.run(f"{FOCUS}.getAttribute('aria-activedescendant')"), "exchanges-0")
        self.page.key("Enter")
        self.page.wait(f"{FOCUS}.matches('#detail h2')")
        self.page.key("Escape")
        self.page.wait(f"{FOCUS}.matches({LISTBOX!r})")
        self.page.key("c")
        self.page.wait("document.querySelector('#exchanges .kept')")
        self.page.key("End")
        self.page.wait("document.querySelector('#detail .compare')")
        changed = self.page.run("document.querySelector('#detail tr.changed').innerText")
        self.assertRegex(changed, "(?s)First.*changed.*Second")
        self.page.key("c")
        self.page.wait("!document.querySelector('#detail .compare')")

    def test_the_keys_keep_their_place_where_something_changes(self):
        self.open()
        for name in ("First", "Second", "Third"):
            self.story.host("spaces", "create", name)
        self.choose("createSpace")
        buttons = "[...document.querySelectorAll('#detail button')]"
        title = self.page.text("#detail h2")
        self.page.run(f"{buttons}.find((button) => button.textContent === 'Newer').focus()")
        self.page.key("Enter")
        self.page.wait(f"document.querySelector('#detail h2').textContent !== {title!r}")
        self.assertEqual(self.page.run(f"{FOCUS}.textContent"), "Newer")
        self.page.click("#tab-state")
        self.page.wait("document.querySelectorAll('#state details').length === 7")
        self.page.run("document.querySelector('#state summary').focus()")
        held = self.page.run(f"{FOCUS}.textContent")
        self.story.host("spaces", "create", "Fourth")
        self.page.wait("document.querySelectorAll('#state details').length === 8")
        self.assertEqual(self.page.run(f"{FOCUS}.textContent"), held)
        for kind in ("close", "refuse"):
            self.story.control("POST", "faults", {"fault": kind, "operation": "nothing"})
        self.page.click("#tab-switches")
        self.page.wait("document.querySelectorAll('#switches td button').length === 2")
        self.page.run("document.querySelectorAll('#switches td button')[1].focus()")
        self.page.key("Enter")
        self.page.wait("document.querySelectorAll('#switches td button').length === 1")
        self.assertEqual(self.page.run(f"{FOCUS}.textContent"), "Take away")
        self.page.key("Enter")
        self.page.wait("document.querySelector('#switches').textContent.includes('Nothing goes wrong on purpose')")
        self.assertTrue(self.page.run(f"document.querySelector('#switches').contains({FOCUS})"))

    def test_a_choice_outlives_a_filter_and_not_a_clear(self):
        self.open()
        for name in ("First", "Second"):
            self.story.host("spaces", "create", name)
        self.choose("createSpace")
        title = self.page.text("#detail h2")
        number = int(title.split()[1].rstrip(":"))
        for text, count in (("nothing has this", "0 exchanges found"), ("", "")):
            self.page.run(f"document.getElementById('search').value = {text!r}")
            self.page.run("document.getElementById('search').dispatchEvent(new Event('input'))")
            self.page.wait(f"document.getElementById('count').textContent.startsWith({count!r})")
        self.page.wait(f"{CHOSEN} && {CHOSEN}.textContent.startsWith('{number}')")
        self.page.run(f"document.querySelector({LISTBOX!r}).focus()")
        self.page.key("c")
        self.page.wait("document.querySelector('#exchanges .kept')")
        self.story.control("DELETE", "journal")
        self.page.wait("document.getElementById('count').textContent === 'cleared'")
        self.story.host("spaces", "list")
        self.choose("GetWkspList")
        self.assertFalse(self.page.run("document.querySelector('#detail .compare')"))

    def test_a_token_that_was_not_given_can_still_be(self):
        self.page.open(self.story.origin + "/")
        self.page.wait("document.getElementById('ask').open")
        self.page.key("Escape")
        self.page.wait(f"{FOCUS}.id === 'connect'")
        self.page.key("Enter")
        self.page.wait("document.getElementById('ask').open")
        self.page.type(TOKEN)
        self.page.key("Enter")
        self.page.wait("document.getElementById('connection').textContent === 'live'")
        self.assertTrue(self.page.run("document.getElementById('connect').hidden"))

    def test_every_view_is_reached_by_keys(self):
        self.open()
        for _ in range(20):
            if self.page.run(f"{FOCUS}.id") == "tab-journal":
                break
            self.page.key("Tab")
        self.assertEqual(self.page.run(f"{FOCUS}.id"), "tab-journal")
        for view in ("state", "switches", "log", "journal"):
            self.page.key("ArrowRight")
            self.page.wait(f"{FOCUS}.id === 'tab-{view}' && !document.getElementById('{view}').hidden")
            self.assertEqual(self.page.run("document.querySelectorAll('main > section:not([hidden])').length"), 1)
        met = []
        for _ in range(8):
            self.page.key("Tab")
            met.append(self.page.run(f"{FOCUS}.id || {FOCUS}.getAttribute('role')"))
        self.assertEqual(met[:6], ["search", "operation", "failed", "clear", "listbox", "detail"])

    def test_a_screen_reader_hears_roles_and_names(self):
        self.open()
        self.story.host("spaces", "list")
        self.choose("GetWkspList")
        met = self.page.accessible()
        for wanted in [("tablist", "Views"), ("tab", "Journal"), ("listbox", "Exchanges"), ("searchbox", "Search"),
                       ("textbox", "Operation"), ("checkbox", "Failed only"), ("button", "Clear the journal"),
                       ("heading", "Exchange 2: GetWkspList"), ("tabpanel", "Journal")]:
            self.assertIn(wanted, met)
        options = [name for role, name in met if role == "option"]
        self.assertTrue([name for name in options if "GetWkspList" in name and "SUCCESS" in name], options)
        self.assertIn("status", {role for role, _ in met})
        chosen = self.page.run(f"[{CHOSEN}.ariaSetSize, {CHOSEN}.ariaPosInSet]")
        self.assertEqual(chosen, [str(self.story.control("GET", "journal")["count"]), "2"])
        unnamed = [role for role, name in met if role in ("button", "textbox", "checkbox", "combobox") and not name]
        self.assertEqual(unnamed, [])

    def test_ten_thousand_exchanges(self):
        self.story.post(f"cmd=call-{number}" for number in range(10_050))
        self.open()
        self.page.wait("document.getElementById('count').textContent.startsWith('10000 exchanges')")
        self.assertLess(self.page.run(f"{OPTIONS}.length"), 100)
        self.page.run(f"document.querySelector({LISTBOX!r}).focus()")
        self.page.key("End")
        self.page.wait("document.querySelector('#detail h2').textContent.startsWith('Exchange 10050:')")
        self.page.key("Home")
        self.page.wait("document.querySelector('#detail h2').textContent.startsWith('Exchange 51:')")
        self.assertLess(self.page.run(f"{OPTIONS}.length"), 100)
        self.assertEqual(self.page.run(f"{CHOSEN}.ariaSetSize"), "10000")
        steps = """(async () => { const begun = performance.now(); const box = document.querySelector('%s');
            for (let i = 0; i < 200; ++i) { box.scrollTop += 997; await new Promise(requestAnimationFrame); }
            return (performance.now() - begun) / 200; })()""" % LISTBOX.replace("'", '"')
        print(f"a scrolled frame of 10000 exchanges takes {self.page.run(steps):.1f} ms", file=sys.stderr)
        self.page.run("document.getElementById('search').focus()")
        self.page.type("call-777 ")
        self.page.run("document.getElementById('search').value = 'call-7777'")
        self.page.key("Enter")
        self.page.wait("document.getElementById('count').textContent === '1 exchange found'")

    def test_state_clock_and_policy(self):
        cred = self.story.host("login").stdout.strip()
        self.assertTrue(cred)
        self.open()
        self.page.click("#tab-state")
        self.page.wait("document.querySelector('#state').textContent.includes('1:59:')")
        state = self.page.text("#state")
        for text in ("Autumn catalogue", "Messestand Köln", "clara@nordwind.example", "Time sheet"):
            self.assertIn(text, state)
        self.assertNotIn(cred, state)
        self.page.click("#tab-switches")
        clock = "document.querySelector('#switches [role=status]').textContent"
        self.page.wait(f"{clock}.includes('the machine')")
        buttons = "[...document.querySelectorAll('#switches button')]"
        self.page.run(f"{buttons}.find((button) => button.textContent === 'Advance').click()")
        self.page.wait(f"{clock}.includes('3600 s ahead')")
        self.assertEqual(round(self.story.control("GET", "clock")["offset"] / 1000), 3600)
        labels = "[...document.querySelectorAll('#switches label')]"
        box = f"{labels}.find((label) => label.textContent.includes('VoIPExt')).firstChild"
        self.page.wait(f"{box} && !{box}.checked")
        self.page.run(f"{box}.click()")
        for _ in range(200):
            if self.story.control("GET", "policy")["org-nordwind"]["VoIPExt"]:
                break
        self.assertTrue(self.story.control("GET", "policy")["org-nordwind"]["VoIPExt"])
        self.page.click("#tab-state")
        self.page.wait("document.querySelector('#state').textContent.includes('0:59:')")

    def test_a_fault_is_set_and_taken_away(self):
        self.open()
        self.page.click("#tab-switches")
        self.page.wait("document.querySelector('#switches').textContent.includes('Nothing goes wrong on purpose')")
        self.page.run("document.getElementById('fault').focus()")
        self.page.type_by_keys("fail")
        self.page.wait("document.getElementById('fault').value === 'failure'")
        self.page.key("Tab")
        self.page.type("the <b>cellar</b> is flooded")
        self.page.key("Tab")
        self.page.type("login")
        self.page.key("Tab")
        self.page.key("Tab")
        self.page.key("Enter")
        self.page.wait("document.querySelectorAll('#switches td').length === 4")
        fault = self.story.control("GET", "faults")["faults"][0]
        self.assertEqual((fault["fault"], fault["operation"], fault["times"]), ("failure", "login", 1))
        refused = self.story.host("login")
        self.assertIn("the <b>cellar</b> is flooded", refused.stderr)
        self.page.click("#tab-journal")
        self.choose("login")
        self.assertIn("the <b>cellar</b> is flooded", self.page.text("#detail .outcome"))
        self.assertEqual(self.page.text("#exchanges .fault"), "failure")
        self.page.click("#tab-switches")
        self.page.wait("document.querySelector('#switches td:nth-child(3)').textContent === '1'")
        self.page.click("#switches td button")
        self.page.wait("document.querySelector('#switches').textContent.includes('Nothing goes wrong on purpose')")
        self.assertEqual(self.story.control("GET", "faults")["faults"], [])

    def test_a_log_of_the_library_reads_the_same(self):
        self.story.host("spaces", "create", "From a log")
        self.story.host("spaces", "list", password="not-the-password")
        self.open()
        self.page.click("#tab-log")
        self.page.choose_file("#file", self.story.log)
        calls = "[...document.querySelectorAll('#log-calls [role=option]')]"
        self.page.wait(f"{calls}.length > 0")
        self.page.run(f"{calls}.find((row) => row.textContent.includes('login')).click()")
        text = self.page.text("#log")
        self.assertIn("***", text)
        self.assertNotRegex(text, "anna-demo-1|not-the-password")
        self.assertRegex(self.page.text("#log-count"), r"^\d+ calls?$")

    def test_a_service_that_comes_back_is_followed_again(self):
        self.open()
        port = self.story.port
        self.story.end()
        self.page.wait("document.getElementById('connection').classList.contains('lost')")
        self.story = Story(port=port)
        self.addCleanup(self.story.end)
        self.story.host("spaces", "list")
        self.page.wait(row("GetWkspList"))
        self.assertEqual(self.page.text("#connection"), "live")


class Alone(unittest.TestCase):
    def test_the_browser_is_told_to_run_and_ask_nothing_else(self):
        story = Story()
        self.addCleanup(story.end)
        browser = Browser()
        self.addCleanup(browser.close)
        page = browser.page()
        page.open(story.page)
        page.wait("document.getElementById('connection').textContent === 'live'")
        broken = """new Promise((done) => {
            document.addEventListener('securitypolicyviolation', (event) => done(event.effectiveDirective));
            %s })"""
        self.assertEqual(page.run(broken % "fetch('http://127.0.0.1:9/').catch(() => {})"), "connect-src")
        image = "document.body.append(Object.assign(new Image(), { src: 'http://127.0.0.1:9/x.png' }))"
        self.assertEqual(page.run(broken % image), "img-src")
        script = """(() => { const script = document.createElement('script');
            try { script.textContent = 'window.hit = 1'; document.body.append(script); } catch { return 'refused' }
            return String(window.hit) })()"""
        self.assertEqual(page.run(script), "refused")
        markup = "(() => { try { document.body.innerHTML = '<b>x</b>' } catch { return 'refused' } })()"
        self.assertEqual(page.run(markup), "refused")

    def test_the_browser_meets_nobody_but_the_service(self):
        story = Story()
        self.addCleanup(story.end)
        browser = Browser()
        page = browser.page()
        page.open(story.page)
        page.wait("document.getElementById('connection').textContent === 'live'")
        story.host("spaces", "list")
        page.wait(row("GetWkspList"))
        browser.close()
        addresses = browser.contacts
        self.assertTrue(any(str(story.port) in address for address in addresses), addresses)
        for address in addresses:
            host = re.sub(r"^\w+://|:\d+$", "", address).strip("[]")
            self.assertTrue(ipaddress.ip_address(host).is_loopback, addresses)


if __name__ == "__main__":
    unittest.main(verbosity=2)
