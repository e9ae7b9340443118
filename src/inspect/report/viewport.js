"use strict";

// Zoom and pan of everything that shows a page: all sheets have the same place and scale at any time.

/** @typedef {{x: number, y: number, scale: number}} Transform pixels, and pixels a page unit */

// How far a pointer may go between press and release of a click, in pixels.
const clickSlack = 4;

// The width of a pane in pixels where two are side by side on a sheet of paper.
const usualPaneOnPaper = 340;

class Viewport {
  /**
   * @param {HTMLElement} stage what takes wheel and pointer
   * @param {(share: number) => void} changed told the scale, as a share of that of the whole page
   */
  constructor(stage, changed) {
    this.stage = stage;
    this.changed = changed;
    /** @type {HTMLElement[]} */
    this.sheets = [];
    this.view = [0, 0, 1, 1];
    /** @type {Transform} */
    this.at = { x: 0, y: 0, scale: 1 };
    this.isFitted = true;
    this.moved = 0;
    /** @type {Map<number, {x: number, y: number}>} */
    this.pointers = new Map();
    stage.addEventListener("wheel", (event) => this.wheel(event), { passive: false });
    stage.addEventListener("pointerdown", (event) => this.press(event));
    stage.addEventListener("pointermove", (event) => this.drag(event));
    for (const name of /** @type {const} */ ([
      "pointerup",
      "pointercancel",
      "lostpointercapture",
    ])) {
      stage.addEventListener(name, (event) => this.release(event));
    }
    new ResizeObserver(() => this.isFitted && this.fit()).observe(stage);
  }

  /** Whether the last press was a drag, and so no click. */
  get hasDragged() {
    return this.moved > clickSlack;
  }

  /** Takes what is on the stage now. @param {number[]} view the space that the sheets show, in page units */
  take(view) {
    this.view = view;
    this.sheets = [...this.stage.querySelectorAll(".sheet")].filter(
      (sheet) => sheet instanceof HTMLElement,
    );
    // On paper each sheet is as wide as its pane, whatever the screen showed.
    this.stage.style.setProperty("--shape", String(view[2] / view[3]));
    this.stage.style.setProperty("--paper-unit", String(view[2] / usualPaneOnPaper));
    if (this.isFitted) this.fit();
    else this.set(this.at);
  }

  /** The size of the part of the stage that shows one sheet. */
  paneSize() {
    const pane = this.stage.querySelector(".pane");
    return { width: pane?.clientWidth || 1, height: pane?.clientHeight || 1 };
  }

  /** The scale at which the whole page is in sight. */
  fittingScale() {
    const { width, height } = this.paneSize();
    return Math.min((width - 24) / this.view[2], (height - 24) / this.view[3]);
  }

  fit() {
    const { width, height } = this.paneSize();
    const scale = this.fittingScale();
    this.isFitted = true;
    this.set({
      x: (width - this.view[2] * scale) / 2,
      y: (height - this.view[3] * scale) / 2,
      scale,
    });
  }

  /** @param {Transform} at */
  set(at) {
    const { width, height } = this.paneSize();
    const least = this.fittingScale() / 2;
    const scale = Math.min(Math.max(at.scale, least), least * 128);
    const margin = 60;
    const clamp = (
      /** @type {number} */ value,
      /** @type {number} */ size,
      /** @type {number} */ space,
    ) => Math.min(Math.max(value, margin - size * scale), space - margin);
    this.at = { x: clamp(at.x, this.view[2], width), y: clamp(at.y, this.view[3], height), scale };
    for (const sheet of this.sheets) {
      // Whole pixels, or the edges of two sheets above each other would differ by a shade.
      sheet.style.width = `${Math.max(Math.round(this.view[2] * scale), 1)}px`;
      sheet.style.height = `${Math.max(Math.round(this.view[3] * scale), 1)}px`;
      sheet.style.transform = `translate(${Math.round(this.at.x)}px, ${Math.round(this.at.y)}px)`;
    }
    this.stage.style.setProperty("--unit", String(1 / scale));
    this.changed(scale / this.fittingScale());
  }

