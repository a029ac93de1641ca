// How fast the page is in headless Chromium with software GL: the file's size, the time from opening to the first
// frame, frames a second without the display's cap, and the page's own milliseconds of a frame outside GL; at all of
// the quality, and at each step down that the page takes by itself where frames are late.
// Usage: node bench/page.mjs [WIDTHxHEIGHT] [SECONDS] [LOOK]     LOOK: settings that differ, as JSON

import { statSync } from "node:fs";
import { loadavg } from "node:os";
import { launch, open, softwareGl, top } from "../tests/web/page.mjs";

const size = (process.argv[2] ?? "540x960").split("x").map(Number);
const seconds = Number(process.argv[3] ?? 8);
const look = JSON.parse(process.argv[4] ?? "{}");
const uncapped = [...softwareGl, "--disable-frame-rate-limit", "--disable-gpu-vsync"];

/** Counts the time within GL calls, and the frames drawn. */
function watchGl() {
    window.glTime = 0;
    const prototype = WebGLRenderingContext.prototype;
    for (const name of Object.getOwnPropertyNames(prototype)) {
        const call = Object.getOwnPropertyDescriptor(prototype, name).value;
        if (typeof call === "function") {
            prototype[name] = function (...values) {
                const start = performance.now();
                const result = call.apply(this, values);
                window.glTime += performance.now() - start;
                return result;
            };
        }
    }
}

/**
 * A finger that never rests, and a frame with each animation frame. Without the display's cap nothing else holds the
 * page back from asking for frames faster than they are drawn, and a queue of them takes up to three times the
 * processors' time of each: every frame waits until it is drawn.
 */
async function stir(duration) {
    const { velmora } = window;
    const { effect, screen } = velmora;
    const gl = effect.gl;
    const drawn = () => {
        const before = window.glTime;
        gl.readPixels(0, 0, 1, 1, gl.RGBA, gl.UNSIGNED_BYTE, new Uint8Array(4));
        window.glTime = before; // none of the page's
    };
    const afterFrame = () =>
        new Promise((resolve) => {
            const call = () => (velmora.afterFrame.delete(call), resolve());
            velmora.afterFrame.add(call);
        });
    velmora.clock.take = () => [1000 / 60]; // not the 60 a second that a display is given
    velmora.touch(0, screen.width / 2, screen.height / 2, 0.5);
    let [start, own, glAtStart] = [performance.now(), 0, 0];
    for (let frames = -3; ; ++frames) {
        const angle = frames / 9;
        const [x, y] = [0.5 + 0.3 * Math.cos(angle), 0.5 + 0.3 * Math.sin(0.7 * angle)];
        velmora.touch(2, x * screen.width, y * screen.height, 0.5);
        await afterFrame();
        own += velmora.times.at(-1).effect;
        drawn();
        const passed = performance.now() - start;
        if (frames === 0) {
            [start, own, glAtStart] = [performance.now(), 0, window.glTime]; // programs are compiled
        } else if (frames > 0 && passed > duration * 1000) {
            return { perSecond: (frames * 1000) / passed, own: (own - window.glTime + glAtStart) / frames, frames: frames + 3 };
        }
    }
}

const browser = await launch(uncapped);
const system = await browser.newBrowserCDPSession();

/** Processor seconds of all of the browser: what else runs bends them less than its frames a second. */
async function processorTime() {
    const { processInfo } = await system.send("SystemInfo.getProcessInfo");
    return processInfo.reduce((sum, { cpuTime }) => sum + cpuTime, 0);
}

/** Frames a second, and milliseconds of processors each, at a level of quality. */
async function speedAt(page, level) {
    await page.evaluate((value) => {
        window.velmora.quality.level = value;
        window.velmora.restart();
    }, level);
    const before = await processorTime();
    const { perSecond, frames } = await page.evaluate(stir, seconds);
    const processors = (1000 * ((await processorTime()) - before)) / frames;
    const words = await page.evaluate(() => window.velmora.quality.words || "all of the quality");
    return { perSecond, processors, words };
}

async function ownTime(hash) {
    const page = await open(browser, { size, hash, before: watchGl });
    const { own } = await page.evaluate(stir, Math.min(seconds, 3));
    await page.context().close();
    return own;
}

console.log(`size             ${(statSync(`${top}/build/web/velmora.html`).size / 1024).toFixed(0)} KB`);
for (const waterOnly of [false, true]) {
    const hash = `#look=${encodeURIComponent(JSON.stringify({ waterOnly, ...look }))}`;
    const page = await open(browser, { size, hash });
    const first = await page.evaluate(() => performance.getEntriesByName("first frame")[0]?.startTime ?? NaN);
    console.log(
        `${waterOnly ? "water only" : "ink and water"}`.padEnd(16),
        `${(await ownTime(hash)).toFixed(2)} ms a frame outside GL`.padEnd(28),
        `first frame after ${first.toFixed(0)} ms`,
    );
    for (const level of [0, 1, 2, 3, 4]) {
        const { perSecond, processors, words } = await speedAt(page, level);
        console.log(
            `    ${words}`.padEnd(38),
            `${perSecond.toFixed(1)} frames/s`.padEnd(16),
            `${processors.toFixed(1)} ms of processors a frame`.padEnd(34),
            `load ${loadavg()[0].toFixed(1)}`,
        );
    }
    await page.context().close();
}
await browser.close();
