// The report as its reader sees it.

import assert from "node:assert/strict";
import { cpSync, existsSync, mkdirSync, readdirSync, readFileSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { after, before, test } from "node:test";
import {
  drawingText,
  drawn,
  inspect,
  launch,
  made,
  samples,
  withReport,
  writeReport,
} from "./browser.mjs";

const axe = readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");
let browser;
let report;

before(async () => {
  browser = await launch();
  report = writeReport("samples", samples);
});
after(() => browser.close());

const rowsOf = (page) => page.$$eval(".groups li", (rows) => rows.map((row) => row.innerText));
const scaleOf = (page) => page.$eval(".zoom-text", (node) => Number.parseInt(node.textContent, 10));

test("the report says what the JSON Lines say", async () => {
  const lines = inspect(["changes", ...samples, "--format", "jsonl"])
    .stdout.trim()
    .split("\n");
  const records = lines.map((line) => JSON.parse(line));
  const of = (kind) => records.filter((record) => record.record === kind);
  await withReport(browser, report, async (page) => {
    const shown = await page.evaluate(() => ({
      summary: JSON.parse(document.getElementById("data").textContent).summary,
      groups: JSON.parse(document.getElementById("data").textContent).list.groups,
      figures: [...document.querySelectorAll(".figure dd")].map((node) => node.textContent),
      rows: [...document.querySelectorAll(".groups a")].map((node) => node.dataset.group),
    }));
    const { record: _, ...summary } = of("summary")[0];
    assert.deepEqual(shown.summary, summary);
    assert.equal(shown.figures[1], String(summary.pagesDiffering));
    assert.deepEqual(
      shown.rows,
      of("group").map((group) => group.id),
    );
    for (const [index, { record: _name, ...group }] of of("group").entries()) {
      const { picture, drawn: pages, ids, ...rest } = shown.groups[index];
      assert.deepEqual(rest, group);
    }
  });
  for (const [number, expected] of of("page").entries()) {
    await withReport(
      browser,
      report,
      async (page) => {
        await drawn(page);
        const rows = await page.$$eval(".changes > li", (nodes) =>
          nodes.map((row) => row.innerText),
        );
        const changes = expected.changes ?? [{ kind: "added", type: "PAGE" }];
        assert.equal(rows.length, changes.length, expected.id);
        changes.forEach(({ kind, type, fields = [] }, index) => {
          assert.match(rows[index], new RegExp(`${kind}.* ${type}`, "s"));
          for (const { name } of fields) assert.ok(rows[index].includes(name), name);
        });
      },
      { hash: `#page=${number + 1}` },
    );
  }
});

test("modes, zoom, layers and changes answer to keys and buttons", async () => {
  await withReport(
    browser,
    report,
    async (page) => {
      await drawn(page);
      assert.match(await drawingText(page, 0), /thank you for your trust/);
      const look = () => page.screenshot({ clip: { x: 0, y: 100, width: 900, height: 700 } });
      const seen = new Set();
      for (const mode of [1, 2, 3, 4, 5]) {
        await page.keyboard.press(String(mode));
        await drawn(page);
        assert.equal(await page.getAttribute(`.mode:nth-child(${mode})`, "aria-pressed"), "true");
        assert.match(page.url(), mode === 1 ? /#page=1$/ : new RegExp(`mode=${mode}`));
        seen.add((await look()).toString("base64"));
      }
      assert.equal(seen.size, 5);
      await page.click("text=Blink");
      const visible = () => page.$eval(".side-second", (node) => getComputedStyle(node).visibility);
      const before = await visible();
      await page.keyboard.press(" ");
      assert.notEqual(await visible(), before);
      await page.click("text=Slider");
      await page.fill("[type=range]", "20");
      assert.equal(
        await page.$eval(".pane", (node) => node.style.getPropertyValue("--share")),
        "20%",
      );

      await page.click("text=Side by side");
      await page.keyboard.press("+");
      await page.mouse.move(300, 400);
      await page.mouse.wheel(0, -200);
      assert.ok((await scaleOf(page)) > 150);
      const places = () =>
        page.$$eval(".sheet", (all) => all.map((sheet) => sheet.style.transform));
      const unmoved = await places();
      await page.mouse.down();
      await page.mouse.move(340, 430);
      await page.mouse.up();
      const moved = await places();
      assert.notDeepEqual(moved, unmoved);
      assert.equal(new Set(moved).size, 1, "both pages move as one");
      await page.keyboard.press("0");
      assert.equal(await scaleOf(page), 100);

      await page.keyboard.press("j");
      assert.match(page.url(), /change=2/);
      assert.equal(await page.$eval(".changes [aria-current]", (row) => row.dataset.change), "1");
      await page.click(".outline[data-change='0'] rect");
      assert.equal(await page.$eval(".changes .chosen", (row) => row.dataset.change), "0");
      await page.hover(".changes > li:nth-child(2)");
      assert.ok(await page.$(".outline.hovered[data-change='1']"));
      for (const [key, layer] of [
        ["o", "outlines"],
        ["i", "ignored"],
        ["m", "marks"],
      ]) {
        const pressed = () => page.getAttribute(`[data-layer=${layer}]`, "aria-pressed");
        const old = await pressed();
        await page.keyboard.press(key);
        assert.notEqual(await pressed(), old);
      }
    },
    { hash: "#page=1", reducedMotion: "reduce" },
  );
});

test("pages, groups, the filter and the ways back are reached by keys", async () => {
  await withReport(browser, report, async (page) => {
    const all = await rowsOf(page);
    await page.keyboard.press("/");
    await page.keyboard.type("121.90");
    assert.equal((await rowsOf(page)).length, 1);
    const address = page.url();
    await page.keyboard.press("Escape");
    await page.keyboard.press("j");
    await page.keyboard.press("Enter");
    await drawn(page);
    assert.match(await drawingText(page, 1), /121\.90/);
    await page.keyboard.press("Escape");
    assert.equal(page.url(), address);
    await page.click("text=Clear");
    await page.waitForFunction(
      (count) => document.querySelectorAll(".groups li").length === count,
      all.length,
    );
    await page.selectOption("[name=kind]", "changed");
    await page.selectOption("[name=type]", "LINE");
    assert.equal((await rowsOf(page)).length, 1);
    await page.selectOption("[name=counts]", "no");
    assert.equal((await rowsOf(page)).length, 0);
    await page.goto(page.url().replace(/#.*/, "#customer=Novak"));
    assert.equal((await rowsOf(page)).length, 1);

    await page.goto(page.url().replace(/#.*/, "#page=1"));
    await drawn(page);
    const title = () => page.$eval("h1", (node) => node.textContent);
    const titles = [await title()];
    const pages = readdirSync(`${report}/pages`).length;
    for (let i = 1; i < pages; ++i) {
      await page.keyboard.press("n");
      await page.waitForFunction(
        (old) => document.querySelector("h1").textContent !== old,
        titles.at(-1),
      );
      titles.push(await title());
    }
    await page.keyboard.press("p");
    await page.waitForFunction(
      (old) => document.querySelector("h1").textContent === old,
      titles.at(-2),
    );
    assert.ok(titles.some((text) => text.includes("added")));
    assert.ok(
      titles.some((text) => /page 2 .* \u2192 3/.test(text)),
      "another page number is shown",
    );
    await page.keyboard.press("g");
    assert.match(page.url(), /group=/);
    await page.keyboard.press("?");
    assert.ok(await page.isVisible("dialog"));
    await page.keyboard.press("Escape");
    assert.ok(!(await page.isVisible("dialog")));
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

test("everybody can use it", async () => {
  for (const colorScheme of ["light", "dark"]) {
    for (const [hash, width] of [
      ["", 1280],
      ["#page=1", 1280],
      ["#page=1&mode=2", 390],
      ["", 390],
    ]) {
      const use = async (page) => {
        if (hash !== "") await drawn(page);
        await page.evaluate(axe);
        const { violations } = await page.evaluate(() => axe.run());
        const found = violations.flatMap(({ id, nodes }) =>
          nodes.map((node) => `${id}: ${node.html}`),
        );
        assert.deepEqual(found, [], `${colorScheme} ${hash} ${width}`);
        const isTooWide = await page.evaluate(
          () => document.documentElement.scrollWidth > innerWidth,
        );
        assert.ok(!isTooWide, `${hash} at ${width} scrolls sideways`);
      };
      // The checker is put into the page by the test, which its policy would not allow.
      await withReport(browser, report, use, {
        hash,
        colorScheme,
        bypassCSP: true,
        viewport: { width, height: 800 },
      });
    }
  }
});

test("only a report is replaced, and an unfinished one never shows", () => {
  const folder = writeReport("replaced", samples, ["--max-pages", "2"]);
  assert.equal(readdirSync(`${folder}/pages`).length, 2);
  writeReport("replaced", samples, ["--max-pages", "0"]);
  assert.ok(!existsSync(`${folder}/pages`));
  const own = `${folder}-own`;
  mkdirSync(own);
  writeFileSync(`${own}/letter.txt`, "mine");
  const refused = inspect(["report", ...samples, "--out", own], [2]);
  assert.match(refused.stderr, /exists and is no report/);
  cpSync(samples[0], `${folder}-broken.rvf`);
  inspect(["report", `${own}/letter.txt`, samples[1], "--out", `${folder}-new`], [2]);
  const left = readdirSync(`${folder}/..`).filter((name) =>
    /unfinished|replaced-new|\.old/.test(name),
  );
  assert.deepEqual(left, []);
});
