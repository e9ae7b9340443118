"use strict";

// The small picture of a group's place: cut out of the drawing of one of its pages when its row comes
// into sight, a sheet with a mark until then and where no page of the group is drawn.

/** @typedef {{image: HTMLImageElement, view: number[]}} PageImage */

// A drawing as an image costs time to make, so the last few are kept.
const mostPageImages = 6;
/** @type {Map<string, Promise<PageImage | null>>} */
const pageImages = new Map();

// What makes the list wait if it is turned into an image.
const longestPictured = 2_000_000;

/** @param {{page: number, side: Side}} of @returns {Promise<PageImage | null>} */
async function makePageImage({ page, side }) {
  const { data, stored } = await loadPage(page);
  const text = side === "first" ? data.firstDrawing : data.secondDrawing;
  const drawing = text.length > longestPictured ? null : makeDrawing(text, stored);
  const view = viewOf(drawing);
  if (!drawing || !view) return null;
  drawing.querySelector("#marks")?.setAttribute("display", "none");
  drawing.setAttribute("width", String(view[2]));
  drawing.setAttribute("height", String(view[3]));
  const image = new Image();
  const source = new XMLSerializer().serializeToString(drawing);
  image.src = `data:image/svg+xml,${encodeURIComponent(source)}`;
  await image.decode();
  return { image, view };
}

/** @param {{page: number, side: Side}} of */
function pageImage(of) {
  const key = `${of.page}/${of.side}`;
  const made = pageImages.get(key) ?? makePageImage(of);
  pageImages.delete(key);
  pageImages.set(key, made);
  if (pageImages.size > mostPageImages) pageImages.delete([...pageImages.keys()][0]);
  return made;
}

/**
 * The stretch of a page around a box, of the shape that the picture has.
 * @param {number[]} box
 * @param {number[]} view
 * @param {number} shape width through height
 */
function stretchAround(box, view, shape) {
  const room = 1.3;
  const context = 0.28;
  const width = Math.max(
    Math.abs(box[2] - box[0]) * room,
    Math.abs(box[3] - box[1]) * room * shape,
    view[2] * context,
  );
  const height = width / shape;
  // Inside the page as far as it goes.
  const start = (
    /** @type {number} */ middle,
    /** @type {number} */ size,
    /** @type {0 | 1} */ axis,
  ) =>
    size >= view[2 + axis]
      ? view[axis] + (view[2 + axis] - size) / 2
      : Math.min(Math.max(middle - size / 2, view[axis]), view[axis] + view[2 + axis] - size);
  const left = start((box[0] + box[2]) / 2, width, 0);
  const top = start((box[1] + box[3]) / 2, height, 1);
  return [left, top, width, height];
}

/** @param {Group} group @param {number[]} box @param {number} least its smallest size */
function placeMark(group, box, least) {
  const width = Math.max(Math.abs(box[2] - box[0]), least);
  const height = Math.max(Math.abs(box[3] - box[1]), least);
  const rect = svgElement("rect", {
    x: Math.min(box[0], box[2]),
    y: Math.min(box[1], box[3]),
    width,
    height,
  });
  return svgElement("g", { class: `outline ${sortOf(group)}` }, rect);
}

/** A sheet with a mark at the group's place, as far as it is known. @param {Group} group */
function schematicPicture(group) {
  const inch = report.first.resolution;
  const entry = report.pages[group.drawn[0] ?? 0];
  const view = entry?.view ? entry.view.split(" ").map(Number) : [0, 0, 8.27 * inch, 11.69 * inch];
  const [left, top, width, height] = view;
  const svg = svgElement("svg", { viewBox: view.join(" "), class: "sketch" });
  svg.append(svgElement("rect", { x: left, y: top, width, height, class: "paper" }));
  const place = group.place;
  const box = group.picture?.box ?? (place && [...place, place[0] + width / 4, place[1]]);
  if (box) svg.append(placeMark(group, box, Math.max(width, height) / 25));
  return svg;
}

/**
 * Where to cut the picture from: the place of the change, or the page if it is one as a whole.
 * @param {Group} group
 * @returns {Group["picture"]}
 */
function pictureOf(group) {
  if (group.picture || group.drawn.length === 0) return group.picture;
  const page = group.drawn[0];
  const [left, top, width, height] = report.pages[page].view.split(" ").map(Number);
  const side = report.pages[page].second === null ? "first" : "second";
  return { page, side, box: [left, top, left + width, top + height] };
}

/** @param {Group} group @param {HTMLElement} host */
async function drawPlace(group, host) {
  const picture = pictureOf(group);
  if (!picture || !host.isConnected) return;
  const made = await pageImage(picture);
  if (!made || !host.isConnected) return;
  const { image, view } = made;
  const stretch = stretchAround(picture.box, view, host.clientWidth / host.clientHeight);
  const canvas = element("canvas", {
    width: Math.round(host.clientWidth * devicePixelRatio),
    height: Math.round(host.clientHeight * devicePixelRatio),
  });
  const [left, top, width, height] = stretch;
  canvas
    .getContext("2d")
    ?.drawImage(
      image,
      left - view[0],
      top - view[1],
      width,
      height,
      0,
      0,
      canvas.width,
      canvas.height,
    );
  const mark = svgElement("svg", { viewBox: stretch.join(" ") });
  const away = (5 * width) / host.clientWidth;
  const [x, y, right, bottom] = picture.box;
  mark.append(placeMark(group, [x - away, y - away, right + away, bottom + away], 0));
  host.replaceChildren(canvas, mark);
}

/** Draws one picture after the other, so that the list stays quick while it is scrolled. */
const pictureQueue = {
  /** @type {{group: Group, host: HTMLElement}[]} */
  waiting: [],
  isBusy: false,

  /** @param {Group} group @param {HTMLElement} host */
  add(group, host) {
    this.waiting.push({ group, host });
    if (!this.isBusy) void this.run();
  },
  async run() {
    this.isBusy = true;
    for (;;) {
      await new Promise((resume) => setTimeout(resume));
      this.waiting = this.waiting.filter(({ host }) => host.isConnected);
      const next = this.waiting.shift();
      if (!next) break;
      // Without the picture there is still the sketch.
      await drawPlace(next.group, next.host).catch(() => undefined);
    }
    this.isBusy = false;
  },
};

/** @param {Group} group */
function placePicture(group) {
  const host = element("span", { class: "place", "aria-hidden": "true" }, schematicPicture(group));
  if (group.drawn.length > 0) pictureQueue.add(group, host);
  return host;
}
