"use strict";

// The first view: the overview, the filter and the list of groups. Only the visible rows exist, so that
// a list of any length scrolls like a short one.

class GroupList {
  constructor() {
    this.rows = element("ol", { class: "groups", "aria-label": "Groups of changes" });
    this.filter = new FilterForm((filter) => this.take(filter));
    this.node = element("main", { class: "first-view" }, overview(), this.filter.node, this.rows);
    /** @type {Group[]} */
    this.groups = [];
    /** @type {Map<number, HTMLElement>} */
    this.rowOf = new Map();
    addEventListener("scroll", () => this.draw(), { passive: true });
    addEventListener("resize", () => this.show());
    this.isPaper = false;
    addEventListener("beforeprint", () => this.print(true));
    addEventListener("afterprint", () => this.print(false));
  }

  /** On paper nothing scrolls: there are as many rows as anybody reads. @param {boolean} isPaper */
  print(isPaper) {
    this.isPaper = isPaper;
    if (this.node.isConnected) this.show();
  }

  /** Puts the entered filter into the address and shows its result. @param {Filter} filter */
  take(filter) {
    state.filter = filter;
    history.replaceState(null, "", addressOf(state));
    this.show();
  }

  show() {
    this.groups = filteredGroups(state.filter);
    this.filter.show(state.filter, this.groups.length);
    this.rows.style.height = `${this.groups.length * rowHeight()}px`;
    const focused = this.focusedGroup();
    for (const row of this.rowOf.values()) row.remove();
    this.rowOf.clear();
    this.draw();
    if (focused) this.focus(focused);
  }

  /** Makes the rows that become visible, and drops the others. */
  draw() {
    if (!this.node.isConnected) return;
    const height = rowHeight();
    const top = this.rows.getBoundingClientRect().top;
    const spare = 6;
    const begin = this.isPaper ? 0 : Math.max(Math.floor(-top / height) - spare, 0);
    const inSight = Math.ceil((innerHeight - top) / height) + spare;
    const end = Math.min(this.isPaper ? rowsOnPaper : inSight, this.groups.length);
    for (const [index, row] of this.rowOf) {
      if (index >= begin && index < end) continue;
      row.remove();
      this.rowOf.delete(index);
    }
    // From the top, so that the first pictures to be drawn are those that are read first.
    for (let i = begin; i < end; ++i) {
      if (this.rowOf.has(i)) continue;
      const row = groupRow(this.groups[i], i, this.groups.length);
      this.rows.insertBefore(row, this.rows.children[i - begin] ?? null);
      this.rowOf.set(i, row);
    }
  }

  focusedGroup() {
    return document.activeElement?.getAttribute("data-group") ?? "";
  }

  /** @param {string} id */
  focus(id) {
    const link = this.rows.querySelector(`[data-group="${CSS.escape(id)}"]`);
    if (link instanceof HTMLElement) link.focus({ preventScroll: true });
  }

  /** Goes to the group after or before the one with the focus. @param {number} step */
  move(step) {
    const focused = this.focusedGroup();
    const at = this.groups.findIndex((group) => group.id === focused);
    this.reveal(at < 0 ? 0 : Math.min(Math.max(at + step, 0), this.groups.length - 1));
  }

  /** @param {number} index */
  reveal(index) {
    const group = this.groups[index];
    if (!group) return;
    const top = this.rows.getBoundingClientRect().top + index * rowHeight();
    if (top < 80 || top > innerHeight - 2 * rowHeight())
      scrollTo(0, scrollY + top - innerHeight / 2);
    this.draw();
    this.focus(group.id);
  }
}
