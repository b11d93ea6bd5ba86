/* The difference from the last run of the test that passed: the first step that differs, both pictures, the widgets. */

/** The panel; `choose` takes the number of a step. Nothing where there is no such run, or nothing differs. */
function makeDiffers(trace, choose) {
  const differs = trace.differs;
  if (!differs) return [];
  const number = differs.step - 1;
  const open = element("button", {type: "button", className: "more", onclick: () => choose(number)}, `Show step ${differs.step}`);
  return [element("section", {className: "differs panel", "aria-label": "What differs"},
    element("h3", {}, "What differs ", element("span", {className: "quiet"},
      `from the last run that passed (${differs.branch}, ${differs.passed_at})`)),
    element("p", {}, "The first step that differs is ", element("code", {}, breakable(`${differs.step}. ${differs.title}`)), " ", open),
    element("ul", {}, differs.reasons.map((reason) => element("li", {}, reason))),
    ...makeDifferingWidgets(differs), ...makeDifferingPictures(differs, trace))];
}

function makeDifferingWidgets(differs) {
  const line = (sign, kind) => (widget) => element("span", {className: kind}, `${sign} ${widget}\n`);
  const lines = [...differs.gone.map(line("-", "removed")), ...differs.new.map(line("+", "added"))];
  return lines.length ? [element("pre", {tabIndex: 0, role: "region", "aria-label": "Widgets that changed"}, lines)] : [];
}

function makeDifferingPictures(differs, trace) {
  const comparison = {expected: differs.passed_picture, actual: differs.picture};
  const figures = [["expected", "The run that passed"], ["actual", "This run"]].filter(([kind]) => comparison[kind])
    .map(([kind, text]) => element("figure", {},
      element("button", {type: "button", title: "Zoom", onclick: () => zoom({comparison}, kind, trace)}, makePicture(comparison[kind], text)),
      element("figcaption", {}, text)));
  return figures.length ? [element("div", {className: "pictures both"}, figures)] : [];
}
