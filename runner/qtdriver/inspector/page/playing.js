/* Plays the test in the editor with the application: from its start, to the cursor, step by step, or ten times. */

const TIMES = 10;

const byId = (id) => document.getElementById(id);

export class Playing {
  /** `before` is called before the first step, and can be waited for. */
  constructor(connection, editor, tell, before) {
    this.connection = connection;
    this.editor = editor;
    this.tell = tell;
    this.before = before;
    this.restarts = false;
    this.busy = false;
    this.stopping = false;
    this.at = null;
    byId("play").addEventListener("click", () => (this.busy ? this.stop() : this.run(() => this.playOnce(Infinity))));
    byId("to-cursor").addEventListener("click", () => this.run(() => this.playOnce(this.editor.line)));
    byId("step").addEventListener("click", () => this.run(() => this.step()));
    byId("ten").addEventListener("click", () => this.run(() => this.playTenTimes()));
  }

  stop() {
    this.stopping = true;
  }

  /** The text was edited: what was played does not fit it any more. */
  forget() {
    this.at = null;
    if (!this.busy) this.editor.clearMarks();
  }

  async run(play) {
    if (this.busy) return;
    this.busy = true;
    this.stopping = false;
    this.show();
    try {
      this.tell(await play());
    } catch (error) {
      this.tell(error.message);
    }
    this.busy = false;
    this.show();
  }

  show() {
    byId("play").textContent = this.busy ? "Stop" : "Play";
    for (const id of ["to-cursor", "step", "ten"]) byId(id).disabled = this.busy;
  }

  /** Makes the statements of the test ready, and the application new where that can be. Answers whether there are some. */
  async begin() {
    this.editor.clearMarks();
    this.at = null;
    await this.before();
    if (this.restarts) await this.connection.ask("restart");
    const {steps, error, line} = await this.connection.ask("plan", {text: this.editor.text});
    if (error) {
      this.editor.mark("failed", line);
      this.editor.tell(error, line);
      return false;
    }
    this.steps = steps;
    this.at = 0;
    return steps.length > 0;
  }

  /** Plays the next statement. Answers whether it went well. */
  async next() {
    const [first, last] = this.steps[this.at];
    this.editor.mark("running", first, last);
    this.editor.reveal(first);
    const {failed, text} = await this.connection.ask("play", {number: this.at, path: byId("path").value});
    this.editor.mark(failed ? "failed" : "passed", first, last);
    if (failed) {
      this.editor.tell(text, last);
      this.at = null;
      return false;
    }
    this.at += 1;
    return true;
  }

  /** Plays from the start to the line, that one included. Answers what to say. */
  async playOnce(line) {
    if (!(await this.begin())) return this.editor.text.trim() ? "" : "There is nothing to play yet: record something.";
    while (this.at < this.steps.length && this.steps[this.at][0] <= line) {
      if (this.stopping) return "Stopped.";
      if (!(await this.next())) return "A step failed.";
    }
    return this.at < this.steps.length ? "Played to the cursor." : "Passed.";
  }

  async step() {
    if (this.at === null && !(await this.begin())) return "";
    if (!(await this.next())) return "A step failed.";
    if (this.at < this.steps.length) return "";
    this.at = null;
    return "Passed.";
  }

  async playTenTimes() {
    for (let number = 1; number <= TIMES; number += 1) {
      this.tell(`Playing it for the ${number}. time of ${TIMES}...`);
      const told = await this.playOnce(Infinity);
      if (told !== "Passed.") return `${told} (time ${number} of ${TIMES})`;
    }
    return `Passed ${TIMES} times of ${TIMES}.`;
  }
}
