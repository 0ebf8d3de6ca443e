// A log that a host's library has written, opened from disk and read as the journal is.

import { askWithText } from "./api.js";
import { byID, counted, element } from "./dom.js";
import { showCompared, showExchange } from "./detail.js";
import { ExchangeList } from "./list.js";

const MOST_BYTES = 32 * 1024 * 1024;

export class LogFile {
  constructor() {
    this.calls = [];
    this.kept = null;
    this.detail = byID("log-detail");
    this.list = new ExchangeList(byID("log-calls"), "Calls", { onChoose: (call) => this.show(call),
      onRead: () => this.detail.querySelector("h2")?.focus(), onKeep: (call) => this.keep(call) });
    byID("file").addEventListener("change", () => this.open());
    byID("log-failed").addEventListener("change", () => this.fill());
    this.detail.addEventListener("keydown", (event) => event.key === "Escape" && this.list.box.focus());
  }

  enter() {}

  leave() {}

  say(text) {
    byID("log-count").textContent = text;
  }

  async open() {
    const file = byID("file").files[0];
    if (!file) return;
    this.say("reading…");
    try {
      const told = await askWithText("log", await file.slice(Math.max(0, file.size - MOST_BYTES)).arrayBuffer());
      this.calls = told.exchanges;
      this.fill();
      const part = file.size > MOST_BYTES ? ", of the last 32 MiB" : "";
      this.say(`${counted(this.calls.length, "call")}${part}${told.left > 0 ? `, ${told.left} more are not shown` : ""}`);
    } catch (error) {
      this.say(error.message);
    }
  }

  fill() {
    const failedOnly = byID("log-failed").checked;
    this.list.set(this.calls.filter((call) => !failedOnly || call.result !== "SUCCESS"));
    this.detail.replaceChildren();
  }

  show(call) {
    if (this.kept && this.kept !== call) {
      showCompared(this.detail, this.kept, call, [this.button("End the comparison", () => this.keep(call))]);
    } else {
      showExchange(this.detail, call, [this.button("Compare with another", () => this.keep(call))]);
    }
  }

  button(text, action) {
    return element("button", { type: "button", onclick: action }, text);
  }

  keep(call) {
    this.kept = this.kept ? null : call;
    this.list.keep(this.kept?.number ?? null);
    this.show(call);
    this.list.box.focus();
  }
}
