"use strict";

// The help, a list of the keys.

const keyNames = [
  ["j, k", "next, previous change; in the list: group"],
  ["n, p", "next, previous page"],
  ["g, G", "next, previous group"],
  ["1 to 5", "side by side, slider, blink, overlay, differences"],
  ["+, \u2212, 0", "zoom in, zoom out, whole page"],
  ["arrows", "move the pages"],
  ["Space", "in blink: the other page"],
  ["o, i, m", "outlines, ignored changes, markers and areas"],
  ["/", "filter"],
  ["Enter", "open the group"],
  ["Escape", "back"],
  ["?", "this help"],
];

const help = {
  node: /** @type {HTMLDialogElement | null} */ (null),
  toggle() {
    this.node ??= this.make();
    if (this.node.open) this.node.close();
    else this.node.showModal();
  },
  make() {
    const rows = keyNames.map(([keys, purpose]) =>
      element("div", {}, element("dt", {}, element("kbd", {}, keys)), element("dd", {}, purpose)),
    );
    const close = element("button", { type: "button" }, "Close");
    const made = element(
      "dialog",
      { "aria-labelledby": "help-title" },
      element("h2", { id: "help-title" }, "Keys"),
      element("dl", {}, ...rows),
      element(
        "p",
        { class: "quiet" },
        "With the mouse: the wheel zooms, dragging moves. With fingers: two zoom, one moves.",
      ),
      close,
    );
    close.addEventListener("click", () => made.close());
    document.body.append(made);
    return made;
  },
};
