"use strict";

// The view of one pair of pages: both drawings, the outlines of the changes, and their list.

const svgSpace = "http://www.w3.org/2000/svg";

/** @param {Change} change */
const sortOf = (change) => (change.counts ? change.kind : "ignored");

class PageView {
  constructor() {
    this.title = element("h1", { tabindex: "-1" });
    this.verdict = element("p", { class: "quiet" });
    this.stage = element("div", { class: "stage", role: "group", "aria-label": "The two pages" });
    this.changes = element("ol", { class: "changes", "aria-label": "Changes of this page" });
    this.side = element("aside", { class: "side" });
    this.node = element("main", { class: "page-view" }, this.makeHead(), this.stage, this.side);
    this.viewport = new Viewport(this.stage, () => this.describeZoom());
    /** @type {PageData | null} */
    this.data = null;
    /** @type {(SVGSVGElement | null)[]} */
    this.drawings = [null, null];
    this.layers = { outlines: true, ignored: true, marks: false };
    this.sliderAt = 50;
    this.blinkTimer = 0;
    this.applyLayers();
  }

  makeHead() {
    /** @param {string} label @param {string} text @param {() => void} act @param {string} [key] */
    const button = (label, text, act, key) => {
      const made = element(
        "button",
        { type: "button", "aria-label": label, title: key ? `${label} (${key})` : label },
        text,
      );
      made.addEventListener("click", act);
      return made;
    };
    this.modeButtons = modes.map((name, index) => {
      const made = button(name, name, () => go({ ...state, mode: index + 1 }), String(index + 1));
      made.classList.add("mode");
      return made;
    });
    this.zoomText = element("output", { class: "zoom-text", "aria-label": "Zoom" });
    this.switches = /** @type {const} */ (["outlines", "ignored", "marks"]).map((layer) => {
      const label = { outlines: "Outlines", ignored: "Ignored", marks: "Markers and areas" }[layer];
      const key = { outlines: "o", ignored: "i", marks: "m" }[layer];
      const made = button(label, label, () => this.toggle(layer), key);
      made.dataset.layer = layer;
      return made;
    });
    return element(
      "header",
      { class: "page-head" },
      element(
        "div",
        { class: "titles" },
        button(
          "Back to the list",
          "\u2190 List",
          () => go({ ...state, page: null, group: "" }),
          "Escape",
        ),
        element("div", {}, this.title, this.verdict),
      ),
      element(
        "div",
        { class: "tools" },
        element("div", { class: "set", role: "group", "aria-label": "Mode" }, ...this.modeButtons),
        element("div", { class: "set", role: "group", "aria-label": "Layers" }, ...this.switches),
        element(
          "div",
          { class: "set", role: "group", "aria-label": "Zoom" },
          button("Zoom out", "\u2212", () => this.zoom(1 / 1.25), "-"),
          this.zoomText,
          button("Zoom in", "+", () => this.zoom(1.25), "+"),
          button("Fit the whole page", "Fit", () => this.viewport.fit(), "0"),
        ),
        element(
          "div",
          { class: "set", role: "group", "aria-label": "Pages" },
          button("Previous page", "\u2039 Page", () => stepPage(-1), "p"),
          button("Next page", "Page \u203A", () => stepPage(1), "n"),
          button("Previous group", "\u2039 Group", () => stepGroup(-1), "G"),
          button("Next group", "Group \u203A", () => stepGroup(1), "g"),
          button("Help", "?", () => help.toggle(), "?"),
        ),
      ),
    );
  }

  /** Shows what the state says, and loads what it needs. */
  async show() {
    const wanted = state.page;
    this.pressButtons();
    if (wanted === null) {
      this.clear();
      this.showGroupOnly();
      return;
    }
    if (this.data?.page === wanted) {
      this.arrange();
      this.select();
      return;
    }
    this.stage.setAttribute("aria-busy", "true");
    try {
      const { data, stored } = await loadPage(wanted);
      if (state.page !== wanted) return;
      this.data = data;
      this.drawings = [
        makeDrawing(data.firstDrawing, stored),
        makeDrawing(data.secondDrawing, stored),
      ];
      this.showTitles(data);
      this.listChanges(data);
      this.arrange();
      this.viewport.fit();
      this.select();
    } catch (error) {
      this.clear();
      this.stage.replaceChildren(
        element(
          "p",
          { class: "note", role: "alert" },
          error instanceof Error ? error.message : String(error),
        ),
      );
    }
    this.stage.removeAttribute("aria-busy");
  }

  clear() {
    clearInterval(this.blinkTimer);
    this.data = null;
    this.stage.replaceChildren();
    this.viewport.sheets = [];
    this.title.textContent = "";
    this.verdict.textContent = "";
    this.side.replaceChildren();
  }

