/* The steps of a test as bars on an axis of time. The list of steps has the same for the keyboard. */

function makeTimeline(steps, seconds, choose) {
  const end = Math.max(seconds, 0.001, ...steps.map((step) => step.start + step.seconds));
  const percent = (time) => `${(100 * Math.max(time, 0)) / end}%`;
  const bars = steps.map((step, number) => {
    const bar = element("div", {
      className: `bar ${step.reads ? "reads" : "acts"} ${step.error ? "failed" : ""}`,
      title: visible(`${number + 1}. ${step.title}: ${duration(step.seconds)}`),
      onclick: () => choose(number),
    });
    bar.style.left = percent(step.start);
    bar.style.width = percent(step.seconds);
    return bar;
  });
  const panel = element("div", {className: "timeline panel", "aria-hidden": "true"},
    element("div", {className: "track"}, bars, makeTicks(end)));
  return {panel, select: (number) => bars.forEach((bar, index) => bar.classList.toggle("selected", index === number))};
}

/** Marks at round times: 1, 2 or 5 times a power of ten apart, four to ten of them. */
function makeTicks(end) {
  const power = 10 ** Math.floor(Math.log10(end / 4));
  const distance = [5, 2, 1].map((factor) => factor * power).find((size) => end / size >= 4) || power;
  const ticks = [];
  for (let time = 0; time < end * 0.88; time += distance) {
    const tick = element("span", {className: "tick"}, time ? duration(time) : "0");
    tick.style.left = `${(100 * time) / end}%`;
    ticks.push(tick);
  }
  const last = element("span", {className: "tick last"}, duration(end));
  last.style.left = "100%";
  return [...ticks, last];
}
