/* The address of the page names the chosen test and step, so that it can be sent to somebody: #test=3&step=5 */

(function main() {
  const place = document.getElementById("detail");
  const address = new URLSearchParams(location.hash.slice(1));
  let first = address.has("step") ? Number(address.get("step")) - 1 : -1;

  function remember(test, step) {
    const fragment = `#test=${test + 1}${step === null ? "" : `&step=${step + 1}`}`;
    try {
      history.replaceState(null, "", fragment);
    } catch (refused) { /* some browsers keep the address of a local file as it is */ }
  }

  const tests = setUpTests((number) => {
    remember(number, null);
    place.scrollTop = 0;
    showTest(place, jsonOf(`data-${number}`), first, (step) => remember(number, step));
    first = -1;
  });
  const count = document.getElementById("tests").children.length;
  const wanted = Number(address.get("test") || 1) - 1;
  if (!count) {
    place.replaceChildren(element("p", {className: "quiet"}, "There was no test."));
    return;
  }
  tests.choose(wanted >= 0 && wanted < count ? wanted : 0);
})();
