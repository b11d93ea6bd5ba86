/* A test that is paused: its source, the line at which it stands, and how it goes on. */

const ASK_MILLISECONDS = 300;

const byId = (id) => document.getElementById(id);

export class Paused {
  /** `paused` is called each time the test is paused. */
  constructor(connection, paused) {
    this.connection = connection;
    this.paused = paused;
    this.shown = "";
    this.timer = null;
    byId("continue").addEventListener("click", () => this.goOn("continue"));
    byId("next").addEventListener("click", () => this.goOn("step"));
  }

  /** Follows the test from now on. */
  begin() {
    byId("show-paused").hidden = false;
    clearTimeout(this.timer);
    this.look();
  }

  async look() {
    try {
      this.show(await this.connection.ask("place"));
    } catch (error) {
      this.show({paused: false});
      return;
    }
    this.timer = setTimeout(() => this.look(), ASK_MILLISECONDS);
  }

  async goOn(order) {
    try {
      await this.connection.ask(order);
    } catch (error) {
      byId("place").textContent = visible(error.message);
    }
    await this.connection.ask("place").then((place) => this.show(place), () => this.show({paused: false}));
  }

  show(place) {
    const told = JSON.stringify(place);
    if (told === this.shown) return;
    this.shown = told;
    byId("continue").disabled = !place.paused;
    byId("next").disabled = !place.paused || !place.canStep;
    byId("place").textContent = place.paused ? visible(`${place.file.split("/").pop()}:${place.line}`) : "The test runs.";
    byId("failure").hidden = !place.error;
    byId("failure").textContent = visible(place.error || "");
    if (!place.paused) return;
    const lines = place.source.replace(/\n$/, "").split("\n").map((text, number) =>
      element("li", {className: number + 1 === place.line ? "here" : ""}, element("span", {}, text || " ")));
    byId("source").classList.toggle("failing", Boolean(place.error));
    byId("source").replaceChildren(...lines);
    this.paused();
    const here = byId("source").querySelector(".here");
    if (here) {
      here.setAttribute("aria-current", "step");
      byId("source").scrollTop = here.offsetTop - byId("source").offsetTop - byId("source").clientHeight / 3;
    }
  }
}
