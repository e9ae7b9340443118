"use strict";

// The results of a job, and the reader's selection, which is kept in the address.

/**
 * @typedef {{count: number, names: string[]}} NamedPairs
 * @typedef {{name: string, state: string, reason: string, bits: number | null, names?: string[],
 *   seconds: number | null, firstBytes: number | null, secondBytes: number | null, report?: string,
 *   inspected?: {changes: number, changesAccepted: number, isAccepted: boolean, trouble: string}}} Pair
 * @typedef {Group & {inPairs: NamedPairs}} GroupOfPairs
 * @typedef {{pairs: number, identical: number, different: number, accepted: number, oneSided: number,
 *   failed: number, notExplained: number, byBit: {bit: number, name: string, pairs: number}[],
 *   reasons: (NamedPairs & {state: string, reason: string})[], reasonsLeftOut: number,
 *   slowest: {name: string, seconds: number}[], largest: {name: string, bytes: number}[],
 *   changesNotGrouped: number, complete: boolean}} NightSummary
 * @typedef {{redacted: boolean, path: string, pairs: Pair[], groups: GroupOfPairs[],
 *   summary: NightSummary}} Night
 * @typedef {{state: string, bit: string, text: string}} PairFilter
 */

/** @type {Night} */
const night = JSON.parse(document.getElementById("data")?.textContent ?? "");

const pairByName = new Map(night.pairs.map((pair) => [pair.name, pair]));

/** Pairs without an answer, in the filter and in colour. */
const answers = ["identical", "different", "only-first", "only-second"];

/** The sign and the colour of each state; all states without an answer share the last. */
const stateLooks = /** @type {Record<string, {sign: string, sort: string}>} */ ({
  identical: { sign: "=", sort: "moved" },
  different: { sign: "~", sort: "changed" },
  "only-first": { sign: "\u2212", sort: "removed" },
  "only-second": { sign: "+", sort: "added" },
});

/** @param {Pair} pair */
function stateBadge({ state: word, inspected }) {
  const { sign, sort } = stateLooks[word] ?? { sign: "!", sort: "removed" };
  const isAccepted = inspected?.isAccepted ?? false;
  return element(
    "span",
    { class: `badge ${isAccepted ? "ignored" : sort}` },
    element("span", { class: "sign", "aria-hidden": "true" }, sign),
    isAccepted ? "accepted" : word,
  );
}

/**
 * The name of a pair, as a link if it has a report.
 * @param {string} name
 * @param {string} [view] what of the report to show
 */
function pairName(name, view = "") {
  const text = element("bdi", {}, shortened(name, 120));
  const address = pairByName.get(name)?.report;
  return address ? element("a", { href: address + view }, text) : text;
}

/**
 * The first few names, and the number of the others.
 * @param {NamedPairs} pairs
 * @param {string} [view]
 */
function pairNames({ count, names }, view) {
  const nodes = names.flatMap((name, index) => [index > 0 ? ", " : "", pairName(name, view)]);
  if (count > names.length) nodes.push(` and ${grouped.format(count - names.length)} more`);
  return nodes;
}

/** @returns {PairFilter} */
function pairFilter() {
  const words = new URLSearchParams(location.hash.slice(1));
  return {
    state: words.get("state") ?? "",
    bit: words.get("bit") ?? "",
    text: words.get("text") ?? "",
  };
}

/** @param {Partial<PairFilter>} filter */
function addressOfPairs(filter) {
  return `#${new URLSearchParams(Object.entries(filter).filter(([, value]) => value !== ""))}`;
}

/** @param {PairFilter} filter */
function filteredPairs({ state: wanted, bit, text }) {
  const part = text.trim().toLowerCase();
  const isWanted = (/** @type {Pair} */ pair) => {
    if (wanted === "accepted") return pair.inspected?.isAccepted ?? false;
    if (wanted === "not-explained") return (pair.inspected?.trouble ?? "") !== "";
    if (wanted === "one-sided") return pair.state.startsWith("only-");
    if (wanted === "no-answer") return !answers.includes(pair.state);
    return wanted === "" || pair.state === wanted;
  };
  // There are more bits than integer operators support.
  const has = (/** @type {Pair} */ pair) => Math.floor((pair.bits ?? 0) / Number(bit)) % 2 === 1;
  return night.pairs.filter(
    (pair) =>
      isWanted(pair) &&
      (bit === "" || (pair.state === "different" && has(pair))) &&
      (part === "" || `${pair.name}\n${pair.reason}`.toLowerCase().includes(part)),
  );
}
