// A list of exchanges of any length: only the rows that can be seen are there.

import { element, shown, clockText, tookText } from "./dom.js";

const ROW = 28;
const AROUND = 12;
const LONGEST = 200;
const COLUMNS = { number: "#", time: "Time", user: "User", operation: "Operation", took: "Took", result: "Result" };

const cut = (text) => (text && text.length > LONGEST ? text.slice(0, LONGEST) + "…" : text ?? "");

function cell(name, text) {
  return element("span", { class: name, dir: "auto" }, cut(text));
}

// With the reason behind it, which so has all the room that is left.
function resultCell(exchange) {
  const good = exchange.result === "SUCCESS";
  return element("span", { class: "result" },
    element("span", { class: good ? "good" : "bad" }, (good ? "✓ " : "✗ ") + cut(exchange.result)), " ",
    exchange.fault ? [element("span", { class: "fault" }, exchange.fault), " "] : "",
    element("span", { class: "reason", dir: "auto" }, cut(exchange.reason)));
}

export class ExchangeList {
  constructor(place, label, { onChoose, onRead, onKeep }) {
    this.items = [];
    this.chosen = -1;
    this.missed = undefined; // the number of the one that was chosen, while the list does not hold it
    this.kept = null;
    this.prefix = place.id;
    this.onChoose = onChoose;
    this.onRead = onRead;
    this.onKeep = onKeep;
    this.spacer = element("div", { role: "presentation" });
    this.box = element("div", { role: "listbox", tabindex: "0", "aria-label": label, onkeydown: (e) => this.key(e),
      onscroll: () => this.draw(), onclick: (e) => this.click(e), ondblclick: () => this.onRead?.() }, this.spacer);
    place.append(element("div", { class: "list" },
      element("div", { class: "row head", "aria-hidden": "true" }, Object.entries(COLUMNS).map(([name, text]) =>
        element("span", { class: name }, text))),
      this.box));
    new ResizeObserver(() => this.draw()).observe(this.box);
  }

  get current() {
    return this.items[this.chosen];
  }

  isAtEnd() {
    return this.box.scrollTop + this.box.clientHeight >= this.spacer.offsetHeight - ROW;
  }

  // Puts a whole new list in place; the one that was chosen stays so where it is still there, or as soon as it is.
  set(items) {
    this.missed = this.current?.number ?? this.missed;
    this.items = items;
    this.chosen = -1;
    this.findMissed();
    this.redraw();
    this.box.scrollTop = items.length * ROW;
  }

  findMissed() {
    if (this.missed === undefined) return;
    this.chosen = this.items.findIndex((item) => item.number === this.missed);
    if (this.chosen >= 0) this.missed = undefined;
  }

  // Nothing is left that could be chosen again or compared.
  forget() {
    this.chosen = -1;
    this.missed = undefined;
    this.kept = null;
    this.set([]);
  }

  add(items, most) {
    const stays = this.isAtEnd();
    this.items.push(...items);
    this.findMissed();
    const over = this.items.length - most;
    if (over > 0) {
      this.items.splice(0, over);
      this.chosen = Math.max(-1, this.chosen - over);
      this.spacer.replaceChildren();
      this.box.scrollTop -= over * ROW;
    }
    this.resize();
    if (stays) this.box.scrollTop = this.items.length * ROW;
  }

  redraw() {
    this.spacer.replaceChildren();
    this.resize();
  }

  resize() {
    this.spacer.style.height = `${this.items.length * ROW}px`;
    this.draw();
  }

  keep(number) {
    this.kept = number;
    this.redraw();
  }

  row(index) {
    const exchange = this.items[index];
    const time = typeof exchange.time === "number" ? clockText(exchange.time) : exchange.time.slice(-8);
    const row = element("div", { role: "option", class: exchange.number === this.kept ? "row kept" : "row",
      id: `${this.prefix}-${index}`, "aria-posinset": index + 1 },
    cell("number", String(exchange.number)), cell("time", time), cell("user", exchange.user),
    cell("operation", exchange.operation), cell("took", tookText(exchange.microseconds)), resultCell(exchange));
    row.style.top = `${index * ROW}px`;
    row.dataset.index = index;
    return row;
  }

  // Rows that stay are left alone, so that a screen reader keeps its place.
  draw() {
    const first = Math.max(0, Math.floor(this.box.scrollTop / ROW) - AROUND);
    const last = Math.min(this.items.length, first + Math.ceil(this.box.clientHeight / ROW) + 2 * AROUND);
    const there = new Map([...this.spacer.children].map((row) => [Number(row.dataset.index), row]));
    for (const [index, row] of there) if (index < first || index >= last) row.remove();
    for (let index = first; index < last; ++index) {
      if (!there.get(index)?.isConnected) this.spacer.append(this.row(index));
    }
    this.mark();
  }

  mark() {
    for (const row of this.spacer.children) {
      row.setAttribute("aria-selected", String(Number(row.dataset.index) === this.chosen));
      row.setAttribute("aria-setsize", this.items.length);
    }
    if (this.chosen >= 0) this.box.setAttribute("aria-activedescendant", `${this.prefix}-${this.chosen}`);
    else this.box.removeAttribute("aria-activedescendant");
  }

  // The one behind, or the one before, also of one that the list does not hold.
  step(by) {
    if (this.missed === undefined) return this.choose(this.chosen + by);
    const behind = this.items.findIndex((item) => item.number > this.missed);
    const at = behind < 0 ? this.items.length : behind;
    this.choose(by > 0 ? at : at - 1);
  }

  choose(index) {
    if (this.items.length === 0) return;
    this.missed = undefined;
    this.chosen = Math.max(0, Math.min(this.items.length - 1, index));
    const top = this.chosen * ROW;
    if (top < this.box.scrollTop) this.box.scrollTop = top;
    const low = top + ROW - this.box.clientHeight;
    if (low > this.box.scrollTop) this.box.scrollTop = low;
    this.draw();
    this.onChoose(this.current);
  }

  click(event) {
    const row = event.target.closest("[role=option]");
    if (row) this.choose(Number(row.dataset.index));
  }

  key(event) {
    if (event.ctrlKey || event.altKey || event.metaKey) return;
    const page = Math.max(1, Math.floor(this.box.clientHeight / ROW) - 1);
    const steps = { ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -Infinity, End: Infinity };
    if (event.key in steps) {
      const start = this.chosen < 0 && steps[event.key] < 0 ? this.items.length : this.chosen;
      this.choose(start + steps[event.key]);
    } else if (event.key === "Enter" && this.current) this.onRead?.();
    else if (event.key === "c" && this.current) this.onKeep?.(this.current);
    else return;
    event.preventDefault();
  }
}

// What a screen reader says of a new exchange.
export function spoken(exchange) {
  return shown(`${exchange.number}: ${cut(exchange.operation)} ${exchange.fault || exchange.result}`);
}
