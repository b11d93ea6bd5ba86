/* Facts about the selected widget: its class and names, its addresses, its properties. */

async function copy(text, button) {
  await navigator.clipboard.writeText(text);
  button.textContent = "Copied";
  setTimeout(() => { button.textContent = "Copy"; }, 1500);
}

function makeAddress(address) {
  const button = element("button", {type: "button", className: "copy", "aria-label": `Copy ${address.python}`}, "Copy");
  button.addEventListener("click", () => copy(address.python, button));
  return element("div", {className: "address"}, element("code", {}, breakable(address.python)), button,
    element("span", {className: "quiet line"}, address.command));
}

export class Selected {
  /** `place` gets the elements; `connection` is asked. */
  constructor(place, connection) {
    this.place = place;
    this.connection = connection;
    this.node = null;
    this.filter = "";
  }

  /** Shows another widget. */
  async show(node) {
    this.node = node;
    this.best = element("div", {className: "best"}, element("p", {className: "quiet"}, "Looking for its address..."));
    this.others = element("details", {className: "others"}, element("summary", {}, "All other addresses"), element("div", {}));
    this.table = element("table", {className: "properties"});
    const filter = element("input", {type: "search", placeholder: "Filter properties", "aria-label": "Filter properties", value: this.filter,
      oninput: () => { this.filter = filter.value; this.sift(); }});
    this.place.replaceChildren(
      element("h2", {}, node.shown),
      element("p", {className: "facts"}, element("code", {}, node.class), node.name ? element("code", {}, `#${node.name}`) : null,
        element("span", {className: "quiet"}, this.describe(node))),
      element("h3", {}, "Address"), this.best, this.others,
      element("div", {className: "heading"}, element("h3", {}, "Properties"), filter), this.table);
    await this.ask("address", (found) => this.best.replaceChildren(
      found ? makeAddress(found) : element("p", {className: "quiet"}, "Nothing finds this widget alone.")), this.best);
    await Promise.all([this.refresh(), this.ask("addresses", (all) => this.showOthers(all), this.others)]);
  }

  describe(node) {
    const [left, top, width, height] = node.rect;
    return [`${width} x ${height} at ${left}, ${top}`, ...node.states].join(", ");
  }

  /** Asks about the widget that is selected now; an answer that comes when another one is has no use. */
  async ask(operation, use, place) {
    const {node} = this;
    try {
      const result = await this.connection.ask(operation, {ref: node.ref});
      if (node === this.node) use(result);
    } catch (error) {
      if (node === this.node) place.replaceChildren(element("p", {className: "quiet"}, error.message));
    }
  }

  showOthers(all) {
    const others = all.slice(1);
    this.others.firstElementChild.textContent = others.length ? `All other addresses (${others.length})` : "No other address";
    this.others.lastElementChild.replaceChildren(...others.map(makeAddress));
  }

  /** Reads the properties anew. */
  async refresh() {
    if (!this.node) return;
    await this.ask("properties", (rows) => {
      const text = JSON.stringify(rows);
      if (this.table.dataset.rows === text) return;
      this.table.dataset.rows = text;
      this.table.replaceChildren(element("tbody", {}, rows.map(([name, value]) =>
        element("tr", {}, element("th", {scope: "row"}, name), element("td", {}, value)))));
      this.sift();
    }, this.table);
  }

  sift() {
    const wanted = this.filter.toLowerCase();
    for (const row of this.table.querySelectorAll("tr")) row.hidden = !row.textContent.toLowerCase().includes(wanted);
  }
}
