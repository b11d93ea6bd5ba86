/* The address of the page names the chosen test and step, so that it can be sent to somebody: #test=3&attempt=2&step=5 */

(function main() {
  const place = document.getElementById("detail");
  const list = document.getElementById("tests");
  const more = document.getElementById("more");
  const address = new URLSearchParams(location.hash.slice(1));
  const numberOf = (name) => (address.has(name) ? Number(address.get(name)) - 1 : -1);
  let first = {attempt: numberOf("attempt"), step: numberOf("step")};
  const inPage = list.children.length;
  let others = [];
  let shown = -1;

  function remember(test, attempts, attempt, step) {
    const fragment = `#test=${test + 1}${attempts > 1 ? `&attempt=${attempt + 1}` : ""}${step === null ? "" : `&step=${step + 1}`}`;
    try {
      history.replaceState(null, "", fragment);
    } catch (refused) { /* some browsers keep the address of a local file as it is */ }
  }

  function show(number) {
    const test = number < inPage ? jsonOf(`data-${number}`) : others[number - inPage];
    const asked = first;
    first = {attempt: -1, step: -1};
    shown = number;
    const fill = () => {
      place.scrollTop = 0;
      showTest(place, test, asked, (attempt, step) => remember(number, test.attempts.length, attempt, step));
    };
    if (!test.attempts.some((attempt) => attempt.beside && !attempt.trace)) return fill();
    place.replaceChildren(element("p", {className: "quiet", role: "status"}, "Loading..."));
    return loadTraces(test).then(() => (shown === number ? fill() : null));
  }

  const tests = setUpTests(show);
  const total = inPage + Number(more ? more.dataset.count : 0);
  const wanted = Number(address.get("test") || 1) - 1;
  const choose = () => tests.choose(wanted >= 0 && wanted < total ? wanted : 0);
  if (more) {
    more.onclick = () => {
      more.disabled = true;
      return loadScript(more.dataset.address).then((loaded) => {
        others = loaded;
        tests.add(loaded.map((test, index) => makeTestEntry(inPage + index, test)));
        more.hidden = true;
      }).catch((error) => {
        more.textContent = `${more.dataset.address} could not be loaded: ${error.message}`;
      });
    };
    document.getElementById("search").addEventListener("input", () => more.disabled || more.onclick());
  }
  if (!total) {
    place.replaceChildren(element("p", {className: "quiet"}, "There was no test."));
  } else if (wanted >= inPage && wanted < total) {
    more.onclick().then(choose);
  } else {
    choose();
  }
})();
