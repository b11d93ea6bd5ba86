/* The widgets of the application as one tree, and places among them. */

function contains([left, top, width, height], {x, y}) {
  return x >= left && y >= top && x < left + width && y < top + height;
}

const WHOLE = ["spin box", "combo box"];
const VIEWPORT = "qt_scrollarea_viewport";

/** The widget at a place as a person sees it: not the parts that a field is made of, nor the inside of a frame that scrolls. */
function deepest(node, place) {
  if (WHOLE.includes(node.role)) return node;
  for (let at = node.children.length - 1; at >= 0; at -= 1) {
    const child = node.children[at];
    if (!contains(child.rect, place)) continue;
    const found = deepest(child, place);
    return found === child && child.name === VIEWPORT ? node : found;
  }
  return node;
}

/** All windows at one moment, the one in front first. */
export class Widgets {
  constructor(windows = []) {
    this.windows = windows;
    this.roots = windows.filter((window) => window.root).map((window) => window.root);
    this.nodes = new Map();
    this.parents = new Map();
    for (const root of this.roots) this.add(root, null);
  }

  add(node, parent) {
    this.nodes.set(node.ref, node);
    this.parents.set(node.ref, parent);
    for (const child of node.children) this.add(child, node);
  }

  /** The widget at a place of the screen; undefined where there is none. */
  at(place) {
    const root = this.roots.find((one) => contains(one.rect, place));
    return root && deepest(root, place);
  }

  /** The widgets around one, the nearest first. */
  above(ref) {
    const found = [];
    for (let node = this.parents.get(ref); node; node = this.parents.get(node.ref)) found.push(node);
    return found;
  }
}
