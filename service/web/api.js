// The service's control: JSON over HTTP with the token that was printed when it started.

const KEY = "control-token";
let token = "";

// The address that the service prints has the token behind its "#". It does not stay there to be seen or sent on.
export function takeToken() {
  const given = new URLSearchParams(location.hash.slice(1)).get("token");
  if (given) {
    setToken(given);
    history.replaceState(null, "", location.pathname);
  } else {
    token = sessionStorage.getItem(KEY) ?? "";
  }
  return token !== "";
}

export function setToken(value) {
  token = value;
  sessionStorage.setItem(KEY, value);
}

export class Refused extends Error {
  constructor(status, why) {
    super(why);
    this.status = status;
  }
}

async function send(method, resource, body, type, signal) {
  const headers = { Authorization: `Bearer ${token}` };
  if (body !== undefined) headers["Content-Type"] = type;
  const reply = await fetch(`/control/${resource}`, { method, headers, body, signal });
  if (reply.ok) return reply;
  let why = `status ${reply.status}`;
  try {
    why = (await reply.json()).error;
  } catch {
    // No JSON: the status has to do.
  }
  throw new Refused(reply.status, why);
}

export async function ask(method, resource, body) {
  const text = body === undefined ? undefined : JSON.stringify(body);
  return (await send(method, resource, text, "application/json")).json();
}

export async function askWithText(resource, text) {
  return (await send("POST", resource, text, "text/plain")).json();
}

function eventOf(block) {
  const event = { name: "message", data: "" };
  for (const line of block.split("\n")) {
    if (line.startsWith("event: ")) event.name = line.slice(7);
    if (line.startsWith("data: ")) event.data += line.slice(6);
  }
  return event.data === "" ? null : event;
}

// Hands on events until the connection ends. A request of one's own can carry the token in a header, which the
// browser's own event source cannot.
export async function follow(resource, take) {
  const reply = await send("GET", resource);
  const reader = reply.body.pipeThrough(new TextDecoderStream()).getReader();
  let text = "";
  for (;;) {
    const { value, done } = await reader.read();
    if (done) return;
    text += value;
    for (let end = text.indexOf("\n\n"); end >= 0; end = text.indexOf("\n\n")) {
      const event = eventOf(text.slice(0, end));
      text = text.slice(end + 2);
      if (event) take(event.name, JSON.parse(event.data));
    }
  }
}