  /** A group none of whose pages is drawn. */
  showGroupOnly() {
    const group = groupById.get(state.group);
    if (!group) return;
    this.title.textContent = `${group.type} ${kinds[group.kind].word}`;
    document.title = `${this.title.textContent} \u2013 What changed`;
    this.stage.replaceChildren(
      element("p", { class: "note" }, "No page of this group is drawn in this report."),
    );
    this.side.replaceChildren(...this.groupFacts(group));
  }

  /** @param {PageData} data */
  showTitles(data) {
    this.title.replaceChildren(
      "Customer ",
      element("bdi", {}, shortened(data.id, 80)),
      ", ",
      element("bdi", {}, pageTitle(data) || "whole customer"),
    );
    document.title = `${this.title.textContent} \u2013 What changed`;
    const verdict =
      data.bits === 0 ? "identical for a run" : `${data.names.join(", ")} (${data.bits})`;
    const paired = data.first !== null && data.second !== null && data.first !== data.second;
    const pairing = paired
      ? `. Paired by content with page ${Number(data.second) + 1} of the second file; a run compares page ${Number(data.first) + 1} with page ${Number(data.first) + 1}`
      : "";
    this.verdict.textContent = `Verdict: ${verdict}${pairing}`;
  }

  /** @param {Group} group */
  groupFacts(group) {
    const pages = group.drawn.slice(0, 200).map((page) => {
      const entry = report.pages[page];
      const attributes = {
        href: addressOf({ ...state, page, change: 0 }),
        "aria-current": page === state.page && "page",
      };
      return element(
        "li",
        {},
        element(
          "a",
          attributes,
          element("bdi", {}, shortened(entry.id, 40)),
          ` ${pageTitle(entry)}`,
        ),
      );
    });
    const facts = [
      counted(group.pages, "page"),
      counted(group.customers, "customer"),
      `${counted(group.pairs, "pair")} of values`,
      groupPlace(group),
    ];
    const examples = group.examples.map((example) =>
      element(
        "li",
        {},
        example.field
          ? valueOfKind(group.kind, example.field, 200)
          : element("bdi", {}, shortened(example.text ?? "", 200)),
      ),
    );
    return [
      element("h2", {}, "Group ", element("code", {}, group.id)),
      element(
        "p",
        {},
        badge(group),
        ` ${group.type}`,
        group.ignoredBy ? `: ${group.ignoredBy}` : "",
      ),
      element("p", { class: "quiet" }, facts.filter(Boolean).join(" \u00B7 ")),
      element("ul", { class: "examples" }, ...examples),
      element(
        "details",
        {},
        element("summary", {}, `${counted(group.drawn.length, "drawn page")}`),
        element("ul", { class: "drawn" }, ...pages),
      ),
    ];
  }

  /** @param {PageData} data */
  listChanges(data) {
    const rows = data.changes.map((change, index) => {
      const row = element("li", { class: sortOf(change), "data-change": index });
      const pick = element(
        "button",
        { type: "button" },
        badge(change),
        ` ${change.type} `,
        element(
          "span",
          { class: "quiet" },
          [listInWords(change.list), change.ignoredBy ?? ""].filter(Boolean).join(" \u00B7 "),
        ),
      );
      pick.addEventListener("click", () => go({ ...state, change: index }, "replace"));
      row.addEventListener("pointerenter", () => this.mark(index, "hovered", true));
      row.addEventListener("pointerleave", () => this.mark(index, "hovered", false));
      row.append(pick, changeFacts(change));
      return row;
    });
    if (data.changesLeftOut > 0)
      rows.push(
        element("li", { class: "quiet" }, `and ${counted(data.changesLeftOut, "change")} more`),
      );
    this.changes.replaceChildren(...rows);
  }

  showSide() {
    if (!this.data) return;
    const heading = element(
      "h2",
      {},
      counted(this.data.changes.length + this.data.changesLeftOut, "change"),
    );
    const parts = /** @type {Node[]} */ ([heading, this.changes]);
    const group = groupById.get(state.group || this.data.changes[state.change]?.group || "");
    if (group) parts.push(element("section", { class: "group-facts" }, ...this.groupFacts(group)));
    if (this.data.why?.length) parts.push(whyList(this.data.why));
    this.side.replaceChildren(...parts);
  }

  pressButtons() {
    this.modeButtons?.forEach((button, index) =>
      button.setAttribute("aria-pressed", String(index + 1 === state.mode)),
    );
  }

