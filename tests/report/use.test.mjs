// How the report is used: modes, keys, mouse, touch, paper.

import assert from "node:assert/strict";
import { readdirSync, readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { after, before, test } from "node:test";
import {
  addressOf,
  drawingText,
  drawn,
  launch,
  samples,
  withReport,
  writeReport,
} from "./browser.mjs";

const axe = readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");
let browser;
let report;

before(async () => {
  browser = await launch();
  report = writeReport("use", samples, ["--position-tolerance", "5"]);
});
after(() => browser.close());

const rowsOf = (page) => page.$$eval(".groups li", (rows) => rows.map((row) => row.innerText));
const scaleOf = (page) => page.$eval(".zoom-text", (node) => Number.parseInt(node.textContent, 10));
const placeOf = (page) => page.$eval(".sheet", (sheet) => sheet.style.transform);
const shareOf = (page) =>
  page.$eval(".pane", (node) => Number.parseFloat(node.style.getPropertyValue("--share")));

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
        assert.match(await addressOf(page), mode === 1 ? /#page=1$/ : new RegExp(`mode=${mode}`));
        seen.add((await look()).toString("base64"));
        if (mode === 4) {
          const styles = await page.$$eval(".drawings .drawing", (all) =>
            all.map((node) => getComputedStyle(node).filter),
          );
          assert.deepEqual(styles, ['url("#tint-first")', 'url("#tint-second")']);
        }
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
      assert.match(await addressOf(page), /change=2/);
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
    const address = await addressOf(page);
    await page.keyboard.press("Escape");
    await page.keyboard.press("j");
    await page.keyboard.press("Enter");
    await drawn(page);
    assert.match(await drawingText(page, 1), /121\.90/);
    await page.keyboard.press("Escape");
    assert.equal(await addressOf(page), address);
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
    await page.goto((await addressOf(page)).replace(/#.*/, "#customer=Novak"));
    assert.equal((await rowsOf(page)).length, 1);

    await page.goto((await addressOf(page)).replace(/#.*/, "#page=1"));
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
    assert.match(await addressOf(page), /group=/);
    await page.keyboard.press("?");
    assert.ok(await page.isVisible("dialog"));
    await page.keyboard.press("Escape");
    assert.ok(!(await page.isVisible("dialog")));
  });
});

// One line a key: what it is pressed on, and whether it did what it is for.
const keys = [
  ["j", "#page=5", (now) => /change=2/.test(now.address)],
  ["k", "#page=5&change=2", (now) => /change=1/.test(now.address)],
  ["n", "#page=2", (now) => /page=3/.test(now.address)],
  ["p", "#page=2", (now) => /page=1/.test(now.address)],
  ["g", "#page=1", (now, old) => now.address !== old.address && /group=/.test(now.address)],
  ["G", "#page=7", (now, old) => now.address !== old.address && /group=/.test(now.address)],
  ["+", "#page=1", (now, old) => now.scale > old.scale],
  ["=", "#page=1", (now, old) => now.scale > old.scale],
  ["-", "#page=1", (now, old) => now.scale < old.scale],
  ["ArrowLeft", "#page=1", (now, old) => now.x > old.x && now.y === old.y],
  ["ArrowRight", "#page=1", (now, old) => now.x < old.x && now.y === old.y],
  ["ArrowUp", "#page=1", (now, old) => now.y > old.y && now.x === old.x],
  ["ArrowDown", "#page=1", (now, old) => now.y < old.y && now.x === old.x],
  ["o", "#page=1", (now, old) => now.outlines < old.outlines],
  ["i", "#page=1", (now, old) => now.outlines < old.outlines && now.rows < old.rows],
  ["m", "#page=1", (now, old) => now.marks > old.marks],
  ["/", "#page=1", (now) => now.focus === "text"],
  ["Escape", "#page=1&kind=changed", (now) => /#kind=changed$/.test(now.address)],
  ["?", "#page=1", (now) => now.hasHelp],
  ["?", "", (now) => now.hasHelp],
  ["/", "", (now) => now.focus === "text"],
  ...["j", "n", "g"].map((key) => [key, "", (now) => now.group === 0]),
  ...["k", "p", "G"].map((key) => [key, "", (now) => now.group === 0]),
];

test("every key does what the help says", async () => {
  const look = (page) =>
    page.evaluate(() => {
      const shown = (selector) =>
        [...document.querySelectorAll(selector)].filter(
          (node) => getComputedStyle(node).display !== "none",
        ).length;
      const [x, y] =
        (document.querySelector(".sheet")?.style.transform ?? "").match(/-?\d+/g) ?? [];
      const drawing = document.querySelector(".drawing")?.shadowRoot;
      return {
        address: location.hash,
        scale: Number.parseInt(document.querySelector(".zoom-text")?.textContent, 10),
        x: Number(x),
        y: Number(y),
        outlines: shown(".outline"),
        rows: shown(".changes > li"),
        marks: drawing?.querySelector("#marks:not([display=none])") ? 1 : 0,
        focus: document.activeElement.getAttribute("name"),
        group: [...document.querySelectorAll(".groups a")].indexOf(document.activeElement),
        hasHelp: document.querySelector("dialog")?.open ?? false,
      };
    });
  await withReport(browser, report, async (page) => {
    const home = await addressOf(page);
    for (const [key, hash, isRight] of keys) {
      await page.goto("about:blank");
      await page.goto(home + hash);
      await (hash === "" ? page.waitForSelector(".groups a") : drawn(page));
      const before = await look(page);
      await page.keyboard.press(key);
      if (/page=/.test(hash) && /^[npgG]$/.test(key)) await drawn(page);
      const after = await look(page);
      assert.ok(isRight(after, before), `${key} ${hash}: ${JSON.stringify([before, after])}`);
    }
  });
});

test("an address shows the view that it was taken from", async () => {
  const views = [];
  await withReport(browser, report, async (page) => {
    await page.selectOption("[name=kind]", "changed");
    await page.fill("[name=text]", "trust");
    await page.fill("[name=customer]", "Novak");
    views.push([await addressOf(page), await rowsOf(page)]);
    await page.click(".groups a");
    await drawn(page);
    await page.keyboard.press("4");
    views.push([await addressOf(page), await page.innerText(".page-head")]);
  });
  assert.equal(views[0][1].length, 1);
  for (const [address, expected] of views) {
    const hash = address.slice(address.indexOf("#"));
    await withReport(
      browser,
      report,
      async (page) => {
        if (Array.isArray(expected)) {
          assert.deepEqual(await rowsOf(page), expected);
          assert.equal(await page.inputValue("[name=customer]"), "Novak");
          assert.equal(await page.inputValue("[name=kind]"), "changed");
        } else {
          await drawn(page);
          assert.equal(await page.innerText(".page-head"), expected);
          assert.ok(await page.$(".mode-4"));
        }
      },
      { hash },
    );
  }
});

test("the slider follows mouse and keys", async () => {
  await withReport(
    browser,
    report,
    async (page) => {
      await drawn(page);
      assert.equal(await shareOf(page), 50);
      const box = await (await page.$(".divider")).boundingBox();
      await page.mouse.move(box.x + box.width / 2, box.y + 200);
      await page.mouse.down();
      await page.mouse.move(box.x - 150, box.y + 220, { steps: 3 });
      await page.mouse.up();
      const dragged = await shareOf(page);
      assert.ok(dragged < 40, String(dragged));
      const clip = await page.$eval(".side-second", (node) => getComputedStyle(node).clipPath);
      assert.ok(clip.includes(`${dragged.toFixed(1)}`.slice(0, 3)), clip);
      await page.focus("[type=range]");
      const still = await placeOf(page);
      for (let i = 0; i < 4; ++i) await page.keyboard.press("ArrowRight");
      assert.ok((await shareOf(page)) > dragged + 1);
      assert.equal(await placeOf(page), still, "the pages stay where they are");
    },
    { hash: "#page=1&mode=2" },
  );
});

test("fingers zoom, move and tap", async () => {
  const use = async (page) => {
    await drawn(page);
    const session = await page.context().newCDPSession(page);
    const touch = (type, ...points) =>
      session.send("Input.dispatchTouchEvent", {
        type,
        touchPoints: points.map(([x, y], id) => ({ x, y, id })),
      });
    const { x, y } = await (await page.$(".pane")).boundingBox();
    await touch("touchStart", [x + 60, y + 100], [x + 100, y + 140]);
    for (const step of [10, 20, 30, 40])
      await touch("touchMove", [x + 60 - step, y + 100 - step], [x + 100 + step, y + 140 + step]);
    await touch("touchEnd");
    await page.waitForFunction(
      () => Number.parseInt(document.querySelector(".zoom-text").textContent, 10) > 200,
    );
    const scale = await scaleOf(page);
    const before = await placeOf(page);
    await touch("touchStart", [x + 80, y + 120]);
    for (const step of [10, 20, 30]) await touch("touchMove", [x + 80 + step, y + 120 + step]);
    // The finger rests before it lifts: a tap right after a swipe would only end the swipe.
    await page.waitForTimeout(300);
    await touch("touchMove", [x + 110, y + 150]);
    await touch("touchEnd");
    await page.waitForFunction(
      (old) => document.querySelector(".sheet").style.transform !== old,
      before,
    );
    assert.equal(await scaleOf(page), scale);
    // The click that a tap stands for may come after the tap.
    await page.tap(".changes > li:nth-child(2) button");
    await page.waitForSelector(".outline.chosen[data-change='1']");
    await page.tap("text=Overlay");
    await page.waitForSelector(".mode-4");
  };
  const options = { hash: "#page=1", hasTouch: true, viewport: { width: 390, height: 800 } };
  await withReport(browser, report, use, options);
});

test("a page is printed with its changes", async () => {
  for (const mode of [1, 4]) {
    const use = async (page) => {
      await drawn(page);
      await page.keyboard.press("+");
      await page.emulateMedia({ media: "print", colorScheme: "dark" });
      const shown = await page.evaluate(() => {
        const boxOf = (node) => node.getBoundingClientRect();
        const visible = (selector) => document.querySelector(selector)?.checkVisibility();
        return {
          tools: visible(".tools"),
          title: visible("h1"),
          rows: [...document.querySelectorAll(".changes > li")].map((row) => row.checkVisibility()),
          paper: getComputedStyle(document.body).backgroundColor,
          gaps: [...document.querySelectorAll(".pane")].flatMap((pane) =>
            [...pane.querySelectorAll(".sheet")].map((sheet) =>
              Math.max(
                Math.abs(boxOf(sheet).width - boxOf(pane).width),
                Math.abs(boxOf(sheet).top - boxOf(pane).top),
              ),
            ),
          ),
          overlap:
            boxOf(document.querySelector(".side")).top <
            boxOf(document.querySelector(".stage")).bottom,
        };
      });
      assert.equal(shown.tools, false);
      assert.equal(shown.title, true);
      assert.deepEqual(shown.rows, [true, true]);
      assert.equal(shown.paper, "rgb(255, 255, 255)");
      assert.ok(shown.gaps.length >= 3 && Math.max(...shown.gaps) < 2, String(shown.gaps));
      assert.equal(shown.overlap, false, "the list is below the pages");
      const pdf = await page.pdf({ format: "A4" });
      assert.equal(pdf.subarray(0, 5).toString(), "%PDF-");
    };
    await withReport(browser, report, use, { hash: `#page=1&mode=${mode}`, colorScheme: "dark" });
  }
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
