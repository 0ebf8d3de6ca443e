// The journal: everything that is kept, and what comes while the page is open.

import { ask, follow, Refused } from "./api.js";
import { byID, counted, element, replaceChildren, settled } from "./dom.js";
import { showCompared, showExchange } from "./detail.js";
import { ExchangeList, spoken } from "./list.js";

const MOST = 10_000;
const LONGEST_PAUSE = 5000;

export class Journal {
  constructor(onNew, onRefused) {
    this.onNew = onNew;
    this.onRefused = onRefused;
    this.last = 0;
    this.run = 0; // counts what the list was asked for; what comes for an older question is dropped
    this.kept = null;
    this.detail = byID("detail");
    this.list = new ExchangeList(byID("exchanges"), "Exchanges", {
      onChoose: settled((exchange) => this.show(exchange), 60),
      onRead: () => this.read(), onKeep: (exchange) => this.keep(exchange) });
    this.say = settled((text) => { byID("count").textContent = text; }, 300);
    const again = settled(() => this.reload(), 200);
    for (const id of ["search", "operation"]) byID(id).addEventListener("input", again);
    byID("failed").addEventListener("change", again);
    byID("search").form.addEventListener("submit", (event) => { event.preventDefault(); this.reload(); });
    byID("clear").addEventListener("click", () => this.clear());
    this.detail.addEventListener("keydown", (event) => this.key(event));
    this.catchUp = settled(() => this.load(this.run), 100);
    this.showNothing();
  }

  filter() {
    const query = new URLSearchParams();
    if (byID("search").value) query.set("text", byID("search").value);
    if (byID("operation").value.trim()) query.set("operation", byID("operation").value.trim());
    if (byID("failed").checked) query.set("failed", "1");
    return query;
  }

  isFiltered() {
    return this.filter().size > 0;
  }

  async reload() {
    const run = ++this.run;
    this.last = 0;
    this.list.set([]);
    await this.load(run);
  }

  // All pages behind the last exchange that is known.
  async load(run) {
    try {
      while (run === this.run && await this.loadPage(run));
      if (run === this.run) this.say(this.countText());
    } catch (error) {
      this.say(error.message);
    }
  }

  // True where there is another one. Of two that asked for the same page, one adds it.
  async loadPage(run) {
    const query = this.filter();
    query.set("after", this.last);
    const page = await ask("GET", `journal?${query}`);
    if (run !== this.run) return false;
    const fresh = page.exchanges.filter(({ number }) => number > this.last);
    this.last = page.more ? Math.max(page.exchanges.at(-1).number, this.last) : Math.max(page.last, this.last);
    this.list.add(fresh, MOST);
    return page.more;
  }

  countText(newest) {
    const count = this.list.items.length;
    const text = `${counted(count, "exchange")}${this.isFiltered() ? " found" : ""}`;
    return newest ? `${text}; newest ${spoken(newest)}` : text;
  }

  take(name, data) {
    if (name === "begin") {
      if (data.last < this.last) {
        this.kept = null;
        this.list.forget();
        this.reload();
      } else this.load(this.run);
    } else if (name === "cleared") {
      this.run += 1;
      this.kept = null;
      this.list.forget();
      this.showNothing();
      this.say("cleared");
    } else if (name === "exchange") {
      this.takeNew(data);
    }
  }

  takeNew(exchange) {
    if (this.isFiltered() || exchange.number !== this.last + 1) {
      this.catchUp();
    } else {
      this.last = exchange.number;
      this.list.add([exchange], MOST);
      this.say(this.countText(exchange));
    }
    this.onNew();
  }

  // Follows for as long as the page is open; a service that has ended may come back.
  async watch() {
    const told = byID("connection");
    const tell = (text, lost) => {
      told.classList.toggle("lost", lost);
      told.textContent = text;
    };
    for (let pause = 500; ; pause = Math.min(pause * 2, LONGEST_PAUSE)) {
      try {
        await follow("journal/stream", (name, data) => {
          pause = 500;
          tell("live", false);
          this.take(name, data);
        });
      } catch (error) {
        if (error instanceof Refused && error.status === 401) return this.onRefused();
      }
      tell("the service is not there; trying again", true);
      await new Promise((resolve) => setTimeout(resolve, pause));
    }
  }

  async clear() {
    if (!confirm("Everything in the journal goes. Clear it?")) return;
    try {
      await ask("DELETE", "journal");
    } catch (error) {
      this.say(error.message);
    }
  }

  showNothing() {
    replaceChildren(this.detail, element("p", {}, "Choose an exchange to read it."));
  }

  async show(exchange) {
    try {
      const whole = await ask("GET", `journal/${exchange.number}`);
      if (this.list.current?.number !== exchange.number) return;
      if (this.kept && this.kept.number !== whole.number) return this.compare(whole);
      showExchange(this.detail, whole, [this.button("Compare with another", () => this.keep(whole)),
        this.button("Newer", () => this.list.step(1)),
        this.button("Older", () => this.list.step(-1))]);
    } catch (error) {
      this.detail.replaceChildren(element("p", { class: "problem", role: "alert" }, error.message));
    }
  }

  button(text, action) {
    return element("button", { type: "button", onclick: action }, text);
  }

  compare(whole) {
    const [left, right] = this.kept.number < whole.number ? [this.kept, whole] : [whole, this.kept];
    showCompared(this.detail, left, right, [this.button("End the comparison", () => this.release())]);
  }

  async keep(exchange) {
    if (this.kept) return this.release();
    this.kept = exchange.fields ? exchange : await ask("GET", `journal/${exchange.number}`);
    this.list.keep(this.kept.number);
    this.detail.prepend(element("p", { class: "notice", role: "status" },
      `Exchange ${this.kept.number} is kept. Choose the one to compare it with.`));
    this.list.box.focus();
  }

  release() {
    this.kept = null;
    this.list.keep(null);
    if (this.list.current) this.show(this.list.current);
    this.list.box.focus();
  }

  read() {
    this.detail.querySelector("h2")?.focus();
  }

  key(event) {
    if (event.key === "Escape") this.list.box.focus();
  }
}
