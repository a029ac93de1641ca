// Tests commands of the page: overlays, full screen, links, sharing, file choosers, random settings and adaptive quality.

import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import {
    close, difference, downloadFrom, drag, frames, launch, makeImage, mockTime, needs, open, pageSize, readFrame,
    screenshotFolder, sendFiles, serve, set, settings, top, waitForCanvasWidth, waitForToast, waitUntilIdle,
} from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

/**
 * Returns the fraction of opaque overlay pixels near the stroke, and the fraction far from the stroke. Returns null if
 * the overlay is hidden.
 */
function overlayShares(page) {
    return page.evaluate(() => {
        const overlay = document.getElementById("overlay");
        const { width, height } = overlay;
        const copy = new OffscreenCanvas(width, height).getContext("2d", { willReadFrequently: true });
        copy.drawImage(overlay, 0, 0);
        const share = (top, bottom) => {
            const { data } = copy.getImageData(0, top * height, width, (bottom - top) * height);
            return data.filter((value, at) => at % 4 === 3 && value > 100).length / (data.length / 4);
        };
        return overlay.hidden ? null : [share(0.35, 0.5), share(0.8, 0.95)];
    });
}

test("the velocity and density overlays show the stroke, and can be turned off", async () => {
    const page = await open(browser, {});
    await mockTime(page); // otherwise more frames are drawn before the check, and the flow fills the screen
    const showFrame = () => page.evaluate(() => window.showFrame(1000 / 60));
    assert.equal(await overlayShares(page), null);
    for (const [key, message] of [["d", "Ink density is on"], ["v", "Velocity field is on"]]) {
        await page.keyboard.press(key);
        await waitForToast(page, message);
        const [column, row] = [0.2 * pageSize[0], 0.42 * pageSize[1]];
        await page.mouse.move(column, row);
        await page.mouse.down();
        for (const step of [1, 2]) {
            await showFrame();
            await page.mouse.move(column + 0.06 * step * pageSize[0], row);
        }
        await showFrame();
        await page.mouse.up();
        await showFrame();
        const [near, far] = await overlayShares(page);
        const isNearStroke = near > 0.005 && near > 1.5 * far;
        assert.ok(isNearStroke, `${message}: the overlay must cover more near the stroke (${near}) than far from it (${far})`);
        await page.screenshot({ path: join(screenshotFolder, `overlay-${key}.png`) });
        await page.keyboard.press(key);
        await showFrame();
        assert.equal(await overlayShares(page), null);
        await page.keyboard.press("c");
    }
    await close(page);
});

test("a key turns full screen on and off", async () => {
    const page = await open(browser, {});
    for (const on of [true, false]) {
        await page.keyboard.press("x");
        await page.waitForFunction((wanted) => (document.fullscreenElement !== null) === wanted, on);
    }
    await page.evaluate(() => (document.documentElement.requestFullscreen = undefined));
    await page.keyboard.press("x");
    await waitForToast(page, "Full screen is not possible here");
    await close(page);
});

