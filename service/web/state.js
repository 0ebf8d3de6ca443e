// What the service holds: users, spaces, invitations, libraries, sessions.

import { ask } from "./api.js";
import { byID, counted, element, replaceChildren, settled, spanText, table, timeText } from "./dom.js";

const TAB_TYPES = { 1: "discussion", 2: "files" };

function spaceDetails(space, open) {
  const kind = space.isTemplate ? "template" : "space";
  return element("details", { open, "data-id": space.id },
    element("summary", { dir: "auto" }, `${space.name} (${kind} of ${space.creator}, ${counted(space.members.length, "member")})`),
    table("Tabs", ["Order", "Name", "Shows", "ID"], space.tabs.map((tab) =>
      [String(tab.order), tab.name, TAB_TYPES[tab.type] ?? "", tab.id])),
    table("Members", ["Name", "Roles", "ID"], space.members.map((member) =>
      [member.name, member.roles.join(", "), member.id])),
    element("p", {}, `ID ${space.id}, created ${timeText(space.created)}, changed ${timeText(space.modified)}`));
}

export class State {
  constructor() {
    this.place = byID("state");
    this.parts = [element("div"), element("div")];
    this.shown = [];
    this.sessions = [];
    this.isShown = false;
    this.refreshSoon = settled(() => this.isShown && this.refresh(), 250);
    setInterval(() => this.isShown && this.tick(), 1000);
  }

  enter() {
    this.isShown = true;
    this.refresh();
  }

  leave() {
    this.isShown = false;
  }

  async refresh() {
    try {
      this.show(await ask("GET", "overview"));
    } catch (error) {
      this.shown = [];
      this.place.replaceChildren(element("p", { class: "problem", role: "alert" }, error.message));
    }
  }

  // Every call makes a session last longer, and few change anything else: what has not changed is left alone, so that
  // a reader keeps the place.
  show(told) {
    const at = this.place.scrollTop;
    this.ahead = told.now - Date.now();
    const { now, sessions, ...rest } = told;
    if (this.shown.length === 0) this.place.replaceChildren(...this.parts);
    [() => this.showSessions(sessions), () => this.showRest(rest)].forEach((show, part) => {
      const text = JSON.stringify(part === 0 ? sessions : rest);
      if (this.shown[part] !== text) show();
      this.shown[part] = text;
    });
    this.place.scrollTop = at;
    this.tick();
  }

  showSessions(sessions) {
    this.sessions = sessions.map((session) => ({ ...session, cell: element("span", {}, "") }));
    this.parts[0].replaceChildren(
      table("Sessions", ["User", "Only for", "Left", "Ends at"], this.sessions.map((session) =>
        [session.user, session.space, session.cell, timeText(session.expires)])));
  }

  // What was open stays open.
  showRest(told) {
    const open = new Set([...this.place.querySelectorAll("details[open]")].map((each) => each.dataset.id));
    replaceChildren(this.parts[1],
      element("h3", {}, `Spaces (${told.spaces.length})`),
      ...told.spaces.map((space) => spaceDetails(space, open.has(space.id))),
      table("Invitations", ["Space", "Invited", "By", "Status", "Ends at"], told.invitations.map((each) =>
        [each.space, each.invited, each.by, each.status, timeText(each.expires)])),
      table("Users", ["Name", "Full name", "E-mail", "Organisation", "ID"], told.users.map((user) =>
        [user.name, user.fullName, user.email, user.organisation, user.id])),
      table("Libraries", ["Name", "Owner", "Templates", "Applications", "ID"], told.libraries.map((each) =>
        [each.name, each.owner + (each.ofOrganisation ? ", read by all" : ""), each.templates.join(", "),
          each.applications.join(", "), each.id])));
  }

  tick() {
    const now = Date.now() + this.ahead;
    for (const session of this.sessions) session.cell.textContent = spanText(session.expires - now);
  }
}
