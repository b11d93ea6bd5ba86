/* Puts the parts of the page together. */

import {Checking} from "./checking.js";
import {Connection} from "./connection.js";
import {Console} from "./console.js";
import {Editor} from "./editor.js";
import {forwardInput} from "./input.js";
import {Inspection} from "./inspection.js";
import {Paused} from "./paused.js";
import {Picture} from "./picture.js";
import {Playing} from "./playing.js";
import {Recording} from "./recording.js";

const byId = (id) => document.getElementById(id);

function tellState(text) {
  const state = byId("state");
  state.hidden = !text;
  state.textContent = visible(text);
}

const picture = new Picture(byId("picture"), () => {
  connection.send({shown: true});
  inspection.lookSoon();
});
const connection = new Connection({
  picture: (buffer) => picture.draw(buffer),
  told: (message) => tellState(message.text),
  state: (text, connected) => {
    tellState(text);
    if (connected) greet();
  },
});
const inspection = new Inspection(connection, picture);
new Console(connection);

function tellOfTest(text) {
  byId("told").textContent = visible(text);
}

const editor = new Editor(byId("editor"), () => {
  playing.forget();
  recording.keep();
});
const recording = new Recording(connection, editor, tellOfTest);
const playing = new Playing(connection, editor, tellOfTest, () => (recording.on ? recording.stop() : null));
const checking = new Checking(connection, (ref, words) => recording.check(ref, words));
inspection.checked = (node, event) => checking.open(node, event.clientX, event.clientY);

/** Shows the widgets or the test beside the picture. */
function showPanel(name) {
  for (const one of ["widgets", "test", "paused"]) {
    byId(one).hidden = one !== name;
    byId(`show-${one}`).setAttribute("aria-selected", String(one === name));
  }
  document.body.classList.toggle("testing", name !== "widgets");
  editor.draw();
}
byId("show-widgets").addEventListener("click", () => showPanel("widgets"));
byId("show-test").addEventListener("click", () => showPanel("test"));
byId("show-paused").addEventListener("click", () => showPanel("paused"));
const paused = new Paused(connection, () => {
  showPanel("paused");
  inspection.lookSoon();
});
document.addEventListener("test-shown", () => showPanel("test"));

async function greet() {
  const about = await connection.ask("about");
  byId("about").textContent = `process ${about.pid}, agent ${about.agent}`;
  playing.restarts = about.restarts;
  if (about.pauses) paused.begin();
  if (about.recording || recording.on) await recording.start();
}

forwardInput(picture, {
  send: (message) => connection.send(message),
  isActive: () => inspection.mode === "use",
  leave: () => byId(byId("test").hidden ? "find" : "code").focus(),
});
