"use strict";

// Brings the data files of pages in, and makes drawings of them.

/** What data files bring; they call it by its name. */
const rvfReport = {
  /** @type {Map<string, (data: any) => void>} */
  waiting: new Map(),
  /** @param {{page?: number, stored?: number}} data */
  receive(data) {
    this.waiting.get(data.page === undefined ? `stored/${data.stored}` : `pages/${data.page}`)?.(
      data,
    );
  },
};

/** @type {Map<string, Promise<any>>} */
const loaded = new Map();

/**
 * The content of a data file. A page opened from the file system cannot fetch, but it can load a script.
 * @param {"pages" | "stored"} folder
 * @param {number} number
 * @returns {Promise<any>}
 */
function load(folder, number) {
  const key = `${folder}/${number}`;
  let promise = loaded.get(key);
  if (!promise) {
    promise = new Promise((resolve, reject) => {
      const script = document.createElement("script");
      const name = `${folder}/${String(number).padStart(5, "0")}.js`;
      rvfReport.waiting.set(key, resolve);
      script.src = name;
      script.onerror = () => reject(new Error(`${name} is missing or cannot be read`));
      script.onload = () => script.remove();
      document.head.append(script);
    });
    loaded.set(key, promise);
    promise.catch(() => loaded.delete(key));
  }
  return promise;
}

const pageCache = /** @type {number[]} */ ([]);

/**
 * A page with everything that its drawings need. The last few stay in memory.
 * @param {number} number
 * @returns {Promise<{data: PageData, stored: Map<string, string>}>}
 */
async function loadPage(number) {
  const data = /** @type {PageData} */ (await load("pages", number));
  const stored = new Map();
  await Promise.all(
    data.stored.map(async (part) => stored.set(String(part), (await load("stored", part)).content)),
  );
  const most = 8;
  const at = pageCache.indexOf(number);
  if (at >= 0) pageCache.splice(at, 1);
  pageCache.push(number);
  if (pageCache.length > most) loaded.delete(`pages/${pageCache.shift()}`);
  return { data, stored };
}

const drawnElements =
  "svg g defs use rect line polyline polygon path text tspan title image linearGradient stop";
const foreign = drawnElements
  .split(" ")
  .map((name) => `:not(${name})`)
  .join("");

/**
 * Keeps of a drawing what drawings consist of. The program writes nothing else, and the policy of the
 * page runs no script of an attribute; this is one more lock on the door.
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
  // Objects may hold images, which are stored for themselves; nothing is nested deeper.
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
 * The space that both drawings fit into, so that they have one scale.
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

/** The filters of the overlay: ink of the first file in one colour, that of the second in the other. */
function makeTints() {
  const space = "http://www.w3.org/2000/svg";
  const svg = document.createElementNS(space, "svg");
  svg.setAttribute("class", "tints");
  svg.setAttribute("aria-hidden", "true");
  // Lightness scales each channel from the tint up to white; both tints together give grey.
  const tints = { "tint-first": [0.86, 0.38, 0.1], "tint-second": [0.1, 0.42, 0.86] };
  for (const [id, tint] of Object.entries(tints)) {
    const filter = document.createElementNS(space, "filter");
    filter.id = id;
    filter.setAttribute("color-interpolation-filters", "sRGB");
    const matrix = document.createElementNS(space, "feColorMatrix");
    const rows = tint.map(
      (channel) =>
        [0.299, 0.587, 0.114].map((part) => (part * (1 - channel)).toFixed(4)).join(" ") +
        ` 0 ${channel}`,
    );
    matrix.setAttribute("values", `${rows.join(" ")} 0 0 0 1 0`);
    filter.append(matrix);
    svg.append(filter);
  }
  return svg;
}