  /** Puts the drawings on the stage as the mode wants them. */
  arrange() {
    if (!this.data) return;
    clearInterval(this.blinkTimer);
    const view = commonView(this.drawings);
    const sheets = this.drawings.map((drawing, side) => this.makeSheet(drawing, view, side));
    this.viewport.view = view;
    this.stage.className = `stage mode-${state.mode}`;
    const isPair = state.mode === 1;
    const panes = isPair
      ? sheets.map((sheet, side) => this.makePane([sheet], view, [side]))
      : [this.makePane(sheets, view, [0, 1])];
    this.stage.replaceChildren(...panes);
    if (state.mode === 2) this.addSlider(panes[0]);
    if (state.mode === 3) this.startBlinking(panes[0]);
    this.viewport.sheets = /** @type {HTMLElement[]} */ ([
      ...this.stage.querySelectorAll(".sheet"),
    ]);
    if (this.viewport.isFitted) this.viewport.fit();
    else this.viewport.set(this.viewport.at);
    this.applyLayers();
  }

  /** @param {SVGSVGElement | null} drawing @param {number[]} view @param {number} side */
  makeSheet(drawing, view, side) {
    const host = element("div", { class: "drawing" });
    if (drawing) {
      drawing.setAttribute("viewBox", view.join(" "));
      drawing.setAttribute("width", "100%");
      drawing.setAttribute("height", "100%");
      drawing.setAttribute("role", "img");
      drawing.setAttribute(
        "aria-label",
        side === 0 ? "Page of the first file" : "Page of the second file",
      );
      // A tree of its own, since both drawings use the same names for their objects.
      const root = host.attachShadow({ mode: "open" });
      root.append(drawing);
    } else {
      host.append(
        element(
          "p",
          { class: "note" },
          side === 0 ? "Not in the first file" : "Not in the second file",
        ),
      );
    }
    return element(
      "div",
      { class: `layer side-${side}` },
      element("div", { class: "sheet" }, host),
    );
  }

  /** @param {HTMLElement[]} layers @param {number[]} view @param {number[]} sides */
  makePane(layers, view, sides) {
    const label = sides.length === 2 ? "" : sides[0] === 0 ? "First" : "Second";
    const sheet = element("div", { class: "sheet" });
    const outlines = document.createElementNS(svgSpace, "svg");
    outlines.setAttribute("viewBox", view.join(" "));
    outlines.setAttribute("class", "outlines");
    outlines.setAttribute("aria-hidden", "true");
    this.data?.changes.forEach((change, index) => {
      const sets = [change.firstOutlines, change.secondOutlines];
      const seen = new Set();
      for (const side of sides) {
        for (const box of sets[side]) {
          if (!seen.has(String(box))) outlines.append(this.makeOutline(change, index, box));
          seen.add(String(box));
        }
      }
    });
    sheet.append(outlines);
    return element(
      "div",
      { class: "pane" },
      element("div", { class: "drawings" }, ...layers),
      element("div", { class: "layer over" }, sheet),
      label ? element("div", { class: "label" }, label) : "",
    );
  }

  /** @param {Change} change @param {number} index @param {Box} box */
  makeOutline(change, index, box) {
    const node = document.createElementNS(svgSpace, "g");
    node.setAttribute("class", `outline ${sortOf(change)}`);
    node.setAttribute("data-change", String(index));
    const margin = 14;
    const rect = document.createElementNS(svgSpace, "rect");
    const left = Math.min(box[0], box[2]) - margin;
    const top = Math.min(box[1], box[3]) - margin;
    rect.setAttribute("x", String(left));
    rect.setAttribute("y", String(top));
    rect.setAttribute("width", String(Math.abs(box[2] - box[0]) + 2 * margin));
    rect.setAttribute("height", String(Math.abs(box[3] - box[1]) + 2 * margin));
    const sign = document.createElementNS(svgSpace, "text");
    sign.setAttribute("x", String(left));
    sign.setAttribute("y", String(top + margin));
    sign.textContent = kinds[change.kind].sign;
    node.append(rect, sign);
    node.addEventListener(
      "click",
      () => (this.viewport.moved ?? 0) <= 4 && go({ ...state, change: index }, "replace"),
    );
    node.addEventListener("pointerenter", () => this.mark(index, "hovered", true));
    node.addEventListener("pointerleave", () => this.mark(index, "hovered", false));
    return node;
  }

  /** @param {HTMLElement} pane */
  addSlider(pane) {
    const input = element("input", {
      type: "range",
      min: 0,
      max: 100,
      step: 0.5,
      value: this.sliderAt,
      "aria-label": "Share of the first page",
    });
    const divider = element("div", { class: "divider", "aria-hidden": "true" });
    const place = () => {
      pane.style.setProperty("--share", `${this.sliderAt}%`);
      input.value = String(this.sliderAt);
    };
    input.addEventListener("input", () => {
      this.sliderAt = Number(input.value);
      place();
    });
    divider.addEventListener("pointerdown", (event) => divider.setPointerCapture(event.pointerId));
    divider.addEventListener("pointermove", (event) => {
      if (!divider.hasPointerCapture(event.pointerId)) return;
      const box = pane.getBoundingClientRect();
      this.sliderAt = Math.min(Math.max((100 * (event.clientX - box.left)) / box.width, 0), 100);
      place();
    });
    pane.append(
      divider,
      element(
        "div",
        { class: "slider" },
        element("span", {}, "First"),
        input,
        element("span", {}, "Second"),
      ),
    );
    place();
  }

