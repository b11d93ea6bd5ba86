/* The pictures of a step: before, after, side by side, difference; expected and actual where it compared pictures. A picture is
   decoded when it is shown. */

const MODES = [
  {name: "before", label: "Before", needs: ["before"]},
  {name: "after", label: "After", needs: ["after"]},
  {name: "both", label: "Side by side", needs: ["before", "after"]},
  {name: "difference", label: "Difference", needs: ["before", "after"]},
];
const SNAPSHOT = {name: "snapshot", label: "Snapshot"};
const COMPARED = {expected: "Expected", actual: "Actual", difference: "What differs"};
let preferredMode = "after";

function makePicture(key, text) {
  const source = document.getElementById(`picture-${key}`);
  return element("img", {src: source ? source.textContent : besidePictures.get(key), alt: text, decoding: "async"});
}

/** A frame around the widget that the step is about, in a picture of the screen. */
function makeTarget(step, trace, key) {
  const shown = (trace.pictures || {})[key];
  if (!shown || !step.place) return null;
  const [left, top, width, height] = shown;
  const [x, y, wide, high] = step.place;
  if (x >= left + width || y >= top + height || x + wide <= left || y + high <= top) return null;
  const target = element("span", {className: "target", "aria-hidden": "true"});
  const percent = (part, whole) => `${(100 * part) / whole}%`;
  Object.assign(target.style, {left: percent(x - left, width), top: percent(y - top, height),
    width: percent(wide, width), height: percent(high, height)});
  return target;
}

/** The kinds of pictures that the step compared: they are in the page. */
function comparedIn(step) {
  return Object.keys(COMPARED).filter((kind) => (step.comparison || {})[kind]);
}

/** All modes of a step, and those of them that it has pictures for. */
function modesOf(step) {
  const modes = comparedIn(step).length ? [SNAPSHOT, ...MODES] : MODES;
  return [modes, modes.filter((mode) => mode === SNAPSHOT || mode.needs.every((moment) => step[moment]))];
}

/** The mode that shows most at first. An application that has ended or hangs can be seen before the step only. */
function usualMode(step, possible) {
  const find = (name) => possible.find((mode) => mode.name === name);
  const isGone = step.error && step.before && !step.widgets;
  return find(SNAPSHOT.name) || find(isGone ? "before" : preferredMode) || possible[possible.length - 1];
}

/** The buttons that choose the mode, and the place that shows it. */
function makePictures(step, trace) {
  const place = element("div", {className: "pictures"});
  const [modes, possible] = modesOf(step);
  const buttons = modes.map((mode) => element("button", {
    type: "button",
    disabled: !possible.includes(mode),
    onclick: () => {
      if (mode !== SNAPSHOT) preferredMode = mode.name;
      show(mode);
    },
  }, mode.label));

  function show(mode) {
    buttons.forEach((button, index) => button.setAttribute("aria-pressed", String(modes[index] === mode)));
    place.className = `pictures ${mode.name}`;
    place.replaceChildren(...makeMode(step, mode, trace));
  }

  if (possible.length) show(usualMode(step, possible));
  else place.append(makeAbsence(step, trace));
  return {place, buttons: element("div", {className: "modes", role: "group", "aria-label": "Screenshot"}, buttons)};
}

function makeMode(step, mode, trace) {
  if (mode === SNAPSHOT) return comparedIn(step).map((kind) => makeCompared(step, kind, trace));
  return mode.name === "difference" ? [makeDifference(step, trace)] : makeFigures(step, mode, trace);
}

function makeCompared(step, kind, trace) {
  const open = element("button", {type: "button", title: "Zoom", onclick: () => zoom(step, kind, trace)},
    makePicture(step.comparison[kind], COMPARED[kind]));
  return element("figure", {className: "compared"}, open, element("figcaption", {}, COMPARED[kind]));
}

function makeFigures(step, mode, trace) {
  return mode.needs.map((moment) => {
    const text = `The screen ${moment} the step`;
    const open = element("button", {type: "button", title: "Zoom", onclick: () => zoom(step, moment, trace)},
      makePicture(step[moment], text), makeTarget(step, trace, step[moment]));
    return element("figure", {}, open, element("figcaption", {}, text));
  });
}

function makeDifference(step, trace) {
  const same = step.before === step.after;
  const open = element("button", {type: "button", title: "Zoom", onclick: () => zoom(step, "change", trace)},
    makePicture(step.before, ""), makePicture(step.after, "What changed on the screen"));
  return element("figure", {}, open,
    element("figcaption", {}, same ? "Nothing changed on the screen" : "Whatever is not black changed on the screen"));
}

function makeAbsence(step, trace) {
  const file = step.after_file || step.before_file;
  if (!file) return element("p", {className: "nothing"}, "No screenshot of this step.");
  return element("p", {className: "nothing"}, "This screenshot had no room in the page. It is ",
    element("a", {href: `${trace.folder.href}/${encodeURIComponent(file)}`}, `${trace.folder.path}/${file}`), ".");
}

/** One picture in its full size; the arrow keys go from one to the next. */
function zoom(step, first, trace) {
  const dialog = document.getElementById("zoom");
  const views = [
    ...comparedIn(step).map((kind) => ({name: kind, label: COMPARED[kind], keys: [step.comparison[kind]]})),
    {name: "before", label: "Before", keys: [step.before], target: true},
    {name: "after", label: "After", keys: [step.after], target: true},
    {name: "change", label: "Difference", keys: [step.before, step.after]},
  ].filter((view) => view.keys.every(Boolean));
  const place = element("div", {className: "zoomed", tabIndex: 0});
  const caption = element("span", {});
  let current = views.findIndex((view) => view.name === first);

  function turn(by) {
    current = (current + by + views.length) % views.length;
    const view = views[current];
    place.className = `zoomed ${view.name === "change" ? "difference" : view.name in COMPARED ? "compared" : view.name}`;
    const pictures = view.keys.map((key) => makePicture(key, `The screen: ${view.label.toLowerCase()}`));
    const target = view.target ? makeTarget(step, trace, view.keys[0]) : null;
    place.replaceChildren(element("div", {className: "whole"}, pictures, target));
    caption.textContent = `${view.label} (${current + 1} of ${views.length}, arrow keys)`;
  }

  dialog.replaceChildren(
    element("div", {className: "zoom-bar"}, caption,
      element("button", {type: "button", onclick: () => dialog.close()}, "Close")),
    place);
  dialog.onkeydown = (event) => {
    if (event.key === "ArrowLeft" || event.key === "ArrowRight") {
      event.preventDefault();
      turn(event.key === "ArrowLeft" ? -1 : 1);
    }
  };
  dialog.onclick = (event) => {
    if (event.target === dialog) dialog.close();
  };
  turn(0);
  dialog.showModal();
}
