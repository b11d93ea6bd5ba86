/* Widgets in the tree and in the picture: pointing, selecting, trying locators. */

import {Marks} from "./marks.js";
import {Selected} from "./selected.js";
import {Tree} from "./tree.js";
import {Widgets} from "./widgets.js";

const CALM_MILLISECONDS = 250;
const MAX_MILLISECONDS = 1000;
const MODES = ["use", "point", "check"];

const byId = (id) => document.getElementById(id);

export class Inspection {
  constructor(connection, picture) {
    this.connection = connection;
    this.picture = picture;
    this.mode = "use";
    this.checked = () => {};
    this.widgets = new Widgets();
    this.told = "";
    this.due = 0;
    this.timer = null;
    this.marks = new Marks(byId("marks"), picture.canvas);
    this.tree = new Tree(byId("tree"), {select: (node) => this.select(node), hover: (node) => this.hover(node)});
    this.selected = new Selected(byId("selected"), connection);
    byId("find").addEventListener("input", () => this.tree.search(byId("find").value));
    byId("try").addEventListener("input", () => this.tryLocator());
    for (const mode of MODES) byId(mode).addEventListener("click", () => this.setMode(mode));
    byId("use").addEventListener("click", () => picture.canvas.focus());
    picture.canvas.addEventListener("pointermove", (event) => this.moved(event));
    picture.canvas.addEventListener("pointerleave", () => this.hover(null));
    picture.canvas.addEventListener("click", (event) => this.clicked(event));
    document.addEventListener("keydown", (event) => {
      if (event.key === "Escape") this.setMode("use");
    });
  }

  /** Has a click in the picture use the application, select a widget, or choose what to check of it. */
  setMode(mode) {
    this.mode = mode;
    for (const one of MODES) byId(one).setAttribute("aria-pressed", String(one === mode));
    document.body.classList.toggle("pointing", mode !== "use");
    this.hover(null);
  }

  /** Looks at the widgets once the picture is calm, or changes for long. */
  lookSoon() {
    const now = performance.now();
    if (this.timer === null) this.due = now + MAX_MILLISECONDS;
    clearTimeout(this.timer);
    this.timer = setTimeout(() => this.look(), Math.min(CALM_MILLISECONDS, Math.max(this.due - now, 0)));
  }

  async look() {
    this.timer = null;
    try {
      const survey = await this.connection.ask("survey");
      const told = JSON.stringify(survey);
      if (told !== this.told) {
        this.told = told;
        this.widgets = new Widgets(survey.windows);
        this.tree.show(this.widgets);
        this.markSelected();
        byId("tree").dataset.looks = String(Number(byId("tree").dataset.looks || 0) + 1);
      }
      await this.selected.refresh();
    } catch (error) {
      byId("problem").textContent = visible(error.message);
    }
  }

  moved(event) {
    if (this.mode !== "use") this.hover(this.widgets.at(this.picture.place(event)) || null);
  }

  clicked(event) {
    if (this.mode === "use") return;
    const node = this.widgets.at(this.picture.place(event));
    if (node) this.select(node);
    if (node && this.mode === "check") this.checked(node, event);
  }

  hover(node) {
    this.marks.set("hovered", node ? [node.rect] : []);
    byId("hovered").textContent = node ? visible(`${node.shown} (${node.class})`) : "";
  }

  select(node) {
    this.tree.select(node.ref);
    this.markSelected();
    this.selected.show(node);
    if (byId("try").value) this.tryLocator();
  }

  markSelected() {
    const node = this.widgets.nodes.get(this.tree.selected);
    this.marks.set("chosen", node ? [node.rect] : []);
  }

  /** Marks what the typed locator finds in the window of the selected widget, or in that in front. */
  async tryLocator() {
    const text = byId("try").value;
    const root = this.widgets.nodes.get(this.tree.selected) || this.widgets.roots[0];
    let told = "";
    let rects = [];
    if (text.trim() && root) {
      try {
        const {count, found} = await this.connection.ask("matches", {ref: root.ref, text});
        told = count === 1 ? "finds 1 widget" : `finds ${count || "no"} widgets`;
        rects = found.map((one) => one.rect);
      } catch (error) {
        told = error.message.replace(/^matches: /, "");
      }
    }
    if (text !== byId("try").value) return;
    this.marks.set("match", rects);
    byId("found").textContent = visible(told);
  }
}
