"use strict";

// The list of a page's changes.

/**
 * The fields of a change, and what it says in addition to them.
 * @param {Pick<Change, "kind" | "fields" | "fieldsLeftOut" | "text" | "distance">} change
 */
function changeFacts({ kind, fields = [], fieldsLeftOut, text, distance }) {
  const facts = element("dl", { class: "facts" });
  const add = (/** @type {string} */ name, /** @type {Node | string} */ value) =>
    facts.append(element("dt", {}, name), element("dd", {}, value));
  if (distance) add("moved by", distance.join(", "));
  for (const field of fields) add(field.name, valueOfKind(kind, field));
  if (fieldsLeftOut) add("and", `${counted(fieldsLeftOut, "field")} more`);
  const isText = (/** @type {Value} */ value) => typeof value === "string";
  const hasText = fields.some(({ from, to }) => isText(from) || isText(to));
  if (text && !hasText) add("says", element("bdi", {}, shortened(text, 300)));
  return facts;
}

/**
 * @param {Change} change
 * @param {number} index
 * @param {ChangeActs} acts
 */
function changeRow(change, index, acts) {
  const where = [listInWords(change.list), change.ignoredBy ?? ""].filter(Boolean);
  const pick = element(
    "button",
    { type: "button" },
    badge(change),
    ` ${change.type} `,
    element("span", { class: "quiet" }, where.join(" \u00B7 ")),
  );
  const row = element(
    "li",
    { class: sortOf(change), "data-change": index },
    pick,
    changeFacts(change),
  );
  pick.addEventListener("click", () => acts.choose(index));
  row.addEventListener("pointerenter", () => acts.hover(index, true));
  row.addEventListener("pointerleave", () => acts.hover(index, false));
  return row;
}

/**
 * @param {PageData} data
 * @param {ChangeActs} acts
 */
function changeList({ changes, changesLeftOut }, acts) {
  const list = element("ol", { class: "changes", "aria-label": "Changes of this page" });
  list.append(...changes.map((change, index) => changeRow(change, index, acts)));
  if (changesLeftOut > 0)
    list.append(element("li", { class: "quiet" }, `and ${counted(changesLeftOut, "change")} more`));
  return list;
}

/** Why a run sets the bits of a page. @param {Reason[]} reasons */
function whyList(reasons) {
  const part = (/** @type {number | null} */ index) => (index === null ? "none" : String(index));
  const rows = reasons.map(({ bits, by, list, first, second }) =>
    element(
      "li",
      {},
      `${bits}: ${by}, ${list || "page"}, part ${part(first)} against ${part(second)}`,
    ),
  );
  return element(
    "details",
    { class: "why" },
    element("summary", {}, "Why a run sets these bits"),
    element("ul", {}, ...rows),
  );
}
