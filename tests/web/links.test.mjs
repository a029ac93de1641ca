// Tests links that contain settings in the fragment of the page's address.

import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { close, launch, open, sendFiles, serve, settings, waitForToast } from "./page.mjs";

let browser, server;
before(async () => ([browser, server] = [await launch(), await serve()]));
after(async () => (server.stop(), await browser.close()));

test("a change of the settings removes the link's settings from the address, and the same link can be opened again", async () => {
    const page = await open(browser, { url: server.url, hash: "#look&exponent=7&secondBackground=true&clean" });
    assert.equal((await settings(page)).exponent, 7);
    await page.keyboard.press("n");
    await page.waitForFunction(() => location.hash === "#clean");
    await page.evaluate(() => (location.hash = "#look&exponent=7"));
    await page.waitForFunction(() => window.velmora.settings.exponent === 7);
    await page.keyboard.press("n");
    await page.evaluate(() => (location.hash = "#look&exponent=7"));
    await page.waitForFunction(() => window.velmora.settings.exponent === 7);
    await close(page);
});

test("a replay that changes the settings removes the link from the address, and the page does not store these settings", async () => {
    const page = await open(browser, { url: server.url, hash: "#look&exponent=7" });
    const script = Buffer.from("frames 100000\n0 ink 1 0 0\n");
    await sendFiles(page, "drop", ["red.gesture", "", script]);
    await page.waitForFunction(() => location.hash === "");
    assert.deepEqual((await settings(page)).ink, [1, 0, 0]);
    const look = () => page.evaluate(() => localStorage.getItem("velmora look"));
    await page.keyboard.press("w");
    assert.equal(await look(), null);
    await page.keyboard.press("Escape");
    await waitForToast(page, "The gesture was stopped");
    await page.keyboard.press("w");
    assert.match(await look(), /"exponent":7/);
    await close(page);
});
