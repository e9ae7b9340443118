"use strict";

/**
 * What the reader has chosen to see. It is kept in the address, so that a view can be shared.
 *
 * @typedef {{kind: string, type: string, counts: string, text: string, customer: string}} Filter
 * @typedef {{filter: Filter, group: string, page: number | null, change: number | null,
 *   mode: number}} State the default change is the first one of the group
 */

/** @type {Filter} */
const noFilter = { kind: "", type: "", counts: "", text: "", customer: "" };

/** @type {State} */
let state = { filter: { ...noFilter }, group: "", page: null, change: null, mode: 1 };

/** @returns {State} */
function stateFromAddress() {
  const words = new URLSearchParams(location.hash.slice(1));
  const filter = { ...noFilter };
  for (const name of /** @type {(keyof Filter)[]} */ (Object.keys(noFilter))) {
    filter[name] = words.get(name) ?? "";
  }
  /** @param {string} name @param {number} most */
  const number = (name, most) => {
    const value = Number.parseInt(words.get(name) ?? "", 10);
    return value >= 1 && value <= most ? value : null;
  };
  const indexOf = (/** @type {number | null} */ position) =>
    position === null ? null : position - 1;
  const group = words.get("group") ?? "";
  return {
    filter,
    group: groupById.has(group) ? group : "",
    page: indexOf(number("page", report.pages.length)),
    change: indexOf(number("change", Number.MAX_SAFE_INTEGER)),
    mode: number("mode", modes.length) ?? 1,
  };
}

/** @param {State} view */
function addressOf(view) {
  const words = new URLSearchParams();
  for (const [name, value] of Object.entries(view.filter)) {
    if (value !== "") words.set(name, value);
  }
  if (view.group !== "") words.set("group", view.group);
  if (view.page !== null) {
    words.set("page", String(view.page + 1));
    if (view.change !== null) words.set("change", String(view.change + 1));
  }
  if (view.mode !== 1) words.set("mode", String(view.mode));
  return `#${words}`;
}

/**
 * The view of a group: its first drawn page, at its first change there.
 * @param {Group} group
 * @returns {State}
 */
function stateOfGroup(group) {
  return { ...state, group: group.id, page: group.drawn[0] ?? null, change: null };
}

/** @param {State} view */
function isPageView(view) {
  return view.page !== null || view.group !== "";
}
