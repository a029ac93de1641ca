// The page opens, draws, asks for nothing and complains of nothing; the finger lays ink where it goes, and its waves
// bend the picture.

import assert from "node:assert/strict";
import { statSync } from "node:fs";
import { after, before, test } from "node:test";
import { join } from "node:path";
import { close, difference, drag, file, frames, launch, open, picture, set, shots } from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

/** What the compiler of shaders and the linker say. */
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

/** Mean red, green and blue of a box, parts of the picture. */
function meanColor({ width, height, pixel }, [left, top, right, bottom]) {
    const sum = [0, 0, 0];
    for (let y = Math.ceil(top * height); y < bottom * height; ++y) {
        for (let x = Math.ceil(left * width); x < right * width; ++x) {
            pixel(x, y).forEach((value, at) => (sum[at] += value));
        }
    }
    return sum.map((value) => value / ((right - left) * (bottom - top) * width * height));
}

test("a drag from disk leaves ink along its way and none beside it", async () => {
    assert.ok(statSync(file).size < 600 * 1024, "size");
    const page = await open(browser, { size: [540, 960], before: keepGlLogs });
    const start = await picture(page);
    await page.mouse.move(150, 300);
    await page.mouse.down();
    for (let x = 160; x <= 390; x += 10) {
        await page.mouse.move(x, 300);
        await frames(page, 1);
    }
    const end = await picture(page);
    await page.screenshot({ path: join(shots, "opens.png") });
    await page.mouse.up();
    const way = [0.6, 0.28, 0.74, 0.34];
    const left = meanColor(end, way).map((value, at) => value / meanColor(start, way)[at]);
    assert.ok(left[0] < 0.6 && left[0] < left[2] - 0.2, `blue ink takes the red: ${left}`);
    assert.ok(difference(start, end, [0, 0.75, 1, 1]) < 1, "none far from it");
    const logs = await page.evaluate(() => window.glLogs);
    assert.ok(logs.length >= 9 && logs.every((log) => !log), `${logs}`);
    await close(page);
});

test("waves bend the picture as the refractive index says", async () => {
    const look = { waterOnly: true, sheen: 0, fresnel: 0 }; // the picture alone
    const page = await open(browser, { hash: `#look=${encodeURIComponent(JSON.stringify(look))}` });
    const calm = await picture(page);
    await drag(page, [60, 240], [210, 240], 4);
    const bent = difference(calm, await picture(page), [0.2, 0.4, 0.8, 0.6]);
    await set(page, { refractiveIndex: 1 });
    const straight = difference(calm, await picture(page), [0.2, 0.4, 0.8, 0.6]);
    assert.equal(await page.evaluate(() => window.velmora.isWaterIdle()), false);
    assert.ok(bent > 4 && straight < bent / 8, `${bent}, ${straight}`); // the lifted water shifts it a little
    await close(page);
});

test("a dense display gets no more pixels than a phone can draw", async () => {
    const page = await open(browser, { size: [800, 1200], deviceScaleFactor: 3, ready: false });
    await page.waitForFunction(() => window.velmora?.counts().frames > 0);
    const { width, height } = await page.evaluate(() => window.velmora.screen());
    assert.ok(width * height < 1.01 * 1080 * 1920 && Math.abs(width / height - 2 / 3) < 0.01, `${width} x ${height}`);
    await close(page);
});