  /** @param {HTMLElement} pane */
  startBlinking(pane) {
    const label = element("button", {
      type: "button",
      class: "blink",
      title: "Show the other page (space)",
    });
    pane.append(label);
    this.flip = () => {
      const isSecond = pane.classList.toggle("shows-second");
      label.textContent = isSecond ? "Second" : "First";
    };
    this.flip();
    this.flip();
    label.addEventListener("click", () => this.flip?.());
    const interval = 800;
    if (!matchMedia("(prefers-reduced-motion: reduce)").matches)
      this.blinkTimer = setInterval(() => this.flip?.(), interval);
  }

  /** Zooms towards the chosen change, if there is one. @param {number} factor */
  zoom(factor) {
    const change = this.data?.changes[state.change];
    const box = change?.firstOutlines[0] ?? change?.secondOutlines[0];
    this.viewport.zoom(factor, box && this.viewport.placeOf(box));
    if (box) this.viewport.reveal(box);
  }

  /** @param {keyof PageView["layers"]} layer */
  toggle(layer) {
    this.layers[layer] = !this.layers[layer];
    this.applyLayers();
  }

  applyLayers() {
    for (const [layer, isShown] of Object.entries(this.layers)) {
      this.node.classList.toggle(`no-${layer}`, !isShown);
    }
    this.switches?.forEach((button) =>
      button.setAttribute(
        "aria-pressed",
        String(this.layers[/** @type {"marks"} */ (button.dataset.layer)]),
      ),
    );
    for (const drawing of this.drawings) {
      const marks = drawing?.querySelector("#marks");
      if (this.layers.marks) marks?.removeAttribute("display");
      else marks?.setAttribute("display", "none");
    }
  }

  describeZoom() {
    if (this.zoomText)
      this.zoomText.textContent = `${Math.round((100 * this.viewport.at.scale) / this.viewport.fittingScale())} %`;
  }

  /** @param {number} index @param {string} name @param {boolean} isOn */
  mark(index, name, isOn) {
    for (const node of this.node.querySelectorAll(`[data-change="${index}"]`))
      node.classList.toggle(name, isOn);
  }

  /** Shows which change is chosen, on the pages and in the list. */
  select() {
    if (!this.data) return;
    this.showSide();
    for (const node of this.node.querySelectorAll(".chosen")) node.classList.remove("chosen");
    for (const row of this.changes.querySelectorAll("[aria-current]"))
      row.removeAttribute("aria-current");
    const change = this.data.changes[state.change];
    if (!change) return;
    this.mark(state.change, "chosen", true);
    const row = this.changes.children[state.change];
    row.setAttribute("aria-current", "true");
    // The list alone scrolls, never the page around it.
    const low = row.getBoundingClientRect().bottom - this.side.getBoundingClientRect().bottom;
    const high = row.getBoundingClientRect().top - this.side.getBoundingClientRect().top;
    this.side.scrollTop += high < 0 ? high : Math.max(low, 0);
    const box = change.firstOutlines[0] ?? change.secondOutlines[0];
    if (box) this.viewport.reveal(box);
  }
}

/** @param {Change} change */
function changeFacts(change) {
  const facts = element("dl", { class: "facts" });
  const add = (/** @type {string} */ name, /** @type {Node | string} */ value) =>
    facts.append(element("dt", {}, name), element("dd", {}, value));
  if (change.distance) add("moved by", change.distance.join(", "));
  for (const field of change.fields ?? []) {
    add(field.name, valueOfKind(change.kind, field));
  }
  if (change.fieldsLeftOut) add("and", `${counted(change.fieldsLeftOut, "field")} more`);
  if (
    change.text &&
    !change.fields?.some((field) => typeof field.from === "string" || typeof field.to === "string")
  ) {
    add("says", element("bdi", {}, shortened(change.text, 300)));
  }
  return facts;
}

/** @param {Reason[]} reasons */
function whyList(reasons) {
  const rows = reasons.map((reason) => {
    const part = (/** @type {number | null} */ index) => (index === null ? "none" : String(index));
    return element(
      "li",
      {},
      `${reason.bits}: ${reason.by}, ${reason.list || "page"}, part ${part(reason.first)} against ${part(reason.second)}`,
    );
  });
  return element(
    "details",
    { class: "why" },
    element("summary", {}, "Why a run sets these bits"),
    element("ul", {}, ...rows),
  );
}
