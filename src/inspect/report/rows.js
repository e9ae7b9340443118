"use strict";

// A row of the list of groups.

const rowHeights = { wide: 68, narrow: 124 };

function rowHeight() {
  return matchMedia("(max-width: 700px)").matches ? rowHeights.narrow : rowHeights.wide;
}

/**
 * @param {Group} group
 * @param {number} index
 * @param {number} count
 */
function groupRow(group, index, count) {
  const numbers = [
    counted(group.pages, "page"),
    counted(group.customers, "customer"),
    (group.allPairs ? "" : "more than ") + counted(group.pairs, "pair"),
  ];
  const where = [groupPlace(group), group.ignoredBy ?? ""].filter(Boolean).join(" \u00B7 ");
  const link = element(
    "a",
    { href: addressOf(stateOfGroup(group)), "data-group": group.id },
    placePicture(group),
    element(
      "span",
      { class: "what" },
      badge(group),
      ` ${group.type} `,
      element("span", { class: "quiet" }, where),
    ),
    groupSummary(group),
    element("span", { class: "numbers" }, ...numbers.map((text) => element("span", {}, text))),
  );
  const row = element("li", { "aria-posinset": index + 1, "aria-setsize": count }, link);
  row.style.top = `${index * rowHeight()}px`;
  return row;
}
