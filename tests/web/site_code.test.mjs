// Tests the example code that the pages of the site show to their readers: it must run unchanged.

import { readFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { launch } from "./page.mjs";
import { canShow, close, expectPicture, pages, serve, site } from "./site_page.mjs";

let browser;
before(async () => (browser = await launch({ camera: true })));
after(() => browser.close());

/** Returns the example code that a page of the site shows. */
function shownCode(page, html) {
    return page.evaluate((text) => {
        const parsed = new DOMParser().parseFromString(text, "text/html");
        return parsed.getElementById("code").textContent;
    }, html);
}

test("the example code on each page draws water if a server sends it unchanged", async (context) => {
    const shown = {};
    const server = await serve(shown);
    for (const file of pages.filter((name) => name !== "react.html" && canShow(name, context))) {
        const page = await browser.newPage({ size: [390, 844] });
        const head = '<!doctype html><meta charset="utf-8"><title>shown</title><link rel="icon" href="data:">';
        shown[`/shown/${file}`] = head + (await shownCode(page, readFileSync(join(site, file), "utf8")));
        await page.goto(`${server.address}/shown/${file}`);
        await page.evaluate(() => document.getElementById("start")?.click());
        await expectPicture(page, file);
        await close(page, file);
    }
    server.stop();
});
