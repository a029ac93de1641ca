// Tests the site: every page opens from disk and draws.

import assert from "node:assert/strict";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { pathToFileURL } from "node:url";
import { launch, screenshotFolder } from "./page.mjs";
import { canShow, close, expectPicture, pages, serve, site, waitForWater } from "./site_page.mjs";

let browser;
before(async () => (browser = await launch({ camera: true })));
after(() => browser.close());

test("every page of the site opens from disk, draws water, and requests no file from outside the site", async (context) => {
    for (const file of pages.filter((name) => canShow(name, context))) {
        const page = await browser.newPage({ size: [390, 844] });
        await page.goto(pathToFileURL(join(site, file)).href);
        if (file === "camera.html") {
            await page.evaluate(() => document.getElementById("start").click());
        }
        await expectPicture(page, file);
        const width = await page.evaluate(() => document.documentElement.scrollWidth);
        assert.ok(width <= 390, `${file} must be at most 390 pixels wide on a phone, not ${width}`);
        await page.screenshot({ path: join(screenshotFolder, `site-${file.replace("html", "png")}`) });
        await close(page, file);
        assert.deepEqual(page.requests.filter((url) => !/^(file|data|blob):/.test(url)), [], file);
    }
});

test("after one visit, the site opens without its server, and its pages name the manifest", async () => {
    const server = await serve();
    const page = await browser.newPage({ size: [390, 844] });
    await page.goto(`${server.address}/index.html`);
    await page.evaluate(() => navigator.serviceWorker.ready);
    server.stop();
    await page.goto(`${server.address}/hero.html`);
    await waitForWater(page);
    const manifest = await page.evaluate(async () => {
        const answer = await fetch(document.querySelector("[rel=manifest]").href);
        return answer.json();
    });
    assert.equal(manifest.name, "Velmora");
    await close(page);
});
