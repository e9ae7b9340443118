"use strict";

// The parts of single modes: slider, blinking, and the colours of the overlay.

/** The divider between the pages; its position is kept from page to page. */
class Slider {
  constructor() {
    this.share = 50;
  }

  /** @param {HTMLElement} pane */
  attach(pane) {
    const input = element("input", {
      type: "range",
      min: 0,
      max: 100,
      step: 0.5,
      "aria-label": "Share of the first page",
    });
    const divider = element("div", { class: "divider", "aria-hidden": "true" });
    const place = (/** @type {number} */ share) => {
      this.share = Math.min(Math.max(share, 0), 100);
      pane.style.setProperty("--share", `${this.share}%`);
      input.value = String(this.share);
    };
    input.addEventListener("input", () => place(Number(input.value)));
    divider.addEventListener("pointerdown", (event) => divider.setPointerCapture(event.pointerId));
    divider.addEventListener("pointermove", (event) => {
      if (!divider.hasPointerCapture(event.pointerId)) return;
      const box = pane.getBoundingClientRect();
      place((100 * (event.clientX - box.left)) / box.width);
    });
    const names = ["First", "Second"].map((name) => element("span", {}, name));
    pane.append(divider, element("div", { class: "slider" }, names[0], input, names[1]));
    place(this.share);
  }
}

/** Shows the two pages in turn, automatically unless the reader's system asks for reduced motion. */
class Blinker {
  constructor() {
    this.timer = 0;
    this.flip = () => {};
  }

  /** @param {HTMLElement} pane */
  start(pane) {
    const title = "Show the other page (space)";
    const label = element("button", { type: "button", class: "blink", title }, "First");
    this.flip = () => {
      label.textContent = pane.classList.toggle("shows-second") ? "Second" : "First";
    };
    label.addEventListener("click", () => this.flip());
    pane.append(label);
    const interval = 800;
    if (!matchMedia("(prefers-reduced-motion: reduce)").matches)
      this.timer = setInterval(() => this.flip(), interval);
  }

  stop() {
    clearInterval(this.timer);
    this.flip = () => {};
  }
}

/** What the colours of a mode mean. @param {[string, string][]} entries class and meaning */
function makeLegend(entries) {
  return element(
    "div",
    { class: "legend" },
    ...entries.map(([name, meaning]) => element("span", { class: name }, meaning)),
  );
}

const legends = /** @type {Record<number, [string, string][]>} */ ({
  4: [
    ["tint-first", "first file"],
    ["tint-second", "second file"],
    ["tint-both", "both"],
  ],
  5: [["tint-same", "white where both are the same"]],
});

/** The filters of the overlay: ink of the first file in one colour, that of the second in the other. */
function makeTints() {
  const svg = svgElement("svg", { class: "tints", "aria-hidden": "true" });
  // Lightness scales each channel from the tint up to white; both tints together give grey.
  const tints = { "tint-first": [0.86, 0.38, 0.1], "tint-second": [0.1, 0.42, 0.86] };
  const lightness = [0.299, 0.587, 0.114];
  for (const [id, tint] of Object.entries(tints)) {
    const rows = tint.map((channel) => {
      const weights = lightness.map((part) => (part * (1 - channel)).toFixed(4));
      return `${weights.join(" ")} 0 ${channel}`;
    });
    const matrix = svgElement("feColorMatrix", { values: `${rows.join(" ")} 0 0 0 1 0` });
    svg.append(svgElement("filter", { id, "color-interpolation-filters": "sRGB" }, matrix));
  }
  return svg;
}
