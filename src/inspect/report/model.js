"use strict";

/**
 * What the report knows: the data that the program wrote into this page, and the choice of the reader,
 * which is kept in the address.
 *
 * @typedef {{length: number, digest: string}} Bytes
 * @typedef {string | number | Bytes | null} Value
 * @typedef {{name: string, from: Value, to: Value}} FieldChange
 * @typedef {[number, number, number, number]} Box left, top, right, bottom in page units
 * @typedef {{customer: number | null, first: number | null, second: number | null,
 *   field?: FieldChange, text?: string}} Example
 * @typedef {{id: string, kind: string, type: string, fields: string[], page: number | null, list: string,
 *   place?: [number, number], distance?: [number, number], pages: number, customers: number,
 *   pairs: number, allPairs: boolean, counts: boolean, ignoredBy?: string, examples: Example[],
 *   box?: Box, drawn: number[], ids: number[], search?: string}} Group
 * @typedef {{path: string, label: string, resolution: number, customers: number, pages: number,
 *   size?: number, time?: number}} CaptureFile
 * @typedef {{bits: number, names: string[], pagesCompared: number, pagesDiffering: number,
 *   pagesAdded: number, pagesRemoved: number, customersAdded: number, customersRemoved: number,
 *   groups: number, changes: number, ignored: Record<string, number>,
 *   smallestPositionTolerance: number | null, smallestLineTolerance: number,
 *   changesNotGrouped: number, complete: boolean}} Summary
 * @typedef {{page: number, customer: number, id: string, first: number | null, second: number | null,
 *   firstName?: string, secondName?: string, bits: number, names: string[], changes: number,
 *   view: string}} PageEntry
 * @typedef {{path: string, customer: number, id: string, page: number, what: string}} Damage
 * @typedef {{redacted: boolean, first: CaptureFile, second: CaptureFile, positionTolerance: number,
 *   lineTolerance: number, verdictEnd: string, customersCompared: number, customersDiffering: number,
 *   pagesWithChanges: number, damagedPages: number, summary: Summary, damages: Damage[],
 *   pages: PageEntry[], list: {groups: Group[], customers: string[]}}} ReportData
 * @typedef {{group: string, kind: string, type: string, list: string, first: number | null,
 *   second: number | null, counts: boolean, ignoredBy?: string, text?: string,
 *   distance?: [number, number], fields?: FieldChange[], fieldsLeftOut?: number,
 *   firstOutlines: Box[], secondOutlines: Box[]}} Change
 * @typedef {{bits: number, by: string, list: string, first: number | null, second: number | null}} Reason
 * @typedef {Omit<PageEntry, "changes" | "view"> & {firstDrawing: string, secondDrawing: string,
 *   stored: number[], why?: Reason[], changes: Change[], changesLeftOut: number}} PageData
 * @typedef {{kind: string, type: string, counts: string, text: string, customer: string}} Filter
 * @typedef {{filter: Filter, group: string, page: number | null, change: number, mode: number}} State
 */

/** @type {ReportData} */
const report = JSON.parse(document.getElementById("data")?.textContent ?? "");

const groups = report.list.groups;
const groupById = new Map(groups.map((group) => [group.id, group]));

/** The kinds of change, each with the sign that always goes with its colour. */
const kinds = /** @type {Record<string, {sign: string, word: string}>} */ ({
  changed: { sign: "~", word: "changed" },
  moved: { sign: "\u2192", word: "moved" },
  order: { sign: "\u21C5", word: "order" },
  added: { sign: "+", word: "added" },
  removed: { sign: "\u2212", word: "removed" },
});

const modes = ["Side by side", "Slider", "Blink", "Overlay", "Differences"];

/** @type {Filter} */
const noFilter = { kind: "", type: "", counts: "", text: "", customer: "" };

/** @type {State} */
let state = { filter: { ...noFilter }, group: "", page: null, change: 0, mode: 1 };

/** @returns {State} */
function stateFromAddress() {
  const words = new URLSearchParams(location.hash.slice(1));
  const filter = { ...noFilter };
  for (const name of /** @type {(keyof Filter)[]} */ (Object.keys(noFilter))) {
    filter[name] = words.get(name) ?? "";
  }
  const number = (/** @type {string} */ name, /** @type {number} */ usual) => {
    const value = Number.parseInt(words.get(name) ?? "", 10);
    return Number.isFinite(value) ? value : usual;
  };
  const page = number("page", 0) - 1;
  const isPage = page >= 0 && page < report.pages.length;
  const group = words.get("group") ?? "";
  return {
    filter,
    group: groupById.has(group) ? group : "",
    page: isPage ? page : null,
    change: Math.max(number("change", 1) - 1, 0),
    mode: Math.min(Math.max(number("mode", 1), 1), modes.length),
  };
}

/**
 * The address of a view, so that it can be sent to somebody.
 * @param {State} view
 */
function addressOf(view) {
  const words = new URLSearchParams();
  for (const [name, value] of Object.entries(view.filter)) {
    if (value !== "") words.set(name, value);
  }
  if (view.group !== "") words.set("group", view.group);
  if (view.page !== null) {
    words.set("page", String(view.page + 1));
    if (view.change > 0) words.set("change", String(view.change + 1));
  }
  if (view.mode !== 1) words.set("mode", String(view.mode));
  return `#${words}`;
}

/**
 * What a text that is looked for is compared with.
 * @param {Group} group
 */
function searchTextOf(group) {
  group.search ??= [
    group.id,
    group.kind,
    group.type,
    group.list,
    group.ignoredBy ?? "",
    ...group.fields,
    ...group.examples.flatMap(({ text, field }) => [
      text ?? "",
      plainValue(field?.from),
      plainValue(field?.to),
    ]),
  ]
    .join("\n")
    .toLowerCase();
  return group.search;
}

/**
 * @param {Filter} filter
 * @returns {Group[]}
 */
function filteredGroups(filter) {
  const text = filter.text.trim().toLowerCase();
  const customer = filter.customer.trim().toLowerCase();
  const ids = new Set();
  if (customer !== "") {
    report.list.customers.forEach((id, index) => {
      if (id.toLowerCase().includes(customer)) ids.add(index);
    });
  }
  return groups.filter(
    (group) =>
      (filter.kind === "" || group.kind === filter.kind) &&
      (filter.type === "" || group.type === filter.type) &&
      (filter.counts === "" || group.counts === (filter.counts === "yes")) &&
      (text === "" || searchTextOf(group).includes(text)) &&
      (customer === "" || group.ids.some((id) => ids.has(id))),
  );
}
