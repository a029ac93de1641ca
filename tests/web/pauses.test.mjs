// Tests pauses, restarts and context losses: the frames that the page shows, their duration, and the GL objects.

import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import {
    close, downloadFrom, drag, launch, mockTime, needs, open, set, waitForCanvasWidth, waitForToast, waitUntilIdle,
} from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

/**
 * Returns the mean red, green and blue of a PNG image. Leaves out the top and bottom quarter, which show the button and
 * the toast.
 */
function meanColor(page, png) {
    return page.evaluate(
        async (bytes) => {
            const image = await createImageBitmap(new Blob([new Uint8Array(bytes)]));
            const { width, height } = image;
            const context = new OffscreenCanvas(width, height).getContext("2d");
            context.drawImage(image, 0, 0);
            const { data } = context.getImageData(0, height / 4, width, height / 2);
            return [0, 1, 2].map((part) => data.filter((_, at) => at % 4 === part).reduce((sum, one) => sum + one, 0) / (data.length / 4));
        },
        [...png],
    );
}

/** Calls `act` and waits for the next frame. */
async function waitForFrame(page, act) {
    const before = await page.evaluate(() => window.velmora.counts().frames);
    await act();
    await page.waitForFunction((count) => window.velmora.counts().frames > count, before);
}

const apart = (one, other) => Math.max(...one.map((value, at) => Math.abs(value - other[at])));

/** Loses the context, calls `act` and restores the context. */
async function withLostContext(page, act) {
    await page.evaluate(() => {
        window.loss = window.velmora.gl.getExtension("WEBGL_lose_context");
        window.loss.loseContext();
    });
    await page.waitForFunction(() => window.velmora.isContextLost());
    await act();
    await page.evaluate(() => window.loss.restoreContext());
    await page.waitForFunction(() => !window.velmora.isContextLost());
}

/**
 * Opens a page and pauses it after a stroke. Returns the page, the function `shown`, which measures the mean colour of
 * the page, and `first`, the mean colour at the start of the pause.
 */
async function pausedPage() {
    const page = await open(browser);
    await drag(page, [60, 200], [200, 260], 4);
    await page.keyboard.press(" ");
    const shown = async () => (await waitUntilIdle(page), meanColor(page, await page.screenshot()));
    return { page, shown, first: await shown() };
}

test("a paused page shows changed settings and does not move the water", async () => {
    const { page, shown, first } = await pausedPage();
    const water = () => page.evaluate(() => String(window.velmora.waterBytes()));
    const waterBefore = await water();
    await page.keyboard.press("b");
    assert.ok(apart(await shown(), first) > 8, "after the key B, the paused page must show the second background");
    await page.keyboard.press("v");
    await waitUntilIdle(page);
    assert.ok(await page.evaluate(() => window.velmora.velocity().columns > 0), "the pause must show the velocity field");
    assert.equal(await water(), waterBefore);
    await close(page);
});

test("a screenshot during a pause shows the frame that is on the screen", async () => {
    const { page, first } = await pausedPage();
    const kept = await downloadFrom(page, () => page.keyboard.press("s"));
    assert.ok(apart(await meanColor(page, kept.bytes), first) < 2);
    await close(page);
});

test("a pause shows a badge, and a touch on the water or on the badge ends it", async () => {
    const page = await open(browser);
    const badge = page.locator("#badges button", { hasText: "Paused" });
    await page.keyboard.press(" ");
    await badge.click();
    assert.equal(await page.evaluate(() => window.velmora.pause.isOn), false);
    await page.keyboard.press(" ");
    await waitForFrame(page, () => page.mouse.click(100, 300));
    assert.equal(await badge.count(), 0);
    assert.equal(await page.evaluate(() => window.velmora.isWaterIdle()), false, "the touch must move the water");
    await close(page);
});