test("a link to the settings is copied, also on a device with a share sheet; if copying fails, only the address contains the link", async () => {
    const server = await serve();
    const page = await open(browser, { url: server.url });
    const copyLink = async (clipboard) => {
        await page.evaluate((kind) => {
            const set = (key, value) => Object.defineProperty(navigator, key, { value, configurable: true });
            const writers = {
                working: { writeText: async (text) => (window.copied = text) },
                refused: { writeText: () => Promise.reject(new Error()) },
            };
            set("clipboard", writers[kind]);
            set("share", async () => {});
        }, clipboard);
        await page.keyboard.press("u");
    };
    await copyLink("working");
    await waitForToast(page, "Copied a link to these settings");
    const [copied, address] = await page.evaluate(() => [window.copied, location.href]);
    assert.equal(copied, address);
    assert.match(address, /#look/);
    for (const clipboard of ["refused", "missing on an insecure server"]) {
        await page.evaluate(() => (document.getElementById("toast").textContent = ""));
        await copyLink(clipboard);
        await waitForToast(page, "address is now a link to these settings");
    }
    page.address = page.address.split("#")[0];
    await close(page);
    server.stop();
});

/**
 * Opens a page and the section "Save and record" of its panel. The device has a share sheet if `canShare` is true.
 * `window.shared` becomes the last shared file.
 */
async function openSection(canShare) {
    const prepare = (can) => {
        navigator.canShare = ({ files }) => can && files.length === 1;
        navigator.share = async ({ files }) => (window.shared = files[0]);
    };
    const page = await open(browser, { before: Function(`(${prepare})(${canShare})`) });
    await page.keyboard.press("Tab");
    await page.getByText("Save and record").click();
    return page;
}

test("a screenshot can be shared if the device has a share sheet", async () => {
    for (const canShare of [false, true]) {
        const page = await openSection(canShare);
        const button = page.getByRole("button", { name: "Share screenshot" });
        assert.equal(await button.isVisible(), canShare);
        if (canShare) {
            await button.click();
            await page.waitForFunction(() => window.shared?.type === "image/png" && window.shared.size > 1000);
        }
        await close(page);
    }
});

test("a recorded video can be shared if the device has a share sheet", needs("recorder"), async () => {
    for (const canShare of [false, true]) {
        const page = await openSection(canShare);
        const video = page.getByRole("button", { name: "Share video" });
        assert.equal(await video.isVisible(), false);
        await page.keyboard.press("f");
        const { name } = await downloadFrom(page, () => page.keyboard.press("f"));
        await waitForToast(page, `Saved ${name}`);
        if (canShare) {
            await video.waitFor(); // the panel looks for a new video ten times a second
            await video.click();
            await page.waitForFunction(() => window.shared.type.startsWith("video/") && window.shared.size > 1000);
        } else {
            await page.keyboard.press("Escape"); // the panel updates its buttons when it opens
            await page.keyboard.press("Tab");
            assert.ok(await page.getByRole("button", { name: "Record video" }).isVisible());
            assert.equal(await video.isVisible(), false);
        }
        await close(page);
    }
});

test("a wallpaper has the size of the device's screen", async () => {
    const setScreen = () => Object.defineProperties(screen, { width: { value: 300 }, height: { value: 400 } });
    const page = await open(browser, { before: setScreen, deviceScaleFactor: 2 });
    await page.keyboard.press("Tab");
    await page.getByText("Save and record").click();
    const { name, bytes } = await downloadFrom(page, () => page.getByRole("button", { name: "Save wallpaper" }).click());
    assert.match(name, /^velmora-wallpaper-.*\.png$/);
    assert.deepEqual([bytes.readUInt32BE(16), bytes.readUInt32BE(20)], [600, 800]); // width and height in the PNG header
    await close(page);
});

test("keys open file choosers for presets and images", async () => {
    const page = await open(browser, {});
    const choose = (key, name, content) => page.chooseFile(() => page.keyboard.press(key), name, Buffer.from(content));
    await choose("j", "evening.json", '{"exponent": 7}');
    await page.waitForFunction(() => window.velmora.settings.exponent === 7);
    await choose("e", "red.png", await redImage(page));
    await page.waitForFunction(() => window.velmora.settings.secondBackground);
    assert.deepEqual((await readFrame(page)).pixel(135, 240).map((part) => part > 100), [true, false, false]);
    await close(page);
});

test("keys turn modes on and off, and a toast confirms each change", async () => {
    const page = await open(browser, {});
    const isOn = {
        a: () => window.velmora.attractMode().on,
        q: () => window.velmora.quality().phase !== "fixed",
        b: () => window.velmora.settings.secondBackground,
        w: () => window.velmora.settings.waterOnly,
    };
    for (const [key, on, off] of [
        ["a", "Idle animation is on", "Idle animation is off"],
        ["q", "Adaptive quality is on", "Full quality"],
        ["b", "Second picture", "First picture"],
        ["w", "Water only is on", "Water only is off"],
    ]) {
        await page.keyboard.press(key); // all modes are off at the start
        await waitForToast(page, on);
        assert.equal(await page.evaluate(isOn[key]), true);
        await page.keyboard.press(key);
        await waitForToast(page, off);
        assert.equal(await page.evaluate(isOn[key]), false);
    }
    await close(page);
});

test("a worker decodes a picture, and if the worker does not start or fails, the page's thread decodes the picture", async () => {
    const server = await serve(); // in WebKit, workers of a page from disk cannot read files
    const changes = {
        "createImageBitmap on the page's thread": () => (window.createImageBitmap = undefined),
        workers: () => (window.Worker = undefined),
        "a working worker": () => (window.Worker = class {
            terminate() {}
            postMessage() {
                setTimeout(() => this.onmessage({ data: null }));
            }
        }),
    };
    for (const [missing, remove] of Object.entries(changes)) {
        const page = await open(browser, { url: server.url, size: [96, 160], before: remove });
        await sendFiles(page, "drop", ["red.png", "image/png", await redImage(page)]);
        await waitForToast(page, "red.png is the background now");
        const [red, green] = (await readFrame(page)).pixel(48, 80);
        assert.ok(red > 100 && green < 100, `a browser without ${missing} must show the red picture, but the pixel has red ${red} and green ${green}`);
        await close(page);
    }
    server.stop();
});

const redImage = (page) => makeImage(page, [90, 160], [["#c02020", 0, 0, 90, 160]]);

test("keys choose a contrasting ink and random settings, and restore the preset", async () => {
    const page = await open(browser, {});
    await sendFiles(page, "drop", ["red.png", "image/png", await redImage(page)]);
    await page.evaluate(() => window.velmora.filesImported());
    await page.keyboard.press("i");
    const { ink } = await settings(page);
    assert.ok(Math.min(ink[1], ink[2]) > ink[0] + 0.2, `the ink ${ink} must stand out from red`);

    await page.keyboard.press("n");
    const preset = await settings(page);
    await page.keyboard.press("m");
    const [first, second] = [await settings(page), (await page.keyboard.press("m"), await settings(page))];
    assert.notDeepEqual(first, preset);
    assert.notDeepEqual(second, first);
    await page.keyboard.press("Backspace");
    assert.deepEqual(await settings(page), preset);
    await close(page);
});

/**
 * Replays a gesture on a fresh page at a quality level. A page that has played a gesture still has a flow. Returns the
 * image before the gesture, the image of frame 40, the state of the water and the number of drawn triangles.
 */
async function gestureAt(level) {
    const page = await open(browser, {});
    await page.evaluate(() => {
        const { gl } = window.velmora;
        const draw = gl.drawElements.bind(gl);
        gl.drawElements = (mode, count, ...rest) => draw(mode, (window.drawn = count), ...rest);
    });
    const flat = await readFrame(page);
    const script = readFileSync(join(top, "gestures/medium_drag.gesture"), "utf8");
    const end = await page.evaluate(
        ([text, wanted]) => {
            const { velmora } = window;
            velmora.fixQuality(wanted);
            velmora.replay(text, "medium_drag");
            const end = velmora.counts().frames + 40;
            velmora.onFrame(() => (velmora.pause.isOn ||= velmora.counts().frames === end));
            return end;
        },
        [script, level],
    );
    const shown = await readFrame(page, end);
    const state = await page.evaluate(() => ({ water: String(window.velmora.waterBytes()), triangles: window.drawn / 3 }));
    await close(page);
    return { flat, shown, ...state };
}

test("a coarser mesh does not change the water, and a replay at reduced quality keeps the canvas size", async () => {
    const [all, coarse, fewer] = [await gestureAt(0), await gestureAt(1), await gestureAt(2)];
    assert.ok(coarse.water === all.water && fewer.water === all.water, "the water must be the same at every quality level");
    assert.ok(coarse.triangles > 0 && coarse.triangles < all.triangles / 2);
    const [moved, apart] = [difference(all.flat, all.shown), difference(all.shown, coarse.shown)];
    assert.ok(apart > 0 && apart < moved / 3, `the coarse mesh must change the image by more than 0 and less than ${moved / 3} on average, not by ${apart}`);
    assert.equal(fewer.shown.width, pageSize[0]);
});

test("at a lower quality the canvas keeps its size while ink is visible, and then shrinks without a visible change", async () => {
    const page = await open(browser, {});
    const flat = await readFrame(page);
    await drag(page, [60, 200], [210, 200], 6);
    await set(page, { damping: 0.8 }); // the waves fade fast
    await page.evaluate(() => window.velmora.fixQuality(2));
    await waitUntilIdle(page); // some ink is still visible
    assert.equal(await page.evaluate(() => window.velmora.screen().width), pageSize[0]);
    await page.keyboard.press("c");
    await waitForCanvasWidth(page, Math.round(0.75 * pageSize[0]));
    const apart = difference(flat, await readFrame(page));
    assert.ok(apart < 8, `the smaller canvas must show the same image, but the mean difference is ${apart} of 255`);
    await close(page);
});

test("at a lower quality the canvas shrinks in water-only mode, because no ink can be lost", async () => {
    const page = await open(browser, { hash: "#look=%7B%22waterOnly%22:true,%22damping%22:0.8%7D" });
    await drag(page, [60, 200], [210, 200], 3);
    await page.evaluate(() => window.velmora.fixQuality(2));
    await waitForCanvasWidth(page, Math.round(0.75 * pageSize[0]));
    await close(page);
});

test("the page finds its quality level before the first touch, and becomes idle", async () => {
    const page = await open(browser, { size: [540, 960], ready: false });
    await page.waitForFunction(() => window.velmora?.quality().phase === "watching" && window.velmora.isIdle());
    assert.ok(await page.evaluate(() => window.velmora.quality().level > 0), "the quality must be reduced, because software GL is slow");
    await close(page);
});
