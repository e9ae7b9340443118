"use strict";

// What stands above the two pages: title, verdict, and the buttons for mode, layers, zoom and pages.

/** Each layer that can be switched, with its name and key. */
const layers = {
  outlines: { label: "Outlines", key: "o" },
  ignored: { label: "Ignored", key: "i" },
  marks: { label: "Markers and areas", key: "m" },
};

/** @typedef {keyof typeof layers} LayerName */

/** @param {string} label @param {...Node} children */
function buttonSet(label, ...children) {
  return element("div", { class: "set", role: "group", "aria-label": label }, ...children);
}

/**
 * What a run says of a page, and with which page it was paired.
 * @param {PageData} data
 */
function verdictOfPage({ bits, names, first, second }) {
  if (first === null && second === null) return "Only one of the files has this customer";
  if (first === null || second === null)
    return `Only the ${first === null ? "second" : "first"} file has this page`;
  const verdict = `Verdict: ${bits === 0 ? "identical for a run" : `${names.join(", ")} (${bits})`}`;
  if (first === second) return verdict;
  const page = first + 1;
  return `${verdict}. Paired by content with page ${second + 1} of the second file; a run compares page ${page} with page ${page}`;
}

class Toolbar {
  /**
   * @param {{toggle: (layer: LayerName) => void, zoom: (factor: number) => void, fit: () => void}} acts
   */
  constructor(acts) {
    this.title = element("h1", { tabindex: "-1" });
    this.verdict = element("p", { class: "quiet" });
    this.zoomText = element("output", { class: "zoom-text", "aria-label": "Zoom" });
    this.modeButtons = modes.map((name, index) => {
      const made = button(name, name, () => go({ ...state, mode: index + 1 }), String(index + 1));
      made.classList.add("mode");
      return made;
    });
    this.switches = /** @type {LayerName[]} */ (Object.keys(layers)).map((layer) => {
      const { label, key } = layers[layer];
      const made = button(label, label, () => acts.toggle(layer), key);
      made.dataset.layer = layer;
      return made;
    });
    const back = button("Back to the list", "\u2190 List", goToList, "Escape");
    this.node = element(
      "header",
      { class: "page-head" },
      element("div", { class: "titles" }, back, element("div", {}, this.title, this.verdict)),
      element(
        "div",
        { class: "tools" },
        buttonSet("Mode", ...this.modeButtons),
        buttonSet("Layers", ...this.switches),
        buttonSet(
          "Zoom",
          button("Zoom out", "\u2212", () => acts.zoom(1 / zoomStep), "-"),
          this.zoomText,
          button("Zoom in", "+", () => acts.zoom(zoomStep), "+"),
          button("Fit the whole page", "Fit", acts.fit, "0"),
        ),
        buttonSet(
          "Pages",
          button("Previous page", "\u2039 Page", () => stepPage(-1), "p"),
          button("Next page", "Page \u203A", () => stepPage(1), "n"),
          button("Previous group", "\u2039 Group", () => stepGroup(-1), "G"),
          button("Next group", "Group \u203A", () => stepGroup(1), "g"),
          button("Help", "?", () => help.toggle(), "?"),
        ),
      ),
    );
  }

  /** @param {string} text @param {...Node} title */
  tell(text, ...title) {
    this.title.replaceChildren(...title);
    this.verdict.textContent = text;
    document.title = `${this.title.textContent} \u2013 What changed`;
  }

  /** @param {PageData} data */
  tellPage(data) {
    this.tell(
      verdictOfPage(data),
      new Text("Customer "),
      element("bdi", {}, shortened(data.id, 80)),
      new Text(", "),
      element("bdi", {}, pageTitle(data) || "whole customer"),
    );
  }

  /** @param {number} mode */
  pressMode(mode) {
    this.modeButtons.forEach((made, index) =>
      made.setAttribute("aria-pressed", String(index + 1 === mode)),
    );
  }

  /** @param {Record<LayerName, boolean>} isOn */
  pressLayers(isOn) {
    for (const made of this.switches) {
      const layer = /** @type {LayerName} */ (made.dataset.layer);
      made.setAttribute("aria-pressed", String(isOn[layer]));
    }
  }

  /** @param {number} share of the scale at which the whole page is in sight */
  tellZoom(share) {
    this.zoomText.textContent = `${Math.round(100 * share)} %`;
  }
}
