// Tests mouse, touch, pen and attract mode. The tests record a gesture and read the touches from its script.

import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { close, downloadFrom, frames, launch, needs, open, pageSize, set } from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

/**
 * Calls `act` and returns the touches that the page passes to the effect, each as [action, x, y, pressure]. Leaves out
 * the first four touches, which each recording contains to reset the effect.
 */
async function recordTouches(page, act) {
    await page.evaluate(() => window.velmora.startRecording());
    await act();
    await frames(page, 2);
    const file = await downloadFrom(page, () => page.keyboard.press("r"));
    const touches = [...String(file.bytes).matchAll(/^\d+ (down|move|up|cancel) (.*)$/gm)].slice(4);
    const rounded = (text) => Number(Number(text).toFixed(6)); // the conversion to canvas pixels rounds at some page sizes
    return touches.map(([, action, numbers]) => [action, ...numbers.split(" ").map(rounded)]);
}

const actions = (touches) => touches.map(([action]) => action);

/** Canvas pixels per CSS pixel. On a large page, a scale of 2 would exceed the page's limit of canvas pixels. */
const scale = pageSize[0] * pageSize[1] > 500_000 ? 1 : 2;

/** Opens a page on a screen with `scale` device pixels per CSS pixel. */
function openSharpPage() {
    return open(browser, { deviceScaleFactor: scale });
}

test("a mouse touches at a position in canvas pixels, with the pressure of the settings", async () => {
    const page = await openSharpPage();
    await set(page, { pressure: 0.7 });
    const touches = await recordTouches(page, async () => {
        await page.mouse.move(50, 60);
        await page.mouse.down();
        await frames(page, 1);
        await page.mouse.move(55, 70);
        await frames(page, 1);
        await page.mouse.down({ button: "right" });
        await page.mouse.up(); // while the right button is held
        await page.mouse.move(60, 80);
        await page.mouse.up({ button: "right" });
        await page.mouse.down({ button: "right" });
        await page.mouse.up({ button: "right" });
    });
    // If a second button is pressed, the browser sends a move to the same position. The test ignores such moves.
    const changes = touches.filter((touch, at) => String(touch) !== String(touches[at - 1]));
    const [start, end] = [[50 * scale, 60 * scale], [55 * scale, 70 * scale]];
    assert.deepEqual(changes, [["down", ...start, 0.7], ["move", ...end, 0.7], ["up", ...end, 0]]);
    await close(page);
});

test("a drag out of the page ends the stroke, and a drag back starts another stroke", needs("leaving"), async () => {
    const page = await openSharpPage();
    const left = await recordTouches(page, async () => {
        await page.mouse.move(50, 60);
        await page.mouse.down();
        await frames(page, 1);
        await page.mouse.move(-20, 60);
        await frames(page, 1);
        await page.mouse.move(60, 60);
        await page.mouse.up();
    });
    assert.deepEqual(actions(left), ["down", "up", "down", "up"]);
    await close(page);
});

test("the first finger touches the water, and a second finger is ignored", needs("touch"), async () => {
    const page = await openSharpPage();
    const touches = await recordTouches(page, async () => {
        await page.touch("touchStart", [1, 100, 100]);
        await frames(page, 1);
        await page.touch("touchStart", [1, 100, 100], [2, 200, 200]);
        await page.touch("touchMove", [1, 100, 120], [2, 220, 200]);
        await frames(page, 1);
        await page.touch("touchEnd", [1, 100, 120]);
        await page.touch("touchEnd");
    });
    const positions = touches.map(([action, x, y]) => [action, x, y]);
    const [start, end] = [[100 * scale, 100 * scale], [100 * scale, 120 * scale]];
    assert.deepEqual(positions, [["down", ...start], ["move", ...end], ["up", ...end]]);
    await close(page);
});

test("a finger touches with its measured pressure, and a cancelled touch ends the stroke", needs("touch", "touchForce"), async () => {
    const page = await openSharpPage();
    // A screen without a pressure sensor always reports force 1, so the page then uses the pressure of the settings.
    for (const [force, pressure] of [[0.25, 0.25], [1, 0.5]]) {
        const touches = await recordTouches(page, async () => {
            await page.touch("touchStart", [1, 100, 100, force]);
            for (const y of [160, 220]) { // a swipe so long that a browser would scroll the page
                await frames(page, 1);
                await page.touch("touchMove", [1, 100, y, force]);
            }
            await frames(page, 1);
            await page.touch("touchCancel");
        });
        const last = touches.map(([action, , , measured]) => [action, measured]);
        assert.deepEqual(last, [["down", pressure], ["move", pressure], ["move", pressure], ["cancel", 0]]);
    }
    assert.equal(await page.evaluate(() => scrollY + visualViewport.scale), 1, "the page must neither scroll nor zoom");
    await close(page);
});

