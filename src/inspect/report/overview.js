"use strict";

// The overview: both files, the verdict, and how much changed.

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

/** How much changed, in one sentence. */
function extentInWords() {
  const { summary } = report;
  const of = (/** @type {number} */ some, /** @type {number} */ all, /** @type {string} */ noun) =>
    `${grouped.format(some)} of ${counted(all, noun)}`;
  const parts = [
    `${of(summary.pagesDiffering, summary.pagesCompared, "page")} and ` +
      `${of(report.customersDiffering, report.customersCompared, "customer")} differ`,
  ];
  for (const [count, word, noun] of /** @type {[number, string, string][]} */ ([
    [summary.pagesAdded, "added", "page"],
    [summary.pagesRemoved, "removed", "page"],
    [summary.customersAdded, "added", "customer"],
    [summary.customersRemoved, "removed", "customer"],
  ])) {
    if (count > 0) parts.push(`${counted(count, noun)} ${word}`);
  }
  return `${parts.join(", ")}.`;
}

function verdict() {
  const { bits, names, changes } = report.summary;
  const isSame = bits === 0;
  const word = isSame ? "Identical for a run" : "Different";
  const chips = names.map((name) => element("li", {}, name));
  return element(
    "section",
    { class: `verdict ${isSame ? "same" : "different"}`, "aria-label": "Verdict" },
    element("p", {}, isSame && changes > 0 ? `${word}, but there are changes` : word),
    isSame ? "" : element("ul", { "aria-label": "Bits" }, ...chips),
    isSame ? "" : element("span", { class: "quiet", title: "All bits as one number" }, `${bits}`),
  );
}

/** What keeps the report from being complete, in sentences. */
function reservations() {
  const { summary } = report;
  const notes = [];
  if (report.damagedPages > 0) {
    const count = counted(report.damagedPages, "page");
    notes.push(
      `Incomplete: ${count} could not be read to the end. What was read of them is compared, the rest is left out.`,
    );
  }
  if (report.verdictEnd !== "") notes.push(`A run compares no further: ${report.verdictEnd}.`);
  if (summary.changesNotGrouped > 0) {
    const count = counted(summary.changesNotGrouped, "change");
    notes.push(`Incomplete: ${count} did not fit into the groups and are only counted here.`);
  }
  if (report.objectsLeftOut > 0) {
    const count = counted(report.objectsLeftOut, "shared object");
    notes.push(`Incomplete: the changes of ${count} more are in the groups, but on no drawing.`);
  }
  if (report.redacted)
    notes.push(
      "Texts are redacted: every letter is an x, every digit a 9, and images are empty frames.",
    );
  return notes.map((note) => element("p", { class: "note", role: "note" }, note));
}

/** @param {string} name @param {number | string} value */
function figure(name, value) {
  const text = typeof value === "number" ? grouped.format(value) : value;
  const isZero = value === 0 ? " zero" : "";
  return element(
    "div",
    { class: `figure${isZero}` },
    element("dt", {}, name),
    element("dd", {}, text),
  );
}

function figures() {
  const { summary } = report;
  const needed = (/** @type {number | null} */ value) =>
    value === null ? "none would do" : `${grouped.format(value)} would do`;
  const drawn = grouped.format(report.pages.length);
  return element(
    "dl",
    { class: "figures" },
    figure("Pages compared", summary.pagesCompared),
    figure("Pages differing", summary.pagesDiffering),
    figure("Pages added", summary.pagesAdded),
    figure("Pages removed", summary.pagesRemoved),
    figure("Changes", summary.changes),
    figure(
      "Position tolerance",
      `${report.positionTolerance} (${needed(summary.smallestPositionTolerance)})`,
    ),
    figure("Customers compared", report.customersCompared),
    figure("Customers differing", report.customersDiffering),
    figure("Customers added", summary.customersAdded),
    figure("Customers removed", summary.customersRemoved),
    figure("Pages drawn here", `${drawn} of ${grouped.format(report.pagesWithChanges)}`),
    figure("Line tolerance", `${report.lineTolerance} (${needed(summary.smallestLineTolerance)})`),
  );
}

function ignoredDifferences() {
  const ignored = Object.entries(report.summary.ignored);
  if (ignored.length === 0) return "";
  const words = ignored.map(([rule, count]) => `${rule} ${grouped.format(count)}`).join(", ");
  return element("p", { class: "quiet" }, `Differences that the rules ignore: ${words}`);
}

function damageList() {
  if (report.damages.length === 0) return "";
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
    { open: true },
    element("summary", {}, "Pages that could not be read"),
    element("ul", {}, ...rows),
  );
}

function overview() {
  return element(
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
    verdict(),
    element("p", { class: "extent" }, extentInWords()),
    ...reservations(),
    damageList(),
    figures(),
    ignoredDifferences(),
    groups.length > 0 ? chart() : "",
  );
}
