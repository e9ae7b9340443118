// The page of a night of many pairs as its reader sees it.

import { spawnSync } from "node:child_process";
import assert from "node:assert/strict";
import { copyFileSync, mkdirSync, readFileSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import path from "node:path";
import { after, before, test } from "node:test";
import { addressOf, inspect, launch, programs, samples, withReport, work } from "./browser.mjs";

const axe = readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");
const hostile = "<b onclick=alert(1)>'\"&\u202e.rvf";
const results = path.join(work, "night");
let browser;

before(async () => {
  browser = await launch();
  const [first, second] = samples;
  for (const folder of ["before", "after"]) mkdirSync(path.join(work, folder));
  const pair = (name, one, other) => {
    if (one) copyFileSync(one, path.join(work, "before", name));
    if (other) copyFileSync(other, path.join(work, "after", name));
  };
  pair("household.rvf", first, second);
  pair("two words, #1%.rvf", first, second);
  pair(hostile, first, second);
  pair("markers.rvf", first, first);
  pair("gone.rvf", first);
  pair("damaged.rvf", first);
  writeFileSync(path.join(work, "after", "damaged.rvf"), readFileSync(first).subarray(0, 900));
  const folders = ["before", "after"].map((name) => path.join(work, name));
  const words = [...folders, "--out", results, "--report", "--", "-POS_TOLERANCE=5"];
  const run = spawnSync(path.join(programs, "rvfjobs"), words, { encoding: "utf8" });
  assert.equal(run.status, 2, run.stderr);
});
after(() => browser.close());

const rowsOf = (page) => page.$$eval(".pairs li", (rows) => rows.map((row) => row.innerText));

test("the page says what the JSON Lines say", async () => {
  const lines = inspect(["summary", "--groups", results, "--format", "jsonl"], [2]).stdout;
  const records = lines
    .trim()
    .split("\n")
    .map((line) => JSON.parse(line));
  const of = (kind) => records.filter((record) => record.record === kind);
  await withReport(browser, results, async (page) => {
    const data = await page.evaluate(() => JSON.parse(document.getElementById("data").textContent));
    const { record: _, ...summary } = of("resultsSummary")[0];
    assert.deepEqual(data.summary, summary);
    const plain = (list) =>
      list.map(({ record: _1, format: _2, report: _3, inspected: _4, ...rest }) => rest);
    assert.deepEqual(plain(data.pairs), plain(of("pair")));
    assert.deepEqual(data.groups, plain(of("groupOfPairs")));
    const figures = await page.$$eval(".figure dd", (nodes) =>
      nodes.map((node) => node.textContent),
    );
    assert.deepEqual(figures, ["6", "0", "4", "0", "1", "1", "0", String(data.groups.length)]);
    assert.match(await page.innerText(".verdict"), /4 pairs differ, 1 on one side only, 1 without/);
    assert.equal((await page.$$(".chart li")).length, summary.byBit.length);
    assert.match(await page.innerText(".reasons"), /only-first\s+gone\.rvf/);
    assert.equal((await rowsOf(page)).length, 6);
    assert.equal((await page.$$(".shared li")).length, of("groupOfPairs").length);
    assert.match(await page.innerText(".shared"), /118\.40.*121\.90/);
    assert.equal((await page.$$(".greatest li")).length, 11);
  });
});

test("bits, states and texts choose the pairs, and the address keeps the choice", async () => {
  await withReport(browser, results, async (page) => {
    await page.click(".chart li:has-text('Text') a");
    assert.match(await addressOf(page), /#bit=2048$/);
    await page.waitForFunction(() => document.querySelectorAll(".pairs li").length === 3);
    await page.fill("[name=text]", "household");
    assert.equal((await rowsOf(page)).length, 1);
    assert.match(await addressOf(page), /bit=2048&text=household$/);
    await page.click("text=Clear");
    await page.waitForFunction(() => document.querySelectorAll(".pairs li").length === 6);
    await page.selectOption("[name=state]", "no-answer");
    assert.match((await rowsOf(page)).join(), /damaged\.rvf/);
    await page.click(".figure:has-text('On one side') a");
    await page.waitForFunction(() => document.querySelector(".pairs").innerText.includes("gone"));
    assert.equal((await rowsOf(page)).length, 1);
  });
});

test("links lead to the reports, to the group that they stand for", async () => {
  const open = async (page, link) => {
    await page.click(link);
    await page.waitForSelector("main.first-view .files, main.page-view");
    return page.title();
  };
  await withReport(browser, results, async (page) => {
    for (const name of ["household.rvf", "two words, #1%.rvf"]) {
      assert.equal(await open(page, `.pairs a:has-text("${name}")`), "What changed");
      assert.ok((await page.innerText(".files")).includes(path.join(work, "after", name)));
      await page.goBack();
      await page.waitForSelector(".pairs li");
    }
    await open(page, ".shared li:has-text('121.90') a");
    assert.match(await addressOf(page), /report\/index\.html#group=[0-9a-f]+$/);
    assert.match(await page.innerText("main"), /121\.90/);
  });
});

test("names of pairs stay texts, and redacted ones lead nowhere", async () => {
  await withReport(browser, results, async (page) => {
    assert.ok((await page.innerText(".pairs")).includes("<b onclick=alert(1)>'\"&\\u202E.rvf"));
    assert.equal((await page.$$("main b")).length, 0);
  });
  const folder = path.join(work, "redacted-night");
  mkdirSync(folder);
  const output = ["--redact", "--groups", "--format", "html", "--output", `${folder}/index.html`];
  inspect(["summary", ...output, results], [2]);
  assert.doesNotMatch(readFileSync(`${folder}/index.html`, "utf8"), /household|report\/index/);
  await withReport(browser, folder, async (page) => {
    assert.match(await page.innerText(".pairs"), /xxxxxxxxx\.xxx/);
  });
});

// Processor time, since a machine that runs tests has other things to do as well.
test("a long night is there soon", async () => {
  const folder = path.join(work, "long-night");
  mkdirSync(folder);
  const line = (index) =>
    JSON.stringify({
      ...{
        name: `job ${index}`,
        folder: `pairs/job_${index}`,
        first: "/a",
        second: "/b",
        options: [],
      },
      ...{
        state: index % 3 ? "identical" : "different",
        reason: "",
        status: 0,
        bits: index % 3 ? 0 : 129,
      },
      ...{ seconds: 0.5, firstBytes: index, secondBytes: index },
    });
  const lines = Array.from({ length: 20000 }, (_, index) => line(index));
  writeFileSync(`${folder}/results.jsonl`, `${lines.join("\n")}\n`);
  inspect(["summary", folder, "--format", "html", "--output", `${folder}/index.html`]);
  await withReport(browser, folder, async (page, timer) => {
    await page.waitForSelector(".pairs li");
    const first = await timer();
    assert.ok(first < 2, `first view of 20,000 pairs after ${first} s`);
    await page.evaluate(() => scrollTo(0, document.body.scrollHeight));
    await page.waitForSelector("[aria-posinset='20000']");
    assert.ok((await rowsOf(page)).length < 80, "rows out of sight do not exist");
    await page.evaluate(() => dispatchEvent(new Event("beforeprint")));
    assert.equal((await rowsOf(page)).length, 1000, "rows on paper");
    await page.evaluate(() => dispatchEvent(new Event("afterprint")));
    assert.ok((await rowsOf(page)).length < 80, "rows out of sight do not exist");
  });
});

test("everybody can use it", async () => {
  for (const colorScheme of ["light", "dark"]) {
    for (const width of [1280, 390]) {
      const use = async (page) => {
        await page.evaluate(axe);
        const { violations } = await page.evaluate(() => axe.run());
        const found = violations.flatMap(({ id, nodes }) =>
          nodes.map((node) => `${id}: ${node.html}`),
        );
        assert.deepEqual(found, [], `${colorScheme} ${width}`);
        const isTooWide = await page.evaluate(
          () => document.documentElement.scrollWidth > innerWidth,
        );
        assert.ok(!isTooWide, `${width} scrolls sideways`);
      };
      const options = { colorScheme, bypassCSP: true, viewport: { width, height: 800 } };
      await withReport(browser, results, use, options);
    }
  }
});
