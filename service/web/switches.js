// The service's clock, what organisations allow, and what is to go wrong.

import { ask } from "./api.js";
import { byID, element, replaceChildren, table, timeText } from "./dom.js";

const UNITS = { seconds: 1, minutes: 60, hours: 3600, days: 86400 };
const FAULTS = {
  refuse: "", close: "", reset: "byte", stall: "byte", rate: "bytesPerSecond", endless: "", length: "by", chunks: "",
  headers: "count", interim: "count", redirect: "url", charset: "charset", failure: "reason", delay: "ms",
};

const TEXTS = ["url", "charset", "reason"];

function button(text, action) {
  return element("button", { type: "button", onclick: action }, text);
}

function field(label, control) {
  return element("label", {}, `${label} `, control);
}

function faultText({ fault, ...more }) {
  return [fault, ...Object.entries(more).map(([name, value]) => `${name} ${value}`)].join(", ");
}

function options(names) {
  return names.map((name) => element("option", { value: name }, name));
}

export class Switches {
  constructor() {
    this.problem = element("p", { class: "problem", role: "alert" });
    this.time = element("p", { role: "status" });
    this.policy = element("div");
    this.faults = element("div");
    byID("switches").append(this.problem, this.clockPart(), this.policy, this.faultPart());
  }

  enter() {
    this.attempt(async () => {
      this.showClock(await ask("GET", "clock"));
      this.showPolicy(await ask("GET", "policy"));
      this.showFaults(await ask("GET", "faults"));
    });
  }

  leave() {}

  async attempt(action) {
    this.problem.textContent = "";
    try {
      await action();
    } catch (error) {
      this.problem.textContent = error.message;
    }
  }

  clockPart() {
    const amount = element("input", { type: "number", value: "1", step: "any", id: "advance" });
    const unit = element("select", { "aria-label": "Unit" }, options(Object.keys(UNITS)));
    unit.value = "hours";
    const change = (method, resource, body) =>
      this.attempt(async () => this.showClock(await ask(method, resource, body?.())));
    return element("fieldset", {}, element("legend", {}, "Clock"), this.time,
      element("div", { class: "line" }, field("Advance by", amount), unit,
        button("Advance", () => change("POST", "clock/advance",
          () => ({ seconds: Math.round(Number(amount.value) * UNITS[unit.value]) }))),
        button("The machine's time", () => change("DELETE", "clock"))));
  }

  showClock({ now, offset }) {
    const ahead = Math.round(offset / 1000);
    const side = ahead > 0 ? "ahead of" : "behind";
    const place = ahead === 0 ? "the machine's time" : `${Math.abs(ahead)} s ${side} the machine`;
    this.time.textContent = `${timeText(now)}, ${place}`;
  }

  showPolicy(organisations) {
    replaceChildren(this.policy, ...Object.entries(organisations).map(([id, features]) =>
      element("fieldset", {}, element("legend", {}, `What ${id} allows`),
        element("div", { class: "switch-list" }, Object.entries(features).map(([feature, allowed]) => {
          const box = element("input", { type: "checkbox", checked: allowed });
          box.addEventListener("change", () => this.attempt(() =>
            ask("PUT", `policy?organisation=${encodeURIComponent(id)}`, { [feature]: box.checked })));
          return element("label", {}, box, ` ${feature}`);
        })))));
  }

  faultPart() {
    const kind = element("select", { id: "fault" }, options(Object.keys(FAULTS)));
    const operation = element("input", { size: "16", placeholder: "any", spellcheck: "false" });
    const times = element("input", { type: "number", min: "1", value: "1" });
    const value = element("input", { size: "16", spellcheck: "false" });
    const valueLabel = element("label", { hidden: true }, element("span", {}, ""), " ", value);
    kind.addEventListener("change", () => {
      valueLabel.hidden = FAULTS[kind.value] === "";
      valueLabel.firstChild.textContent = FAULTS[kind.value];
      value.value = "";
    });
    const described = () => {
      const fault = { fault: kind.value };
      if (operation.value.trim()) fault.operation = operation.value.trim();
      if (times.value) fault.times = Number(times.value);
      const name = FAULTS[kind.value];
      if (name && value.value) fault[name] = TEXTS.includes(name) ? value.value : Number(value.value);
      return fault;
    };
    return element("fieldset", {}, element("legend", {}, "Faults"), this.faults,
      element("div", { class: "line" }, field("Fault", kind), valueLabel, field("Command or task", operation),
        field("Times", times), button("Set", () => this.attempt(async () =>
          this.showFaults(await ask("POST", "faults", described()))))));
  }

  showFaults({ faults }) {
    if (faults.length === 0) return replaceChildren(this.faults, element("p", {}, "Nothing goes wrong on purpose."));
    replaceChildren(this.faults,
      table("Set now", ["Fault", "Seen", "Struck", ""], faults.map(({ id, seen, struck, ...fault }) =>
        [faultText(fault), String(seen), String(struck), button("Take away", () => this.attempt(async () =>
          this.showFaults(await ask("DELETE", `faults/${id}`))))])),
      element("div", { class: "line" }, button("Take all away",
        () => this.attempt(async () => this.showFaults(await ask("DELETE", "faults"))))));
  }
}
