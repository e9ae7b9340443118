"use strict";

// The page of a job: its totals, the changes that its pairs have in common, and all pairs.

function outcomeInWords() {
  const { pairs, identical, different, accepted, oneSided, failed } = night.summary;
  if (identical === pairs) return "All pairs are identical";
  const facts = [];
  const open = different - accepted;
  if (open > 0) facts.push(`${counted(open, "pair")} differ${open === 1 ? "s" : ""}`);
  if (accepted > 0) facts.push(`${counted(accepted, "pair")} by accepted changes alone`);
  if (oneSided > 0) facts.push(`${grouped.format(oneSided)} on one side only`);
  if (failed > 0) facts.push(`${grouped.format(failed)} without an answer`);
  return facts.join(", ");
}

/**
 * A figure that links to its pairs, if a filter selects them.
 * @param {string} name
 * @param {number} count
 * @param {string} [filter]
 */
function pairFigure(name, count, filter) {
  const text = grouped.format(count);
  const node =
    count > 0 && filter !== undefined
      ? element("a", { href: addressOfPairs({ state: filter }) }, text)
      : text;
  const isZero = count === 0 ? " zero" : "";
  return element(
    "div",
    { class: `figure${isZero}` },
    element("dt", {}, name),
    element("dd", {}, node),
  );
}

/** @param {string} name @param {string} title @param {...(Node | string)} content */
function section(name, title, ...content) {
  return element("section", { class: name }, element("h2", {}, title), ...content);
}

function bitChart() {
  const { byBit } = night.summary;
  const most = Math.max(...byBit.map(({ pairs }) => pairs), 1);
  const rows = byBit.map(({ bit, name, pairs }) => {
    const bar = element("span", { class: "bar changed" });
    bar.style.width = `${Math.max((100 * pairs) / most, 0.5)}%`;
    const link = element(
      "a",
      { href: addressOfPairs({ bit: String(bit) }) },
      element("span", { class: "name" }, `${name} (${bit})`),
      element("span", { class: "track" }, bar),
      element("span", { class: "count" }, grouped.format(pairs)),
    );
    return element("li", {}, link);
  });
  return section("chart", "Different pairs by bit", element("ol", {}, ...rows));
}

function reasonList() {
  const { reasons, reasonsLeftOut } = night.summary;
  const rows = reasons.map((entry) =>
    element(
      "li",
      {},
      element("span", {}, grouped.format(entry.count)),
      element("a", { href: addressOfPairs({ state: entry.state }) }, entry.state),
      element(
        "span",
        {},
        entry.reason ? element("bdi", {}, shortened(entry.reason, 300)) : "",
        element("span", { class: "quiet" }, entry.reason ? ": " : "", ...pairNames(entry)),
      ),
    ),
  );
  if (reasonsLeftOut > 0)
    rows.push(element("li", {}, element("span", {}, grouped.format(reasonsLeftOut)), "others"));
  return section("reasons", "On one side only, or without an answer", element("ul", {}, ...rows));
}

/** @param {string} title @param {{name: string, value: string}[]} entries */
function greatestList(title, entries) {
  const rows = entries.map(({ name, value }) =>
    element("li", {}, element("span", {}, value), pairName(name)),
  );
  return section("", title, element("ol", {}, ...rows));
}

/** @param {GroupOfPairs} group */
function sharedRow(group) {
  const place = [groupPlace(group), group.ignoredBy ?? ""].filter(Boolean).join(" \u00B7 ");
  return element(
    "li",
    {},
    element(
      "span",
      { class: "what" },
      badge(group),
      ` ${group.type} `,
      element("span", { class: "quiet" }, place),
    ),
    groupSummary(group),
    element(
      "span",
      { class: "says" },
      `${counted(group.inPairs.count, "pair")}, ${counted(group.pages, "page")}: `,
      ...pairNames(group.inPairs, `#group=${group.id}`),
    ),
  );
}

function nightOverview() {
  const { summary } = night;
  const { pairs, identical, different, accepted, oneSided, failed, notExplained } = summary;
  const made = element(
    "header",
    { class: "overview" },
    element("h1", {}, `Results of ${counted(pairs, "pair")}`),
    element("p", { class: "quiet" }, element("bdi", {}, shortened(night.path, 300))),
    element(
      "section",
      {
        class: `verdict ${identical + accepted === pairs ? "same" : "different"}`,
        "aria-label": "Verdict",
      },
      element("p", {}, outcomeInWords()),
    ),
  );
  if (night.redacted)
    made.append(
      element(
        "p",
        { class: "note", role: "note" },
        "Texts are redacted: every letter is an x, every digit a 9, and no report is linked.",
      ),
    );
  made.append(
    element(
      "dl",
      { class: "figures" },
      pairFigure("Pairs", pairs, ""),
      pairFigure("Identical", identical, "identical"),
      pairFigure("Different", different, "different"),
      pairFigure("Different by accepted changes alone", accepted, "accepted"),
      pairFigure("On one side only", oneSided, "one-sided"),
      pairFigure("Without an answer", failed, "no-answer"),
      pairFigure("Not explained", notExplained, "not-explained"),
      pairFigure("Groups of changes", night.groups.length),
    ),
  );
  if (summary.byBit.length > 0) made.append(bitChart());
  if (summary.reasons.length > 0) made.append(reasonList());
  const slowest = summary.slowest.map(({ name, seconds }) => ({
    name,
    value: `${seconds.toFixed(3)} s`,
  }));
  const largest = summary.largest.map(({ name, bytes }) => ({ name, value: sizeInWords(bytes) }));
  made.append(
    element(
      "div",
      { class: "greatest" },
      greatestList("Slowest pairs", slowest),
      greatestList("Largest pairs", largest),
    ),
  );
  return made;
}

const pairList = new PairList();
const view = element("main", { class: "first-view" }, nightOverview());
/** @type {LongList<GroupOfPairs>} */
const sharedList = new LongList("shared", "Groups of changes", sharedRow);
if (night.groups.length > 0) {
  view.append(section("", "Changes across all pairs", sharedList.node));
  if (night.summary.changesNotGrouped > 0) {
    const count = counted(night.summary.changesNotGrouped, "change");
    view.append(
      element("p", { class: "note", role: "note" }, `${count} did not fit into the groups.`),
    );
  }
}
view.append(pairList.node);
document.body.append(view);
document.addEventListener("click", (event) => {
  const link = event.target instanceof Element ? event.target.closest("a[href^='#']") : null;
  if (link) pairList.node.scrollIntoView();
});
sharedList.show(night.groups);
pairList.show();
