/* The attempts at a test, and what was kept of an attempt without steps. */

/** The output, windows and screen of an application with which the test did nothing, as it did not start. */
function makeSeen(seen) {
  const texts = Object.entries(seen.texts).map(([name, text]) => element("section", {className: "seen panel", "aria-label": name},
    element("h3", {}, name), element("pre", {}, text)));
  const pictures = seen.pictures.map((key) => element("figure", {}, makePicture(key, "The screen before the application was ended"),
    element("figcaption", {}, "The screen before the application was ended")));
  return [...texts, ...(pictures.length ? [element("div", {className: "pictures"}, pictures)] : [])];
}

/** The attempts at a test side by side: how each went, its complaint, its last picture. */
function makeAttempts(test, chosen, choose) {
  if (test.attempts.length < 2) return [];
  const cards = test.attempts.map((attempt, number) => {
    const steps = attempt.trace ? attempt.trace.steps : [];
    const last = steps.findLast((step) => step.after || step.before);
    const shown = last && (last.error ? last.before || last.after : last.after || last.before);
    const complaint = attempt.message.split("\n").find((line) => COMPLAINT.test(line)) || "";
    return element("button", {type: "button", className: "attempt panel", "aria-pressed": String(number === chosen), onclick: () => choose(number)},
      element("span", {className: "attempt-title"}, element("span", {className: `mark ${attempt.outcome}`}), `Attempt ${number + 1}`),
      element("span", {className: `outcome ${attempt.outcome}`}, attempt.outcome),
      element("span", {className: "quiet"}, duration(attempt.seconds)),
      complaint ? element("span", {className: "complaint"}, complaint.replace(/^E +/, "").replace(/^[\w.]+\.(?=\w+:)/, "")) : null,
      shown ? makePicture(shown, `The screen at the end of attempt ${number + 1}`) : null);
  });
  return [element("div", {className: "attempts", role: "group", "aria-label": "Attempts"}, cards)];
}

/** The attempt that is shown first: the last one, or the last failure of a test that passed in the end. */
function usualAttempt(test) {
  const failure = test.attempts.findLastIndex((attempt) => attempt.outcome !== "passed");
  return test.outcome === "flaky" ? failure : test.attempts.length - 1;
}
