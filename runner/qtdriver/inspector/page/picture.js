/* The live picture on its canvas, and places in it. */

const HEADER_BYTES = 12;

export class Picture {
  /** `shown` is called when a picture has been drawn. */
  constructor(canvas, shown) {
    this.canvas = canvas;
    this.context = canvas.getContext("2d", {alpha: false});
    this.shown = shown;
    this.count = 0;
  }

  /** Draws a part of the screen: its header is six numbers of 16 bits, then comes a PNG or JPEG file. */
  async draw(buffer) {
    const header = new DataView(buffer, 0, HEADER_BYTES);
    const [width, height, left, top] = [0, 2, 4, 6].map((at) => header.getUint16(at, true));
    const image = await createImageBitmap(new Blob([new Uint8Array(buffer, HEADER_BYTES)]));
    if (this.canvas.width !== width || this.canvas.height !== height) {
      this.canvas.width = width;
      this.canvas.height = height;
    }
    this.context.drawImage(image, left, top);
    image.close();
    this.count += 1;
    this.canvas.dataset.count = String(this.count);
    this.shown();
  }

  /** The place on the screen of a mouse event, in its pixels. */
  place(event) {
    const box = this.canvas.getBoundingClientRect();
    const x = Math.floor(((event.clientX - box.left) * this.canvas.width) / box.width);
    const y = Math.floor(((event.clientY - box.top) * this.canvas.height) / box.height);
    return {x: Math.max(0, Math.min(this.canvas.width - 1, x)), y: Math.max(0, Math.min(this.canvas.height - 1, y))};
  }
}
