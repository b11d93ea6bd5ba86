/* The tree of widgets: rows that are indented, one of which is selected. */

import {Widgets} from "./widgets.js";

const OPEN_LEVELS = 3;
const INDENT = 14;

export class Tree {
  /** `list` holds the rows. `listeners`: select(node), hover(node or null). */
  constructor(list, listeners) {
    this.list = list;
    this.listeners = listeners;
    this.widgets = new Widgets();
    this.opened = new Map();
    this.selected = null;
    this.filter = "";
    list.addEventListener("click", (event) => this.clicked(event));
    list.addEventListener("keydown", (event) => this.pressed(event));
    list.addEventListener("pointerover", (event) => listeners.hover(this.nodeOf(event.target)));
    list.addEventListener("pointerleave", () => listeners.hover(null));
  }

  show(widgets) {
    this.widgets = widgets;
    this.draw();
  }

  search(text) {
    this.filter = text.toLowerCase();
    this.draw();
  }

  /** Selects a widget, opens what is around it, and brings it into view. */
  select(ref) {
    this.selected = ref;
    for (const node of this.widgets.above(ref)) this.opened.set(node.ref, true);
    this.draw();
    const row = document.getElementById(`widget-${ref}`);
    if (row) mark(this.list, row);
  }

  isOpen(node, level) {
    if (this.filter) return true;
    return this.opened.has(node.ref) ? this.opened.get(node.ref) : level < OPEN_LEVELS;
  }

  fits(node) {
    return `${node.shown} ${node.class} ${node.name}`.toLowerCase().includes(this.filter);
  }

  /** The rows that can be seen, each with its level from 1 on. */
  rows() {
    const rows = [];
    const add = (node, level) => {
      const place = rows.push({node, level}) - 1;
      let shown = !this.filter || this.fits(node);
      if (this.isOpen(node, level)) {
        for (const child of node.children) shown = add(child, level + 1) || shown;
      }
      if (!shown) rows.splice(place, 1);
      return shown;
    };
    for (const root of this.widgets.roots) add(root, 1);
    return rows;
  }

  draw() {
    this.list.replaceChildren(...this.rows().map(({node, level}) => this.makeRow(node, level)));
    const selected = document.getElementById(`widget-${this.selected}`);
    if (selected) this.list.setAttribute("aria-activedescendant", selected.id);
    else this.list.removeAttribute("aria-activedescendant");
  }

  makeRow(node, level) {
    const isParent = node.children.length > 0;
    const row = element("li", {
      id: `widget-${node.ref}`, role: "treeitem", className: isParent ? "parent" : "", "aria-level": String(level),
      "aria-selected": String(node.ref === this.selected),
    },
    element("span", {className: "twist", "aria-hidden": "true"}),
    element("span", {className: "shown"}, node.shown),
    node.name && !node.name.startsWith("qt_") ? element("span", {className: "name"}, `#${node.name}`) : null,
    element("span", {className: "class"}, node.class));
    if (isParent) row.setAttribute("aria-expanded", String(this.isOpen(node, level)));
    row.style.paddingLeft = `${(level - 1) * INDENT + 4}px`;
    return row;
  }

  nodeOf(target) {
    const row = target.closest("[role=treeitem]");
    return row ? this.widgets.nodes.get(Number(row.id.replace("widget-", ""))) || null : null;
  }

  clicked(event) {
    const node = this.nodeOf(event.target);
    if (!node) return;
    if (event.target.classList.contains("twist")) this.turn(node);
    else this.listeners.select(node);
  }

  turn(node, open) {
    const row = document.getElementById(`widget-${node.ref}`);
    this.opened.set(node.ref, open === undefined ? row.getAttribute("aria-expanded") !== "true" : open);
    this.draw();
  }

  pressed(event) {
    if (event.ctrlKey || event.altKey || event.metaKey) return;
    const rows = [...this.list.children];
    const at = rows.findIndex((row) => row.getAttribute("aria-selected") === "true");
    const node = at < 0 ? null : this.nodeOf(rows[at]);
    const expanded = at < 0 ? null : rows[at].getAttribute("aria-expanded");
    const step = {ArrowDown: at + 1, ArrowUp: at - 1, Home: 0, End: rows.length - 1}[event.key];
    if (step !== undefined && rows.length) {
      this.listeners.select(this.nodeOf(rows[Math.max(0, Math.min(rows.length - 1, step))]));
    } else if (event.key === "ArrowRight" && node && expanded === "false") {
      this.turn(node, true);
    } else if (event.key === "ArrowLeft" && node) {
      if (expanded === "true") this.turn(node, false);
      else if (this.widgets.parents.get(node.ref)) this.listeners.select(this.widgets.parents.get(node.ref));
    } else {
      return;
    }
    event.preventDefault();
  }
}
