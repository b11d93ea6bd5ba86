/* One test: its heading, time line, steps, and what is known of the chosen step. */

let preferredTab = "source";

function makeHeading(test, attempt) {
  const facts = [
    element("span", {className: `outcome ${test.outcome}`}, test.outcome),
    element("span", {}, duration(test.seconds)),
    element("span", {}, test.file),
    attempt.worker ? element("span", {className: "worker"}, `worker ${attempt.worker}`) : null,
  ];
  const {bundle} = attempt;
  if (bundle) facts.push(element("span", {}, "bundle: ", element("a", {href: bundle.href}, bundle.path)));
  const files = (attempt.kept || []).map((file) => element("a", {href: file.href}, file.path));
  return element("div", {className: "heading"},
    element("h2", {}, breakable(test.name)), element("div", {className: "facts"}, facts),
    files.length ? element("div", {className: "files"}, files) : null);
}

/** Lines that say what was wrong: pytest begins them with an E, or they begin with the name of an exception. */
const COMPLAINT = /^(E {2,}|[\w.]*(Error|Exception)\b)/;

/** The line before those of a difference, and the one behind them. */
const DIFFERENCE_BEGINS = /it differs \(- expected, \+ shown\):$/;
const DIFFERENCE_ENDS = / anew, if it is right so$/;
const CHANGES = {"-": "removed", "+": "added"};

/** The lines of a message: complaints stand out, and in a difference what is removed and what is added. */
function makeLines(text) {
  let inDifference = false;
  let margin = 0; // pytest's own, and that of a list
  return text.split(/(?<=\n)/).map((line) => {
    if (DIFFERENCE_ENDS.test(line.trimEnd())) inDifference = false;
    const change = inDifference ? CHANGES[line[margin]] : "";
    if (DIFFERENCE_BEGINS.test(line.trimEnd())) {
      inDifference = true;
      margin = line.match(/^(E\s)?\s*/)[0].length;
    }
    else if (inDifference) return change ? element("span", {className: change}, line) : line;
    return COMPLAINT.test(line) ? element("span", {className: "complaint"}, line) : line;
  });
}

function makeMessage(test) {
  if (!test.message) return [];
  const message = element("div", {className: `message panel ${test.outcome}`, tabIndex: 0, role: "region", "aria-label": "Message"},
    element("pre", {}, makeLines(test.message)));
  if (test.message.split("\n").length < 12) return [message];
  const more = element("button", {type: "button", className: "more", "aria-expanded": "false", onclick: () => {
    const whole = message.classList.toggle("whole");
    more.setAttribute("aria-expanded", String(whole));
    more.textContent = whole ? "Show less" : "Show the whole message";
  }}, "Show the whole message");
  return [message, more];
}

/** The stacks of applications that crashed or hung: folded, as they are long, and named by their first call. */
function makeStacks(attempt) {
  return (attempt.stacks || []).map((text) => element("details", {className: "stack panel"},
    element("summary", {}, "Stack of the application: ", element("code", {}, firstOwnCall(text))),
    element("pre", {}, text)));
}

