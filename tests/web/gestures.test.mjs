// Tests gestures: recording, replay, and comparison with the native player. Also tests screenshots, idle pages and
// single steps.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { existsSync, readFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, test } from "node:test";
import {
    close, downloadFrom, drag, launch, open, pageSize, sendFiles, set, steadyClock, top, waitForCanvasWidth,
    waitForToast, waitUntilIdle,
} from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

/**
 * Returns the digests of water and velocities in the first `count` frames of a replay, in the format that the native
 * player prints.
 */
function digests(page, script, count) {
    return page.evaluate(
        async ([text, last]) => {
            const { velmora } = window;
            const add = (digest, bytes) =>
                bytes.reduce((state, byte) => BigInt.asUintN(64, (state ^ BigInt(byte)) * 0x100000001b3n), digest);
            let [water, velocity] = [0xcbf29ce484222325n, 0xcbf29ce484222325n];
            velmora.overlays.velocity = true; // makes the page observe the velocities
            velmora.replay(text, "script");
            await new Promise((resolve) => {
                let frame = 0;
                const stop = velmora.onFrame(() => {
                    velocity = add(velocity, velmora.velocity().bytes);
                    const cells = new Float32Array(velmora.waterBytes().buffer);
                    const seen = cells.map((cell) => (Math.abs(cell) < 2 ** -60 ? 0 : cell));
                    water = add(water, new Uint8Array(seen.buffer));
                    if (++frame === last) {
                        stop();
                        resolve();
                    }
                });
            });
            const hex = (digest) => digest.toString(16).padStart(16, "0");
            return { water: hex(water), velocity: hex(velocity) };
        },
        [script, count],
    );
}

/** Path of the native player. The value "none" skips the comparison with the player. */
const player = process.env.VELMORA_PLAYER ?? join(top, "build/release/velmora-player");

test("a shipped gesture gives the same velocities and water on the page and in the native player", { skip: player === "none" }, async () => {
    assert.ok(existsSync(player), `${player} is missing. Build it: cmake --preset release && cmake --build --preset release -t velmora-player`);
    const gesture = join(top, "gestures/medium_drag.gesture");
    const page = await open(browser);
    const web = await digests(page, readFileSync(gesture, "utf8"), 40);
    const native = execFileSync(player, ["--headless", "--digest", "--script", gesture, "--frames", "40", "--size",
        pageSize.join("x"), "--out", join(tmpdir(), `velmora-page-${process.pid}`)], { encoding: "utf8" });
    console.log(`water ${web.water} velocity ${web.velocity}`);
    assert.equal(/^velocity (\w+)$/m.exec(native)[1], web.velocity);
    assert.equal(/^water (\w+)$/m.exec(native)[1], web.water);
    await close(page);
});

/** Records two strokes with a context loss between them. Returns the script and the velocities of the last frame. */
async function record(page) {
    await page.keyboard.press("v");
    await page.keyboard.press("r");
    await page.waitForFunction(() => /Gesture 0:0/.test(document.getElementById("badges").textContent));
    await drag(page, [60, 200], [200, 260], 5);
    await page.keyboard.press("l");
    await page.waitForFunction(() => window.velmora.counts().contexts === 2);
    await drag(page, [60, 300], [200, 260], 3);
    await page.keyboard.press(" ");
    await waitUntilIdle(page);
    const velocity = await page.evaluate(() => [...window.velmora.velocity().bytes]);
    const file = await downloadFrom(page, () => page.keyboard.press("r"));
    await page.keyboard.press(" ");
    return { script: file.bytes, velocity };
}

/** Resolves to the velocities of the first frame after the end of the next replay. */
function velocityAtEnd(page) {
    return page.evaluate(
        () =>
            new Promise((resolve) => {
                let began = false;
                const stop = window.velmora.onFrame(() => {
                    const replays = window.velmora.isReplaying();
                    if (began && !replays) {
                        stop();
                        resolve([...window.velmora.velocity().bytes]);
                    }
                    began ||= replays;
                });
            }),
    );
}

test("a recording that contains a context loss and its replay end with the same velocities", async () => {
    const page = await open(browser);
    await page.evaluate(steadyClock);
    const { script, velocity } = await record(page);
    assert.match(String(script), /^\d+ lose-context$/m);
    for (const play of [() => page.keyboard.press("g"), () => sendFiles(page, "drop", ["again.gesture", "", script])]) {
        const seen = velocityAtEnd(page);
        await play();
        assert.deepEqual(await seen, velocity);
    }
    await close(page, /CONTEXT_LOST/);
});

