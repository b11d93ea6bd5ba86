/* Frames around widgets, over the picture. */

export class Marks {
  constructor(place, canvas) {
    this.place = place;
    this.canvas = canvas;
    this.kinds = new Map();
  }

  /** Marks these rectangles, and no others of this kind. */
  set(kind, rects) {
    for (const old of this.kinds.get(kind) || []) old.remove();
    const {width, height} = this.canvas;
    const made = rects.map(([left, top, wide, high]) => {
      const frame = element("div", {className: kind});
      Object.assign(frame.style, {left: `${(100 * left) / width}%`, top: `${(100 * top) / height}%`,
        width: `${(100 * wide) / width}%`, height: `${(100 * high) / height}%`});
      return frame;
    });
    this.kinds.set(kind, made);
    this.place.append(...made);
  }
}
