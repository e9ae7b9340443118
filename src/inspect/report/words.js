"use strict";

// How numbers, texts and places are shown.

/** The kinds of change, each with the sign that always goes with its colour. */
const kinds = /** @type {Record<string, {sign: string, word: string}>} */ ({
  changed: { sign: "~", word: "changed" },
  moved: { sign: "\u2192", word: "moved" },
  order: { sign: "\u21C5", word: "order" },
  added: { sign: "+", word: "added" },
  removed: { sign: "\u2212", word: "removed" },
});

const grouped = new Intl.NumberFormat("en");

/**
 * "1 page", "2,000 pages".
 * @param {number} count
 * @param {string} noun
 */
function counted(count, noun) {
  return `${grouped.format(count)} ${noun}${count === 1 ? "" : "s"}`;
}

/**
 * A text whose direction marks, control characters and other invisible characters are shown by their
 * number, so that nothing looks like something else.
 * @param {string} text
 */
function shown(text) {
  return text.replace(
    /[\u0000-\u001f\u007f-\u009f\u061c\u200b-\u200f\u2028-\u202e\u2060-\u2069\ufeff\ufff9-\uffff]/g,
    (c) =>
      c === "\ufffd" ? c : `\\u${c.charCodeAt(0).toString(16).toUpperCase().padStart(4, "0")}`,
  );
}

const longestShown = 2000;

/**
 * @param {string} text
 * @param {number} [most]
 */
function shortened(text, most = longestShown) {
  if (text.length <= most) return shown(text);
  return `${shown(text.slice(0, most))}\u2026 (${grouped.format(text.length - most)} more characters)`;
}

/** The kind that gives a change its colour: one that is ignored is always grey. */
const sortOf = (/** @type {{kind: string, counts: boolean}} */ { kind, counts }) =>
  counts ? kind : "ignored";

/**
 * The sign and the word of a kind.
 * @param {{kind: string, counts: boolean}} change
 */
function badge(change) {
  const { sign, word } = kinds[change.kind];
  return element(
    "span",
    { class: `badge ${sortOf(change)}` },
    element("span", { class: "sign", "aria-hidden": "true" }, sign),
    change.counts ? word : `${word}, ignored`,
  );
}

/** @param {{first: number | null, second: number | null, firstName?: string, secondName?: string}} page */
function pageTitle({ first, second, firstName, secondName }) {
  const side = (/** @type {number} */ index, /** @type {string | undefined} */ name) =>
    `${index + 1}${name ? ` \u201C${shortened(name, 60)}\u201D` : ""}`;
  if (first === null && second === null) return "";
  if (second === null && first !== null) return `page ${side(first, firstName)}, removed`;
  if (first === null && second !== null) return `page ${side(second, secondName)}, added`;
  if (first === second && firstName === secondName) return `page ${side(first ?? 0, firstName)}`;
  return `page ${side(first ?? 0, firstName)} \u2192 ${side(second ?? 0, secondName)}`;
}

/** @param {string} list */
function listInWords(list) {
  if (list === "" || list === "page") return "";
  const object = /^object (\d+)\/(\d+)\/(\w+)$/.exec(list);
  if (object) return `shared object ${object[1]}/${object[2]}`;
  return list.replace(/^placed (\d+)$/, (_, index) => `placed list ${Number(index) + 1}`);
}

/** @param {Group} group */
function groupPlace(group) {
  const words = [];
  if (group.page !== null) words.push(`page ${group.page + 1}`);
  if (listInWords(group.list)) words.push(listInWords(group.list));
  if (group.distance) words.push(`by ${group.distance.join(", ")}`);
  return words.join(", ");
}
