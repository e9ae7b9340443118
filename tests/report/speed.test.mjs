// Reports of large files are there soon.

import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { drawn, launch, made, withReport, writeReport } from "./browser.mjs";

let browser;

before(async () => {
  browser = await launch();
});
after(() => browser.close());

// Processor time, since a machine that runs tests has other things to do as well.
test("large reports are there soon", async () => {
  const folder = writeReport("groups", made("groups"));
  await withReport(browser, folder, async (page, timer) => {
    await page.waitForSelector(".groups li");
    const first = await timer();
    assert.ok(first < 2, `first view of 10,000 groups after ${first} s`);
    assert.match(await page.innerText(".found"), /10,000 of 10,000/);
    await page.evaluate(() => scrollTo(0, document.body.scrollHeight));
    await page.waitForSelector("[aria-posinset='10000']");
    assert.ok((await page.$$(".groups li")).length < 60, "rows out of sight do not exist");
    await page.evaluate(() => dispatchEvent(new Event("beforeprint")));
    assert.equal((await page.$$(".groups li")).length, 1000, "rows on paper");
    await page.evaluate(() => dispatchEvent(new Event("afterprint")));
    assert.ok((await page.$$(".groups li")).length < 60, "rows out of sight do not exist");
  });
  const parts = writeReport("parts", made("parts"));
  const use = async (page, timer) => {
    await drawn(page);
    await page.evaluate(() => new Promise((done) => requestAnimationFrame(() => setTimeout(done))));
    const first = await timer();
    assert.ok(first < 6, `two pages of 50,000 parts each after ${first} s`);
  };
  await withReport(browser, parts, use, { hash: "#page=1" });
});
