/* The address of the page names the chosen test and step, so that it can be sent to somebody: #test=3&attempt=2&step=5 */

(function main() {
  const place = document.getElementById("detail");
  const address = new URLSearchParams(location.hash.slice(1));
  const numberOf = (name) => (address.has(name) ? Number(address.get(name)) - 1 : -1);
  let first = {attempt: numberOf("attempt"), step: numberOf("step")};

  function remember(test, attempts, attempt, step) {
    const fragment = `#test=${test + 1}${attempts > 1 ? `&attempt=${attempt + 1}` : ""}${step === null ? "" : `&step=${step + 1}`}`;
    try {
      history.replaceState(null, "", fragment);
    } catch (refused) { /* some browsers keep the address of a local file as it is */ }
  }

  const tests = setUpTests((number) => {
    const test = jsonOf(`data-${number}`);
    place.scrollTop = 0;
    showTest(place, test, first, (attempt, step) => remember(number, test.attempts.length, attempt, step));
    first = {attempt: -1, step: -1};
  });
  const count = document.getElementById("tests").children.length;
  const wanted = Number(address.get("test") || 1) - 1;
  if (!count) {
    place.replaceChildren(element("p", {className: "quiet"}, "There was no test."));
    return;
  }
  tests.choose(wanted >= 0 && wanted < count ? wanted : 0);
})();
