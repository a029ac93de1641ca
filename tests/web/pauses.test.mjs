// Pauses, restarts and a lost context: what the screen shows then, and what the context and the effect keep.

import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { after, before, test } from "node:test";
import { close, drag, launch, notice, open, saved } from "./page.mjs";

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

const rest = (page) => page.waitForFunction(() => !window.velmora.scheduled && window.velmora.rests);
/** Until the frame that something brings. */
async function drawn(page, act) {
    const before = await page.evaluate(() => window.velmora.counts.frames);
    await act();
    await page.waitForFunction((count) => window.velmora.counts.frames > count, before);
}

const apart = (one, other) => Math.max(...one.map((value, at) => Math.abs(value - other[at])));

async function losing(page, act) {
    await page.evaluate(() => {
        window.loss = window.velmora.effect.gl.getExtension("WEBGL_lose_context");
        window.loss.loseContext();
    });
    await page.waitForFunction(() => window.velmora.lost);
    await act();
    await page.evaluate(() => window.loss.restoreContext());
    await page.waitForFunction(() => !window.velmora.lost);
}

test("a pause shows what is changed in it, its water stands, and its touches are none", async () => {
    const page = await open(browser);
    const shown = async () => (await rest(page), meanColor(page, await page.screenshot()));
    const water = () => page.evaluate(() => String(window.velmora.effect.waterBytes()));
    await drag(page, [60, 200], [200, 260], 4);
    await page.keyboard.press(" ");
    const [first, stood] = [await shown(), await water()];
    const kept = await saved(page, () => page.keyboard.press("s"));
    assert.ok(apart(await meanColor(page, readFileSync(await kept.path())), first) < 2, "a screenshot of it");
    await page.keyboard.press("b");
    assert.ok(apart(await shown(), first) > 8, "the other background");
    await page.keyboard.press("v");
    await rest(page);
    assert.ok(await page.evaluate(() => window.velmora.probe.velocity.columns > 0), "its flow");
    await page.keyboard.press("v");
    await page.mouse.click(100, 300);
    await page.keyboard.press("b");
    await shown();
    assert.equal(await water(), stood);

    await losing(page, () => page.keyboard.press("b"));
    const second = await shown();
    assert.ok(apart(second, first) > 8 && Math.max(...second) > 30, `after a lost context: ${second}`);
    const cdp = await page.context().newCDPSession(page);
    for (const [width, height, deviceScaleFactor] of [[480, 270, 1], [480, 270, 1.5]]) {
        await cdp.send("Emulation.setDeviceMetricsOverride", { width, height, deviceScaleFactor, mobile: false });
        await page.waitForFunction((wide) => window.velmora.canvas.width === wide, width * deviceScaleFactor);
        assert.ok(apart(await shown(), second) < 25, "in another size");
    }
    await page.mouse.click(100, 100);
    await drawn(page, () => page.keyboard.press(" "));
    assert.equal(await page.evaluate(() => window.velmora.effect.waterIsCalm), true);
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
    const alive = () => page.evaluate(() => [window.alive, window.velmora.effect.module.GL.textures.length]);
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
        assert.equal(await page.evaluate(() => window.velmora.recording || window.velmora.view.paused), false);
        await page.setViewportSize({ width: 300, height: 400 });
        await page.waitForTimeout(400);
    });
    await page.waitForFunction(() => window.velmora.canvas.width === 300);
    await rest(page);
    await close(page, /CONTEXT_LOST/);
});

test("frames have the time that passed, in the settings' scale, and go on under rain", async () => {
    const page = await open(browser);
    await rest(page);
    const pace = (scale) =>
        page.evaluate(async (timeScale) => {
            const { velmora } = window;
            Object.assign(velmora.look, { timeScale, rain: 0.05 }); // a drop in twenty seconds
            velmora.userCame();
            const frame = velmora.effect.frame;
            let [shown, count] = [0, 0];
            velmora.effect.frame = (elapsed) => (frame.call(velmora.effect, elapsed), (shown += elapsed), ++count);
            const start = performance.now();
            while (performance.now() < start + 1500) {
                await new Promise(requestAnimationFrame);
            }
            velmora.effect.frame = frame;
            return [shown / (performance.now() - start), count];
        }, scale);
    for (const scale of [0.25, 2]) {
        const [seen, count] = await pace(scale);
        assert.ok(count > 5 && Math.abs(seen / scale - 1) < 0.3, `${seen} of ${scale} in ${count} frames`);
    }
    await close(page);
});
