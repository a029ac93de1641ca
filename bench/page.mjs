// How fast the page is in headless Chromium with software GL: the file's size, the time from opening to the first
// frame, the page's own milliseconds of a frame outside GL, and frames a second as a visitor sees them: at what the page
// chooses for this machine by itself, and at each level of quality, with the milliseconds of its draws.
// The display's 60 a second stay: without them the browser asks for frames without rest and takes processors from the
// drawing, so that every figure falls. OPTION --disable-frame-rate-limit shows it.
// Usage: node bench/page.mjs [WIDTHxHEIGHT] [SECONDS] [LOOK] [OPTION...]
//        LOOK: settings that differ, as JSON; OPTION: the browser's own

import { statSync } from "node:fs";
import { loadavg } from "node:os";
import { launch, open, softwareGl, top } from "../tests/web/page.mjs";

const size = (process.argv[2] ?? "540x960").split("x").map(Number);
const seconds = Number(process.argv[3] ?? 8);
const look = JSON.parse(process.argv[4] ?? "{}");

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

/** Of each kind of draw the shortest time, each waited for. */
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
            const kind = passes === 0 ? "water" : passes <= 4 ? "an advection" : "impulse";
            window.draws[kind] = Math.min(window.draws[kind] ?? Infinity, performance.now() - start);
        };
    }
}

/** Moves a finger without rest for some milliseconds. `steady`: each frame has a 60th of a second, so that the waves are
 * the same at each rate of frames. */
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
            [start, own, glAtStart] = [performance.now(), 0, window.glTime]; // programs are compiled
        } else if (frames > 0 && passed > duration) {
            return { perSecond: (frames * 1000) / passed, own: (own - window.glTime + glAtStart) / frames, frames: frames + 6 };
        }
    }
}

const browser = await launch([...softwareGl, ...process.argv.slice(5)]);
const system = await browser.newBrowserCDPSession();

/** Processor seconds of all of the browser: what else runs bends them less than its frames a second. */
async function processorTime() {
    const { processInfo } = await system.send("SystemInfo.getProcessInfo");
    return processInfo.reduce((sum, { cpuTime }) => sum + cpuTime, 0);
}

/** Frames a second, and milliseconds of processors each, at the level where the page is. */
async function printSpeed(page, name) {
    const words = await page.evaluate(() => window.velmora.quality().label || "all of the quality");
    const before = await processorTime();
    const { perSecond, frames } = await page.evaluate(stir, { duration: seconds * 1000, steady: true });
    const processors = (1000 * ((await processorTime()) - before)) / frames;
    console.log(
        `    ${name} ${words}`.padEnd(52),
        `${perSecond.toFixed(1)} frames/s`.padEnd(16),
        `${processors.toFixed(1)} ms of processors a frame`.padEnd(34),
        `load ${loadavg()[0].toFixed(1)}`,
    );
}

async function printOwnTime(hash) {
    const page = await open(browser, { size, hash, before: watchGl });
    const { own } = await page.evaluate(stir, { duration: Math.min(seconds, 3) * 1000, steady: true });
    const first = await page.evaluate(() => performance.getEntriesByName("first frame")[0]?.startTime ?? NaN);
    console.log(`    ${own.toFixed(2)} ms a frame outside GL, first frame after ${first.toFixed(0)} ms`);
    await page.context().close();
}

/** As it opens for a visitor: it looks for what fits, also while the first stroke lasts, and takes it once that rests. */
async function printChoice(hash) {
    const page = await open(browser, { size, hash, ready: false });
    await page.waitForFunction(() => window.velmora?.quality().phase === "watching");
    const found = await page.evaluate(() => performance.now());
    await page.evaluate(stir, { duration: 2000, steady: false });
    await page.evaluate(() => window.velmora.lift());
    await page.waitForFunction(() => window.velmora.isResting(), null, { timeout: 60000 });
    await printSpeed(page, `chosen after ${(found / 1000).toFixed(1)} s:`);
    await page.context().close();
}

/** A page of that level, with what its calls tell. */
async function openAt(level, hash, before) {
    const page = await open(browser, { size, hash, before });
    await page.evaluate((value) => {
        window.velmora.fixQuality(value);
        window.velmora.restart();
    }, level);
    return page;
}

async function printLevel(level, hash) {
    const page = await openAt(level, hash);
    await printSpeed(page, `level ${level}:`);
    await page.context().close();
    const watched = await openAt(level, hash, watchDraws);
    await watched.evaluate(() => (window.draws = {})); // not of another level
    await watched.evaluate(stir, { duration: Math.min(seconds, 3) * 1000, steady: true });
    const draws = Object.entries(await watched.evaluate(() => window.draws));
    console.log(`        ${draws.map(([kind, time]) => `${kind} ${time.toFixed(1)} ms`).join(", ")}`);
    await watched.context().close();
}

console.log(`size ${(statSync(`${top}/build/web/velmora.html`).size / 1024).toFixed(0)} KB`);
for (const waterOnly of [false, true]) {
    const hash = `#look=${encodeURIComponent(JSON.stringify({ waterOnly, ...look }))}`;
    console.log(waterOnly ? "water only" : "ink and water");
    await printOwnTime(hash);
    await printChoice(hash);
    for (const level of [0, 1, 2, 3]) {
        await printLevel(level, hash);
    }
}
await browser.close();
