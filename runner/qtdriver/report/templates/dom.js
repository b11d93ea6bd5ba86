"use strict";

/* Text from outside goes into the page as text only: nothing here makes markup of it. */

const CONTROL = /[\u0000-\u0008\u000b-\u001f\u007f]/g;

/** The text with control characters replaced by Unicode's symbols for them, and unpaired surrogates by U+FFFD. */
function visible(text) {
  const whole = String(text).replace(/[\ud800-\udfff]/gu, "\ufffd");
  return whole.replace(CONTROL, (character) =>
    character === "\u007f" ? "\u2421" : String.fromCharCode(0x2400 + character.charCodeAt(0)));
}

/** An element: properties by name, "aria-x" and "role" as attributes, "on..." as listeners; then children or texts. */
function element(tag, properties, ...children) {
  const made = document.createElement(tag);
  for (const [name, value] of Object.entries(properties || {})) {
    if (name.startsWith("on")) made.addEventListener(name.slice(2), value);
    else if (name.includes("-") || name === "role") made.setAttribute(name, value);
    else made[name] = value;
  }
  for (const child of children.flat()) {
    if (child === null || child === undefined || child === "") continue;
    made.append(child instanceof Node ? child : visible(child));
  }
  return made;
}

/** The text with places where a line may end: behind punctuation, rather than anywhere in a word. */
function breakable(text) {
  return visible(text).split(/(?<=[_.(/:,])(?=\w)/).flatMap((part, index) => (index ? [element("wbr"), part] : [part]));
}

/** A duration for a person: 4.2 ms, 120 ms, 1.2 s, 3 min 5 s. */
function duration(seconds) {
  if (seconds < 0.00995) return `${(seconds * 1000).toFixed(1)} ms`;
  if (seconds < 0.9995) return `${Math.round(seconds * 1000)} ms`;
  if (seconds < 59.95) return `${seconds.toFixed(1)} s`;
  const whole = Math.round(seconds);
  return `${Math.floor(whole / 60)} min ${whole % 60} s`;
}

function jsonOf(id) {
  return JSON.parse(document.getElementById(id).textContent);
}

/** Makes a list choose one entry by a click or the arrow keys. `entries` returns those that can be chosen now. */
function listbox(list, entries, choose) {
  const step = {ArrowDown: 1, ArrowUp: -1, PageDown: 10, PageUp: -10, Home: -Infinity, End: Infinity};
  list.addEventListener("click", (event) => {
    const entry = event.target.closest("[role=option]");
    if (entry) choose(entry);
  });
  list.addEventListener("keydown", (event) => {
    if (!(event.key in step) || event.ctrlKey || event.altKey || event.metaKey) return;
    const all = entries();
    if (!all.length) return;
    event.preventDefault();
    const current = all.findIndex((entry) => entry.getAttribute("aria-selected") === "true");
    const wanted = current < 0 ? 0 : current + step[event.key];
    choose(all[Math.max(0, Math.min(all.length - 1, wanted))]);
  });
}

/** Shows which entry of a listbox is chosen, and brings it into view. */
function mark(list, chosen) {
  for (const entry of list.querySelectorAll("[aria-selected=true]")) entry.setAttribute("aria-selected", "false");
  chosen.setAttribute("aria-selected", "true");
  list.setAttribute("aria-activedescendant", chosen.id);
  // Not scrollIntoView(): the page around the list stays where it is.
  const above = chosen.offsetTop;
  const below = above + chosen.offsetHeight - list.clientHeight;
  if (list.scrollTop > above) list.scrollTop = above;
  else if (list.scrollTop < below) list.scrollTop = below;
}
