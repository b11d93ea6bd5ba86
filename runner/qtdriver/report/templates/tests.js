/* The list of the tests: search, filter, choice. */

function setUpTests(show) {
  const list = document.getElementById("tests");
  const search = document.getElementById("search");
  const buttons = [...document.querySelectorAll("[data-filter]")];
  const entries = [...list.children];
  const more = document.getElementById("more");
  const outcomes = (button) => button.dataset.filter.split(" ").filter(Boolean);
  let wanted = [];

  function shown() {
    return entries.filter((entry) => !entry.hidden);
  }

  function apply() {
    const words = search.value.toLowerCase().split(/\s+/).filter(Boolean);
    for (const entry of entries) {
      const text = [".label", ".worker"].map((part) => (entry.querySelector(part) || {}).textContent || "").join(" ").toLowerCase();
      const fits = !wanted.length || wanted.includes(entry.dataset.outcome);
      entry.hidden = !fits || !words.every((word) => text.includes(word));
    }
    document.getElementById("none").hidden = shown().length > 0;
    if (more) more.parentElement.hidden = wanted.length > 0 && !wanted.includes("passed") && !wanted.includes("skipped");
  }

  function choose(entry) {
    mark(list, entry);
    show(Number(entry.id.slice("test-".length)));
  }

  for (const button of buttons) {
    const fitting = outcomes(button);
    const count = Number(button.dataset.count);
    button.textContent += ` ${count}`;
    button.disabled = count === 0;
    button.addEventListener("click", () => {
      wanted = fitting;
      for (const other of buttons) other.setAttribute("aria-pressed", String(other === button));
      apply();
    });
  }
  for (const share of document.querySelectorAll(".share")) share.style.flexGrow = share.dataset.count;
  search.addEventListener("input", apply);
  search.addEventListener("keydown", (event) => {
    if (event.key === "ArrowDown" || event.key === "Enter") {
      event.preventDefault();
      list.focus();
      if (shown().length) choose(shown()[0]);
    }
  });
  document.addEventListener("keydown", (event) => {
    if (event.key === "/" && !event.target.closest("input")) {
      event.preventDefault();
      search.focus();
      search.select();
    }
  });
  function add(made) {
    entries.push(...made);
    list.append(...made);
    apply();
  }

  listbox(list, shown, choose);
  return {add, choose: (number) => entries[number] && choose(entries[number])};
}
