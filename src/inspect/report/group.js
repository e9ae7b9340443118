"use strict";

// What is told of a group beside one of its pages, and instead of one where none is drawn.

const mostLinks = 200;

/** Links to the drawn pages of a group. @param {Group} group */
function pageLinks(group) {
  const links = group.drawn.slice(0, mostLinks).map((page) => {
    const entry = report.pages[page];
    const link = element(
      "a",
      {
        href: addressOf({ ...state, page, change: null }),
        "aria-current": page === state.page && "page",
      },
      element("bdi", {}, shortened(entry.id, 40)),
      ` ${pageTitle(entry)}`,
    );
    return element("li", {}, link);
  });
  return element(
    "details",
    {},
    element("summary", {}, counted(group.drawn.length, "drawn page")),
    element("ul", { class: "drawn" }, ...links),
  );
}

/** @param {Group} group */
function groupFacts(group) {
  const facts = [
    counted(group.pages, "page"),
    counted(group.customers, "customer"),
    `${group.allPairs ? "" : "more than "}${counted(group.pairs, "pair")} of values`,
    groupPlace(group),
  ];
  const examples = group.examples.flatMap(({ field, text }) => {
    if (field) return [element("li", {}, valueOfKind(group.kind, field, 200))];
    return text ? [element("li", {}, element("bdi", {}, shortened(text, 200)))] : [];
  });
  const rule = group.ignoredBy ? `: ${group.ignoredBy}` : "";
  return element(
    "section",
    { class: "group-facts" },
    element("h2", {}, "Group ", element("code", {}, group.id)),
    element("p", {}, badge(group), ` ${group.type}${rule}`),
    element("p", { class: "quiet" }, facts.filter(Boolean).join(" \u00B7 ")),
    element("ul", { class: "examples" }, ...examples),
    group.drawn.length > 0 ? pageLinks(group) : "",
  );
}

/** Why there is no drawing of a group. @param {Group} group */
function whyNotDrawn(group) {
  if (group.type === "FILE")
    return "This is about the file as a whole and shows on no page, so there is nothing to draw.";
  if (group.type === "CUSTOMER" && group.kind === "changed")
    return "This is about a customer's record and shows on no page, so there is nothing to draw.";
  if (group.type === "CUSTOMER" && report.pages.length > 0)
    return "These customers have no page that is drawn in this report.";
  if (group.pages === 0) return "No page uses this shared object, so there is nothing to draw.";
  const count = counted(report.pages.length, "page");
  return `No page of this group is among the ${count} drawn in this report; --max-pages draws more.`;
}

/** What can be told of a group without a drawing. @param {Group} group */
function undrawnGroup(group) {
  const fields =
    group.type === "FILE"
      ? report.fileChanges
          .flatMap(({ fields = [] }) => fields)
          .filter(({ name }) => group.fields.includes(name))
      : group.examples.flatMap(({ field }) => (field ? [field] : []));
  return element(
    "div",
    { class: "undrawn" },
    element("p", { class: "note" }, whyNotDrawn(group)),
    changeFacts({ kind: group.kind, fields }),
  );
}
