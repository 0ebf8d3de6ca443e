// Making elements. Whatever comes from elsewhere becomes text, and never markup.

// Characters that show nothing or turn the direction of what stands around them, written as \u and four digits.
const HARMFUL = /[\u0000-\u0008\u000b-\u001f\u007f-\u009f\u061c\u200e\u200f\u2028-\u202e\u2066-\u2069]/g;

export function shown(text) {
  return String(text).replace(HARMFUL, (c) => "\\u" + c.charCodeAt(0).toString(16).padStart(4, "0"));
}

export function element(name, attributes = {}, ...children) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) {
    if (key.startsWith("on")) made.addEventListener(key.slice(2), value);
    else if (value === true) made.setAttribute(key, "");
    else if (value !== false && value !== undefined && value !== null) made.setAttribute(key, value);
  }
  for (const child of children.flat(Infinity)) made.append(child instanceof Node ? child : shown(child));
  return made;
}

export function byID(id) {
  return document.getElementById(id);
}

const HOLDERS = "button, summary, input, select, textarea, a, [tabindex]";

// By which what takes the place of an element is known again.
function nameOf(node) {
  if (/^H\d$/.test(node.tagName)) return node.tagName;
  return `${node.tagName} ${node.closest("[data-id]")?.dataset.id ?? node.textContent}`;
}

// Puts new children in a place. The focus goes to the one that stands now for what had it, or to what is next to it:
// never to the page, where a keyboard and a screen reader would begin anew.
export function replaceChildren(place, ...children) {
  const active = document.activeElement;
  const had = active !== place && place.contains(active) ? active : null;
  const name = had && nameOf(had);
  const like = () => [...place.querySelectorAll(HOLDERS)].filter((each) => nameOf(each) === name);
  const at = had ? like().indexOf(had) : 0;
  place.replaceChildren(...children);
  if (!had) return;
  const next = like().at(Math.min(at, like().length - 1)) ?? place.querySelector(HOLDERS) ??
    place.parentElement.querySelector(HOLDERS);
  (next ?? place).focus({ preventScroll: true });
}

export function table(caption, columns, rows) {
  return element("table", {},
    element("caption", {}, caption),
    element("thead", {}, element("tr", {}, columns.map((name) => element("th", { scope: "col" }, name)))),
    element("tbody", {}, rows.map((cells) =>
      element("tr", {}, cells.map((cell) => element("td", { dir: "auto" }, cell))))));
}

const pad = (number, length = 2) => String(number).padStart(length, "0");

export function counted(count, one) {
  return `${count} ${one}${count === 1 ? "" : "s"}`;
}

export function clockText(ms) {
  const at = new Date(ms);
  return `${pad(at.getHours())}:${pad(at.getMinutes())}:${pad(at.getSeconds())}`;
}

export function timeText(ms) {
  const at = new Date(ms);
  return `${at.getFullYear()}-${pad(at.getMonth() + 1)}-${pad(at.getDate())} ${clockText(ms)}`;
}

export function spanText(ms) {
  const seconds = Math.floor(Math.abs(ms) / 1000);
  const text = `${Math.floor(seconds / 3600)}:${pad(Math.floor(seconds / 60) % 60)}:${pad(seconds % 60)}`;
  return ms < 0 ? `over for ${text}` : text;
}

export function tookText(microseconds) {
  if (microseconds === undefined) return "";
  if (microseconds < 1000) return `${microseconds} µs`;
  const ms = microseconds / 1000;
  return ms < 10_000 ? `${ms.toFixed(ms < 100 ? 1 : 0)} ms` : `${(ms / 1000).toFixed(1)} s`;
}

// Runs once a while after the last of several calls.
export function settled(action, ms) {
  let timer = 0;
  return (...words) => {
    clearTimeout(timer);
    timer = setTimeout(() => action(...words), ms);
  };
}
