"use strict";

// The list of all pairs with its filter, and the long lists of the page.

/**
 * A list of any length: only the visible rows exist, and a few more for the keyboard. The
 * style gives all of them the same height.
 * @template Item
 */
class LongList {
  /** @param {string} name @param {string} label @param {(item: Item) => HTMLElement} makeRow */
  constructor(name, label, makeRow) {
    this.node = element("ol", { class: `long ${name}`, "aria-label": label });
    this.makeRow = makeRow;
    /** @type {Item[]} */
    this.items = [];
    this.height = 1;
    this.range = "";
    addEventListener("scroll", () => this.draw(), { passive: true });
    addEventListener("resize", () => this.show(this.items));
    this.isPaper = false;
    addEventListener("beforeprint", () => this.print(true));
    addEventListener("afterprint", () => this.print(false));
  }

  /** On paper nothing scrolls: there are as many rows as anybody reads. @param {boolean} isPaper */
  print(isPaper) {
    this.isPaper = isPaper;
    this.show(this.items);
  }

  /** @param {Item[]} items */
  show(items) {
    this.items = items;
    const example = items.length > 0 ? [this.makeRow(items[0])] : [];
    this.node.replaceChildren(...example);
    this.height = example[0]?.getBoundingClientRect().height || 1;
    this.node.style.height = `${items.length * this.height}px`;
    this.range = "";
    this.draw();
  }

  draw() {
    const { top } = this.node.getBoundingClientRect();
    const spare = 6;
    const last = Math.max(this.items.length - 2 * spare, 0);
    const before = this.isPaper ? 0 : Math.max(Math.floor(-top / this.height) - spare, 0);
    const begin = Math.min(before, last);
    const inSight = Math.ceil((innerHeight - top) / this.height) + spare;
    const wanted = this.isPaper ? rowsOnPaper : Math.max(inSight, begin + 2 * spare);
    const end = Math.min(wanted, this.items.length);
    if (this.range === `${begin}-${end}`) return;
    this.range = `${begin}-${end}`;
    const rows = this.items.slice(begin, end).map((item, at) => {
      const row = this.makeRow(item);
      row.style.top = `${(begin + at) * this.height}px`;
      row.setAttribute("aria-posinset", String(begin + at + 1));
      row.setAttribute("aria-setsize", String(this.items.length));
      return row;
    });
    const focused = document.activeElement?.getAttribute("href");
    this.node.replaceChildren(...rows);
    if (focused && document.activeElement === document.body) {
      const link = this.node.querySelector(`a[href="${CSS.escape(focused)}"]`);
      if (link instanceof HTMLElement) link.focus({ preventScroll: true });
    }
  }
}

/** @param {number} bytes */
function sizeInWords(bytes) {
  const units = ["bytes", "KiB", "MiB", "GiB", "TiB"];
  let value = bytes;
  let unit = 0;
  while (value >= 1024 && unit + 1 < units.length) {
    value /= 1024;
    unit += 1;
  }
  return `${unit === 0 ? value : value.toFixed(1)} ${units[unit]}`;
}

/** @param {Pair} pair */
function pairRow(pair) {
  const { names, bits, reason, seconds, firstBytes, secondBytes, inspected } = pair;
  let says = pair.state === "different" && bits ? `${(names ?? []).join(", ")} (${bits})` : reason;
  if (inspected?.trouble) says += `; not explained: ${inspected.trouble}`;
  const bytes =
    firstBytes === null && secondBytes === null ? null : Number(firstBytes) + Number(secondBytes);
  return element(
    "li",
    {},
    stateBadge(pair),
    element("span", { class: "cut" }, pairName(pair.name)),
    element(
      "span",
      { class: "cut quiet", title: shortened(says, 500) },
      element("bdi", {}, shortened(says, 300)),
    ),
    element("span", { class: "count" }, seconds === null ? "" : `${seconds.toFixed(3)} s`),
    element("span", { class: "count" }, bytes === null ? "" : sizeInWords(bytes)),
  );
}

/** The list of all pairs with its filter; `show` updates it from the address. */
class PairList {
  constructor() {
    this.found = element("output", { class: "found", "aria-live": "polite" });
    this.form = this.makeFilter();
    /** @type {LongList<Pair>} */
    this.list = new LongList("pairs", "Pairs", pairRow);
    this.node = section("", "Pairs", this.form, this.list.node);
    addEventListener("hashchange", () => this.show());
  }

  makeFilter() {
    /** @type {[string, string][]} */
    const states = [...new Set(night.pairs.map((pair) => pair.state))].map((word) => [word, word]);
    /** @type {[string, string][]} */
    const collective = [
      ["one-sided", "on one side only"],
      ["no-answer", "without an answer"],
      ["accepted", "accepted"],
      ["not-explained", "not explained"],
    ];
    /** @type {[string, string][]} */
    const bits = night.summary.byBit.map(({ bit, name }) => [String(bit), name]);
    const form = element(
      "form",
      { class: "filter", role: "search", "aria-label": "Filter of the pairs" },
      choiceField("State", "state", [["", "all"], ...states, ...collective]),
      choiceField("Bit", "bit", [["", "all"], ...bits]),
      searchField("Text", "text", "name or reason"),
      element("button", { type: "reset" }, "Clear"),
      this.found,
    );
    form.addEventListener("submit", (event) => event.preventDefault());
    form.addEventListener("input", () => this.take());
    form.addEventListener("reset", () => setTimeout(() => this.take()));
    return form;
  }

  /** Puts the entered filter into the address and shows its result. */
  take() {
    const fields = new FormData(this.form);
    const value = (/** @type {string} */ name) => String(fields.get(name) ?? "");
    const filter = { state: value("state"), bit: value("bit"), text: value("text") };
    history.replaceState(null, "", addressOfPairs(filter));
    this.show();
  }

  show() {
    const filter = pairFilter();
    for (const [name, value] of Object.entries(filter)) {
      const control = /** @type {HTMLInputElement} */ (this.form.elements.namedItem(name));
      if (control.value !== value) control.value = value;
    }
    const pairs = filteredPairs(filter);
    this.found.textContent = `${grouped.format(pairs.length)} of ${counted(night.pairs.length, "pair")}`;
    this.list.show(pairs);
  }
}