test("a faulty gesture file does not end a recording, but a valid file ends and saves it", async () => {
    const page = await open(browser);
    await page.keyboard.press("r");
    await sendFiles(page, "drop", ["broken.gesture", "", Buffer.from("3 sideways 1 2")]);
    await waitForToast(page, "broken.gesture");
    assert.equal(await page.evaluate(() => window.velmora.isRecording()), true);
    const tap = readFileSync(join(top, "gestures/tap.gesture"));
    const kept = await downloadFrom(page, () => sendFiles(page, "drop", ["tap.gesture", "", tap]));
    assert.match(kept.name, /\.gesture$/);
    assert.equal(await page.evaluate(() => window.velmora.isRecording()), false);
    await close(page);
});

test("a resize or a switch of the ink ends a recording, and the page saves it and tells the reason", async () => {
    const page = await open(browser);
    for (const [end, message] of [
        [() => page.setViewportSize({ width: 300, height: 400 }), "The new window size ended the recording. Saved "],
        [() => page.keyboard.press("w"), "Turning the ink off or on ended the recording. Saved "],
        [() => page.keyboard.press("r"), "Saved "],
    ]) {
        await page.keyboard.press("r");
        const { name } = await downloadFrom(page, end);
        const toast = await waitForToast(page, name);
        assert.equal(toast, `${message}${name}. Replay gesture plays it again`);
    }
    await close(page);
});

test("a replay continues to its end after a resize", async () => {
    const page = await open(browser);
    const script = "screen 270 480\nframes 40\n1 down 60 200 0.5\n";
    await sendFiles(page, "drop", ["tap.gesture", "", Buffer.from(script)]);
    await waitForToast(page, "Playing tap.gesture");
    await page.setViewportSize({ width: 300, height: 480 });
    await waitForCanvasWidth(page, 300);
    await waitForToast(page, "The gesture has ended");
    await close(page);
});

test("Esc or a tap on the badge stops a replay, and a second replay reports that it stopped the first", async () => {
    const page = await open(browser);
    const long = "screen 270 480\nframes 100000\n1 down 60 200 0.5\n";
    const badge = page.locator("#badges button");
    const isReplaying = () => page.evaluate(() => window.velmora.isReplaying());
    for (const stop of [() => page.keyboard.press("Escape"), () => badge.click()]) {
        await sendFiles(page, "drop", ["long.gesture", "", Buffer.from(long)]);
        await waitForToast(page, "Playing long.gesture");
        await stop();
        assert.equal(await isReplaying(), false);
        await waitForToast(page, "The gesture was stopped");
        assert.equal(await badge.count(), 0);
    }
    await sendFiles(page, "drop", ["long.gesture", "", Buffer.from(long)], ["again.gesture", "", Buffer.from(long)]);
    await waitForToast(page, "The other gesture was stopped. Playing again.gesture");
    assert.equal(await badge.count(), 1);
    await close(page);
});

test("a screenshot is a PNG file", async () => {
    const page = await open(browser);
    const file = await downloadFrom(page, () => page.keyboard.press("s"));
    assert.deepEqual(String(file.bytes.subarray(1, 4)), "PNG");
    await close(page);
});

const animationFrames = (page) => page.evaluate(() => window.velmora.counts().animationFrames);

test("an idle page requests no frame until the next event", async () => {
    const page = await open(browser);
    await set(page, { damping: 0.8 }); // makes the waves fade fast, so that the page is idle soon
    await waitUntilIdle(page);
    const idleCount = await animationFrames(page);
    await page.evaluate(() => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done))));
    assert.equal(await animationFrames(page), idleCount);
    await page.keyboard.press("w");
    await drag(page, [100, 200], [120, 200], 2);
    assert.ok((await animationFrames(page)) > idleCount);
    await waitUntilIdle(page);
    const longest = await page.evaluate(() => Math.max(...window.velmora.frameTimes().map((time) => time.between ?? 0)));
    assert.ok(longest < 1000, `the interval between two frames must not include idle time, but the longest interval is ${longest} ms`);
    await close(page);
});

test("the key for a single step draws exactly one frame during a pause", async () => {
    const page = await open(browser);
    await page.keyboard.press(" ");
    await waitUntilIdle(page);
    const before = await page.evaluate(() => window.velmora.counts().frames);
    await page.keyboard.press(".");
    await page.waitForFunction((count) => window.velmora.counts().frames > count, before);
    await waitUntilIdle(page);
    assert.equal(await page.evaluate(() => window.velmora.counts().frames), before + 1);
    await close(page);
});
