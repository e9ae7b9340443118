"use strict";

// The bar chart of the largest groups.

const mostBars = 10;

/** @param {Group} group @param {number} most the pages of the largest group */
function bar(group, most) {
  const line = element("span", { class: `bar ${sortOf(group)}` });
  line.style.width = `${Math.max((100 * group.pages) / most, 0.5)}%`;
  const { sign, word } = kinds[group.kind];
  const example = group.examples[0];
  const says = example?.text || group.fields.join(", ");
  const name = element(
    "span",
    { class: "name" },
    element("span", { class: `sign ${sortOf(group)}` }, sign),
    element("span", { class: "hidden" }, ` ${word}`),
    ` ${group.type} ${groupPlace(group)} `,
    element("bdi", { class: "quiet" }, shortened(says, 60)),
  );
  return element(
    "a",
    { href: addressOf(stateOfGroup(group)) },
    name,
    element("span", { class: "track" }, line),
    element("span", { class: "count" }, grouped.format(group.pages)),
  );
}

/** Each bar links to its group. */
function chart() {
  const largest = groups.slice(0, mostBars);
  const most = Math.max(...largest.map((group) => group.pages), 1);
  const title =
    largest.length < groups.length ? "Pages of the largest groups" : "Pages of each group";
  return element(
    "section",
    { class: "chart" },
    element("h2", {}, title),
    element("ol", {}, ...largest.map((group) => element("li", {}, bar(group, most)))),
  );
}
