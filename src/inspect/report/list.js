"use strict";

// The first view: the overview, the filter and the list of groups. Only the rows in sight exist, so that
// a list of any length scrolls as a short one does.

/** @param {CaptureFile} file */
function fileInWords(file) {
  const facts = [];
  if (file.size !== undefined) facts.push(`${grouped.format(file.size)} bytes`);
  if (file.time !== undefined) facts.push(new Date(file.time * 1000).toLocaleString("en-GB"));
  facts.push(counted(file.customers, "customer"), counted(file.pages, "page"));
  return element(
    "div",
    { class: "file" },
    element("strong", {}, element("bdi", {}, shortened(file.path, 300))),
    file.label ? element("div", {}, element("bdi", {}, shortened(file.label, 200))) : "",
    element("div", { class: "quiet" }, facts.join(" \u00B7 ")),
  );
}

function verdictInWords() {
  const { bits, names, changes } = report.summary;
  if (bits === 0) {
    return changes > 0 ? "Identical for a run, but there are changes" : "Identical for a run";
  }
  return `Different: ${names.join(", ")} (${bits})`;
}

/** What keeps the report from being complete, in sentences. */
function reservations() {
  const { summary } = report;
  const notes = [];
  if (report.damagedPages > 0) {
    notes.push(`${counted(report.damagedPages, "page")} could not be read to the end; see below.`);
  }
  if (report.verdictEnd !== "") notes.push(`A run compares no further: ${report.verdictEnd}.`);
  if (summary.changesNotGrouped > 0) {
    notes.push(
      `${counted(summary.changesNotGrouped, "change")} did not fit into the groups and are only counted here.`,
    );
  }
  if (report.redacted)
    notes.push(
      "Texts are redacted: every letter is an x, every digit a 9, and images are empty frames.",
    );
  return notes;
}

/** @param {string} name @param {number | string} value */
function figure(name, value) {
  const text = typeof value === "number" ? grouped.format(value) : value;
  return element("div", { class: "figure" }, element("dt", {}, name), element("dd", {}, text));
}

function toleranceFigures() {
  const { smallestPositionTolerance: position, smallestLineTolerance: line } = report.summary;
  const needed = (/** @type {number | null} */ value) =>
    value === null ? "none would do" : `${value} would do`;
  return [
    figure("Position tolerance", `${report.positionTolerance} (${needed(position)})`),
    figure("Line tolerance", `${report.lineTolerance} (${needed(line)})`),
  ];
}

/** The bars of the largest groups; each leads to its group. */
function chart() {
  const shownGroups = groups.slice(0, 12);
  const most = Math.max(...shownGroups.map((group) => group.pages), 1);
  const bars = shownGroups.map((group) => {
    const bar = element("span", { class: `bar ${group.counts ? group.kind : "ignored"}` });
    bar.style.width = `${Math.max((100 * group.pages) / most, 0.5)}%`;
    const link = element(
      "a",
      { href: addressOf(stateOfGroup(group)) },
      element(
        "span",
        { class: "name" },
        `${kinds[group.kind].sign} ${group.type} ${groupPlace(group)}`,
      ),
      element("span", { class: "track" }, bar),
      element("span", { class: "count" }, grouped.format(group.pages)),
    );
    return element("li", {}, link);
  });
  return element(
    "section",
    { class: "chart" },
    element(
      "h2",
      {},
      shownGroups.length < groups.length ? "Pages of the largest groups" : "Pages of each group",
    ),
    element("ol", {}, ...bars),
  );
}

function overview() {
  const { summary } = report;
  const ignored = Object.entries(summary.ignored);
  const notes = reservations();
  const made = element(
    "header",
    { class: "overview" },
    element("h1", {}, "What changed"),
    element(
      "div",
      { class: "files" },
      fileInWords(report.first),
      element("span", { class: "arrow" }, "\u2192"),
      fileInWords(report.second),
    ),
    element(
      "p",
      { class: `verdict ${summary.bits === 0 ? "same" : "different"}` },
      verdictInWords(),
    ),
    ...notes.map((note) => element("p", { class: "note", role: "note" }, note)),
    element(
      "dl",
      { class: "figures" },
      figure("Pages compared", summary.pagesCompared),
      figure("Pages differing", summary.pagesDiffering),
      figure("Pages added", summary.pagesAdded),
      figure("Pages removed", summary.pagesRemoved),
      figure("Customers compared", report.customersCompared),
      figure("Customers differing", report.customersDiffering),
      figure("Customers added", summary.customersAdded),
      figure("Customers removed", summary.customersRemoved),
      figure("Changes", summary.changes),
      ...toleranceFigures(),
      figure(
        "Pages drawn here",
        `${grouped.format(report.pages.length)} of ${grouped.format(report.pagesWithChanges)}`,
      ),
    ),
  );
  if (ignored.length > 0) {
    const words = ignored.map(([rule, count]) => `${rule} ${grouped.format(count)}`).join(", ");
    made.append(element("p", { class: "quiet" }, `Differences that the rules ignore: ${words}`));
  }
  if (report.damages.length > 0) made.append(damageList());
  if (groups.length > 0) made.append(chart());
  return made;
}

