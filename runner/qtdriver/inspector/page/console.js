/* Python with the application at hand. */

export class Console {
  constructor(connection) {
    this.connection = connection;
    this.log = document.getElementById("log");
    this.field = document.getElementById("line");
    this.history = [];
    this.at = 0;
    this.field.addEventListener("keydown", (event) => this.pressed(event));
    this.field.addEventListener("input", () => this.fit());
  }

  /** As many lines high as its text. */
  fit() {
    this.field.rows = Math.min(8, this.field.value.split("\n").length);
  }

  pressed(event) {
    const hasLines = this.field.value.includes("\n");
    if (event.key === "Enter" && !event.shiftKey && !event.isComposing) this.run();
    else if (event.key === "ArrowUp" && !hasLines) this.recall(-1);
    else if (event.key === "ArrowDown" && !hasLines) this.recall(1);
    else return;
    event.preventDefault();
  }

  recall(step) {
    this.at = Math.max(0, Math.min(this.history.length, this.at + step));
    this.field.value = this.history[this.at] || "";
    this.fit();
  }

  async run() {
    const text = this.field.value;
    if (!text.trim()) return;
    this.history.push(text);
    this.at = this.history.length;
    this.field.value = "";
    this.fit();
    const answer = element("pre", {className: "quiet"}, "...");
    this.log.append(element("pre", {className: "typed"}, text), answer);
    this.log.scrollTop = this.log.scrollHeight;
    try {
      const {output, failed} = await this.connection.ask("python", {text});
      answer.className = failed ? "refused" : "";
      answer.textContent = visible(output);
      if (!output) answer.remove();
    } catch (error) {
      answer.className = "refused";
      answer.textContent = visible(error.message);
    }
    this.log.scrollTop = this.log.scrollHeight;
  }
}