test("a pen touches with its measured pressure", needs("pen"), async () => {
    const page = await openSharpPage();
    const send = (type, x, y, force) =>
        page.devTools.send("Input.dispatchMouseEvent", { type, x, y, force, button: "left", buttons: 1, pointerType: "pen", clickCount: 1 });
    const touches = await recordTouches(page, async () => {
        await send("mousePressed", 90, 90, 0.8);
        await frames(page, 1);
        await send("mouseMoved", 95, 90, 0.3);
        await frames(page, 1);
        await send("mouseReleased", 95, 90, 0);
    });
    assert.deepEqual(actions(touches), ["down", "move", "up"]);
    assert.deepEqual(touches.map(([, , , pressure]) => Math.round(10 * pressure)), [8, 3, 0]);
    await close(page);
});

test("the arrow keys stir the water of a fresh page, and a press of a mouse button ends their stroke", needs("heldKeys"), async () => {
    const page = await openSharpPage();
    const touches = await recordTouches(page, async () => {
        await page.keyboard.down("ArrowRight");
        await frames(page, 2);
        await page.keyboard.down("ArrowUp");
        await frames(page, 2);
        await page.keyboard.up("ArrowRight");
        await frames(page, 1);
        await page.mouse.move(50, 60);
        await page.mouse.down();
        await frames(page, 1);
        await page.mouse.up();
        await page.keyboard.up("ArrowUp");
    });
    const strokes = actions(touches).join(" ").split(/ (?=down)/);
    assert.equal(strokes.length, 2);
    assert.match(strokes[0], /^down( move)+ up$/);
    const keys = touches.slice(0, strokes[0].split(" ").length);
    const [, startX, startY] = keys[0];
    const [, endX, endY] = keys.at(-1);
    assert.deepEqual([startX, startY], pageSize.map((side) => (side * scale) / 2), "the finger must start in the middle of the canvas");
    assert.ok(endX > startX + 2 && endY < startY - 2, `the finger must move right and up from ${startX}, ${startY}, but ends at ${endX}, ${endY}`);
    await close(page);
});

test("a stroke ends when the page is hidden or loses the focus, the next move starts another stroke, and a context loss cancels a stroke", async () => {
    const page = await openSharpPage();
    const ways = {
        hidden() {
            Object.defineProperty(document, "hidden", { value: true, configurable: true });
            document.dispatchEvent(new Event("visibilitychange"));
            delete document.hidden;
            document.dispatchEvent(new Event("visibilitychange"));
        },
        left() {
            window.dispatchEvent(new Event("blur"));
        },
        async withoutContext() {
            const loss = window.velmora.gl.getExtension("WEBGL_lose_context");
            const event = (name) => new Promise((done) => document.getElementById("water").addEventListener(name, done, { once: true }));
            loss.loseContext();
            await event("webglcontextlost");
            setTimeout(() => loss.restoreContext());
            await event("webglcontextrestored");
        },
    };
    for (const [name, way] of Object.entries(ways)) {
        const touches = await recordTouches(page, async () => {
            await page.mouse.move(50, 60);
            await page.mouse.down();
            await frames(page, 1);
            await page.evaluate(way);
            await page.mouse.move(55, 70);
            await page.mouse.up();
        });
        assert.deepEqual(actions(touches), name === "withoutContext" ? ["down", "cancel"] : ["down", "up", "down", "up"], name);
    }
    await close(page, /CONTEXT_LOST/);
});

test("attract mode draws on an idle page until a key is pressed", async () => {
    const withMotion = await launch({ reducedMotion: false });
    const page = await open(withMotion, { size: [96, 160] });
    await page.waitForFunction(() => window.velmora.attractMode().runs);
    await page.waitForFunction(() => !window.velmora.isWaterIdle());
    await page.keyboard.press("v");
    assert.equal(await page.evaluate(() => window.velmora.attractMode().runs), false);
    await close(page);
    await withMotion.close();
});

test("attract mode is off if the user prefers reduced motion", async () => {
    const page = await open(browser);
    assert.equal(await page.evaluate(() => window.velmora.attractMode().on), false);
    await close(page);
});
