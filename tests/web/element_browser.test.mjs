// Tests the custom element while the user zooms or prints the page, or leaves the page and returns.

import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { close, difference, frame, launch, needs, open, serve, shot, waitUntilIdle } from "./element_page.mjs";

let browser, server;
before(async () => ([browser, server] = await Promise.all([launch({ backCache: true }), serve()])));
after(() => Promise.all([browser.close(), server.stop()]));

const image = `<img src="320x240.bmp" alt="">`;
const picture = `<velmora-water quality="full">${image}</velmora-water>`;

/** Part of the page where the touch leaves ink: left, top, right and bottom edge in pixels. */
const inkBox = [130, 80, 170, 120];

/** Touches the water and asserts that the ink is then visible. */
async function expectInk(page) {
    const still = await frame(page);
    await page.evaluate(() => document.querySelector("velmora-water").drop(150, 100));
    const apart = difference(still, await frame(page), inkBox).mean;
    assert.ok(apart > 4, `a touch must change the frame by more than 4 levels of 255 on average, not by ${apart}`);
}

test("the water of a zoomed page has the resolution of the screen", needs("zoom"), async () => {
    const page = await open(browser, server, picture);
    await waitUntilIdle(page);
    await page.setViewportSize({ width: 300, height: 200, deviceScaleFactor: 2 });
    await page.waitForFunction(() => {
        const canvas = document.querySelector("velmora-water").shadowRoot.querySelector("canvas");
        return canvas?.width === 600 && canvas.height === 400;
    });
    await close(page);
});

test("a printed page shows the plain picture, and the water is back after the print", needs("printed"), async () => {
    server.pages.set("/print.css", ".whole { display: block; width: 300px; height: 200px; object-fit: cover }");
    const plainBody = `<link rel="stylesheet" href="print.css">${image.replace("<img", "<img class=whole")}`;
    const plain = await open(browser, server, plainBody, { ready: 0 });
    const page = await open(browser, server, picture);
    await expectInk(page);
    await page.emulateMedia({ media: "print" });
    const apart = difference(await shot(page), await shot(plain), inkBox).mean;
    assert.ok(apart < 0.5, `the printed picture must have no ink, but the mean colour difference is ${apart} of 255`);
    await page.emulateMedia({ media: "screen" });
    await page.waitForFunction(() => document.querySelector("velmora-water").live);
    await waitUntilIdle(page);
    await expectInk(page);
    await close(page);
    await close(plain);
});

test("the water draws again after the user has left the page and returned", needs("back"), async () => {
    const page = await open(browser, server, picture);
    await waitUntilIdle(page);
    await page.evaluate(() => window.addEventListener("pageshow", (event) => (window.isKept = event.persisted)));
    server.pages.set("/other", `<!doctype html><title>other</title><link rel="icon" href="data:">`);
    await page.goto(`${server.address}/other`);
    await page.back();
    await page.waitForFunction(() => document.querySelector("velmora-water")?.live);
    assert.equal(await page.evaluate(() => window.isKept), true, "the browser must keep the page in memory while another page is shown");
    await expectInk(page);
    await close(page);
});
