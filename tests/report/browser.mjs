// A report and a browser to look at it with.

import { execFileSync, spawnSync } from "node:child_process";
import assert from "node:assert/strict";
import { mkdtempSync } from "node:fs";
import path from "node:path";
import { pathToFileURL } from "node:url";
import { chromium } from "playwright-core";

export const programs = process.env.RVF_PROGRAMS ?? "build/release";
export const work = process.env.RVF_WORK ?? mkdtempSync("/tmp/rvf-report-");
export const samples = ["samples/first.rvf", "samples/second.rvf"];

/** Runs rvfinspect; fails where its status is none of those expected. */
export function inspect(words, statuses = [1]) {
  const result = spawnSync(path.join(programs, "rvfinspect"), words, {
    encoding: "utf8",
    maxBuffer: 1 << 28,
  });
  assert.ok(statuses.includes(result.status), `${words}: ${result.status} ${result.stderr}`);
  return result;
}

/** The JSON Lines of a comparison. */
export function recordsOf(files, statuses = [1]) {
  const { stdout } = inspect(["changes", ...files, "--format", "jsonl"], statuses);
  return stdout
    .trim()
    .split("\n")
    .map((line) => JSON.parse(line));
}

/** Paths of a made pair of files. */
export function made(name) {
  execFileSync(path.join(programs, "tests", "make_report_captures"), [work]);
  return [`${work}/${name}-first.rvf`, `${work}/${name}-second.rvf`];
}

export function writeReport(name, files, options = [], statuses = [1]) {
  const folder = path.join(work, name);
  inspect(["report", ...files, "--out", folder, ...options], statuses);
  return folder;
}

const switches =
  "--no-sandbox --headless --disable-gpu --disable-quic --no-first-run " +
  "--disable-background-networking --disable-component-update --disable-sync";

export function launch() {
  return chromium.launch({ executablePath: "/usr/bin/chromium", args: switches.split(" ") });
}

/**
 * Opens a report and hands its page to `use`. Whatever the console says is a fault, and so is a request
 * for anything outside of the folder.
 */
export async function withReport(browser, folder, use, { hash = "", ...options } = {}) {
  const context = await browser.newContext({
    offline: true,
    viewport: { width: 1280, height: 800 },
    ...options,
  });
  // Tests run on machines that have other things to do as well.
  context.setDefaultTimeout(120_000);
  const page = await context.newPage();
  const faults = [];
  page.on("console", (message) => faults.push(message.text()));
  page.on("pageerror", (error) => faults.push(String(error.stack)));
  const home = pathToFileURL(folder).href;
  page.on("request", (request) => {
    const isOurs = request.url().startsWith(`${home}/`) || request.url().startsWith("data:");
    if (!isOurs) faults.push(`request of ${request.url()}`);
  });
  try {
    const session = await context.newCDPSession(page);
    await session.send("Performance.enable", { timeDomain: "threadTicks" });
    const seconds = async () => {
      const { metrics } = await session.send("Performance.getMetrics");
      return metrics.find(({ name }) => name === "ThreadTime").value;
    };
    await page.goto(`${home}/index.html${hash}`);
    await page.waitForSelector("main");
    await use(page, seconds);
  } finally {
    await context.close();
  }
  assert.deepEqual(faults, []);
}

/** Where a page is now; what Playwright knows of it may be older. */
export const addressOf = (page) => page.evaluate(() => location.href);

/** The drawing of one side, in its own tree. */
export const drawingText = (page, side) =>
  page.evaluate((index) => {
    const host = document.querySelector(`.side-${index === 0 ? "first" : "second"} .drawing`);
    return host?.shadowRoot?.textContent ?? "";
  }, side);

/** Waits until a page's drawings are on the stage. */
export const drawn = (page) => page.waitForSelector(".stage:not([aria-busy]) .drawing");
