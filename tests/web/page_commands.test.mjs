// What the page does besides the effect itself: overlays, full screen, sharing, random settings, adaptive quality.

import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { bring, canvasWidth, catchChoosers, close, difference, drag, frames, launch, notice, open, paint, picture, rest, serve, set, settings, shots, top } from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

/** Parts of the overlay with anything drawn: along the finger's way, and far from it. */
function drawnOver(page) {
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

test("overlays of flow and density lie where the finger went, and go", async () => {
    const page = await open(browser, {});
    assert.equal(await drawnOver(page), null);
    for (const [key, words] of [["d", "the ink's density"], ["v", "the flow"]]) {
        await page.keyboard.press(key);
        await notice(page, words);
        await drag(page, [60, 200], [120, 200], 2); // a longer one's flow spreads over all of a small screen
        const [near, far] = await drawnOver(page);
        assert.ok(near > 0.005 && near > 1.5 * far, `${words}: ${near} along its way, ${far} far from it`);
        await page.screenshot({ path: join(shots, `overlay-${key}.png`) });
        await page.keyboard.press(key);
        await frames(page, 1);
        assert.equal(await drawnOver(page), null);
        await page.keyboard.press("c");
    }
    await close(page);
});

test("full screen by key, and back", async () => {
    const page = await open(browser, {});
    for (const on of [true, false]) {
        await page.keyboard.press("x");
        await page.waitForFunction((wanted) => (document.fullscreenElement !== null) === wanted, on);
    }
    await page.evaluate(() => (document.documentElement.requestFullscreen = undefined));
    await page.keyboard.press("x");
    await notice(page, "no full screen");
    await close(page);
});

test("a look is shared by the browser's own sheet, else by the clipboard, else by the address", async () => {
    const server = await serve();
    const page = await open(browser, { url: server.url });
    const share = async (means) => {
        await page.evaluate((name) => {
            const [sheet, clipboard] = [name === "sheet", name === "clipboard"];
            const fails = () => Promise.reject(new Error());
            const set = (key, value) => Object.defineProperty(navigator, key, { value, configurable: true });
            set("share", sheet ? async ({ url }) => (window.shared = url) : undefined);
            const writeText = clipboard ? async (url) => (window.shared = url) : fails;
            set("clipboard", name === "insecure server" ? undefined : { writeText });
            window.shared = "";
        }, means);
        await page.keyboard.press("u");
    };
    for (const means of ["sheet", "clipboard"]) {
        await share(means);
        await page.waitForFunction(() => window.shared !== "");
        assert.equal(await page.evaluate(() => window.shared), page.url());
        assert.match(page.url(), /#look=/);
    }
    for (const means of ["nothing", "insecure server"]) {
        await page.evaluate(() => (document.getElementById("notice").textContent = ""));
        await share(means);
        await notice(page, "address now carries this look");
    }
    page.address = page.address.split("#")[0];
    await close(page);
    server.stop();
});

test("files by the keys of choosers", async () => {
    const page = await open(browser, {});
    await catchChoosers(page);
    const chosen = async (key, name, text) => {
        const [chooser] = await Promise.all([page.waitForEvent("filechooser"), page.keyboard.press(key)]);
        await chooser.setFiles({ name, mimeType: "", buffer: Buffer.from(text) });
    };
    await chosen("j", "evening.json", '{"exponent": 7}');
    await page.waitForFunction(() => window.velmora.settings.exponent === 7);
    await chosen("e", "red.png", await redPicture(page));
    await page.waitForFunction(() => window.velmora.settings.secondBackground);
    assert.deepEqual((await picture(page)).pixel(135, 240).map((part) => part > 100), [true, false, false]);
    await close(page);
});

test("attract mode and adaptive quality by their keys", async () => {
    const page = await open(browser, {});
    const isOn = {
        a: () => window.velmora.attractMode().on,
        q: () => window.velmora.quality().phase !== "fixed",
    };
    for (const [key, on, off] of [["a", "comes after idle", "no finger but yours"], ["q", "waves drawn coarser", "all of"]]) {
        await page.keyboard.press(key); // both are off in these tests
        await notice(page, on);
        assert.equal(await page.evaluate(isOn[key]), true);
        await page.keyboard.press(key);
        await notice(page, off);
        assert.equal(await page.evaluate(isOn[key]), false);
    }
    await close(page);
});

const redPicture = (page) => paint(page, [90, 160], [["#c02020", 0, 0, 90, 160]]);

test("an ink against the picture, a look by chance, and the preset's again", async () => {
    const page = await open(browser, {});
    await bring(page, "drop", ["red.png", "image/png", await redPicture(page)]);
    await page.evaluate(() => window.velmora.filesTaken());
    await page.keyboard.press("i");
    const { ink } = await settings(page);
    assert.ok(Math.min(ink[1], ink[2]) > ink[0] + 0.2, `${ink} against red`);

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

/** Frame 40 of a gesture: its picture, the water's bytes, and the triangles of the mesh. */
async function gestureAt(page, level) {
    const script = readFileSync(join(top, "gestures/medium_drag.gesture"), "utf8");
    const end = await page.evaluate(
        ([text, wanted]) => {
            const { velmora } = window;
            velmora.fixQuality(wanted);
            velmora.replay(text, "medium_drag");
            const end = velmora.counts().frames + 40;
            velmora.onFrame(() => (velmora.view.paused ||= velmora.counts().frames === end));
            return end;
        },
        [script, level],
    );
    const shown = await picture(page, end);
    const state = () => ({ water: String(window.velmora.waterBytes()), triangles: window.drawn / 3 });
    return { shown, ...(await page.evaluate(state)) };
}

test("waves drawn coarser are the same waves, and a replay has all of the pixels", async () => {
    const page = await open(browser, {});
    await page.evaluate(() => {
        const { gl } = window.velmora;
        const draw = gl.drawElements.bind(gl);
        gl.drawElements = (mode, count, ...rest) => draw(mode, (window.drawn = count), ...rest);
    });
    const calm = await picture(page);
    const [all, coarse, fewer] = [await gestureAt(page, 0), await gestureAt(page, 2), await gestureAt(page, 3)];
    assert.ok(coarse.water === all.water && fewer.water === all.water, "water");
    assert.ok(coarse.triangles > 0 && coarse.triangles < all.triangles / 8);
    const [moved, apart] = [difference(calm, all.shown), difference(all.shown, coarse.shown)];
    assert.ok(apart > 0 && apart < moved / 3, `${apart} of ${moved}`);
    assert.equal(fewer.shown.width, 270);
    await close(page);
});

test("fewer pixels come once they take no ink away, and show the same picture", async () => {
    const page = await open(browser, {});
    const calm = await picture(page);
    await drag(page, [60, 200], [210, 200], 6);
    await set(page, { damping: 0.8 }); // soon calm
    await page.evaluate(() => window.velmora.fixQuality(3));
    await rest(page); // with a trace of ink, which stays
    assert.equal(await page.evaluate(() => window.velmora.screen().width), 270);
    await page.keyboard.press("c");
    await canvasWidth(page, 203);
    const apart = difference(calm, await picture(page));
    assert.ok(apart < 8, `${apart}`);
    await close(page);
});

test("fewer pixels come at once in water without ink", async () => {
    const page = await open(browser, { hash: "#look=%7B%22waterOnly%22:true,%22damping%22:0.8%7D" });
    await drag(page, [60, 200], [210, 200], 3);
    await page.evaluate(() => window.velmora.fixQuality(3));
    await canvasWidth(page, 203);
    await close(page);
});

test("the page looks for the machine's quality before the first touch, and then rests", async () => {
    const page = await open(browser, { size: [540, 960], ready: false });
    await page.waitForFunction(() => window.velmora?.quality().phase === "watching" && window.velmora.isResting());
    assert.ok(await page.evaluate(() => window.velmora.quality().level > 0), "software GL is slow");
    await close(page);
});
