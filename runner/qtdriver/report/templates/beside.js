/* Files beside the page: the traces of tests that went well, their pictures, and tests for which the page has no room.
   A page that is a file itself may not fetch its neighbours, but it may run scripts: so these call a function of the page. */

const besidePictures = new Map();

const awaited = new Map();

window.qtdriverTrace = window.qtdriverMore = (data) => awaited.get(document.currentScript)(data);

/** Runs a script beside the page, which hands over its data by a call. */
function loadScript(address) {
  return new Promise((resolve, reject) => {
    const end = (problem) => {
      script.remove();
      awaited.delete(script);
      reject(new Error(problem)); // without effect once there are data
    };
    const script = element("script", {src: address, onload: () => end("it holds no data"), onerror: () => end("it is not there")});
    awaited.set(script, resolve);
    document.head.append(script);
  });
}

/** The trace of an attempt, of which the page only knows the folder. */
function loadTrace(folder) {
  return loadScript(`${folder.href}/trace.js`).then((trace) => {
    const know = (name) => name && besidePictures.set(name, `${folder.href}/${encodeURIComponent(name)}`);
    for (const step of trace.steps) {
      for (const moment of ["before", "after"]) {
        step[`${moment}_file`] = step[moment];
        know(step[moment]);
      }
      Object.values(step.comparison || {}).forEach(know);
    }
    if (trace.differs) [trace.differs.picture, trace.differs.passed_picture].forEach(know);
    return {...trace, folder};
  });
}

/** Loads the traces of a test that are not in the page. One that cannot be loaded has a note that says so. */
function loadTraces(test) {
  const missing = test.attempts.filter((attempt) => attempt.beside && !attempt.trace);
  return Promise.all(missing.map((attempt) => loadTrace(attempt.beside)
    .catch((error) => ({steps: [], notes: [`the trace could not be loaded from ${attempt.beside.path}/trace.js: ${error.message}`]}))
    .then((trace) => {
      attempt.trace = trace;
    })));
}

/** An entry of the list of tests, as the page has it for those that are in it. */
function makeTestEntry(number, test) {
  const {worker} = test.attempts[test.attempts.length - 1];
  return element("li", {role: "option", id: `test-${number}`, "data-outcome": test.outcome, "aria-selected": "false"},
    element("span", {className: `mark ${test.outcome}`, title: test.outcome}),
    element("span", {className: "label"},
      element("span", {className: "name"}, breakable(test.name)), element("span", {className: "file"}, test.file)),
    element("span", {className: "sr"}, test.outcome),
    element("span", {className: "time"}, duration(test.seconds), worker ? element("span", {className: "worker"}, worker) : null));
}
