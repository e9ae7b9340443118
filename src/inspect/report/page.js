"use strict";

// The view of one pair of pages: both drawings, the outlines of the changes, and their list.

const sides = /** @type {const} */ (["first", "second"]);

class PageView {
  constructor() {
    this.toolbar = new Toolbar({
      toggle: (layer) => this.toggle(layer),
      zoom: (factor) => this.zoom(factor),
      fit: () => this.viewport.fit(),
    });
    this.stage = element("div", { class: "stage", role: "group", "aria-label": "The two pages" });
    this.side = element("aside", { class: "side" });
    this.node = element("main", { class: "page-view" }, this.toolbar.node, this.stage, this.side);
    this.viewport = new Viewport(this.stage, (share) => this.toolbar.tellZoom(share));
    this.slider = new Slider();
    this.blinker = new Blinker();
    /** @type {ChangeActs} */
    this.acts = {
      choose: (index) => go({ ...state, change: index }, "replace"),
      hover: (index, isOn) => this.mark(index, "hovered", isOn),
    };
    this.isOn = { outlines: true, ignored: true, marks: false };
    /** @type {PageData | null} */
    this.data = null;
    /** @type {(SVGSVGElement | null)[]} */
    this.drawings = [null, null];
    this.changes = element("ol");
    this.arrangedMode = 0;
    this.applyLayers();
  }

  /** Shows the page in the state, and loads what it needs. */
  async show() {
    const wanted = state.page;
    this.toolbar.pressMode(state.mode);
    if (wanted === null) {
      this.clear();
      this.showUndrawn();
      return;
    }
    const isNew = this.data?.page !== wanted;
    this.stage.toggleAttribute("aria-busy", false);
    if (isNew) {
      this.stage.setAttribute("aria-busy", "true");
      try {
        const { data, stored } = await loadPage(wanted);
        if (state.page !== wanted) return; // another page was chosen meanwhile
        this.take(data, stored);
      } catch (error) {
        if (state.page !== wanted) return;
        this.clear();
        const message = error instanceof Error ? error.message : String(error);
        this.stage.replaceChildren(element("p", { class: "note", role: "alert" }, message));
        return;
      } finally {
        if (state.page === wanted) this.stage.removeAttribute("aria-busy");
      }
    }
    if (isNew || this.arrangedMode !== state.mode) this.arrange();
    this.select();
  }

  /** @param {PageData} data @param {Map<string, string>} stored */
  take(data, stored) {
    this.data = data;
    this.drawings = [data.firstDrawing, data.secondDrawing].map((text) =>
      makeDrawing(text, stored),
    );
    this.toolbar.tellPage(data);
    this.changes = changeList(data, this.acts);
    this.viewport.isFitted = true;
  }

  clear() {
    this.blinker.stop();
    this.data = null;
    this.drawings = [null, null];
    this.viewport.sheets = [];
    this.stage.className = "stage";
    this.stage.replaceChildren();
    this.side.replaceChildren();
  }

  /** A group without a drawn page. */
  showUndrawn() {
    const group = groupById.get(state.group);
    if (!group) return;
    const { word } = kinds[group.kind];
    this.toolbar.tell(groupPlace(group), new Text(`${group.type} ${word}`));
    this.stage.replaceChildren(undrawnGroup(group));
    this.side.replaceChildren(groupFacts(group));
  }

  /** Puts the drawings on the stage according to the mode. */
  arrange() {
    const { data } = this;
    if (!data) return;
    this.blinker.stop();
    this.arrangedMode = state.mode;
    const view = commonView(this.drawings);
    const sheets = sides.map(makeSheet);
    const outlines = (/** @type {Side[]} */ shown) =>
      outlineLayer(data.changes, view, shown, {
        ...this.acts,
        // A drag that ends on an outline is no click.
        choose: (index) => this.viewport.hasDragged || this.acts.choose(index),
      });
    const panes =
      state.mode === 1
        ? [
            makePane([sheets[0]], outlines(["first"]), "First"),
            makePane([sheets[1]], outlines(["second"]), "Second"),
          ]
        : [makePane(sheets, outlines([...sides]), "")];
    if (state.mode === 2) this.slider.attach(panes[0]);
    if (state.mode === 3) this.blinker.start(panes[0]);
    if (legends[state.mode]) panes[0].append(makeLegend(legends[state.mode]));
    this.stage.className = `stage mode-${state.mode}`;
    this.stage.replaceChildren(...panes);
    this.viewport.take(view);
    // Not before the sheets have their size: a browser places all texts again if it changes.
    this.drawings.forEach((drawing, at) => fillSheet(sheets[at], drawing, view, sides[at]));
    this.applyLayers();
  }

  /** Zooms towards the chosen change, if there is one. @param {number} factor */
  zoom(factor) {
    const box = this.chosenBox();
    this.viewport.zoom(factor, box && this.viewport.placeOf(box));
    if (box) this.viewport.reveal(box);
  }

  /** @param {LayerName} layer */
  toggle(layer) {
    this.isOn[layer] = !this.isOn[layer];
    this.applyLayers();
  }

  applyLayers() {
    for (const [layer, isOn] of Object.entries(this.isOn)) {
      this.node.classList.toggle(`no-${layer}`, !isOn);
    }
    this.toolbar.pressLayers(this.isOn);
    for (const drawing of this.drawings) {
      const marks = drawing?.querySelector("#marks");
      if (this.isOn.marks) marks?.removeAttribute("display");
      else marks?.setAttribute("display", "none");
    }
  }

  /** @param {number} index @param {string} name @param {boolean} isOn */
  mark(index, name, isOn) {
    for (const node of this.node.querySelectorAll(`[data-change="${index}"]`))
      node.classList.toggle(name, isOn);
  }

  /** The index of the chosen change: without a choice, the first one of the group. */
  chosen() {
    if (state.change !== null || !this.data) return state.change ?? 0;
    return Math.max(
      this.data.changes.findIndex((change) => change.group === state.group),
      0,
    );
  }

  chosenBox() {
    const change = this.data?.changes[this.chosen()];
    return change?.firstOutlines[0] ?? change?.secondOutlines[0];
  }

  /** The group that is described: the one that was opened, or that of the chosen change. */
  group() {
    return groupById.get(state.group || (this.data?.changes[this.chosen()]?.group ?? ""));
  }

  /** Shows which change is chosen, on the pages and in the list. */
  select() {
    if (!this.data) return;
    this.fillSide(this.data);
    for (const node of this.node.querySelectorAll(".chosen")) node.classList.remove("chosen");
    this.changes.querySelector("[aria-current]")?.removeAttribute("aria-current");
    const index = this.chosen();
    if (!this.data.changes[index]) return;
    this.mark(index, "chosen", true);
    const row = this.changes.children[index];
    row.setAttribute("aria-current", "true");
    // Only the list scrolls, never the page around it.
    const low = row.getBoundingClientRect().bottom - this.side.getBoundingClientRect().bottom;
    const high = row.getBoundingClientRect().top - this.side.getBoundingClientRect().top;
    this.side.scrollTop += high < 0 ? high : Math.max(low, 0);
    const box = this.chosenBox();
    if (box) this.viewport.reveal(box);
  }

  /** @param {PageData} data */
  fillSide(data) {
    const count = counted(data.changes.length + data.changesLeftOut, "change");
    const parts = /** @type {Node[]} */ ([element("h2", {}, count), this.changes]);
    const group = this.group();
    if (group) parts.push(groupFacts(group));
    if (data.why?.length) parts.push(whyList(data.why));
    this.side.replaceChildren(...parts);
  }
}
