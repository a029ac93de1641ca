// Pauses, restarts and a lost context: what the screen shows then, and what the context and the effect keep.

import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { after, before, test } from "node:test";
import { canvasWidth, close, drag, launch, notice, open, rest, saved, set, takeTime } from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

/** Mean red, green and blue of a PNG, of the middle without button and notice. */
function meanColor(page, png) {
    return page.evaluate(
        async (bytes) => {
            const picture = await createImageBitmap(new Blob([new Uint8Array(bytes)]));
            const { width, height } = picture;
            const context = new OffscreenCanvas(width, height).getContext("2d");
            context.drawImage(picture, 0, 0);
            const { data } = context.getImageData(0, height / 4, width, height / 2);
            return [0, 1, 2].map((part) => data.filter((_, at) => at % 4 === part).reduce((sum, one) => sum + one, 0) / (data.length / 4));
        },
        [...png],
    );
}

/** Until the frame that something brings. */
async function drawn(page, act) {
    const before = await page.evaluate(() => window.velmora.counts().frames);
    await act();
    await page.waitForFunction((count) => window.velmora.counts().frames > count, before);
}

const apart = (one, other) => Math.max(...one.map((value, at) => Math.abs(value - other[at])));

async function losing(page, act) {
    await page.evaluate(() => {
        window.loss = window.velmora.gl.getExtension("WEBGL_lose_context");
        window.loss.loseContext();
    });
    await page.waitForFunction(() => window.velmora.isContextLost());
    await act();
    await page.evaluate(() => window.loss.restoreContext());
    await page.waitForFunction(() => !window.velmora.isContextLost());
}

/** A page paused after a stroke, and the mean colour that it shows. */
async function pausedPage() {
    const page = await open(browser);
    await drag(page, [60, 200], [200, 260], 4);
    await page.keyboard.press(" ");
    const shown = async () => (await rest(page), meanColor(page, await page.screenshot()));
    return { page, shown, first: await shown() };
}

test("a pause shows the settings that are changed in it, and its water stands", async () => {
    const { page, shown, first } = await pausedPage();
    const water = () => page.evaluate(() => String(window.velmora.waterBytes()));
    const stood = await water();
    await page.keyboard.press("b");
    assert.ok(apart(await shown(), first) > 8, "the other background");
    await page.keyboard.press("v");
    await rest(page);
    assert.ok(await page.evaluate(() => window.velmora.velocity().columns > 0), "its flow");
    assert.equal(await water(), stood);
    await close(page);
});

test("a screenshot of a pause is what it shows", async () => {
    const { page, first } = await pausedPage();
    const kept = await saved(page, () => page.keyboard.press("s"));
    assert.ok(apart(await meanColor(page, readFileSync(await kept.path())), first) < 2);
    await close(page);
});

test("the touches of a pause are none", async () => {
    const page = await open(browser);
    await page.keyboard.press(" ");
    await page.mouse.click(100, 300);
    await page.mouse.click(100, 100);
    await drawn(page, () => page.keyboard.press(" "));
    assert.equal(await page.evaluate(() => window.velmora.isWaterIdle()), true);
    await close(page);
});

test("a pause shows a context that came back, and another size", async () => {
    const { page, shown, first } = await pausedPage();
    await losing(page, () => page.keyboard.press("b"));
    const second = await shown();
    assert.ok(apart(second, first) > 8 && Math.max(...second) > 30, `after a lost context: ${second}`);
    const cdp = await page.context().newCDPSession(page);
    for (const [width, height, deviceScaleFactor] of [[480, 270, 1], [480, 270, 1.5]]) {
        await cdp.send("Emulation.setDeviceMetricsOverride", { width, height, deviceScaleFactor, mobile: false });
        await canvasWidth(page, width * deviceScaleFactor);
        assert.ok(apart(await shown(), second) < 25, "in another size");
    }
    await close(page, /CONTEXT_LOST/);
});

test("no start of the effect leaves anything of the one before in the context", async () => {
    const page = await open(browser, {
        before: () => {
            window.alive = {};
            for (const kind of ["Buffer", "Framebuffer", "Program", "Shader", "Texture"]) {
                const prototype = WebGLRenderingContext.prototype;
                const [make, remove] = [prototype[`create${kind}`], prototype[`delete${kind}`]];
                window.alive[kind] = 0;
                prototype[`create${kind}`] = function (...type) {
                    ++window.alive[kind];
                    return make.apply(this, type);
                };
                prototype[`delete${kind}`] = function (object) {
                    window.alive[kind] -= object ? 1 : 0;
                    remove.call(this, object);
                };
            }
        },
    });
    const alive = () => page.evaluate(() => [window.alive, window.velmora.textureNames()]);
    const first = await alive();
    for (let restart = 0; restart < 3; ++restart) {
        await drawn(page, () => page.evaluate(() => window.velmora.restart()));
        await drawn(page, () => page.keyboard.press("r"));
        await saved(page, () => page.keyboard.press("r"));
    }
    assert.deepEqual(await alive(), first);
    await close(page);
});

test("without a context: what needs one says so, and a new size waits for it", async () => {
    const page = await open(browser);
    await losing(page, async () => {
        for (const key of ["r", "g", "s", "l", "."]) {
            await page.evaluate(() => (document.getElementById("notice").textContent = ""));
            await page.keyboard.press(key);
            await notice(page, "not until it is back");
        }
        assert.equal(await page.evaluate(() => window.velmora.isRecording() || window.velmora.view.paused), false);
        await page.setViewportSize({ width: 300, height: 400 });
    });
    await canvasWidth(page, 300);
    await rest(page);
    await close(page, /CONTEXT_LOST/);
});

test("frames have the time that passed, in the settings' scale, and go on under rain", async () => {
    const page = await open(browser);
    await rest(page);
    await takeTime(page);
    for (const timeScale of [0.25, 2]) {
        await set(page, { timeScale, rain: 0.05 }); // a drop in twenty seconds
        const shown = await page.evaluate(async () => {
            let sum = 0;
            const stop = window.velmora.onFrame((elapsed) => (sum += elapsed));
            window.velmora.noteInput();
            await window.showFrame(16);
            sum = 0;
            for (let frame = 0; frame < 20; ++frame) {
                await window.showFrame(20);
            }
            stop();
            return sum;
        });
        assert.ok(Math.abs(shown - 400 * timeScale) < 17, `${shown} at ${timeScale}`);
    }
    await close(page);
});

test("of time that nobody saw, no frame has more than a moment", async () => {
    const page = await open(browser);
    await rest(page);
    await takeTime(page);
    await set(page, { rain: 1 }); // frames go on
    const elapsed = await page.evaluate(async () => {
        const seen = [];
        window.velmora.onFrame((milliseconds) => seen.push(milliseconds));
        window.velmora.noteInput();
        await window.showFrame(60000);
        await window.showFrame(60000); // the machine slept
        document.dispatchEvent(new Event("visibilitychange"));
        await window.showFrame(60000);
        return seen;
    });
    assert.deepEqual(elapsed.map(Math.round), [17, 250, 17]);
    await close(page);
});