function damageList() {
  const rows = report.damages.map((damage) =>
    element(
      "li",
      {},
      element("bdi", {}, shown(damage.path)),
      `: customer ${damage.customer + 1} `,
      element("bdi", {}, shortened(damage.id, 100)),
      `, page ${damage.page + 1}: ${damage.what}`,
    ),
  );
  const more = report.damagedPages - report.damages.length;
  if (more > 0) rows.push(element("li", {}, `and ${counted(more, "page")} more`));
  return element(
    "details",
    {},
    element("summary", {}, "Pages that could not be read"),
    element("ul", {}, ...rows),
  );
}

/** @param {Group} group */
function groupPlace(group) {
  const words = [];
  if (group.page !== null) words.push(`page ${group.page + 1}`);
  if (listInWords(group.list)) words.push(listInWords(group.list));
  if (group.distance) words.push(`by ${group.distance.join(", ")}`);
  return words.join(", ");
}

/**
 * The view of a group: its first drawn page, at its first change there.
 * @param {Group} group
 * @returns {State}
 */
function stateOfGroup(group) {
  return { ...state, group: group.id, page: group.drawn[0] ?? null, change: 0 };
}

/**
 * A page in small with the place of the group on it.
 * @param {Group} group
 */
function placePicture(group) {
  const space = "http://www.w3.org/2000/svg";
  const svg = document.createElementNS(space, "svg");
  svg.setAttribute("class", "place");
  svg.setAttribute("aria-hidden", "true");
  const box =
    group.box ?? (group.place && [...group.place, group.place[0] + 200, group.place[1] + 60]);
  const page = report.pages[group.drawn[0] ?? 0];
  if (!page || !box) return svg;
  const [left, top, width, height] = page.view.split(" ").map(Number);
  svg.setAttribute("viewBox", `${left} ${top} ${width} ${height}`);
  /** @param {number[]} corners @param {string} name */
  const add = (corners, name) => {
    const least = Math.max(width, height) / 25;
    const rect = document.createElementNS(space, "rect");
    rect.setAttribute("x", String(Math.min(corners[0], corners[2])));
    rect.setAttribute("y", String(Math.min(corners[1], corners[3])));
    rect.setAttribute("width", String(Math.max(Math.abs(corners[2] - corners[0]), least)));
    rect.setAttribute("height", String(Math.max(Math.abs(corners[3] - corners[1]), least)));
    rect.setAttribute("class", name);
    svg.append(rect);
  };
  add([left, top, left + width, top + height], "paper");
  add(box, `mark ${group.counts ? group.kind : "ignored"}`);
  return svg;
}

/**
 * What a group is about, in one line: the first example's values.
 * @param {Group} group
 */
function groupSummary(group) {
  const example = group.examples[0];
  if (example?.field) {
    const name = element("span", { class: "field" }, `${example.field.name} `);
    return element("span", { class: "says" }, name, valueOfKind(group.kind, example.field, 160));
  }
  return element(
    "span",
    { class: "says" },
    element("bdi", {}, shortened(example?.text ?? "", 160)),
  );
}

/** @param {Group} group @param {number} index @param {number} count */
function groupRow(group, index, count) {
  const more = group.allPairs ? "" : "more than ";
  const numbers = [
    counted(group.pages, "page"),
    counted(group.customers, "customer"),
    more + counted(group.pairs, "pair"),
  ];
  const link = element(
    "a",
    { href: addressOf(stateOfGroup(group)), "data-group": group.id },
    placePicture(group),
    element(
      "span",
      { class: "what" },
      badge(group),
      ` ${group.type} `,
      element(
        "span",
        { class: "quiet" },
        [groupPlace(group), group.ignoredBy ?? ""].filter(Boolean).join(" \u00B7 "),
      ),
    ),
    groupSummary(group),
    element("span", { class: "numbers" }, ...numbers.map((text) => element("span", {}, text))),
  );
  const row = element("li", { "aria-posinset": index + 1, "aria-setsize": count }, link);
  row.style.top = `${index * rowHeight()}px`;
  return row;
}

