/* A text of Python with line numbers, marks on lines, and a note below one of them. */

const INDENT = "    ";

export class Editor {
  /** `place` gets the elements; `changed` is called when the user has edited the text. */
  constructor(place, changed) {
    this.field = element("textarea", {id: "code", spellcheck: false, autocomplete: "off", wrap: "off", "aria-label": "The test"});
    this.gutter = element("div", {className: "gutter", "aria-hidden": "true"});
    this.lines = element("div", {className: "lines", "aria-hidden": "true"});
    this.note = element("div", {className: "note", hidden: true, role: "alert"});
    this.marks = new Map();
    place.append(this.gutter, element("div", {className: "writing"}, this.lines, this.field), this.note);
    this.field.addEventListener("input", () => { this.draw(); changed(); });
    this.field.addEventListener("scroll", () => this.scrolled());
    this.field.addEventListener("keydown", (event) => this.pressed(event));
    this.draw();
  }

  get text() {
    return this.field.value;
  }

  /** The number of the line with the cursor, from 0. */
  get line() {
    return this.text.slice(0, this.field.selectionStart).split("\n").length - 1;
  }

  /** Replaces the text; the cursor of the user stays where it is in what has not changed. */
  setText(text) {
    const before = this.text;
    if (text === before) return;
    let start = 0;
    while (start < Math.min(before.length, text.length) && before[start] === text[start]) start += 1;
    let end = 0;
    while (end < Math.min(before.length, text.length) - start && before[before.length - 1 - end] === text[text.length - 1 - end]) end += 1;
    this.field.setRangeText(text.slice(start, text.length - end), start, before.length - end, "preserve");
    this.draw();
  }

  /** Marks lines, from `first` to `last`, as "running", "passed" or "failed"; "" takes the mark away. */
  mark(kind, first, last = first) {
    for (let line = first; line <= last; line += 1) {
      if (kind) this.marks.set(line, kind);
      else this.marks.delete(line);
    }
    this.draw();
  }

  clearMarks() {
    this.marks.clear();
    this.tell(null);
    this.draw();
  }

  /** Shows a text below a line; null for none. */
  tell(text, line = 0) {
    this.note.hidden = text === null;
    this.note.textContent = text === null ? "" : visible(text);
    this.noteLine = line;
    this.scrolled();
  }

  /** Scrolls until a line can be seen. */
  reveal(line) {
    const height = this.lineHeight();
    const {field} = this;
    if (line * height < field.scrollTop) field.scrollTop = line * height;
    else if ((line + 2) * height > field.scrollTop + field.clientHeight) field.scrollTop = (line + 3) * height - field.clientHeight;
  }

  lineHeight() {
    return parseFloat(getComputedStyle(this.field).lineHeight);
  }

  draw() {
    const count = this.text.split("\n").length;
    const rows = Array.from({length: count}, (_, line) => this.marks.get(line) || "");
    this.gutter.replaceChildren(...rows.map((kind, line) => element("div", {className: kind}, String(line + 1))));
    this.lines.replaceChildren(...rows.map((kind) => element("div", {className: kind})));
    this.scrolled();
  }

  scrolled() {
    const top = this.field.scrollTop;
    this.gutter.style.transform = `translateY(${-top}px)`;
    this.lines.style.transform = `translateY(${-top}px)`;
    if (!this.note.hidden) this.note.style.top = `${Math.max(0, (this.noteLine + 1) * this.lineHeight() - top + 12)}px`;
  }

  /** The Tab key indents; Return keeps the indentation. Escape leaves the field, so that the keyboard is not trapped in it. */
  pressed(event) {
    if (event.ctrlKey || event.altKey || event.metaKey || event.isComposing) return;
    const {field} = this;
    if (event.key === "Escape") {
      document.getElementById("record").focus();
    } else if (event.key === "Tab" && !event.shiftKey) {
      document.execCommand("insertText", false, INDENT);
    } else if (event.key === "Enter") {
      const above = this.text.slice(0, field.selectionStart).split("\n").pop();
      document.execCommand("insertText", false, `\n${above.match(/^\s*/)[0]}${above.trimEnd().endsWith(":") ? INDENT : ""}`);
    } else {
      return;
    }
    event.preventDefault();
  }
}
