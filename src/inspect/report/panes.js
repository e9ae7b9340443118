"use strict";

// Panes, which show one page or both above each other, and the sheets in them.

/** A sheet without its drawing. @param {Side} side */
function makeSheet(side) {
  const sheet = element("div", { class: "sheet" }, element("div", { class: "drawing" }));
  return element("div", { class: `layer side-${side}` }, sheet);
}

/**
 * @param {HTMLElement} layer made by makeSheet
 * @param {SVGSVGElement | null} drawing
 * @param {number[]} view
 * @param {Side} side
 */
function fillSheet(layer, drawing, view, side) {
  const host = layer.querySelector(".drawing");
  if (!host) return;
  if (!drawing) {
    host.append(element("p", { class: "note" }, `Not in the ${side} file`));
    return;
  }
  drawing.setAttribute("viewBox", view.join(" "));
  drawing.setAttribute("width", "100%");
  drawing.setAttribute("height", "100%");
  drawing.setAttribute("role", "img");
  drawing.setAttribute("aria-label", `Page of the ${side} file`);
  // A separate tree, since both drawings use the same names for their objects.
  host.attachShadow({ mode: "open" }).append(drawing);
}

/**
 * @param {HTMLElement[]} sheets
 * @param {SVGSVGElement} outlines
 * @param {string} label what is shown; empty if it is shown elsewhere
 */
function makePane(sheets, outlines, label) {
  const over = element("div", { class: "layer over" }, element("div", { class: "sheet" }));
  over.firstElementChild?.append(outlines);
  return element(
    "div",
    { class: "pane" },
    element("div", { class: "drawings" }, ...sheets),
    over,
    label === "" ? "" : element("div", { class: "label" }, label),
  );
}
