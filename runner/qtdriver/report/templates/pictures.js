/* The pictures of a step: before, after, side by side, difference. They are decoded when they are shown. */

const MODES = [
  {name: "before", label: "Before", needs: ["before"]},
  {name: "after", label: "After", needs: ["after"]},
  {name: "both", label: "Side by side", needs: ["before", "after"]},
  {name: "difference", label: "Difference", needs: ["before", "after"]},
];
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

function modesOf(step) {
  return MODES.filter((mode) => mode.needs.every((moment) => step[moment]));
}

/** The buttons that choose the mode, and the place that shows it. */
function makePictures(step, trace) {
  const place = element("div", {className: "pictures"});
  const possible = modesOf(step);
  const buttons = MODES.map((mode) => element("button", {
    type: "button",
    disabled: !possible.includes(mode),
    onclick: () => {
      preferredMode = mode.name;
      show(mode);
    },
  }, mode.label));

  function show(mode) {
    buttons.forEach((button, index) => button.setAttribute("aria-pressed", String(MODES[index] === mode)));
    place.className = `pictures ${mode.name}`;
    place.replaceChildren(...(mode.name === "difference" ? [makeDifference(step, trace)] : makeFigures(step, mode, trace)));
  }

  if (possible.length) show(possible.find((mode) => mode.name === preferredMode) || possible[possible.length - 1]);
  else place.append(makeAbsence(step, trace));
  return {place, buttons: element("div", {className: "modes", role: "group", "aria-label": "Screenshot"}, buttons)};
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
  const open = element("button", {type: "button", title: "Zoom", onclick: () => zoom(step, "difference", trace)},
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
  const moments = ["before", "after", "difference"].filter((moment) =>
    moment === "difference" ? step.before && step.after : step[moment]);
  const place = element("div", {className: "zoomed", tabIndex: 0});
  const caption = element("span", {});
  let current = moments.indexOf(first);

  function turn(by) {
    current = (current + by + moments.length) % moments.length;
    const moment = moments[current];
    place.className = `zoomed ${moment}`;
    const pictures = (moment === "difference" ? [step.before, step.after] : [step[moment]])
      .map((key) => makePicture(key, `The screen: ${moment}`));
    const target = moment === "difference" ? null : makeTarget(step, trace, step[moment]);
    place.replaceChildren(element("div", {className: "whole"}, pictures, target));
    caption.textContent = `${moment[0].toUpperCase()}${moment.slice(1)} (${current + 1} of ${moments.length}, arrow keys)`;
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
