// The visitor's pictures, whichever way they come; and where they stay: in another size, after a lost context.

import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { bring, canvasWidth, catchChoosers, close, difference, drag, frames, launch, notice, open, paint, picture, set, settings } from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

/** Four fields of colour, red, green over blue, white, between bare margins. */
function fourFields(page, type, width = 60, height = 120, margin = 0) {
    const [w, h] = [width / 2, height / 2];
    const boxes = ["red", "lime", "blue", "white"].map((color, at) =>
        [color, margin + (at % 2) * w, Math.floor(at / 2) * h, w, h]);
    return paint(page, [width + 2 * margin, height], boxes, type);
}

/** The JPEG with the note of a camera that was held turned to the left: to be shown turned by a quarter. */
function turned(jpeg) {
    const note = Buffer.from(
        "ffe10022457869660000" + "4d4d002a00000008" + "0001" + "011200030000000100060000" + "00000000", "hex");
    return Buffer.concat([Buffer.from(jpeg.slice(0, 2)), note, Buffer.from(jpeg.slice(2))]);
}

const colors = { red: [255, 0, 0], lime: [0, 255, 0], blue: [0, 0, 255], white: [255, 255, 255] };

/** The name of the colour in each quarter, row by row. */
function quarters(shown) {
    return [0.25, 0.75].flatMap((y) =>
        [0.25, 0.75].map((x) => {
            const pixel = shown.pixel(x * shown.width, y * shown.height);
            const near = (color) => color.every((part, at) => Math.abs(part - pixel[at]) < 40);
            return Object.keys(colors).find((name) => near(colors[name])) ?? String(pixel);
        }),
    );
}

async function shows(page, expected) {
    let seen;
    for (let attempt = 0; attempt < 40; ++attempt) {
        seen = quarters(await picture(page));
        if (String(seen) === String(expected)) {
            return;
        }
    }
    assert.deepEqual(seen, expected);
}

test("dropped, pasted and turned pictures, and the one before as the second background", async () => {
    const page = await open(browser);
    const upright = ["red", "lime", "blue", "white"];
    // Cropped, not stretched: the margins lie outside.
    await bring(page, "drop", ["fields.png", "image/png", await fourFields(page, "image/png", 60, 120, 100)]);
    await shows(page, upright);
    const jpeg = await fourFields(page, "image/jpeg", 120, 60);
    await bring(page, "paste", ["", "image/jpeg", turned(jpeg)]);
    await shows(page, ["blue", "red", "white", "lime"]);
    await page.keyboard.press("b");
    await shows(page, upright);
    await page.keyboard.press("b");

    await bring(page, "drop", ["broken.png", "image/png", [1, 2, 3]]);
    await notice(page, "broken.png is no picture that this browser can show");
    await shows(page, ["blue", "red", "white", "lime"]);
    await close(page);
});

test("a chosen picture much larger than the screen, in both its shapes", async () => {
    const page = await open(browser);
    await catchChoosers(page);
    const large = await paint(page, [5000, 3000], [["red", 0, 0, 5000, 1500], ["blue", 0, 1500, 5000, 1500]]);
    const [chooser] = await Promise.all([page.waitForEvent("filechooser"), page.keyboard.press("o")]);
    await chooser.setFiles({ name: "large.png", mimeType: "image/png", buffer: Buffer.from(large) });
    const halves = ["red", "red", "blue", "blue"];
    await shows(page, halves);
    await page.setViewportSize({ width: 480, height: 270 });
    await canvasWidth(page, 480);
    await shows(page, halves);
    await close(page);
});

test("pictures are shown in the order in which they were dropped, however long each takes", async () => {
    const page = await open(browser);
    const large = await paint(page, [5000, 3000], [["red", 0, 0, 5000, 3000]]);
    const small = await fourFields(page, "image/png");
    await bring(page, "drop", ["large.png", "image/png", large], ["small.png", "image/png", small]);
    await page.evaluate(() => window.velmora.filesTaken());
    assert.deepEqual(quarters(await picture(page)), ["red", "lime", "blue", "white"]);
    await close(page);
});

test("a lost context takes the ink and leaves picture and settings", async () => {
    const page = await open(browser, { size: [540, 960] });
    await bring(page, "drop", ["fields.png", "image/png", await fourFields(page, "image/png")]);
    await set(page, { damping: 0.85 }); // soon calm
    await shows(page, ["red", "lime", "blue", "white"]);
    const [calm, before] = [await picture(page), await settings(page)];
    await drag(page, [150, 480], [390, 480], 6);
    assert.ok(difference(calm, await picture(page), [0.3, 0.45, 0.7, 0.55]) > 2, "ink lies");
    await page.keyboard.press("l");
    await page.waitForFunction(() => window.velmora.counts().contexts === 2 && !window.velmora.isContextLost());
    await frames(page, 1);
    await page.waitForFunction(() => window.velmora.isWaterIdle());
    assert.ok(difference(calm, await picture(page)) < 0.5, "picture without ink");
    assert.deepEqual(await settings(page), before);
    await drag(page, [150, 480], [390, 480], 6);
    assert.ok(difference(calm, await picture(page), [0.3, 0.45, 0.7, 0.55]) > 2, "new ink");
    await close(page, /CONTEXT_LOST/);
});