test("a paused page draws its frame again after a context loss and after a resize", async () => {
    const { page, shown, first } = await pausedPage();
    await withLostContext(page, () => page.keyboard.press("b"));
    const second = await shown();
    const isSecondShown = apart(second, first) > 8 && Math.max(...second) > 30;
    assert.ok(isSecondShown, `the second background must be shown after the context loss: mean colour ${second}`);
    await page.setViewportSize({ width: 480, height: 270 });
    await waitForCanvasWidth(page, 480);
    const change = apart(await shown(), second);
    assert.ok(change < 25, `the resized page must show the same frame, but the mean colour differs by ${change} of 255`);
    await close(page, /CONTEXT_LOST/);
});

test("a paused page draws its frame again after a zoom", needs("zoom"), async () => {
    const { page, shown, first } = await pausedPage();
    await page.setViewportSize({ width: 480, height: 270, deviceScaleFactor: 1.5 });
    await waitForCanvasWidth(page, 720);
    const change = apart(await shown(), first);
    assert.ok(change < 25, `the zoomed page must show the same frame, but the mean colour differs by ${change} of 255`);
    await close(page);
});

test("a restart of the effect does not increase the number of GL objects", async () => {
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
    const alive = async () => {
        await waitUntilIdle(page); // while the page draws, it may hold objects of two quality levels
        return page.evaluate(() => [window.alive, window.velmora.textureNames()]);
    };
    const first = await alive();
    for (let restart = 0; restart < 3; ++restart) {
        await waitForFrame(page, () => page.evaluate(() => window.velmora.restart()));
        await waitForFrame(page, () => page.keyboard.press("r"));
        await downloadFrom(page, () => page.keyboard.press("r"));
    }
    assert.deepEqual(await alive(), first);
    await close(page);
});

test("during a context loss, commands show an error and a resize is deferred", async () => {
    const page = await open(browser);
    await withLostContext(page, async () => {
        for (const key of ["r", "g", "s", "l", ".", "f"]) {
            await page.evaluate(() => (document.getElementById("toast").textContent = ""));
            await page.keyboard.press(key);
            await waitForToast(page, "Graphics are restarting, please wait");
        }
        assert.equal(await page.evaluate(() => window.velmora.isRecording() || window.velmora.pause.isOn), false);
        await page.setViewportSize({ width: 300, height: 400 });
    });
    await waitForCanvasWidth(page, 300);
    await waitUntilIdle(page);
    await close(page, /CONTEXT_LOST/);
});

test("the page recovers without errors if the context is lost while GL programs are built", async () => {
    const page = await open(browser);
    await page.evaluate(() => {
        for (const key of ["w", "l"]) {
            window.dispatchEvent(new KeyboardEvent("keydown", { key }));
        }
    });
    await page.waitForFunction(() => window.velmora.counts().contexts === 2);
    await waitUntilIdle(page);
    await close(page, /CONTEXT_LOST/);
});

test("frames advance the water by the elapsed time multiplied by the time scale", async () => {
    const page = await open(browser);
    await waitUntilIdle(page);
    await mockTime(page);
    for (const timeScale of [0.25, 2]) {
        await set(page, { timeScale, rain: 0.05 }); // a drop every twenty seconds keeps the page active
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
        assert.ok(Math.abs(shown - 400 * timeScale) < 17, `at time scale ${timeScale}, 400 ms must advance the water by ${400 * timeScale} ms, not by ${shown} ms`);
    }
    await close(page);
});

test("a frame advances the water by at most 250 ms, and not by the time for which the page was idle or hidden", async () => {
    const page = await open(browser);
    await waitUntilIdle(page);
    await mockTime(page);
    await set(page, { rain: 1 }); // keeps the page active
    const elapsed = await page.evaluate(async () => {
        const seen = [];
        window.velmora.onFrame((milliseconds) => seen.push(milliseconds));
        window.velmora.noteInput();
        await window.showFrame(60000);
        await window.showFrame(60000); // as after the machine has been asleep
        document.dispatchEvent(new Event("visibilitychange"));
        await window.showFrame(60000);
        return seen;
    });
    assert.deepEqual(elapsed.map(Math.round), [17, 250, 17]);
    await close(page);
});
