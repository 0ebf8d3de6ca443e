#!/usr/bin/env python3
"""Takes the pictures of the inspector that stand in the documents.

    PVWAPI_SERVICE=... PVWAPI_HOST=... pictures.py docs
"""
import json
import sys
from pathlib import Path

from browser import Browser
from story import Story


def work(story):
    """A morning of anna's and ben's; the clock makes the time between their calls."""
    creds = {}

    def say(user, *words, after=7):
        story.control("POST", "clock/advance", {"seconds": after})
        return story.host(*words, user=user, cred=creds.get(user)).stdout

    story.host("login", password="forgotten")
    creds["anna"] = say("anna", "login").strip()
    say("anna", "spaces", "list", after=1)
    first = json.loads(say("anna", "spaces", "create", "Project Äther", "--format", "json", after=41))["workspaceID"]
    say("anna", "tabs", "create", first, "Drafts", after=12)
    say("anna", "members", "invite", first, "user-ben", "clara@nordwind.example", after=33)
    creds["ben"] = say("ben", "login", after=96).strip()
    say("ben", "invitations", "list", after=1)
    say("ben", "invitations", "accept", first, after=9)
    say("ben", "spaces", "delete", first, "--yes", after=15)
    story.control("POST", "faults", {"fault": "failure", "operation": "GetUserLibraries", "times": 1,
                                     "reason": "the library is being tidied", "exceptionID": "KZN:Busy"})
    say("anna", "libraries", "list", after=21)
    say("anna", "libraries", "list", after=8)
    say("anna", "spaces", "create", "Winter fair", after=64)
    say("anna", "members", "list", first, after=5)
    say("ben", "logout", after=17)
    say("anna", "user", "profile", after=25)


def take(page, scheme, path):
    page.scheme(scheme)
    page.run("new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)))")
    page.picture(path)


def main():
    folder = Path(sys.argv[1])
    story = Story()
    browser = Browser()
    try:
        work(story)
        page = browser.page(1280, 760)
        page.open(story.page)
        rows = "[...document.querySelectorAll('#exchanges [role=option]')]"
        find = f"{rows}.filter((row) => row.textContent.includes('createSpace'))"
        page.wait(f"{find}.length === 2")
        page.wait("document.getElementById('count').textContent")
        page.run(f"{rows}.find((row) => row.textContent.includes('deleteWksp')).click()")
        page.wait("document.querySelector('#detail h2').textContent.includes('deleteWksp')")
        take(page, "light", folder / "inspector-light.png")
        page.run(f"{find}[0].click()")
        page.wait("document.querySelector('#detail h2').textContent.includes('createSpace')")
        page.run("document.querySelector('#exchanges [role=listbox]').focus()")
        page.key("c")
        page.wait("document.querySelector('#exchanges .kept')")
        page.run(f"{find}[1].click()")
        page.wait("document.querySelector('#detail .compare')")
        page.run("document.activeElement.blur()")
        take(page, "dark", folder / "inspector-dark.png")
    finally:
        browser.close()
        story.end()


if __name__ == "__main__":
    main()
