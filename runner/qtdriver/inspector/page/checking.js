/* The menu of the checks of a widget, at the place where it was clicked. */

export class Checking {
  /** `chosen` is called with the number of the widget and the words of a check. */
  constructor(connection, chosen) {
    this.connection = connection;
    this.chosen = chosen;
    this.menu = element("div", {id: "checks", className: "menu", role: "menu", hidden: true, "aria-label": "Check"});
    document.body.append(this.menu);
    this.menu.addEventListener("keydown", (event) => this.pressed(event));
    document.addEventListener("pointerdown", (event) => {
      if (!this.menu.contains(event.target)) this.close();
    });
  }

  async open(node, x, y) {
    const asked = Symbol("asked");
    this.asked = asked;
    let offered;
    try {
      offered = await this.connection.ask("checks", {ref: node.ref});
    } catch (error) {
      offered = [];
    }
    if (this.asked !== asked) return;
    const entries = offered.map((words) => element("button", {type: "button", role: "menuitem",
      onclick: () => { this.close(); this.chosen(node.ref, words); }}, words));
    this.menu.replaceChildren(element("p", {className: "quiet"}, entries.length ? `Check: ${node.shown}` : "This widget is not there any more."), ...entries);
    this.menu.hidden = false;
    const box = this.menu.getBoundingClientRect();
    this.menu.style.left = `${Math.max(4, Math.min(x, innerWidth - box.width - 8))}px`;
    this.menu.style.top = `${Math.max(4, Math.min(y, innerHeight - box.height - 8))}px`;
    if (entries.length) entries[0].focus();
  }

  close() {
    this.asked = null;
    this.menu.hidden = true;
    this.menu.replaceChildren();
  }

  pressed(event) {
    const entries = [...this.menu.querySelectorAll("button")];
    const at = entries.indexOf(document.activeElement);
    const step = {ArrowDown: 1, ArrowUp: -1}[event.key];
    if (step) entries[(at + step + entries.length) % entries.length].focus();
    else if (event.key === "Escape") this.close();
    else return;
    event.preventDefault();
    event.stopPropagation();
  }
}