function firstOwnCall(text) {
  const calls = text.split("\n").filter((line) => /^ +#\d/.test(line)).map((line) => line.trim().replace(/^#\d+ +/, ""));
  return calls.find((call) => !/ in \S+\.so/.test(call)) || calls[0] || "";
}

/** In a long message, what was wrong stands below the source text. */
function scrollToComplaint(place) {
  const message = place.querySelector(".message");
  if (!message) return;
  const complaint = message.querySelector(".complaint");
  if (complaint) message.scrollTop = complaint.offsetTop - 8;
}

/** The title of a step: the window in small letters above what is done in it. */
function makeTitle(title) {
  const [, before, where, what] = title.match(/^(eventually\()?((?:window|modal|popup)\((?:[^"()]|"[^"]*")*\)\.)(.+)$/s) || [];
  if (!what) return element("span", {className: "title"}, breakable(title));
  return element("span", {className: "title"},
    element("span", {className: "where"}, breakable(where)), breakable((before || "") + what));
}

function makeStepEntry(step, number, depth) {
  const entry = element("li", {
    id: `step-${number}`, role: "option", "aria-selected": "false",
    className: `${step.reads ? "reads" : "acts"} ${step.error ? "failed" : ""}`,
  },
  makeTitle(step.title),
  element("span", {className: "time"}, duration(step.seconds)),
  step.error ? element("span", {className: "problem"}, step.error.split("\n")[0]) : null);
  entry.style.marginLeft = `${depth * 14}px`;
  return entry;
}

/** The steps as entries of a list, and between them the headings of the groups that they are in. */
function makeSteps(trace) {
  const groups = trace.groups || [];
  const chainOf = (group) => (group === null || group === undefined ? [] : [...chainOf(groups[group].parent), group]);
  const entries = [];
  const rows = [];
  let open = [];
  trace.steps.forEach((step, number) => {
    const chain = chainOf(step.group);
    chain.forEach((group, depth) => {
      if (open[depth] === group && open.slice(0, depth).every((other, index) => other === chain[index])) return;
      rows.push(makeGroup(groups[group], depth));
    });
    open = chain;
    entries.push(makeStepEntry(step, number, chain.length));
    rows.push(entries[entries.length - 1]);
  });
  return {entries, rows};
}

function makeGroup(group, depth) {
  const heading = element("li", {className: `group ${group.error ? "failed" : ""}`, role: "presentation"},
    element("span", {className: "title"}, group.title), element("span", {className: "time"}, duration(group.seconds)));
  heading.style.marginLeft = `${depth * 14}px`;
  return heading;
}

/** The tabs below the picture. The one that was chosen last is shown for each further step that has it. */
function makeTabs(tabs) {
  let current = null;
  const place = element("div", {className: "tab", role: "tabpanel", id: "tab"});
  const buttons = tabs.map((tab) => element("button", {
    type: "button", role: "tab", "aria-controls": "tab", onclick: () => choose(tab),
  }, tab.label));

  function choose(tab) {
    preferredTab = tab.name;
    show(tab);
  }

  function show(tab) {
    current = tab;
    buttons.forEach((button, index) => {
      button.setAttribute("aria-selected", String(tabs[index] === tab));
      button.tabIndex = tabs[index] === tab ? 0 : -1;
    });
    place.setAttribute("aria-label", tab.label);
    place.replaceChildren(tab.make());
  }

  const row = element("div", {className: "tabs", role: "tablist", onkeydown: (event) => {
    const by = {ArrowLeft: -1, ArrowRight: 1}[event.key];
    if (!by) return;
    const next = (tabs.indexOf(current) + by + tabs.length) % tabs.length;
    choose(tabs[next]);
    buttons[next].focus();
  }}, buttons);
  show(tabs.find((tab) => tab.name === preferredTab) || tabs[0]);
  return [row, place];
}

function makeEvidence(trace, number) {
  const step = trace.steps[number];
  const pictures = makePictures(step, trace);
  const earlier = trace.steps.slice(0, number).reverse().find((other) => other.widgets && other.pid === step.pid);
  const count = step.exchanges.length + step.skipped;
  return [
    element("div", {className: "bar-top"},
      element("span", {className: "step-title"}, breakable(`${number + 1}. ${step.title}`),
        step.action && !step.action.startsWith("eventually(") ? element("span", {className: "where"}, breakable(step.action)) : null), pictures.buttons),
    step.error ? element("div", {className: "step-error", tabIndex: 0, role: "region", "aria-label": "Error"},
      element("pre", {}, makeLines(step.error))) : null,
    pictures.place,
    ...makeTabs([
      ...makeSourceTab(step, trace),
      ...makeOutputTab(trace, number),
      {name: "requests", label: `Requests ${count}`, make: () => makeRequests(step)},
      {name: "widgets", label: "Widgets", make: () => makeWidgets(step, trace, earlier)},
    ]),
  ].filter(Boolean);
}

/** Puts the test into `place`. Calls `chosen` with the numbers of the attempt and of each step that is chosen. */
function showTest(place, test, first, chosen) {
  const asked = test.attempts[first.attempt] ? first.attempt : usualAttempt(test);
  showAttempt(place, test, asked, first.step, chosen);
}

function showAttempt(place, test, number, first, chosen) {
  const attempt = test.attempts[number];
  const {trace} = attempt;
  const turn = (other) => {
    showAttempt(place, test, other, -1, chosen);
    place.querySelectorAll(".attempt")[other].focus();
  };
  const parts = [makeHeading(test, attempt), ...makeAttempts(test, number, turn), ...makeMessage(attempt), ...makeStacks(attempt)];
  if (trace && trace.notes.length) {
    parts.push(element("ul", {className: "notes panel"}, trace.notes.map((note) => element("li", {}, note))));
  }
  const report = (step) => chosen(number, step);
  report(null);
  if (!trace || !trace.steps.length) {
    const seen = attempt.seen && (attempt.seen.pictures.length || Object.keys(attempt.seen.texts).length);
    const none = trace ? "The test has done nothing with an application." : "No trace of this test was kept.";
    parts.push(...(seen ? makeSeen(attempt.seen) : [element("p", {className: "quiet"}, none)]));
    place.replaceChildren(...parts);
    scrollToComplaint(place);
    return;
  }
  const timeline = makeTimeline(trace.steps, trace.seconds, choose);
  const {entries, rows} = makeSteps(trace);
  const list = element("ol", {role: "listbox", "aria-label": "Steps", tabIndex: 0}, rows);
  const evidence = element("section", {className: "evidence panel", "aria-label": "The chosen step"});

  function choose(number) {
    mark(list, entries[number]);
    timeline.select(number);
    evidence.replaceChildren(...makeEvidence(trace, number));
    report(number);
  }

  listbox(list, () => entries, (entry) => choose(entries.indexOf(entry)));
  parts.push(...makeDiffers(trace, choose), timeline.panel, element("div", {className: "work"},
    element("section", {className: "steps panel", "aria-label": "Steps"},
      element("h3", {}, `${trace.steps.length} ${trace.steps.length === 1 ? "step" : "steps"}`), list),
    evidence));
  place.replaceChildren(...parts);
  scrollToComplaint(place);
  const failed = trace.steps.findIndex((step) => step.error);
  const usual = failed >= 0 ? failed : trace.steps.length - 1;
  choose(trace.steps[first] ? first : usual);
}
