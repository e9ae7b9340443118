"use strict";

// Turns the texts in data files into drawings.

const drawnElements =
  "svg g defs use rect line polyline polygon path text tspan title image linearGradient stop";
const foreign = drawnElements
  .split(" ")
  .map((name) => `:not(${name})`)
  .join("");

/**
 * Keeps only what drawings consist of. The program writes nothing else, and the page's policy runs no
 * script in an attribute; this is an additional safeguard.
 * @param {Element} root
 */
function purify(root) {
  for (const node of root.querySelectorAll(foreign)) node.remove();
  for (const node of root.querySelectorAll("[style]")) node.removeAttribute("style");
  for (const node of root.querySelectorAll("[href]")) {
    const isOurs = /^(#|data:image\/(png|jpeg|gif);)/.test(node.getAttribute("href") ?? "");
    if (!isOurs) node.removeAttribute("href");
  }
}

/**
 * A drawing as an element of this page; null for a side without a page.
 * @param {string} text
 * @param {Map<string, string>} stored
 * @returns {SVGSVGElement | null}
 */
function makeDrawing(text, stored) {
  if (text === "") return null;
  let whole = text;
  // Objects may contain images, which are stored separately; nothing is nested deeper.
  whole = whole.replace(
    /(<g [^>]*data-stored="(\d+)"[^>]*?)\s*\/>/g,
    (_, start, number) => `${start}>${stored.get(number) ?? ""}</g>`,
  );
  const parsed = new DOMParser().parseFromString(whole, "image/svg+xml").documentElement;
  if (parsed.localName !== "svg") throw new Error("A drawing cannot be read");
  for (const image of parsed.querySelectorAll("image[data-stored]")) {
    image.setAttribute("href", stored.get(image.getAttribute("data-stored") ?? "") ?? "");
  }
  purify(parsed);
  return document.adoptNode(/** @type {SVGSVGElement} */ (/** @type {unknown} */ (parsed)));
}

/** @param {SVGSVGElement | null} drawing @returns {number[] | null} */
function viewOf(drawing) {
  const numbers = (drawing?.getAttribute("viewBox") ?? "").split(" ").map(Number);
  return numbers.length === 4 && numbers.every(Number.isFinite) ? numbers : null;
}

/**
 * The space that both drawings fit into, so that they have the same scale.
 * @param {(SVGSVGElement | null)[]} drawings
 */
function commonView(drawings) {
  const views = drawings.map(viewOf).filter((view) => view !== null);
  if (views.length === 0) return [0, 0, 1, 1];
  const left = Math.min(...views.map((view) => view[0]));
  const top = Math.min(...views.map((view) => view[1]));
  const right = Math.max(...views.map((view) => view[0] + view[2]));
  const bottom = Math.max(...views.map((view) => view[1] + view[3]));
  return [left, top, right - left, bottom - top];
}
