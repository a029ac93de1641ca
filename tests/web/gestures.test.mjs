// Gestures: a shipped one moves water and ink as in the native host, to the byte; recordings play again; rest.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { existsSync, readFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { bring, close, drag, launch, notice, open, saved, top } from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

/** The digests of `count` frames of a replay, as the player prints them. */
function digests(page, script, count) {
    return page.evaluate(
        async ([text, last]) => {
            const { velmora } = window;
            const add = (digest, bytes) =>
                bytes.reduce((state, byte) => BigInt.asUintN(64, (state ^ BigInt(byte)) * 0x100000001b3n), digest);
            let [water, velocity] = [0xcbf29ce484222325n, 0xcbf29ce484222325n];
            velmora.view.velocity = true; // what is shown is known
            const fault = velmora.replay(text, "script");
            if (fault) {
                throw new Error(fault);
            }
            await new Promise((resolve) => {
                let frame = 0;
                const see = () => {
                    velocity = add(velocity, velmora.probe.velocity.bytes);
                    const cells = new Float32Array(velmora.effect.waterBytes().buffer);
                    const seen = cells.map((cell) => (Math.abs(cell) < 2 ** -60 ? 0 : cell));
                    water = add(water, new Uint8Array(seen.buffer));
                    if (++frame === last) {
                        velmora.afterFrame.delete(see);
                        resolve();
                    }
                };
                velmora.afterFrame.add(see);
            });
            const hex = (digest) => digest.toString(16).padStart(16, "0");
            return { water: hex(water), velocity: hex(velocity) };
        },
        [script, count],
    );
}

/** "none": without it. */
const player = process.env.VELMORA_PLAYER ?? join(top, "build/release/velmora-player");

test("a shipped gesture has the native host's velocities and water", { skip: player === "none" }, async () => {
    assert.ok(existsSync(player), `no ${player}: cmake --preset release && cmake --build --preset release -t velmora-player`);
    const gesture = join(top, "gestures/medium_drag.gesture");
    const page = await open(browser);
    const web = await digests(page, readFileSync(gesture, "utf8"), 40);
    const native = execFileSync(player, ["--headless", "--digest", "--script", gesture, "--frames", "40", "--size",
        "270x480", "--out", join(tmpdir(), `velmora-page-${process.pid}`)], { encoding: "utf8" });
    console.log(`water ${web.water} velocity ${web.velocity}`);
    assert.equal(/^velocity (\w+)$/m.exec(native)[1], web.velocity);
    assert.equal(/^water (\w+)$/m.exec(native)[1], web.water);
    await close(page);
});

test("what is recorded plays again as it was, and a film and a picture of it are files", async () => {
    const page = await open(browser, {
        before: () => {
            const capture = HTMLCanvasElement.prototype.captureStream;
            HTMLCanvasElement.prototype.captureStream = function (...rate) {
                return (window.stream = capture.apply(this, rate));
            };
        },
    });
    const picture = await saved(page, () => page.keyboard.press("s"));
    assert.deepEqual([...readFileSync(await picture.path()).subarray(1, 4)], [..."PNG"].map((one) => one.charCodeAt()));

    await page.keyboard.press("f");
    await page.keyboard.press("v");
    await page.keyboard.press("r");
    await page.locator("#marks", { hasText: /gesture 0:0/ }).waitFor();
    await drag(page, [60, 200], [200, 260], 5);
    await page.keyboard.press("l");
    await page.waitForFunction(() => window.velmora.counts.contexts === 2);
    await drag(page, [60, 300], [200, 260], 3);
    const velocity = () => page.evaluate(() => [...window.velmora.probe.velocity.bytes]);
    await page.keyboard.press(" "); // the last frame stands
    await page.waitForFunction(() => window.velmora.view.paused);
    await page.waitForTimeout(300);
    const recorded = await velocity();
    const file = await saved(page, () => page.keyboard.press("r"));
    const script = readFileSync(await file.path());
    assert.match(String(script), /^\d+ lose-context$/m);
    await page.keyboard.press(" ");
    await page.keyboard.press("c");
    await page.evaluate(() => {
        const { look, quality } = window.velmora;
        look.damping = 0.8; // soon calm
        quality.level = 3; // fewer pixels, but not of a film
    });
    await page.waitForFunction(() => window.velmora.rests);
    assert.equal(await page.evaluate(() => window.velmora.canvas.width), 270);
    const film = await saved(page, () => page.keyboard.press("f"));
    await page.waitForFunction(() => window.velmora.canvas.width === 203);
    assert.deepEqual(await page.evaluate(() => window.stream.getTracks().map((track) => track.readyState)), ["ended"]);
    assert.match(film.suggestedFilename(), /^velmora-film-.*\.(webm|mp4)$/);
    assert.ok(readFileSync(await film.path()).length > 2000);

    const seen = page.evaluate(
        () =>
            new Promise((resolve) => {
                const say = window.velmora.onReplayEnd;
                window.velmora.onReplayEnd = () => (say(), resolve([...window.velmora.probe.velocity.bytes]));
            }),
    );
    await bring(page, "drop", ["again.gesture", "", script]);
    assert.deepEqual(await seen, recorded);

    await page.keyboard.press("r"); // and is not lost where another gesture comes, and a faulty one ends nothing
    await bring(page, "drop", ["broken.gesture", "", Buffer.from("3 sideways 1 2")]);
    await notice(page, /broken.gesture/);
    assert.equal(await page.evaluate(() => window.velmora.recording), true);
    const showcase = readFileSync(join(top, "gestures/showcase.gesture"));
    const kept = await saved(page, () => bring(page, "drop", ["showcase.gesture", "", showcase]));
    assert.match(kept.suggestedFilename(), /\.gesture$/);
    assert.equal(await page.locator("#marks > *").count(), 0);
    await notice(page, "playing showcase.gesture");
    await page.setViewportSize({ width: 300, height: 480 });
    await notice(page, "the gesture has ended");
    await close(page, /CONTEXT_LOST/);
});

test("calm water without ink asks for no frame until the next event", async () => {
    const page = await open(browser);
    const count = () => page.evaluate(() => window.velmora.counts.animationFrames);
    const calm = async () => {
        let last = -1;
        for (let now = await count(); now !== last; now = await count()) {
            last = now;
            await page.waitForTimeout(1500);
        }
        return last;
    };
    const asleep = await calm();
    await page.waitForTimeout(1000);
    assert.equal(await count(), asleep);
    await page.keyboard.press("w");
    await drag(page, [100, 200], [120, 200], 2);
    assert.ok((await count()) > asleep);
    const again = await calm();
    await page.waitForTimeout(1000);
    assert.equal(await count(), again);

    await page.keyboard.press(" ");
    await page.waitForTimeout(500);
    const before = await page.evaluate(() => window.velmora.counts.frames);
    await page.keyboard.press(".");
    await page.waitForTimeout(500);
    assert.equal(await page.evaluate(() => window.velmora.counts.frames), before + 1, "one step is one frame");
    const longest = await page.evaluate(() => Math.max(...window.velmora.times.newest.map((time) => time.between ?? 0)));
    assert.ok(longest < 1000, `of rests no frame has the time: ${longest}`);
    await close(page);
});

