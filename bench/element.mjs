// Measures the start of the custom element in a browser: prints the milliseconds from the first statement of the script
// to each step up to the first frame. Needs build/web; run it on an idle machine.
// Usage: node bench/element.mjs [RUNS]

import { readFileSync } from "node:fs";
import { join } from "node:path";
import { elementFolder, launch, open, serve } from "../tests/web/element_page.mjs";

const runs = Number(process.argv[2] ?? 5);
const phone = [390, 844];

/**
 * Runs before the script of the element. Marks the time of each step when it happens for the first time. The tests'
 * pages replace performance.now by a clock that advances by whole frames, but performance.mark uses the real clock.
 */
function noteSteps() {
    const note = (step) => performance.getEntriesByName(step).length || performance.mark(step);
    /** Notes when a function returns or, if it returns a promise, when the promise is resolved. */
    const observe = (owner, name, step) => {
        const original = owner[name];
        owner[name] = function (...values) {
            const result = original.apply(this, values);
            if (result?.then) {
                result.then(() => note(step));
            } else {
                note(step);
            }
            return result;
        };
    };
    const define = customElements.define;
    customElements.define = function (...values) {
        define.apply(this, values);
        note("element is defined");
    };
    observe(WebAssembly, "compile", "module is compiled");
    observe(WebAssembly, "instantiate", "module is instantiated");
    observe(HTMLCanvasElement.prototype, "getContext", "first context of a canvas");
    observe(WebGLRenderingContext.prototype, "linkProgram", "first GL program");
    observe(WebGLRenderingContext.prototype, "texImage2D", "first texture");
    observe(WebGLRenderingContext.prototype, "drawElements", "water is drawn");
    const request = window.requestAnimationFrame;
    window.requestAnimationFrame = (call) =>
        request((now) => {
            note("first animation frame");
            call(now);
        });
    document.addEventListener("ready", () => note("ready"), true);
    document.addEventListener("load", (event) => event.target.localName === "img" && note("picture is loaded"), true);
}

const server = await serve();
const script = readFileSync(join(elementFolder, "velmora-element.js"), "utf8");
server.pages.set("/velmora-element.js", `performance.mark("script");${script}`);
const browser = await launch();
const results = [];
for (let run = 0; run <= runs; ++run) {
    const body = `<velmora-water style="width: 390px; height: 844px"><img src="390x844.bmp" alt=""></velmora-water>`;
    const page = await open(browser, server, body, { before: noteSteps, size: phone });
    const marks = await page.evaluate(() => performance.getEntriesByType("mark").map(({ name, startTime }) => [name, startTime]));
    const [, start] = marks.find(([name]) => name === "script");
    results.push(Object.fromEntries(marks.map(([name, time]) => [name, time - start])));
    await page.close();
}
results.shift(); // the first run also starts the GPU process
await browser.close();

const median = (values) => values.sort((one, other) => one - other)[values.length >> 1];
console.log(`Milliseconds after the start of the script, ${phone.join(" x ")} pixels, median of ${runs} runs:`);
const steps = Object.keys(results[0]).map((step) => [step, median(results.map((times) => times[step]))]);
for (const [step, time] of steps.sort(([, one], [, other]) => one - other)) {
    console.log(`${time.toFixed(0).padStart(6)}  ${step}`);
}
