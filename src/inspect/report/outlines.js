"use strict";

// The outlines of the changes on the pages.

/** The actions of outlines and rows of changes. */
/** @typedef {{choose: (index: number) => unknown, hover: (index: number, isOn: boolean) => void}} ChangeActs */

/** A box that keeps a small distance from its content at any scale. @param {Box} box */
function outlineRect([left, top, right, bottom]) {
  const rect = svgElement("rect", {});
  const away = "var(--unit, 1) * 5px";
  rect.style.setProperty("x", `calc(${Math.min(left, right)}px - ${away})`);
  rect.style.setProperty("y", `calc(${Math.min(top, bottom)}px - ${away})`);
  rect.style.setProperty("width", `calc(${Math.abs(right - left)}px + 2 * ${away})`);
  rect.style.setProperty("height", `calc(${Math.abs(bottom - top)}px + 2 * ${away})`);
  return rect;
}

/**
 * @param {Change} change
 * @param {number} index
 * @param {Box} box
 * @param {ChangeActs} acts
 */
function makeOutline(change, index, box, acts) {
  const x = Math.min(box[0], box[2]);
  const y = Math.min(box[1], box[3]);
  const made = svgElement(
    "g",
    { class: `outline ${sortOf(change)}`, "data-change": index },
    outlineRect(box),
    svgElement("text", { x, y }, kinds[change.kind].sign),
  );
  made.addEventListener("click", () => acts.choose(index));
  made.addEventListener("pointerenter", () => acts.hover(index, true));
  made.addEventListener("pointerleave", () => acts.hover(index, false));
  return made;
}

/**
 * The outlines of these sides of the changes, each place once.
 * @param {Change[]} changes
 * @param {number[]} view
 * @param {Side[]} sides
 * @param {ChangeActs} acts
 */
function outlineLayer(changes, view, sides, acts) {
  const layer = svgElement("svg", {
    viewBox: view.join(" "),
    class: "outlines",
    "aria-hidden": "true",
  });
  changes.forEach((change, index) => {
    const seen = new Set();
    for (const side of sides) {
      for (const box of side === "first" ? change.firstOutlines : change.secondOutlines) {
        if (!seen.has(String(box))) layer.append(makeOutline(change, index, box, acts));
        seen.add(String(box));
      }
    }
  });
  return layer;
}
