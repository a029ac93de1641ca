// Tests recorded videos: their size, duration and frames. Also tests videos that the browser ends early, the errors in
// browsers that cannot record, and that the browser asks before the user leaves a page that records.

import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import {
    close, downloadFrom, drag, launch, needs, open, pageSize, waitForCanvasWidth, waitForToast, waitUntilIdle,
} from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

/** Returns a function that makes `format` the only video format of the browser. */
const useOnly = (format) => Function(`
    const isSupported = MediaRecorder.isTypeSupported.bind(MediaRecorder);
    MediaRecorder.isTypeSupported = (type) => type.startsWith("video/${format}") && isSupported(type);
`);

/** Plays a video to its end. Returns its size in pixels, its duration in seconds and its error message, if any. */
function play(page, bytes) {
    return page.evaluate(async (text) => {
        const video = document.createElement("video");
        video.muted = true;
        video.playbackRate = 4;
        video.src = URL.createObjectURL(new Blob([Uint8Array.from(atob(text), (each) => each.charCodeAt(0))]));
        await new Promise((done) => (video.onloadedmetadata = video.onerror = done));
        const { videoWidth: width, videoHeight: height, duration } = video;
        await Promise.all([video.play(), new Promise((done) => (video.onended = video.onerror = done))]).catch(() => {});
        return { width, height, duration, error: video.error?.message ?? "" };
    }, bytes.toString("base64"));
}

const pressF = (page) => () => page.keyboard.press("f");

/** Makes the browser's MediaRecorder behave as on a system without encoders. */
function removeEncoders() {
    window.MediaRecorder = class {
        static isTypeSupported = () => true;
        constructor() {
            throw new DOMException("no encoder", "NotSupportedError");
        }
    };
}

test("a browser that cannot record videos shows an error", async () => {
    for (const remove of [() => (window.MediaRecorder = undefined), removeEncoders]) {
        const page = await open(browser, { before: remove });
        await page.keyboard.press("f");
        await waitForToast(page, "This browser cannot record videos");
        await close(page);
    }
});

test("a recorded video keeps its size if the page is resized, survives a context loss, states its duration, and plays to its end", needs("recorder"), async () => {
    const page = await open(browser, { before: useOnly("webm") });
    const start = Date.now();
    await page.keyboard.press("f");
    await page.locator("#badges button", { hasText: /Video 0:0/ }).waitFor();
    await drag(page, [60, 200], [200, 260], 4);
    await page.setViewportSize({ width: 300, height: 400 });
    await waitForCanvasWidth(page, 300);
    await page.keyboard.press("l");
    await page.waitForFunction(() => window.velmora.counts().contexts === 2);
    await drag(page, [60, 100], [200, 160], 4);
    const film = await downloadFrom(page, () => page.locator("#badges button").click());
    const longest = (Date.now() - start) / 1000;
    assert.match(film.name, /^velmora-film-.*\.webm$/);
    const { width, height, duration, error } = await play(page, film.bytes);
    assert.deepEqual({ width, height, error }, { width: pageSize[0], height: pageSize[1], error: "" });
    assert.ok(duration > 0.1 && duration <= longest, `the duration must be from 0.1 to ${longest} s, not ${duration} s`);
    await close(page, /CONTEXT_LOST/);
});

/** Runs before the page's scripts. Keeps the recorder of the newest video in `window.recorder`. */
function keepRecorder() {
    const { start } = MediaRecorder.prototype;
    MediaRecorder.prototype.start = function (...rest) {
        window.recorder = this;
        start.apply(this, rest);
    };
}

/** Run in a page. Each ends the video early: the tracks end, or the recorder reports an error. */
const earlyEnds = [
    () => window.recorder.stream.getTracks().forEach((track) => track.stop()),
    () => window.recorder.dispatchEvent(new Event("error")),
];

test("if the browser ends a video early, the page saves the recorded frames and can record again", needs("recorder"), async () => {
    const page = await open(browser, { before: keepRecorder });
    for (const end of earlyEnds) {
        await page.keyboard.press("f");
        await drag(page, [60, 200], [200, 260], 4);
        const film = await downloadFrom(page, () => page.evaluate(end));
        await waitForToast(page, `The browser stopped the video early. Saved ${film.name}`);
        assert.equal(await page.locator("#badges button").count(), 0);
        const { width, error } = await play(page, film.bytes);
        assert.deepEqual([width, error], [pageSize[0], ""]);
    }
    await close(page);
});

test("a video without data is refused, and the page can record again", needs("recorder"), async () => {
    const page = await open(browser, {
        before: Function(`(${keepRecorder})();
            Object.defineProperty(MediaRecorder.prototype, "ondataavailable", { set() {} });`),
    });
    const refusals = [
        ["The video has no frame, so it is not saved", pressF(page)],
        ["The browser stopped the video before its first frame", () => page.evaluate(earlyEnds[0])],
    ];
    for (const [message, end] of refusals) {
        await page.keyboard.press("f");
        await end();
        await waitForToast(page, message);
        assert.equal(await page.locator("#badges button").count(), 0);
    }
    await close(page);
});

test("a recorded video has a frame even if it is stopped at once or recorded during a pause", needs("recorder"), async () => {
    const page = await open(browser);
    const instant = await downloadFrom(page, async () => {
        await page.keyboard.press("f");
        await page.keyboard.press("f");
    });
    await page.keyboard.press(" ");
    await waitUntilIdle(page);
    await page.keyboard.press("f");
    const paused = await downloadFrom(page, pressF(page));
    for (const film of [instant, paused]) {
        const { width, error } = await play(page, film.bytes);
        assert.deepEqual([width, error], [pageSize[0], ""]);
    }
    await close(page);
});

for (const [recorded, key, options] of [["video", "f", needs("recorder")], ["gesture", "r", {}]]) {
    test(`the browser asks before the user leaves a page that records a ${recorded}`, options, async () => {
        const page = await open(browser);
        const asks = () => page.evaluate(() => !window.dispatchEvent(new Event("beforeunload", { cancelable: true })));
        assert.equal(await asks(), false);
        await page.keyboard.press(key);
        assert.equal(await asks(), true);
        await downloadFrom(page, () => page.keyboard.press(key));
        assert.equal(await asks(), false);
        await close(page);
    });
}
