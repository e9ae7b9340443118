"use strict";

// Loads the data files of pages.

/** Receives the data files, which call it by name. */
const rvfReport = {
  /** @type {Map<string, (data: any) => void>} */
  waiting: new Map(),
  /** @param {{page?: number, stored?: number}} data */
  receive(data) {
    this.waiting.get(data.page === undefined ? `stored/${data.stored}` : `pages/${data.page}`)?.(
      data,
    );
  },
};

/** @type {Map<string, Promise<any>>} */
const loaded = new Map();

/**
 * The content of a data file. A page opened from the file system cannot fetch, but it can load a script.
 * @param {"pages" | "stored"} folder
 * @param {number} number
 * @returns {Promise<any>}
 */
function load(folder, number) {
  const key = `${folder}/${number}`;
  let promise = loaded.get(key);
  if (!promise) {
    promise = new Promise((resolve, reject) => {
      const script = document.createElement("script");
      const name = `${folder}/${String(number).padStart(5, "0")}.js`;
      rvfReport.waiting.set(key, resolve);
      script.src = name;
      script.onerror = () => reject(new Error(`${name} is missing or cannot be read`));
      script.onload = () => script.remove();
      document.head.append(script);
    });
    loaded.set(key, promise);
    promise.catch(() => loaded.delete(key));
  }
  return promise;
}

const pageCache = /** @type {number[]} */ ([]);

/**
 * A page with everything that its drawings need. The last few are kept in memory.
 * @param {number} number
 * @returns {Promise<{data: PageData, stored: Map<string, string>}>}
 */
async function loadPage(number) {
  const data = /** @type {PageData} */ (await load("pages", number));
  const stored = new Map();
  await Promise.all(
    data.stored.map(async (part) => stored.set(String(part), (await load("stored", part)).content)),
  );
  const most = 8;
  const at = pageCache.indexOf(number);
  if (at >= 0) pageCache.splice(at, 1);
  pageCache.push(number);
  if (pageCache.length > most) loaded.delete(`pages/${pageCache.shift()}`);
  return { data, stored };
}
