// One exchange: its facts, its fields decoded, its XML in colours; and two side by side.

import { element, replaceChildren, shown, timeText, tookText } from "./dom.js";
import { compared } from "./difference.js";

const MOST_COLOURED = 300_000;

function* tokensOf(text) {
  const endings = { "<!--": ["-->", "comment"], "<![CDATA[": ["]]>", "value"], "<?": ["?>", "comment"] };
  let at = 0;
  while (at < text.length) {
    if (text[at] !== "<") {
      const end = text.indexOf("<", at);
      yield ["value", text.slice(at, end < 0 ? text.length : end)];
      at = end < 0 ? text.length : end;
      continue;
    }
    const opening = Object.keys(endings).find((each) => text.startsWith(each, at));
    const [closing, kind] = opening ? endings[opening] : [">", "tag"];
    const end = text.indexOf(closing, at);
    if (end < 0) return yield ["value", text.slice(at)];
    yield [kind, text.slice(at, end + closing.length)];
    at = end + closing.length;
  }
}

function tagSpans(tag) {
  const blank = tag.search(/\s/);
  if (blank < 0) return [element("span", { class: "tag" }, tag)];
  const end = tag.endsWith("/>") ? 2 : 1;
  return [element("span", { class: "tag" }, tag.slice(0, blank)),
    element("span", { class: "attribute" }, tag.slice(blank, -end)),
    element("span", { class: "tag" }, tag.slice(-end))];
}

// A text as it stands, with colours where it is XML.
export function codeOf(text) {
  const pre = element("pre", { dir: "ltr", tabindex: "0" });
  if (!text.startsWith("<") || text.length > MOST_COLOURED) {
    pre.append(shown(text));
    return pre;
  }
  for (const [kind, piece] of tokensOf(text)) {
    if (kind === "tag") pre.append(...tagSpans(piece));
    else if (kind === "value" && piece.trim() === "") pre.append(piece);
    else pre.append(element("span", { class: kind }, piece));
  }
  return pre;
}

function sizeText(exchange) {
  const part = (bytes) => (bytes === null ? "–" : `${bytes} bytes`);
  return `${part(exchange.bytesOut)} out, ${part(exchange.bytesIn)} in`;
}

function factsOf(exchange) {
  const facts = [["Time", typeof exchange.time === "number" ? timeText(exchange.time) : exchange.time],
    ["User", exchange.user], ["Process", exchange.process], ["Took", tookText(exchange.microseconds)],
    ["Size", sizeText(exchange)], ["Status", exchange.status],
    ["Request", exchange.method && `${exchange.method} ${exchange.path}`], ["Exception", exchange.exceptionID],
    ["Fault", exchange.fault]];
  return element("dl", { class: "summary" }, facts.filter(([, value]) => value !== undefined && value !== "")
    .map(([name, value]) => element("div", {}, element("dt", {}, name), element("dd", { dir: "auto" }, value))));
}

function outcomeOf(exchange) {
  const good = exchange.result === "SUCCESS";
  return element("p", { class: "outcome" }, element("span", { class: good ? "good" : "bad" }, exchange.result), " ",
    element("span", { dir: "auto" }, exchange.reason ?? ""));
}

function fieldsOf(exchange) {
  const short = exchange.fields.filter((field) => !field.value.startsWith("<"));
  const long = exchange.fields.filter((field) => field.value.startsWith("<"));
  return [element("h3", {}, "Fields"),
    short.length === 0 ? "" : element("dl", { class: "fields" }, short.map((field) =>
      [element("dt", {}, field.name || "(no name)"), element("dd", { dir: "auto" }, field.value)])),
    ...long.flatMap((field) => [element("h3", {}, field.name), codeOf(field.value)])];
}

export const titleOf = (exchange) => `Exchange ${exchange.number}: ${exchange.operation}`;

export function showExchange(place, exchange, buttons) {
  replaceChildren(place,
    element("h2", { tabindex: "-1", dir: "auto" }, titleOf(exchange)),
    element("div", { class: "buttons" }, buttons),
    outcomeOf(exchange), factsOf(exchange), ...fieldsOf(exchange),
    element("h3", {}, "Reply"), exchange.reply === "" ? element("p", {}, "nothing") : codeOf(exchange.reply));
  place.scrollTop = 0;
}

function linesOf(exchange) {
  const facts = ["user", "result", "reason", "exceptionID"].map((name) => `${name}: ${exchange[name] ?? ""}`);
  const fields = exchange.fields.flatMap((field) => [`${field.name} =`, ...field.value.trimEnd().split("\n")]);
  return [...facts, "", ...fields, "", "reply =", ...exchange.reply.trimEnd().split("\n")];
}

// A line that has changed, with the part of it that did.
function marked(line, other) {
  const most = Math.min(line.length, other.length);
  let begin = 0;
  while (begin < most && line[begin] === other[begin]) ++begin;
  let end = 0;
  while (end < most - begin && line.at(-1 - end) === other.at(-1 - end)) ++end;
  return [line.slice(0, begin), element("mark", {}, line.slice(begin, line.length - end)),
    line.slice(line.length - end)];
}

const MARKS = { same: ["", ""], changed: ["≠", "changed"], gone: ["−", "only left"], new: ["+", "only right"] };

function comparedRow({ kind, left, right, count }) {
  if (kind === "equal") {
    return element("tr", { class: "equal" }, element("td", { colspan: "3" }, `… ${count} equal lines`));
  }
  const [mark, word] = MARKS[kind];
  return element("tr", { class: kind },
    element("td", { dir: "ltr" }, kind === "changed" ? marked(left, right) : left ?? ""),
    element("td", {}, element("span", { "aria-hidden": "true" }, mark), element("span", { class: "unseen" }, word)),
    element("td", { dir: "ltr" }, kind === "changed" ? marked(right, left) : right ?? ""));
}

export function showCompared(place, left, right, buttons) {
  const rows = compared(linesOf(left), linesOf(right));
  const differences = rows.filter(({ kind }) => kind !== "same" && kind !== "equal").length;
  replaceChildren(place,
    element("h2", { tabindex: "-1" }, `Exchanges ${left.number} and ${right.number}: ${differences} lines differ`),
    element("div", { class: "buttons" }, buttons),
    element("table", { class: "compare" },
      element("thead", {}, element("tr", {}, element("th", { scope: "col", dir: "auto" }, titleOf(left)),
        element("th", { scope: "col" }, element("span", { class: "unseen" }, "Difference")),
        element("th", { scope: "col", dir: "auto" }, titleOf(right)))),
      element("tbody", {}, rows.map(comparedRow))));
  place.scrollTop = 0;
}
