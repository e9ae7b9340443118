"use strict";

// Elements of the page. Texts from a file only ever become text nodes.

// Of a long list, which has only its visible rows on the screen.
const rowsOnPaper = 1000;

/**
 * An element with attributes and children; strings become text nodes.
 * @template {keyof HTMLElementTagNameMap} Name
 * @param {Name} name
 * @param {Record<string, string | number | boolean | undefined>} [attributes]
 * @param {...(Node | string)} children
 * @returns {HTMLElementTagNameMap[Name]}
 */
function element(name, attributes = {}, ...children) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) {
    if (value !== undefined && value !== false)
      made.setAttribute(key, value === true ? "" : String(value));
  }
  made.append(...children);
  return made;
}

const svgSpace = "http://www.w3.org/2000/svg";

/**
 * @template {keyof SVGElementTagNameMap} Name
 * @param {Name} name
 * @param {Record<string, string | number>} attributes
 * @param {...(Node | string)} children
 * @returns {SVGElementTagNameMap[Name]}
 */
function svgElement(name, attributes, ...children) {
  const made = document.createElementNS(svgSpace, name);
  for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, String(value));
  made.append(...children);
  return made;
}

/**
 * A button with its name, and its key if it has one.
 * @param {string} label its name
 * @param {string} text its caption
 * @param {() => void} act
 * @param {string} [key]
 */
function button(label, text, act, key) {
  const title = key ? `${label} (${key})` : label;
  const made = element("button", { type: "button", "aria-label": label, title }, text);
  made.addEventListener("click", act);
  return made;
}

/** @param {string} label @param {string} name @param {[string, string][]} choices values and words */
function choiceField(label, name, choices) {
  const options = choices.map(([value, word]) => element("option", { value }, word));
  return element("label", {}, `${label} `, element("select", { name }, ...options));
}

/** @param {string} label @param {string} name @param {string} placeholder */
function searchField(label, name, placeholder) {
  const attributes = {
    name,
    type: "search",
    placeholder,
    autocomplete: "off",
    spellcheck: "false",
  };
  return element("label", { class: "wide" }, `${label} `, element("input", attributes));
}
