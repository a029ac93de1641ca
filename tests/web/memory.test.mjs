// Tests that the page remembers settings and backgrounds for the next visit.

import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { close, launch, makeImage, open, readFrame, sendFiles, settings, waitForToast } from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

/** Waits until the last change is stored. Then reloads the page and waits for its first frame. */
async function reload(page) {
    await page.evaluate(() => window.velmora.stored());
    await page.reload();
    await page.waitForFunction(() => window.velmora?.counts().frames > 0);
}

/** Drops a picture of each colour on the page. The last picture becomes the background. */
async function dropPictures(page, ...colors) {
    for (const color of colors) {
        await sendFiles(page, "drop", [`${color}.png`, "image/png", await makeImage(page, [9, 16], [[color, 0, 0, 9, 16]])]);
    }
    await page.evaluate(() => window.velmora.filesImported());
}

/**
 * Asserts which colour channels are bright in the middle of the frame. `bright` contains three booleans, for red, green
 * and blue.
 */
async function assertColor(page, bright) {
    const { pixel } = await readFrame(page);
    assert.deepEqual(pixel(48, 80).map((channel) => channel > 128), bright);
}

test("a reload keeps settings and pictures, a link overrides the settings, and Start fresh forgets both", async () => {
    const page = await open(browser, { size: [96, 160] });
    const fresh = await settings(page);
    await dropPictures(page, "red", "lime");
    await page.keyboard.press("n");
    await page.keyboard.press("b");
    const changed = await settings(page);
    await reload(page);
    await page.keyboard.press("z");
    await waitForToast(page, "There is no change to undo");
    assert.deepEqual(await settings(page), changed);
    await assertColor(page, [true, false, false]);
    await page.keyboard.press("b");
    await assertColor(page, [false, true, false]);
    await page.keyboard.press("Backspace"); // restores the preset that the settings were based on
    await waitForToast(page, "calm pond, changes discarded");
    const kept = await settings(page);

    await page.evaluate(() => (location.hash = "#look&exponent=7"));
    await page.waitForFunction(() => window.velmora.settings.exponent === 7);
    await reload(page);
    assert.equal((await settings(page)).exponent, 7);
    await page.evaluate(() => history.replaceState(null, "", location.pathname + location.search));
    await reload(page);
    assert.deepEqual(await settings(page), kept, "settings of a link must not be remembered if the user has not changed them");

    await page.keyboard.press("Tab");
    await page.getByText("View", { exact: true }).click();
    await page.getByRole("button", { name: "Start fresh" }).click();
    for (const visit of ["this visit", "the next visit"]) {
        assert.deepEqual(await settings(page), fresh, visit);
        const [red, green] = (await readFrame(page)).pixel(48, 80);
        assert.ok(red > 100 && green > 100, `${visit} must show the default painting: red ${red}, green ${green}`);
        await reload(page);
    }
    await close(page);
});

/** Runs before the page's scripts. Collects the texts of all toasts in `window.toasts`. */
function keepToasts() {
    window.toasts = "";
    const note = (changes) => changes.forEach(({ target }) => target.id === "toast" && (window.toasts += target.textContent));
    new MutationObserver(note).observe(document, { childList: true, subtree: true });
}

test("damaged stored data is reported once, and the page works if the browser allows no storage", async () => {
    const page = await open(browser, { size: [96, 160], before: keepToasts });
    await dropPictures(page, "red");
    await page.evaluate(async () => {
        await window.velmora.stored();
        localStorage.setItem("velmora look", '{"preset": "ember", "settings": {"wet": 1}}');
        const opening = indexedDB.open("velmora");
        await new Promise((done) => (opening.onsuccess = done));
        const change = opening.result.transaction("page", "readwrite");
        change.objectStore("page").put([new Blob(["no picture"], { type: "image/png" }), "sky"], "backgrounds");
        await new Promise((done) => (change.oncomplete = done));
        opening.result.close();
    });
    for (const expected of [/settings are damaged[^]*picture is damaged/, /^((?!damaged)[^])*$/]) {
        await reload(page);
        assert.match(await page.evaluate(() => window.toasts), expected);
    }
    await close(page);

    const refuse = () => {
        const fail = () => { throw new DOMException("denied", "SecurityError"); };
        Object.defineProperty(window, "localStorage", { get: fail });
        indexedDB.open = fail;
    };
    const hang = () => (indexedDB.open = () => ({}));
    for (const before of [refuse, hang]) {
        const page = await open(browser, { size: [96, 160], before });
        await dropPictures(page, "red");
        await page.keyboard.press("n");
        await waitForToast(page, "calm pond");
        await assertColor(page, [true, false, false]);
        await close(page);
    }
});
