/* The tabs of a step: the line of the test, what the application wrote, its requests, the widgets after it. */

const LINES_AROUND = 7;

function makeSourceTab(step, trace) {
  const source = (trace.sources || {})[step.file];
  return source && step.line ? [{name: "source", label: "Source", make: () => makeSource(step, source)}] : [];
}

function makeSource(step, source) {
  const numbers = Object.keys(source).map(Number).filter((number) => Math.abs(number - step.line) <= LINES_AROUND);
  const rows = numbers.sort((one, other) => one - other).map((number) =>
    element("div", {className: number === step.line ? "line current" : "line"},
      element("span", {className: "number"}, String(number)), element("code", {}, source[number] || " ")));
  return element("div", {}, element("p", {className: "quiet"}, `${step.file}:${step.line}`),
    element("pre", {className: "source"}, rows));
}

/** The output of the application from the beginning of a step to that of the next one; for the first step also what came before. */
function outputOf(trace, number) {
  const from = number ? trace.steps[number].start : -Infinity;
  const to = number + 1 < trace.steps.length ? trace.steps[number + 1].start : Infinity;
  return (trace.output || []).filter((line) => line.time >= from && line.time < to);
}

function makeOutputTab(trace, number) {
  const lines = outputOf(trace, number);
  return lines.length ? [{name: "output", label: `Output ${lines.length}`, make: () => makeOutput(lines)}] : [];
}

function makeOutput(lines) {
  return element("table", {className: "output"}, element("tbody", {}, lines.map((line) => element("tr", {className: line.stream},
    element("td", {className: "number"}, `${line.time.toFixed(3)} s`),
    element("td", {className: "quiet"}, line.stream),
    element("td", {}, element("pre", {}, line.text))))));
}

function makeRequests(step) {
  if (!step.exchanges.length) return element("p", {className: "quiet"}, "This step asked the application nothing.");
  const rows = step.exchanges.map((exchange) => element("tr", {},
    element("td", {className: "number"}, duration(Math.max(exchange.start - step.start, 0))),
    element("td", {className: "number"}, duration(exchange.seconds)),
    element("td", {}, element("details", {},
      element("summary", {}, element("pre", {}, exchange.asks)),
      element("pre", {}, `> ${exchange.request}`),
      exchange.reply === null ? null : element("pre", {}, `< ${exchange.reply}`))),
    element("td", {}, makeAnswer(exchange))));
  if (step.skipped) {
    const text = `${step.skipped} more like these were left out`;
    rows.splice(Math.ceil(rows.length / 2), 0,
      element("tr", {}, element("td", {colSpan: 4, className: "quiet"}, text)));
  }
  const headings = ["After", "Took", "Request", "Reply"].map((text) => element("th", {scope: "col"}, text));
  return element("table", {className: "requests"},
    element("thead", {}, element("tr", {}, headings)), element("tbody", {}, rows));
}

function makeAnswer(exchange) {
  if (exchange.error) return element("pre", {className: "refused"}, exchange.error);
  const refused = !/^[0?],/.test(exchange.reply);
  return element("pre", {className: refused ? "refused" : ""}, exchange.answers || exchange.reply || "");
}

/** The lines of a listing as nodes. A key tells a widget from all others of the listing. */
function parseTree(text) {
  const roots = [];
  const chain = [];
  for (const line of text.split("\n")) {
    const label = line.trimStart();
    const depth = (line.length - label.length) / 2;
    chain.length = Math.min(chain.length, depth);
    const parent = chain[chain.length - 1];
    const siblings = parent ? parent.children : roots;
    const key = `${parent ? parent.key : ""}\n${label}`;
    const same = siblings.filter((sibling) => sibling.label === label).length;
    const node = {label, key: same ? `${key} (${same})` : key, children: []};
    siblings.push(node);
    chain.push(node);
  }
  return roots;
}

function keysOf(nodes, keys = new Set()) {
  for (const node of nodes) {
    keys.add(node.key);
    keysOf(node.children, keys);
  }
  return keys;
}

/** `earlier` are the keys of the listing before, null if there is none: what is not among them is new. */
function makeNode(node, depth, earlier) {
  const isNew = earlier !== null && !earlier.has(node.key);
  const children = node.children.map((child) => makeNode(child, depth + 1, earlier));
  const [, kind, name, state] = node.label.match(/^([^"]*?)( ".*")?( hidden| modal)?$/) || [null, node.label, "", ""];
  const words = [element("span", {className: "class"}, kind), name || "", element("span", {className: "quiet"}, state || "")];
  const classes = [state === " hidden" ? "unseen" : "", isNew ? "new" : "", depth ? "" : "window"];
  if (!children.length) return element("div", {className: `leaf ${classes.join(" ")}`}, words);
  if (node.children.every((child) => child.label.endsWith(" hidden"))) classes.push("hollow");
  const open = depth < 3 || children.some((child) => child.open || child.classList.contains("new"));
  return element("details", {className: classes.join(" "), open}, element("summary", {}, words), element("div", {}, children));
}

function makeWidgets(step, trace, earlierStep) {
  if (!step.widgets) {
    return element("p", {className: "quiet"}, "The widgets are listed after steps that act, and where a step failed.");
  }
  const earlier = earlierStep ? keysOf(parseTree(trace.trees[earlierStep.widgets])) : null;
  const tree = element("div", {className: "tree only-visible"},
    parseTree(trace.trees[step.widgets]).map((node) => makeNode(node, 0, earlier)));
  const changes = tree.querySelectorAll(".new:not(.unseen)").length;
  const hidden = element("input", {type: "checkbox", onchange: () => tree.classList.toggle("only-visible", !hidden.checked)});
  const find = element("input", {
    type: "search", placeholder: "Find a widget", "aria-label": "Find a widget", oninput: () => findInTree(tree, find.value),
  });
  return element("div", {},
    element("div", {className: "tree-controls"}, find, element("label", {}, hidden, " show hidden widgets"),
      changes ? element("span", {className: "quiet"}, `${changes} changed since the last listing, marked`) : null),
    tree);
}

/** Hides the widgets that neither have a text nor contain one that has it. */
function findInTree(tree, text) {
  const wanted = text.toLowerCase();
  const filter = (node) => { // returns whether the node is shown
    const inside = node.lastElementChild;
    const children = node.tagName === "DETAILS" ? [...inside.children].map(filter).some(Boolean) : false;
    const own = (node.tagName === "DETAILS" ? node.firstElementChild : node).textContent.toLowerCase().includes(wanted);
    node.hidden = !own && !children;
    if (wanted && children) node.open = true;
    return own || children;
  };
  [...tree.children].forEach(filter);
}
