// What the report says.

import assert from "node:assert/strict";
import { existsSync, readdirSync, readFileSync, writeFileSync } from "node:fs";
import path from "node:path";
import { after, before, test } from "node:test";
import {
  drawingText,
  drawn,
  inspect,
  launch,
  made,
  recordsOf,
  samples,
  withReport,
  work,
  writeReport,
} from "./browser.mjs";

let browser;
let report;

before(async () => {
  browser = await launch();
  report = writeReport("content", samples);
});
after(() => browser.close());

const plain = (text) => text.replace(/\s+/g, " ").trim();

/** Fails if a row lacks what the JSON Lines say of its change or group. */
function assertSays(row, { kind, type, counts, ignoredBy = "", fields = [] }) {
  const words = [kind, type, counts ? "" : "ignored", ignoredBy];
  for (const { name, from, to } of fields) {
    words.push(name);
    for (const value of kind === "added" ? [to] : kind === "removed" ? [from] : [from, to]) {
      if (value === null) words.push("nothing");
      else if (typeof value === "object") words.push(value.digest);
      else words.push(plain(String(value).replace(/^(#[0-9a-f]{6})00$/, "$1")));
    }
  }
  for (const word of words) assert.ok(plain(row).includes(word), `${word} in ${row}`);
}

test("the report says what the JSON Lines say", async () => {
  const records = recordsOf(samples);
  const of = (kind) => records.filter(({ record }) => record === kind);
  await withReport(browser, report, async (page) => {
    const shown = await page.evaluate(() => ({
      data: JSON.parse(document.getElementById("data").textContent),
      figures: Object.fromEntries(
        [...document.querySelectorAll(".figure")].map((node) => node.innerText.split("\n")),
      ),
      bits: [...document.querySelectorAll(".verdict li")].map((node) => node.textContent),
      ids: [...document.querySelectorAll(".groups a")].map((node) => node.dataset.group),
      rows: [...document.querySelectorAll(".groups a")].map((node) => node.innerText),
      bars: [...document.querySelectorAll(".chart .count")].map((node) => node.textContent),
    }));
    const { record: _, ...summary } = of("summary")[0];
    assert.deepEqual(shown.data.summary, summary);
    assert.deepEqual(shown.bits, summary.names);
    const figures = {
      "Pages compared": summary.pagesCompared,
      "Pages differing": summary.pagesDiffering,
      "Pages added": summary.pagesAdded,
      "Pages removed": summary.pagesRemoved,
      "Customers added": summary.customersAdded,
      "Customers removed": summary.customersRemoved,
      Changes: summary.changes,
    };
    for (const [name, value] of Object.entries(figures))
      assert.equal(shown.figures[name], String(value), name);
    const groups = of("group");
    assert.deepEqual(
      shown.ids,
      groups.map(({ id }) => id),
    );
    assert.deepEqual(
      shown.bars,
      groups.map(({ pages }) => String(pages)),
    );
    for (const [index, { record: _name, ...group }] of groups.entries()) {
      const { picture, drawn: pages, ids, ...rest } = shown.data.list.groups[index];
      assert.deepEqual(rest, group);
      assertSays(shown.rows[index], { ...group, fields: [] });
      const { name, from, to } = group.examples[0].field ?? { name: "" };
      assert.ok(shown.rows[index].includes(name));
      for (const value of [from, to]) {
        if (value && String(value).length < 30)
          assert.ok(plain(shown.rows[index]).includes(plain(String(value)).slice(0, 7)), value);
      }
      assert.match(shown.rows[index], new RegExp(`${group.pages} page.*${group.pairs} pair`, "s"));
    }
  });
  const verdicts = new Map(of("verdict").map((each) => [`${each.id}/${each.page}`, each]));
  for (const [number, expected] of of("page").entries()) {
    const use = async (page) => {
      await drawn(page);
      const rows = await page.$$eval(".changes > li", (all) => all.map((row) => row.innerText));
      const changes = expected.changes ?? [{ kind: "added", type: "PAGE", counts: true }];
      assert.equal(rows.length, changes.length, expected.id);
      changes.forEach((change, index) => assertSays(rows[index], change));
      const head = await page.innerText(".page-head");
      assert.ok(head.includes(expected.id) && head.includes(expected.secondName));
      const verdict = verdicts.get(`${expected.id}/${expected.first}`);
      if (verdict) assert.ok(head.includes(`${verdict.names.join(", ")} (${verdict.bits})`), head);
      const isElsewhere = expected.first !== null && expected.first !== expected.second;
      assert.equal(/Paired by content with page/.test(head), isElsewhere, head);
    };
    await withReport(browser, report, use, { hash: `#page=${number + 1}` });
  }
});

test("a group shows a picture of its place", async () => {
  await withReport(browser, report, async (page) => {
    const rows = await page.$$(".groups li");
    for (const row of rows) {
      await row.scrollIntoViewIfNeeded();
      await row.waitForSelector("canvas");
      const colours = await row.$eval("canvas", (canvas) => {
        const { data } = canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height);
        return new Set(new Uint32Array(data.buffer)).size;
      });
      assert.ok(colours > 1, `nothing is drawn: ${await row.innerText()}`);
    }
  });
});

test("a damaged file's report says that it is incomplete, and what is missing", async () => {
  const damaged = path.join(work, "damaged.rvf");
  const bytes = readFileSync(samples[1]);
  bytes.fill(0x7f, 7000, 7016);
  writeFileSync(damaged, bytes);
  const folder = writeReport("damaged", [samples[0], damaged], [], [2]);
  const [damage] = recordsOf([samples[0], damaged], [2]).filter(
    ({ record }) => record === "damage",
  );
  await withReport(browser, folder, async (page) => {
    const told = await page.innerText(".overview");
    assert.match(told, /Incomplete: 1 page could not be read to the end/);
    assert.ok(told.includes(`page ${damage.page + 1}`) && told.includes(damage.id), told);
  });
});

test("a shared object that changed is outlined where pages use it", async () => {
  const folder = writeReport("letterhead", made("letterhead"));
  await withReport(browser, folder, async (page) => {
    await page.click(".groups a");
    await drawn(page);
    assert.match(await drawingText(page, 1), /Example Insurance plc/);
    assert.match(await page.innerText(".changes"), /shared object 21\/0/);
    const box = await page.$eval(".side-second", () =>
      Number(document.querySelector(".outline rect").getBBox().x),
    );
    assert.ok(box > 280 && box < 320, String(box));
  });
  assert.equal(readdirSync(`${folder}/stored`).length, 2);
});

test("texts of a file stay texts", async () => {
  const files = made("hostile");
  const folder = writeReport("hostile", files);
  await withReport(browser, folder, async (page) => {
    const shown = await page.innerText(".files");
    assert.ok(shown.includes("<b onclick=alert(1)>\\u2028"), shown);
    for (let i = 0; i < (await page.$$(".groups a")).length; ++i) {
      await page.click(`.groups li:nth-child(${i + 1}) a`);
      await page.waitForSelector(".stage .drawing, .undrawn");
      if (!(await page.$(".drawing"))) {
        assert.match(await page.innerText(".side"), /changed, ignored FILE/);
        await page.keyboard.press("Escape");
        continue;
      }
      assert.match(await page.title(), /<\/script><script>window\.harmed = 1<\/script>\\u202Ex/);
      await page.keyboard.press("Escape");
    }
    assert.equal(await page.evaluate(() => window.harmed), undefined);
    assert.equal((await page.$$("a[href^='javascript']")).length, 0);
  });
  const redacted = writeReport("redacted", files, ["--redact"]);
  for (const name of readdirSync(redacted, { recursive: true })) {
    const text = name.endsWith(".js") ? readFileSync(`${redacted}/${name}`, "utf8") : "";
    assert.doesNotMatch(text, /harmed|onerror/, name);
  }
});
