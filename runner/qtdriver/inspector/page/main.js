/* Puts the parts of the page together. */

import {Connection} from "./connection.js";
import {Console} from "./console.js";
import {forwardInput} from "./input.js";
import {Inspection} from "./inspection.js";
import {Picture} from "./picture.js";

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

async function greet() {
  const about = await connection.ask("about");
  byId("about").textContent = `process ${about.pid}, agent ${about.agent}`;
}

forwardInput(picture, {
  send: (message) => connection.send(message),
  isActive: () => !inspection.pointing,
  leave: () => byId("find").focus(),
});
