/* Recording into the editor, checks, and saving. */

const ASK_MILLISECONDS = 300;
const MEMORY = `qtdriver ${location.pathname}`;

const byId = (id) => document.getElementById(id);

export class Recording {
  /** `tell` shows what is wrong. */
  constructor(connection, editor, tell) {
    this.connection = connection;
    this.editor = editor;
    this.tell = tell;
    this.on = false;
    this.written = [];
    this.timer = null;
    byId("record").addEventListener("click", () => (this.on ? this.stop() : this.start()));
    byId("anew").addEventListener("click", () => this.beginAnew());
    byId("save").addEventListener("click", () => this.save(false));
    byId("replace").addEventListener("click", () => this.save(true));
    byId("path").addEventListener("input", () => { byId("replace").hidden = true; });
    this.recall();
  }

  /** Restores the text that was in the editor before the page was loaded anew. */
  recall() {
    const {text, written} = JSON.parse(sessionStorage.getItem(MEMORY) || '{"text": "", "written": []}');
    this.written = written;
    this.editor.setText(text);
  }

  keep() {
    sessionStorage.setItem(MEMORY, JSON.stringify({text: this.editor.text, written: this.written}));
  }

  async start() {
    document.dispatchEvent(new CustomEvent("test-shown"));
    const anew = !this.editor.text.trim();
    if (anew) this.written = [];
    await this.attempt(async () => {
      const {on} = await this.connection.ask("record", {on: true, anew});
      this.show(on);
      await this.update();
    });
  }

  async stop() {
    await this.attempt(async () => {
      const {on} = await this.connection.ask("record", {on: false});
      await this.update();
      this.show(on);
    });
  }

  show(on) {
    this.on = on;
    byId("record").setAttribute("aria-pressed", String(on));
    byId("record").lastChild.textContent = on ? "Stop" : "Record";
    clearTimeout(this.timer);
    if (on) this.timer = setTimeout(() => this.look(), ASK_MILLISECONDS);
  }

  async look() {
    await this.attempt(() => this.update());
    if (this.on) this.timer = setTimeout(() => this.look(), ASK_MILLISECONDS);
  }

  /** Writes what has been recorded since the last time. The user may type meanwhile: then the answer is for another text. */
  async update() {
    for (;;) {
      const {text, line} = this.editor;
      const told = await this.connection.ask("recorded", {text, line, written: this.written});
      if (this.on !== told.on && this.on) this.show(told.on);
      if (text === this.editor.text) {
        this.written = told.written;
        this.editor.setText(told.text);
        if (told.text !== text) this.editor.reveal(told.line);
        if (told.dropped) this.tell(`${told.dropped} events were lost: the page was away for too long`);
        this.keep();
        return;
      }
    }
  }

  async check(ref, words) {
    document.dispatchEvent(new CustomEvent("test-shown"));
    await this.attempt(async () => {
      await this.connection.ask("check", {ref, words});
      await this.update();
      this.tell(`Checked: ${words}`);
    });
  }

  /** Empties the editor, which the browser's own Undo can bring back no more: so it asks twice. */
  async beginAnew() {
    const button = byId("anew");
    if (this.editor.text.trim() && button.dataset.sure !== "true") {
      button.dataset.sure = "true";
      button.textContent = "Discard it?";
      button.addEventListener("blur", () => this.calm(button), {once: true});
      return;
    }
    this.calm(button);
    this.written = [];
    this.editor.clearMarks();
    this.editor.setText("");
    await this.attempt(async () => {
      await this.connection.ask("record", {on: this.on, anew: true});
      if (this.on) await this.update();
    });
    this.keep();
  }

  calm(button) {
    button.dataset.sure = "false";
    button.textContent = "New";
  }

  async save(overwrite) {
    byId("replace").hidden = true;
    await this.attempt(async () => {
      const path = byId("path").value;
      const {saved, exists} = await this.connection.ask("save", {path, text: this.editor.text, overwrite});
      byId("replace").hidden = !exists;
      this.tell(exists ? `${path} is there already.` : `Saved. Run it with: pytest ${saved} (and -n 1 while this page is open)`);
    });
  }

  async attempt(action) {
    try {
      await action();
    } catch (error) {
      this.tell(error.message);
    }
  }
}
