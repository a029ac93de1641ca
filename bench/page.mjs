// Measures the page in headless Chromium with software GL:
// - the size of the file, and the time from opening to the first frame
// - the milliseconds per frame outside GL
// - frames per second at the quality level that the page chooses for this machine
// - frames per second, and the milliseconds of each draw, at every quality level
// The browser draws at most 60 frames per second. Do not pass --disable-frame-rate-limit: the browser then requests
// frames without a pause, which takes processor time from the drawing and lowers every figure.
// Usage: node bench/page.mjs [WIDTHxHEIGHT] [SECONDS] [SETTINGS] [OPTION...]
//        SETTINGS: JSON object of settings that differ from the defaults; OPTION: command-line option of Chromium

import { statSync } from "node:fs";
import { loadavg } from "node:os";
import { launch, open, top } from "../tests/web/page.mjs";

const size = (process.argv[2] ?? "540x960").split("x").map(Number);
const seconds = Number(process.argv[3] ?? 8);
const settings = JSON.parse(process.argv[4] ?? "{}");

/** Makes each GL call add its duration in milliseconds to `window.glTime`. */
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

/** Measures the shortest time of each kind of draw call. Waits for the GPU before and after each draw call. */
function watchDraws() {
    window.draws = {};
    const prototype = WebGLRenderingContext.prototype;
    let passes = 0;
    for (const call of ["drawArrays", "drawElements"]) {
        const draw = prototype[call];
        prototype[call] = function (...values) {
            const wait = () => this.readPixels(0, 0, 1, 1, this.RGBA, this.UNSIGNED_BYTE, new Uint8Array(4));
            wait();
            const start = performance.now();
            draw.apply(this, values);
            wait();
            passes = call === "drawElements" ? 0 : passes + 1;
            const kind = passes === 0 ? "water" : passes <= 4 ? "advection" : "impulse";
            window.draws[kind] = Math.min(window.draws[kind] ?? Infinity, performance.now() - start);
        };
    }
}

/**
 * Moves a finger on the page for `duration` milliseconds. If `steady` is true, every frame advances the page's time by
 * 1/60 s. The waves are then the same at every frame rate.
 */
async function stir({ duration, steady }) {
    const { velmora } = window;
    if (steady) {
        const request = window.requestAnimationFrame.bind(window);
        let time = performance.now();
        window.requestAnimationFrame = (call) => request(() => call((time += 1000 / 60)));
    }
    const screen = velmora.screen();
    const afterFrame = () =>
        new Promise((resolve) => {
            const stop = velmora.onFrame(() => (stop(), resolve()));
        });
    velmora.press(screen.width / 2, screen.height / 2, 0.5);
    let [start, own, glAtStart] = [0, 0, 0];
    for (let frames = -6; ; ++frames) {
        const angle = frames / 9;
        const [x, y] = [0.5 + 0.3 * Math.cos(angle), 0.5 + 0.3 * Math.sin(0.7 * angle)];
        velmora.move(x * screen.width, y * screen.height, 0.5);
        await afterFrame();
        own += velmora.frameTimes().at(-1).effect;
        const passed = performance.now() - start;
        if (frames === 0) {
            // The measurement starts with this frame, because earlier frames also compile the shaders.
            [start, own, glAtStart] = [performance.now(), 0, window.glTime];
        } else if (frames > 0 && passed > duration) {
            return { perSecond: (frames * 1000) / passed, own: (own - window.glTime + glAtStart) / frames, frames: frames + 6 };
        }
    }
}

const browser = await launch({ args: process.argv.slice(5) });
const system = await browser.newBrowserCDPSession();

/**
 * Returns the processor time of all browser processes in seconds. Other programs affect this time less than they affect
 * the frame rate.
 */
async function processorTime() {
    const { processInfo } = await system.send("SystemInfo.getProcessInfo");
    return processInfo.reduce((sum, { cpuTime }) => sum + cpuTime, 0);
}

/** Prints frames per second and processor milliseconds per frame at the current quality level. */
async function printSpeed(page, name) {
    const label = await page.evaluate(() => window.velmora.quality().label || "all detail");
    const before = await processorTime();
    const { perSecond, frames } = await page.evaluate(stir, { duration: seconds * 1000, steady: true });
    const processors = (1000 * ((await processorTime()) - before)) / frames;
    console.log(
        `    ${name} ${label}`.padEnd(52),
        `${perSecond.toFixed(1)} frames/s`.padEnd(16),
        `${processors.toFixed(1)} ms of processor time per frame`.padEnd(36),
        `load ${loadavg()[0].toFixed(1)}`,
    );
}

async function printOwnTime(hash) {
    const page = await open(browser, { size, hash, before: watchGl });
    const { own } = await page.evaluate(stir, { duration: Math.min(seconds, 3) * 1000, steady: true });
    const first = await page.evaluate(() => performance.getEntriesByName("first frame")[0]?.startTime ?? NaN);
    console.log(`    ${own.toFixed(2)} ms per frame outside GL, first frame after ${first.toFixed(0)} ms`);
    await page.context().close();
}

/** Waits until adaptive quality has chosen a level and the page is idle. Then measures the speed. */
async function printChoice(hash) {
    const page = await open(browser, { size, hash, ready: false });
    await page.waitForFunction(() => window.velmora?.quality().phase === "watching");
    const found = await page.evaluate(() => performance.now());
    await page.evaluate(stir, { duration: 2000, steady: false });
    await page.evaluate(() => window.velmora.lift());
    await page.waitForFunction(() => window.velmora.isIdle(), null, { timeout: 60000 });
    await printSpeed(page, `level chosen after ${(found / 1000).toFixed(1)} s:`);
    await page.context().close();
}

/** Opens the page at a quality level. The function `before` runs in the page before the page's scripts. */
async function openAtLevel(level, hash, before) {
    const page = await open(browser, { size, hash, before });
    await page.evaluate((value) => {
        window.velmora.fixQuality(value);
        window.velmora.restart();
    }, level);
    return page;
}

async function printLevel(level, hash) {
    const page = await openAtLevel(level, hash);
    await printSpeed(page, `level ${level}:`);
    await page.context().close();
    const watched = await openAtLevel(level, hash, watchDraws);
    await watched.evaluate(() => (window.draws = {})); // discards draws from before the level was set
    await watched.evaluate(stir, { duration: Math.min(seconds, 3) * 1000, steady: true });
    const draws = Object.entries(await watched.evaluate(() => window.draws));
    console.log(`        ${draws.map(([kind, time]) => `${kind} ${time.toFixed(1)} ms`).join(", ")}`);
    await watched.context().close();
}

console.log(`size of the page ${(statSync(`${top}/build/web/velmora.html`).size / 1024).toFixed(0)} KB`);
for (const waterOnly of [false, true]) {
    const hash = `#look=${encodeURIComponent(JSON.stringify({ waterOnly, ...settings }))}`;
    console.log(waterOnly ? "water only" : "ink and water");
    await printOwnTime(hash);
    await printChoice(hash);
    for (const level of [0, 1, 2]) {
        await printLevel(level, hash);
    }
}
await browser.close();
