/* The one WebSocket: questions with answers, input, pictures. */

const TAKEN = 4409;
const AGAIN_MILLISECONDS = 1000;

/** Connects to the server, and again where another page has been in the way. `listeners`: picture(buffer), told(message),
    state(text, connected). */
export class Connection {
  constructor(listeners) {
    this.listeners = listeners;
    this.number = 0;
    this.waiting = new Map();
    this.ended = false;
    this.open();
  }

  open() {
    const address = new URL("live", location.href);
    address.protocol = "ws:";
    this.socket = new WebSocket(address);
    this.socket.binaryType = "arraybuffer";
    this.socket.onopen = () => this.listeners.state("", true);
    this.socket.onmessage = (event) => this.receive(event.data);
    this.socket.onclose = (event) => this.closed(event);
  }

  receive(data) {
    if (typeof data !== "string") {
      this.listeners.picture(data);
      return;
    }
    const message = JSON.parse(data);
    if (!("answers" in message)) {
      if (this.ended) return; // such as that there are no pictures any more, which would hide why
      this.ended = message.told === "ended";
      this.listeners.told(message);
      return;
    }
    const {resolve, reject} = this.waiting.get(message.answers);
    this.waiting.delete(message.answers);
    if ("error" in message) reject(new Error(message.error));
    else resolve(message.result);
  }

  closed(event) {
    for (const {reject} of this.waiting.values()) reject(new Error("the connection was closed"));
    this.waiting.clear();
    if (event.code === TAKEN) {
      this.listeners.state("Another page shows this application. Close it to have it here.", false);
      setTimeout(() => this.open(), AGAIN_MILLISECONDS);
    } else if (!this.ended) {
      this.listeners.state("qtdriver inspect has ended, or the connection to it is broken. Load the page anew to try again.", false);
    }
  }

  /** The result of an operation of the server. */
  ask(operation, values = {}) {
    if (this.socket.readyState !== WebSocket.OPEN) return Promise.reject(new Error("not connected"));
    this.number += 1;
    const id = this.number;
    return new Promise((resolve, reject) => {
      this.waiting.set(id, {resolve, reject});
      this.send({id, do: operation, values});
    });
  }

  send(message) {
    if (this.socket.readyState === WebSocket.OPEN) this.socket.send(JSON.stringify(message));
  }
}
