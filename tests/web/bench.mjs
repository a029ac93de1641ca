// How fast the page is in headless Chromium with software GL: the file's size, the time from opening to the first
// frame, frames a second without the display's cap, and the page's own milliseconds of a frame outside GL.
// Usage: node tests/web/bench.mjs [WIDTHxHEIGHT] [SECONDS]

import { statSync } from "node:fs";
import { launch, open, top } from "./page.mjs";

const size = (process.argv[2] ?? "540x960").split("x").map(Number);
const seconds = Number(process.argv[3] ?? 8);

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

/** A finger that never rests, frame after frame; each frame is waited for, as a display would. */
async function stir([duration, finish]) {
    const { velmora } = window;
    const { effect, screen } = velmora;
    const pixel = new Uint8Array(4);
    velmora.view.paused = true; // no frames but these
    await new Promise((resolve) => setTimeout(resolve, 300));
    let frames = 0;
    let own = 0;
    const start = performance.now();
    effect.touch(0, screen.width / 2, screen.height / 2, 0.5);
    while (performance.now() - start < duration * 1000) {
        const angle = frames / 9;
        const x = screen.width * (0.5 + 0.3 * Math.cos(angle));
        const y = screen.height * (0.5 + 0.3 * Math.sin(0.7 * angle));
        const before = performance.now();
        window.glTime = 0;
        effect.touch(2, x, y, 0.5);
        effect.frame(1000 / 60);
        own += performance.now() - before - window.glTime;
        if (finish) {
            effect.gl.readPixels(0, 0, 1, 1, effect.gl.RGBA, effect.gl.UNSIGNED_BYTE, pixel);
        }
        ++frames;
    }
    return { perSecond: (frames * 1000) / (performance.now() - start), own: own / frames };
}

const browser = await launch();
console.log(`size             ${(statSync(`${top}/build/web/velmora.html`).size / 1024).toFixed(0)} KB`);
for (const waterOnly of [false, true]) {
    const hash = `#look=${encodeURIComponent(JSON.stringify({ waterOnly }))}`;
    const page = await open(browser, { size, hash });
    const first = await page.evaluate(() => performance.getEntriesByName("first frame")[0]?.startTime ?? NaN);
    const { perSecond } = await page.evaluate(stir, [seconds, true]);
    await page.context().close();
    const watched = await open(browser, { size, hash, before: watchGl });
    const { own } = await watched.evaluate(stir, [Math.min(seconds, 3), true]);
    await watched.context().close();
    console.log(
        `${waterOnly ? "water only" : "ink and water"}`.padEnd(16),
        `${perSecond.toFixed(1)} frames/s`.padEnd(16),
        `${own.toFixed(2)} ms a frame outside GL`.padEnd(28),
        `first frame after ${first.toFixed(0)} ms`,
    );
}
await browser.close();
