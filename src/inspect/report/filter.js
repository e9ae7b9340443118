"use strict";

// The filter: which groups pass it, and its form above the list.

/**
 * The text that a search looks at.
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

class FilterForm {
  /** @param {(filter: Filter) => void} changed */
  constructor(changed) {
    const types = [...new Set(groups.map((group) => group.type))].sort();
    const all = /** @type {[string, string]} */ (["", "all"]);
    this.found = element("output", { class: "found", "aria-live": "polite" });
    this.note = element("p", { class: "note", role: "note" });
    this.node = element(
      "form",
      { class: "filter", role: "search", "aria-label": "Filter of the groups" },
      choiceField("Kind", "kind", [
        all,
        ...Object.entries(kinds).map(
          ([kind, { word }]) => /** @type {[string, string]} */ ([kind, word]),
        ),
      ]),
      choiceField("Type", "type", [
        all,
        ...types.map((type) => /** @type {[string, string]} */ ([type, type])),
      ]),
      choiceField("Differences", "counts", [all, ["yes", "counted"], ["no", "ignored"]]),
      searchField("Text", "text", "old, new or field"),
      searchField("Customer", "customer", "id or part of it"),
      element("button", { type: "reset" }, "Clear"),
      this.found,
      this.note,
    );
    this.node.addEventListener("submit", (event) => event.preventDefault());
    this.node.addEventListener("input", () => changed(this.read()));
    this.node.addEventListener("reset", () => setTimeout(() => changed(this.read())));
  }

  /** @returns {Filter} */
  read() {
    const fields = new FormData(this.node);
    const filter = { ...noFilter };
    for (const name of /** @type {(keyof Filter)[]} */ (Object.keys(noFilter))) {
      filter[name] = String(fields.get(name) ?? "");
    }
    return filter;
  }

  /** @param {Filter} filter @param {number} found how many groups pass */
  show(filter, found) {
    for (const [name, value] of Object.entries(filter)) {
      const control = /** @type {HTMLInputElement} */ (this.node.elements.namedItem(name));
      if (control.value !== value) control.value = value;
    }
    this.found.textContent = `${grouped.format(found)} of ${counted(groups.length, "group")}`;
    const knowsAll = filter.customer === "" || groups.every(knowsItsCustomers);
    this.note.hidden = knowsAll;
    this.note.textContent = knowsAll
      ? ""
      : "Of large groups this report knows the first customers alone, so others are not found.";
  }

  focus() {
    const input = this.node.elements.namedItem("text");
    if (input instanceof HTMLInputElement) input.focus();
  }
}

/** @param {Group} group */
function knowsItsCustomers(group) {
  return group.ids.length >= group.customers || group.type === "CUSTOMER";
}