function rowHeight() {
  return window.matchMedia("(max-width: 700px)").matches ? 116 : 64;
}

/** The list with its filter; `show` brings it up to date. */
class GroupList {
  constructor() {
    this.rows = element("ol", { class: "groups", "aria-label": "Groups of changes" });
    this.found = element("output", { class: "found", "aria-live": "polite" });
    this.form = this.makeFilter();
    this.node = element("main", { class: "first-view" }, overview(), this.form, this.rows);
    /** @type {Group[]} */
    this.groups = [];
    this.shownRange = "";
    addEventListener("scroll", () => this.draw(), { passive: true });
    addEventListener("resize", () => this.show());
  }

  makeFilter() {
    /** @param {string} name @param {[string, string][]} choices @param {string} label */
    const select = (name, choices, label) =>
      element(
        "label",
        {},
        `${label} `,
        element(
          "select",
          { name },
          ...choices.map(([value, word]) => element("option", { value }, word)),
        ),
      );
    /** @param {string} name @param {string} label @param {string} placeholder */
    const input = (name, label, placeholder) =>
      element(
        "label",
        { class: "wide" },
        `${label} `,
        element("input", {
          name,
          type: "search",
          placeholder,
          autocomplete: "off",
          spellcheck: "false",
        }),
      );
    const types = [...new Set(groups.map((group) => group.type))].sort();
    const form = element(
      "form",
      { class: "filter", role: "search", "aria-label": "Filter of the groups" },
      select(
        "kind",
        [
          ["", "all"],
          .../** @type {[string, string][]} */ (
            Object.entries(kinds).map(([kind, { word }]) => [kind, word])
          ),
        ],
        "Kind",
      ),
      select(
        "type",
        [["", "all"], .../** @type {[string, string][]} */ (types.map((type) => [type, type]))],
        "Type",
      ),
      select(
        "counts",
        [
          ["", "all"],
          ["yes", "counted"],
          ["no", "ignored"],
        ],
        "Differences",
      ),
      input("text", "Text", "old, new or field"),
      input("customer", "Customer", "id or part of it"),
      element("button", { type: "reset" }, "Clear"),
      this.found,
    );
    form.addEventListener("submit", (event) => event.preventDefault());
    form.addEventListener("input", () => this.take());
    form.addEventListener("reset", () => setTimeout(() => this.take()));
    return form;
  }

  /** Puts what was entered into the address, and shows it. */
  take() {
    const fields = new FormData(this.form);
    for (const name of /** @type {(keyof Filter)[]} */ (Object.keys(noFilter))) {
      state.filter[name] = String(fields.get(name) ?? "");
    }
    history.replaceState(null, "", addressOf(state));
    this.show();
  }

  show() {
    for (const [name, value] of Object.entries(state.filter)) {
      const control = /** @type {HTMLInputElement} */ (this.form.elements.namedItem(name));
      if (control.value !== value) control.value = value;
    }
    this.groups = filteredGroups(state.filter);
    this.found.textContent = `${grouped.format(this.groups.length)} of ${counted(groups.length, "group")}`;
    this.rows.style.height = `${this.groups.length * rowHeight()}px`;
    this.shownRange = "";
    this.draw();
  }

  draw() {
    if (!this.node.isConnected) return;
    const height = rowHeight();
    const top = this.rows.getBoundingClientRect().top;
    const spare = 6;
    const begin = Math.max(Math.floor(-top / height) - spare, 0);
    const end = Math.min(Math.ceil((innerHeight - top) / height) + spare, this.groups.length);
    if (this.shownRange === `${begin}-${end}`) return;
    this.shownRange = `${begin}-${end}`;
    const focused = document.activeElement?.getAttribute("data-group");
    const rows = [];
    for (let i = begin; i < end; ++i) rows.push(groupRow(this.groups[i], i, this.groups.length));
    this.rows.replaceChildren(...rows);
    if (focused) this.focus(focused);
  }

  /** @param {string} id */
  focus(id) {
    const link = this.rows.querySelector(`[data-group="${CSS.escape(id)}"]`);
    if (link instanceof HTMLElement) link.focus({ preventScroll: true });
  }

  /** Goes to the group behind the one with the focus, or in front of it. @param {number} step */
  move(step) {
    const focused = document.activeElement?.getAttribute("data-group");
    const at = this.groups.findIndex((group) => group.id === focused);
    const next = at < 0 ? 0 : Math.min(Math.max(at + step, 0), this.groups.length - 1);
    this.reveal(next);
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
