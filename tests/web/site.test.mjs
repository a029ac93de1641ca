// Tests the site: every page opens from disk and draws, and the example code that a page shows to its reader runs
// unchanged.

import assert from "node:assert/strict";
import { existsSync, readdirSync, readFileSync } from "node:fs";
import { createServer } from "node:http";
import { extname, join } from "node:path";
import { after, before, test } from "node:test";
import { pathToFileURL } from "node:url";
import { engine } from "./engines/engine.mjs";
import { launch, needs, screenshotFolder, top } from "./page.mjs";

const site = join(top, "build/site");
const pages = readdirSync(site).filter((file) => file.endsWith(".html") && file !== "velmora.html");
const types = {
    ".css": "text/css", ".html": "text/html", ".jpg": "image/jpeg", ".js": "text/javascript", ".mp4": "video/mp4",
    ".svg": "image/svg+xml", ".webmanifest": "application/manifest+json",
};

let browser;
before(async () => (browser = await launch({ camera: true })));
after(() => browser.close());

/**
 * Serves the site. `shown` maps paths under /shown/ to the example code that a page of the site shows to its reader.
 */
async function serve(shown = {}) {
    const server = createServer((request, response) => {
        const path = request.url.replace(/\/$/, "/index.html");
        const file = join(site, path.replace("/shown/", "/"));
        const body = shown[path] ?? (existsSync(file) && extname(file) ? readFileSync(file) : undefined);
        response.writeHead(body ? 200 : 404, { "Content-Type": types[extname(path)] ?? "text/html" });
        response.end(body ?? "");
    });
    await new Promise((resolve) => server.listen(0, "127.0.0.1", resolve));
    server.unref(); // otherwise a failed test would keep the process running
    const stop = () => (server.close(), server.closeAllConnections());
    return { address: `http://127.0.0.1:${server.address().port}`, stop };
}

/** Waits until the first element draws. If the page has more elements than GL contexts, any element may draw. */
function waitForWater(page) {
    return page.waitForFunction(() => {
        const waters = [...document.querySelectorAll("velmora-water")];
        return waters.slice(0, waters.length > 8 ? waters.length : 1).some((water) => water.live);
    });
}

/** Returns the number of distinct colours in the first element that draws, scaled down to 16 x 16 pixels. */
function colors(page) {
    return page.evaluate(async () => {
        const live = [...document.querySelectorAll("velmora-water")].find((water) => water.live);
        const frame = await createImageBitmap(await live.toBlob());
        const copy = new OffscreenCanvas(16, 16).getContext("2d");
        copy.drawImage(frame, 0, 0, 16, 16);
        return new Set(new Uint32Array(copy.getImageData(0, 0, 16, 16).data.buffer)).size;
    });
}

/** Waits until an element shows a picture. An element can draw before its video or camera has a picture. */
async function expectPicture(page, file) {
    await waitForWater(page);
    for (let attempt = 0; attempt < 40; ++attempt) {
        if ((await colors(page)) > 8) {
            return;
        }
    }
    assert.fail(`${file} must show a picture under the water`);
}

async function close(page, name) {
    await page.close();
    assert.deepEqual(page.consoleMessages, [], name);
}

test("every page of the site opens from disk, draws water, and requests no file from outside the site", async (context) => {
    for (const file of pages) {
        const reason = engine.cannot[file.slice(0, -5)];
        if (reason) {
            context.diagnostic(`skipped: the page ${file} (${engine.name}: ${reason})`);
            continue;
        }
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

/** Returns the example code that a page of the site shows. */
function shownCode(page, html) {
    return page.evaluate((text) => {
        const parsed = new DOMParser().parseFromString(text, "text/html");
        return parsed.getElementById("code").textContent;
    }, html);
}

test("the example code on each page draws water if a server sends it unchanged", needs("shownCode"), async () => {
    const shown = {};
    const server = await serve(shown);
    for (const file of pages.filter((name) => name !== "react.html")) {
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
