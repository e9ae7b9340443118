"use strict";

// Old and new values with their differences marked.

/** @param {Value | undefined} value */
function plainValue(value) {
  if (value === null || value === undefined) return "nothing";
  if (typeof value === "object")
    return `${counted(value.length, "byte")} ${value.digest ?? ""}`.trim();
  return String(value);
}

/** @param {string} text */
function tokensOf(text) {
  return text.match(/\s+|[^\s]+/g) ?? [];
}

/**
 * Which tokens two texts have in common, in sequence; the middle of long texts is treated as a whole.
 * @param {string[]} a
 * @param {string[]} b
 * @returns {[number, number][]}
 */
function commonTokens(a, b) {
  /** @type {[number, number][]} */
  const pairs = [];
  let start = 0;
  while (start < a.length && start < b.length && a[start] === b[start]) {
    pairs.push([start, start++]);
  }
  let endA = a.length;
  let endB = b.length;
  /** @type {[number, number][]} */
  const tail = [];
  while (endA > start && endB > start && a[endA - 1] === b[endB - 1]) {
    tail.unshift([--endA, --endB]);
  }
  const rows = endA - start;
  const columns = endB - start;
  const most = 40000;
  if (rows * columns > 0 && rows * columns <= most) {
    const width = columns + 1;
    const lengths = new Uint16Array((rows + 1) * width);
    for (let i = rows - 1; i >= 0; --i) {
      for (let j = columns - 1; j >= 0; --j) {
        lengths[i * width + j] =
          a[start + i] === b[start + j]
            ? lengths[(i + 1) * width + j + 1] + 1
            : Math.max(lengths[(i + 1) * width + j], lengths[i * width + j + 1]);
      }
    }
    for (let i = 0, j = 0; i < rows && j < columns;) {
      if (a[start + i] === b[start + j]) pairs.push([start + i++, start + j++]);
      else if (lengths[(i + 1) * width + j] >= lengths[i * width + j + 1]) i++;
      else j++;
    }
  }
  return pairs.concat(tail);
}

/**
 * One side of a changed text; the words that the other side lacks are in an element.
 * @param {string[]} tokens
 * @param {Set<number>} common
 * @param {"del" | "ins"} name
 */
function markedSide(tokens, common, name) {
  /** @type {(Node | string)[]} */
  const nodes = [];
  let run = "";
  let isMarked = false;
  const flush = () => {
    if (run !== "") nodes.push(isMarked ? element(name, {}, shown(run)) : shown(run));
    run = "";
  };
  tokens.forEach((token, index) => {
    if (isMarked === common.has(index)) {
      flush();
      isMarked = !common.has(index);
    }
    run += token;
  });
  flush();
  return nodes;
}

/**
 * @param {string} text
 * @param {(Node | string)[]} content
 */
function linkOrText(text, content) {
  const isLink = /^(https?:\/\/|mailto:)[^\s\u0000-\u001f]+$/i.test(text);
  return isLink
    ? element("a", { href: text, target: "_blank", rel: "noopener noreferrer" }, ...content)
    : element("bdi", {}, ...content);
}

/**
 * Old and new value side by side.
 * @param {FieldChange} field
 * @param {number} [most]
 * @returns {HTMLElement}
 */
function changedValue({ name, from, to }, most = longestShown) {
  const arrow = element("span", { class: "arrow" }, " \u2192 ");
  if (typeof from === "string" && typeof to === "string" && !/olour$/.test(name)) {
    const a = tokensOf(from.slice(0, most));
    const b = tokensOf(to.slice(0, most));
    const pairs = commonTokens(a, b);
    const old = markedSide(a, new Set(pairs.map(([i]) => i)), "del");
    const recent = markedSide(b, new Set(pairs.map(([, j]) => j)), "ins");
    if (from.length > most) old.push(`\u2026 (${counted(from.length - most, "more character")})`);
    if (to.length > most) recent.push(`\u2026 (${counted(to.length - most, "more character")})`);
    return element(
      "span",
      { class: "value" },
      linkOrText(from, old),
      arrow,
      linkOrText(to, recent),
    );
  }
  const made = element(
    "span",
    { class: "value" },
    valueNode(name, from),
    arrow,
    valueNode(name, to),
  );
  if (typeof from === "number" && typeof to === "number") {
    const step = to - from;
    made.append(
      element("span", { class: "step" }, ` (${step > 0 ? "+" : "\u2212"}${Math.abs(step)})`),
    );
  }
  return made;
}

/**
 * A field whose texts are cut down to what differs and a few words around it.
 * @param {FieldChange} field
 * @returns {FieldChange}
 */
function excerpt(field) {
  const { from, to } = field;
  if (typeof from !== "string" || typeof to !== "string") return field;
  const a = tokensOf(from.slice(0, longestShown));
  const b = tokensOf(to.slice(0, longestShown));
  const shorter = Math.min(a.length, b.length);
  let start = 0;
  while (start < shorter && a[start] === b[start]) start++;
  let end = 0;
  while (end < shorter - start && a[a.length - 1 - end] === b[b.length - 1 - end]) end++;
  const around = 8;
  const cut = (/** @type {string[]} */ tokens) => {
    const first = Math.max(start - around, 0);
    const behind = Math.min(tokens.length - end + around, tokens.length);
    const words = tokens.slice(first, behind).join("");
    return `${first > 0 ? "\u2026" : ""}${words}${behind < tokens.length ? "\u2026" : ""}`;
  };
  return { ...field, from: cut(a), to: cut(b) };
}

/**
 * Only one file has what was added or removed, so one value is enough.
 * @param {string} kind
 * @param {FieldChange} field
 * @param {number} [most]
 */
function valueOfKind(kind, field, most) {
  if (kind === "added") return valueNode(field.name, field.to, most);
  if (kind === "removed") return valueNode(field.name, field.from, most);
  return changedValue(field, most);
}

/**
 * @param {string} name
 * @param {Value} value
 * @param {number} [most]
 * @returns {HTMLElement}
 */
function valueNode(name, value, most) {
  const text = shortened(plainValue(value), most);
  if (value === null) return element("span", { class: "nothing" }, text);
  if (typeof value === "string" && /olour$/.test(name) && /^#[0-9a-f]{8}$/.test(value)) {
    const swatch = element("span", { class: "swatch" });
    swatch.style.backgroundColor = value.slice(0, 7);
    return element("bdi", {}, swatch, value.endsWith("00") ? value.slice(0, 7) : value);
  }
  return typeof value === "string" ? linkOrText(value, [text]) : element("bdi", {}, text);
}

/**
 * The content of a group in two lines: what differs in its first example.
 * @param {Group} group
 */
function groupSummary(group) {
  const example = group.examples[0];
  const content = example?.field
    ? [
        element("span", { class: "field" }, `${example.field.name} `),
        valueOfKind(group.kind, excerpt(example.field), 160),
      ]
    : [element("bdi", {}, shortened(example?.text ?? "", 160))];
  return element("span", { class: "says" }, ...content);
}
