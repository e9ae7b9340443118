"use strict";

// What keys do.

const zoomStep = 1.25;
const panStep = 60;

/** @type {Record<string, () => void>} */
const pageKeys = {
  j: () => stepChange(1),
  k: () => stepChange(-1),
  n: () => stepPage(1),
  p: () => stepPage(-1),
  g: () => stepGroup(1),
  G: () => stepGroup(-1),
  "+": () => pageView.zoom(zoomStep),
  "=": () => pageView.zoom(zoomStep),
  "-": () => pageView.zoom(1 / zoomStep),
  0: () => pageView.viewport.fit(),
  o: () => pageView.toggle("outlines"),
  i: () => pageView.toggle("ignored"),
  m: () => pageView.toggle("marks"),
  ArrowLeft: () => pageView.viewport.pan(panStep, 0),
  ArrowRight: () => pageView.viewport.pan(-panStep, 0),
  ArrowUp: () => pageView.viewport.pan(0, panStep),
  ArrowDown: () => pageView.viewport.pan(0, -panStep),
  " ": () => pageView.blinker.flip(),
  Escape: goToList,
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
  // The element with the focus handles its own keys.
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
  if (isPageView(state)) goToList();
  groupList.filter.focus();
}
