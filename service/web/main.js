// The views and the keys that work in all of them.

import { setToken, takeToken } from "./api.js";
import { byID } from "./dom.js";
import { Journal } from "./journal.js";
import { LogFile } from "./log.js";
import { State } from "./state.js";
import { Switches } from "./switches.js";

const tabs = [...byID("tabs").children];
const panelOf = (tab) => byID(tab.getAttribute("aria-controls"));
const state = new State();
const journal = new Journal(() => state.refreshSoon(), () => askForToken("This token is not the service's."));
const views = { state, switches: new Switches(), log: new LogFile() };

function open(tab) {
  for (const each of tabs) {
    const isOpen = each === tab;
    if (!isOpen && !panelOf(each).hidden) views[panelOf(each).id]?.leave();
    each.setAttribute("aria-selected", String(isOpen));
    each.tabIndex = isOpen ? 0 : -1;
    panelOf(each).hidden = !isOpen;
  }
  views[panelOf(tab).id]?.enter();
}

byID("tabs").addEventListener("click", (event) => {
  const tab = event.target.closest("[role=tab]");
  if (tab) open(tab);
});

byID("tabs").addEventListener("keydown", (event) => {
  const at = tabs.indexOf(document.activeElement);
  const next = { ArrowRight: at + 1, ArrowLeft: at - 1 + tabs.length, Home: 0, End: tabs.length - 1 }[event.key];
  if (next === undefined) return;
  event.preventDefault();
  tabs[next % tabs.length].focus();
  open(tabs[next % tabs.length]);
});

// Nothing is ever sent by a form itself.
document.addEventListener("submit", (event) => event.preventDefault());

document.addEventListener("keydown", (event) => {
  const isTyping = event.target.closest("input, textarea, select, dialog");
  if (event.key === "/" && !isTyping) {
    event.preventDefault();
    open(tabs[0]);
    byID("search").focus();
  }
});

byID("search").addEventListener("keydown", (event) => {
  if (event.key === "ArrowDown") byID("exchanges").querySelector("[role=listbox]").focus();
});

let isFollowed = false;

function follow() {
  isFollowed = true;
  journal.watch();
}

function askForToken(problem = "") {
  isFollowed = false;
  byID("ask-error").textContent = problem;
  byID("ask").showModal();
}

byID("ask").querySelector("form").addEventListener("submit", (event) => {
  event.preventDefault();
  setToken(byID("token").value.trim());
  isFollowed = true;
  byID("ask").close();
  follow();
});

// Whoever closes it without a token can open it again.
byID("ask").addEventListener("close", () => {
  byID("connect").hidden = isFollowed;
  if (!isFollowed) byID("connect").focus();
});
byID("connect").addEventListener("click", () => askForToken());

if (takeToken()) follow();
else askForToken();
