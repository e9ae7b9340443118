"use strict";

// Keys, and the help that lists them.

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

/** @type {Record<string, () => void>} */
const pageKeys = {
  j: () => stepChange(1),
  k: () => stepChange(-1),
  n: () => stepPage(1),
  p: () => stepPage(-1),
  g: () => stepGroup(1),
  G: () => stepGroup(-1),
  "+": () => pageView.zoom(1.25),
  "=": () => pageView.zoom(1.25),
  "-": () => pageView.zoom(1 / 1.25),
  0: () => pageView.viewport.fit(),
  o: () => pageView.toggle("outlines"),
  i: () => pageView.toggle("ignored"),
  m: () => pageView.toggle("marks"),
  ArrowLeft: () => pageView.viewport.pan(60, 0),
  ArrowRight: () => pageView.viewport.pan(-60, 0),
  ArrowUp: () => pageView.viewport.pan(0, 60),
  ArrowDown: () => pageView.viewport.pan(0, -60),
  " ": () => pageView.flip?.(),
  Escape: () => go({ ...state, page: null, group: "" }),
};

/** @type {Record<string, () => void>} */
const listKeys = {
  j: () => groupList.move(1),
  k: () => groupList.move(-1),
  g: () => groupList.move(1),
  G: () => groupList.move(-1),
  n: () => groupList.move(1),
  p: () => groupList.move(-1),
};

/** @param {KeyboardEvent} event */
function press(event) {
  if (event.ctrlKey || event.metaKey || event.altKey || help.node?.open) return;
  const target = /** @type {HTMLElement} */ (event.target);
  const isTyping = target.matches("input:not([type=range]), select, textarea");
  if (isTyping) {
    if (event.key === "Escape") target.blur();
    return;
  }
  // What has the focus takes its own keys.
  const isOwn =
    (event.key === " " && target.matches("button:not(.mode[aria-pressed=true]), a, summary")) ||
    (event.key.startsWith("Arrow") && target.matches("[type=range]"));
  if (isOwn) return;
  const isPage = isPageView(state);
  const mode = Number.parseInt(event.key, 10);
  const act =
    event.key === "?"
      ? () => help.toggle()
      : event.key === "/"
        ? focusFilter
        : isPage && mode >= 1 && mode <= modes.length
          ? () => go({ ...state, mode })
          : (isPage ? pageKeys : listKeys)[event.key];
  if (act) {
    event.preventDefault();
    act();
  }
}

function focusFilter() {
  if (isPageView(state)) go({ ...state, page: null, group: "" });
  const input = groupList.form.elements.namedItem("text");
  if (input instanceof HTMLInputElement) input.focus();
}