  /** @param {number} factor @param {{x: number, y: number}} [point] a place of the pane, its middle without one */
  zoom(factor, point) {
    const { width, height } = this.paneSize();
    const { x, y } = point ?? { x: width / 2, y: height / 2 };
    const least = this.fittingScale() / 2;
    const scale = Math.min(Math.max(this.at.scale * factor, least), least * 128);
    const real = scale / this.at.scale;
    this.isFitted = false;
    this.set({ x: x - (x - this.at.x) * real, y: y - (y - this.at.y) * real, scale });
  }

  /** @param {number} dx @param {number} dy */
  pan(dx, dy) {
    this.isFitted = false;
    this.set({ ...this.at, x: this.at.x + dx, y: this.at.y + dy });
  }

  /** Where the middle of a box is in its pane. @param {Box} box */
  placeOf(box) {
    return {
      x: this.at.x + ((box[0] + box[2]) / 2 - this.view[0]) * this.at.scale,
      y: this.at.y + ((box[1] + box[3]) / 2 - this.view[1]) * this.at.scale,
    };
  }

  /** Brings a box to the middle if it is not in sight. @param {Box} box */
  reveal(box) {
    if (this.isFitted) return;
    const { width, height } = this.paneSize();
    const { x, y } = this.placeOf(box);
    if (x < 0 || y < 0 || x > width || y > height) {
      this.set({ ...this.at, x: this.at.x + width / 2 - x, y: this.at.y + height / 2 - y });
    }
  }

  /** @param {{clientX: number, clientY: number, target: EventTarget | null}} event */
  pointIn(event) {
    const pane = event.target instanceof Element ? event.target.closest(".pane") : null;
    const box = (pane ?? this.stage).getBoundingClientRect();
    return { x: event.clientX - box.left, y: event.clientY - box.top };
  }

  /** @param {WheelEvent} event */
  wheel(event) {
    event.preventDefault();
    const lines = event.deltaMode === WheelEvent.DOM_DELTA_LINE ? 16 : 1;
    if (event.ctrlKey || !event.shiftKey)
      this.zoom(Math.exp((-event.deltaY * lines) / 400), this.pointIn(event));
    else this.pan(-(event.deltaX || event.deltaY) * lines, 0);
  }

  /** @param {PointerEvent} event */
  press(event) {
    if (event.target instanceof Element && event.target.closest("button, input, a, .divider"))
      return;
    if (event.button === 0 || event.pointerType !== "mouse") {
      this.pointers.set(event.pointerId, { x: event.clientX, y: event.clientY });
      this.moved = 0;
    }
  }

  /** @param {PointerEvent} event */
  drag(event) {
    const before = this.pointers.get(event.pointerId);
    if (!before) return;
    const dx = event.clientX - before.x;
    const dy = event.clientY - before.y;
    this.moved += Math.abs(dx) + Math.abs(dy);
    if (this.hasDragged && !this.stage.hasPointerCapture(event.pointerId))
      this.stage.setPointerCapture(event.pointerId);
    const others = [...this.pointers]
      .filter(([id]) => id !== event.pointerId)
      .map(([, point]) => point);
    this.pointers.set(event.pointerId, { x: event.clientX, y: event.clientY });
    if (others.length > 0) {
      const distance = (/** @type {{x: number, y: number}} */ point) =>
        Math.hypot(point.x - others[0].x, point.y - others[0].y);
      const factor =
        distance({ x: event.clientX, y: event.clientY }) / Math.max(distance(before), 1);
      this.zoom(
        factor,
        this.pointIn({ clientX: others[0].x, clientY: others[0].y, target: event.target }),
      );
    } else if (this.hasDragged) {
      this.pan(dx, dy);
    }
  }

  /** @param {PointerEvent} event */
  release(event) {
    // A finger belongs to what it touched first, which loses it when the stage takes it over.
    if (event.type === "lostpointercapture" && event.target !== this.stage) return;
    this.pointers.delete(event.pointerId);
  }
}
