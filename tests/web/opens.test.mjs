// Tests that the page opens and draws without requests or console messages, and that a drag draws ink and makes waves.

import assert from "node:assert/strict";
import { statSync } from "node:fs";
import { after, before, test } from "node:test";
import { join } from "node:path";
import { close, difference, drag, file, frames, launch, open, readFrame, screenshotFolder, set } from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

/** Collects the logs of the shader compiler and of the linker in `window.glLogs`. */
function keepGlLogs() {
    window.glLogs = [];
    const prototype = WebGLRenderingContext.prototype;
    for (const [call, log] of [["compileShader", "getShaderInfoLog"], ["linkProgram", "getProgramInfoLog"]]) {
        const make = prototype[call];
        prototype[call] = function (object) {
            make.call(this, object);
            window.glLogs.push(this[log](object));
        };
    }
}

/** Returns the mean red, green and blue within a box. The box is given in fractions of the frame. */
function meanColor({ width, height, pixel }, [left, top, right, bottom]) {
    const sum = [0, 0, 0];
    for (let y = Math.ceil(top * height); y < bottom * height; ++y) {
        for (let x = Math.ceil(left * width); x < right * width; ++x) {
            pixel(x, y).forEach((value, at) => (sum[at] += value));
        }
    }
    return sum.map((value) => value / ((right - left) * (bottom - top) * width * height));
}

test("a page from disk draws ink along a drag and none elsewhere", async () => {
    assert.ok(statSync(file).size < 600 * 1024, "velmora.html must be smaller than 600 KB");
    const page = await open(browser, { size: [540, 960], before: keepGlLogs });
    const start = await readFrame(page);
    await page.mouse.move(150, 300);
    await page.mouse.down();
    for (let x = 160; x <= 390; x += 10) {
        await page.mouse.move(x, 300);
        await frames(page, 1);
    }
    const end = await readFrame(page);
    await page.screenshot({ path: join(screenshotFolder, "opens.png") });
    await page.mouse.up();
    const strokeBox = [0.6, 0.28, 0.74, 0.34];
    const ratio = meanColor(end, strokeBox).map((value, at) => value / meanColor(start, strokeBox)[at]);
    assert.ok(ratio[0] < 0.6 && ratio[0] < ratio[2] - 0.2, `blue ink must absorb more red than blue light: the remaining fractions of red, green and blue are ${ratio}`);
    assert.ok(difference(start, end, [0, 0.75, 1, 1]) < 1, "there must be no ink far from the stroke");
    const logs = await page.evaluate(() => window.glLogs);
    assert.ok(logs.length >= 9 && logs.every((log) => !log), `shaders must compile and link without messages: ${logs}`);
    await close(page);
});

test("waves refract the background, and hardly shift it if the refractive index is 1", async () => {
    const preset = { waterOnly: true, sheen: 0, fresnel: 0 }; // no ink, no reflections: only refraction
    const page = await open(browser, { hash: `#look=${encodeURIComponent(JSON.stringify(preset))}` });
    const flat = await readFrame(page);
    await drag(page, [60, 240], [210, 240], 4);
    const bent = difference(flat, await readFrame(page), [0.2, 0.4, 0.8, 0.6]);
    await set(page, { refractiveIndex: 1 });
    const straight = difference(flat, await readFrame(page), [0.2, 0.4, 0.8, 0.6]);
    assert.equal(await page.evaluate(() => window.velmora.isWaterIdle()), false);
    // Even with a refractive index of 1, waves shift the background a little. This change must be less than an eighth
    // of the change with the default refractive index.
    assert.ok(bent > 1 && straight < bent / 8, `waves must refract the background: the mean change is ${bent} of 255, and ${straight} if the refractive index is 1`);
    await close(page);
});

test("a high-density display limits the canvas to 1080 * 1920 pixels and keeps its aspect ratio", async () => {
    const page = await open(browser, { size: [800, 1200], deviceScaleFactor: 3, ready: false });
    await page.waitForFunction(() => window.velmora?.counts().frames > 0);
    const { width, height } = await page.evaluate(() => window.velmora.screen());
    const hasRatio = Math.abs(width / height - 2 / 3) < 0.01;
    assert.ok(width * height < 1.01 * 1080 * 1920 && hasRatio, `the canvas must have at most 1080 * 1920 pixels and a ratio of 2:3, but its size is ${width} x ${height}`);
    await close(page);
});

/** Counts in `window.growths` how often the memory of a WebAssembly module grows. */
function countGrowths() {
    window.growths = 0;
    const { grow } = WebAssembly.Memory.prototype;
    WebAssembly.Memory.prototype.grow = function (pages) {
        ++window.growths;
        return grow.call(this, pages);
    };
}

test("the module's memory does not grow while the page opens", async () => {
    // In WebKitGTK, a page whose memory grows sometimes fails to open.
    const page = await open(browser, { size: [1600, 900], before: countGrowths });
    assert.equal(await page.evaluate(() => window.growths), 0);
    await close(page);
});
