/* Mouse and keyboard on the picture, as messages for the server. */

const PIXELS_OF_A_STEP = 100;
const LINES_OF_A_STEP = 3;

/** The modifiers that are held. AltGr makes characters, with Control and Alt on some systems: the character says all then. */
function modifiersOf(event) {
  const graph = event.getModifierState("AltGraph");
  return [["shift", event.shiftKey], ["ctrl", event.ctrlKey && !graph], ["alt", event.altKey && !graph], ["meta", event.metaKey]]
    .filter(([, held]) => held).map(([name]) => name);
}

function isWayOut(event) {
  return event.key === "F6" && event.ctrlKey;
}

/** Sends what happens on the picture. `isActive` says whether it is for the application, `leave` puts the focus elsewhere. */
export function forwardInput(picture, {send, isActive, leave}) {
  const {canvas} = picture;
  const steps = {x: 0, y: 0};
  let waiting = null;

  const tell = (event, told) => send({input: {...told, modifiers: modifiersOf(event)}});

  function flushMove() {
    if (waiting) tell(waiting, {kind: "move", ...picture.place(waiting)});
    waiting = null;
  }

  canvas.addEventListener("pointermove", (event) => {
    if (!isActive()) return;
    // One for each picture on the screen: more of them would be seen by nobody.
    if (!waiting) requestAnimationFrame(flushMove);
    waiting = event;
  });
  for (const [name, kind] of [["pointerdown", "press"], ["pointerup", "release"]]) {
    canvas.addEventListener(name, (event) => {
      if (!isActive() || event.button > 2) return;
      event.preventDefault();
      canvas.focus();
      if (kind === "press") canvas.setPointerCapture(event.pointerId);
      flushMove();
      tell(event, {kind, button: event.button, ...picture.place(event)});
    });
  }
  canvas.addEventListener("contextmenu", (event) => event.preventDefault());
  canvas.addEventListener("wheel", (event) => {
    if (!isActive()) return;
    event.preventDefault();
    const size = event.deltaMode === WheelEvent.DOM_DELTA_PIXEL ? PIXELS_OF_A_STEP : LINES_OF_A_STEP;
    steps.x += event.deltaX / size;
    steps.y += event.deltaY / size;
    const [across, down] = [Math.trunc(steps.x), Math.trunc(steps.y)];
    steps.x -= across;
    steps.y -= down;
    if (across || down) tell(event, {kind: "wheel", across, down, ...picture.place(event)});
  }, {passive: false});
  canvas.addEventListener("keydown", (event) => {
    if (!isActive() || event.isComposing) return;
    event.preventDefault();
    if (isWayOut(event)) leave();
    else tell(event, {kind: "key", key: event.key});
  });
  canvas.addEventListener("keyup", (event) => {
    if (isActive()) tell(event, {kind: "idle"});
  });
  canvas.addEventListener("blur", () => send({input: {kind: "idle", modifiers: []}}));
}
