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
    await page.keyboard.press("z");
    assert.equal((await settings(page)).exponent, 7, "there must be no change to undo");
    await page.keyboard.press("n");
    await page.waitForFunction(() => location.hash === "#clean");
    await page.evaluate(() => (location.hash = "#look&exponent=7"));
    await page.waitForFunction(() => window.velmora.settings.exponent === 7);
    await page.keyboard.press("n");
    await page.evaluate(() => (location.hash = "#look&exponent=7"));
    await page.waitForFunction(() => window.velmora.settings.exponent === 7);
    await close(page);
});

test("a replay that changes the settings removes the link from the address, and then the user's settings return and are stored", async () => {
    const page = await open(browser, { url: server.url, hash: "#look&exponent=7" });
    const { ink } = await settings(page);
    const script = Buffer.from("frames 100000\n0 ink 1 0 0\n0 second on\n");
    await sendFiles(page, "drop", ["red.gesture", "", script]);
    await page.waitForFunction(() => location.hash === "");
    assert.deepEqual((await settings(page)).ink, [1, 0, 0]);
    const look = () => page.evaluate(() => localStorage.getItem("velmora look"));
    await page.keyboard.press("w");
    assert.equal(await look(), null);
    await page.keyboard.press("Escape");
    await waitForToast(page, "The gesture was stopped");
    const expected = { exponent: 7, ink, secondBackground: false, waterOnly: true };
    const { settings: stored } = JSON.parse(await look());
    for (const found of [stored, await settings(page)]) {
        assert.deepEqual({ ...found, ...expected }, found);
    }

    await sendFiles(page, "drop", ["red.gesture", "", Buffer.from("frames 3\n0 ink 1 0 0\n")]);
    await waitForToast(page, "The gesture has ended");
    assert.deepEqual((await settings(page)).ink, ink);
    await close(page);
});
