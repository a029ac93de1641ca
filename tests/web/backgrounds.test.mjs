// Tests backgrounds: images that the user drops, pastes or chooses, paintings, videos and the camera.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { engine } from "./engines/engine.mjs";
import {
    close, difference, drag, launch, makeImage, needs, open, pageSize, readFrame, sendFiles, set, settings,
    waitForCanvasWidth, waitForToast, waitUntilIdle,
} from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

/**
 * Returns an image with two rows of coloured fields: red and green, then blue and white. `margin` is the width in
 * pixels of the empty margins at the left and right.
 */
function fourFields(page, type, width = 60, height = 120, margin = 0) {
    const [w, h] = [width / 2, height / 2];
    const boxes = ["red", "lime", "blue", "white"].map((color, at) =>
        [color, margin + (at % 2) * w, Math.floor(at / 2) * h, w, h]);
    return makeImage(page, [width + 2 * margin, height], boxes, type);
}

/**
 * Adds an EXIF orientation to a JPEG image. Programs that show the image must then rotate it by 90 degrees clockwise.
 */
function withRotation(jpeg) {
    const exif = Buffer.from(
        "ffe10022457869660000" + "4d4d002a00000008" + "0001" + "011200030000000100060000" + "00000000", "hex");
    return Buffer.concat([Buffer.from(jpeg.slice(0, 2)), exif, Buffer.from(jpeg.slice(2))]);
}

const colors = { red: [255, 0, 0], lime: [0, 255, 0], blue: [0, 0, 255], white: [255, 255, 255] };

/** Returns the name of the colour in the middle of each quarter of a frame, row by row. */
function quarters(shown) {
    return [0.25, 0.75].flatMap((y) =>
        [0.25, 0.75].map((x) => {
            const pixel = shown.pixel(x * shown.width, y * shown.height);
            const near = (color) => color.every((part, at) => Math.abs(part - pixel[at]) < 40);
            return Object.keys(colors).find((name) => near(colors[name])) ?? String(pixel);
        }),
    );
}

/** Waits until the middles of a frame's quarters have the expected colours. */
async function expectQuarters(page, expected) {
    let seen;
    for (let attempt = 0; attempt < 40; ++attempt) {
        seen = quarters(await readFrame(page));
        if (String(seen) === String(expected)) {
            return;
        }
    }
    assert.deepEqual(seen, expected);
}

test("a dropped or pasted image becomes the background, and the previous background becomes the second background", async () => {
    const page = await open(browser);
    const upright = ["red", "lime", "blue", "white"];
    // The page must crop this image instead of stretching it. In portrait, the image's margins must then be invisible.
    const margin = pageSize[0] < pageSize[1] ? 100 : 0;
    await sendFiles(page, "drop", ["fields.png", "image/png", await fourFields(page, "image/png", 60, 120, margin)]);
    await expectQuarters(page, upright);
    const jpeg = await fourFields(page, "image/jpeg", 120, 60);
    await sendFiles(page, "paste", ["", "image/jpeg", withRotation(jpeg)]);
    await expectQuarters(page, ["blue", "red", "white", "lime"]);
    await page.keyboard.press("b");
    await expectQuarters(page, upright);
    await page.keyboard.press("b");

    for (const [name, bytes] of [["broken.png", [1, 2, 3]], ["empty.png", []]]) {
        await sendFiles(page, "drop", [name, "image/png", bytes]);
        await waitForToast(page, `${name} is not a picture that this browser can show`);
    }
    await expectQuarters(page, ["blue", "red", "white", "lime"]);
    // The toast about the next picture must replace the toast about the broken file.
    await sendFiles(page, "drop", ["fields.png", "image/png", await fourFields(page, "image/png")]);
    await waitForToast(page, "fields.png is the background now");
    await close(page);
});

test("a click on a thumbnail shows its painting", async () => {
    const page = await open(browser);
    const sand = await readFrame(page);
    await page.keyboard.press("Tab");
    await page.getByText("Picture", { exact: true }).click();
    await page.getByRole("button", { name: "paper" }).click();
    assert.ok(difference(sand, await readFrame(page)) > 10, "the frame must show the chosen painting");
    await close(page);
});

test("a resize of the page crops the painting and keeps its colours", async () => {
    const page = await open(browser, { size: [360, 360] });
    const square = await readFrame(page);
    await page.setViewportSize({ width: 360, height: 180 });
    await page.waitForFunction(() => window.velmora.screen().height === 180);
    const wide = await readFrame(page);
    for (let x = 5; x < 360; x += 50) {
        for (let y = 5; y < 180; y += 17) {
            const [before, after] = [square.pixel(x, y + 90), wide.pixel(x, y)];
            const far = before.some((channel, at) => Math.abs(channel - after[at]) > 12);
            assert.ok(!far, `the resize must keep the colour of pixel ${x}, ${y}: it was ${before} and is ${after}`);
        }
    }
    await close(page);
});

test("a chosen image larger than the screen is shown in portrait and in landscape", async () => {
    const page = await open(browser);
    const large = await makeImage(page, [5000, 3000], [["red", 0, 0, 5000, 1500], ["blue", 0, 1500, 5000, 1500]]);
    await page.chooseFile(() => page.keyboard.press("o"), "large.png", Buffer.from(large));
    const halves = ["red", "red", "blue", "blue"];
    await expectQuarters(page, halves);
    await page.setViewportSize({ width: 480, height: 270 });
    await waitForCanvasWidth(page, 480);
    await expectQuarters(page, halves);
    await close(page);
});

test("a large rotated photograph and an SVG file are shown undistorted", async () => {
    const page = await open(browser, { size: [480, 480] });
    // A photograph of 5000 x 4200 pixels with a square in its middle. Its EXIF orientation requires a rotation by 90
    // degrees.
    const photo = await makeImage(page, [5000, 4200], [["red", 0, 0, 5000, 4200], ["blue", 1500, 1100, 2000, 2000]], "image/jpeg");
    const svg = Buffer.from(`<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 42 50">
        <path fill="red" d="M0 0h42v50H0z"/><path fill="blue" d="M11 15h20v20H11z"/></svg>`);
    for (const file of [["photo.jpg", "image/jpeg", withRotation(photo)], ["drawing.svg", "image/svg+xml", svg]]) {
        await sendFiles(page, "drop", file);
        await waitForToast(page, `${file[0]} is the background now`);
        const { pixel } = await readFrame(page);
        const isBlue = (x, y) => pixel(x, y)[2] > 150;
        // The photograph's shorter side of 4200 pixels fills 480 pixels of the frame, so the square's side of 2000
        // pixels fills 229.
        const edges = [[240, 135], [240, 345], [135, 240], [345, 240]];
        const outside = [[240, 112], [240, 368], [112, 240], [368, 240]];
        assert.deepEqual([edges.map(([x, y]) => isBlue(x, y)), outside.map(([x, y]) => isBlue(x, y))],
            [[true, true, true, true], [false, false, false, false]], file[0]);
    }
    await close(page);
});

/** An image of one pixel that is red and blue in turn, each for 0.1 s. */
const animation = Buffer.from(
    "474946383961" + "01000100800000" + "ff0000" + "0000ff" + "21ff0b4e45545343415045322e300301000000" +
    ["4401", "4c01"].map((pixel) => "21f904000a000000" + "2c000000000100010000" + "0202" + pixel + "00").join("") + "3b", "hex");

/** Returns a WebM file that ffmpeg makes from these options. */
function makeWebm(...options) {
    const file = join(tmpdir(), `velmora-video-${process.pid}.webm`);
    execFileSync("ffmpeg", ["-v", "error", "-y", "-f", "lavfi", ...options, file]);
    return readFileSync(file);
}

/**
 * Returns a video that is red, then blue, and then red again. It is short and repeats, or is too long to repeat during a
 * test.
 */
function makeVideo() {
    const parts = engine.cannot.repeatedVideo ? [["red", 5], ["blue", 3], ["red", 60]] : [["red", 0.25], ["blue", 0.5]];
    const inputs = parts.flatMap(([color, seconds]) => ["-f", "lavfi", "-i", `color=${color}:64x64:d=${seconds}`]);
    return makeWebm(...inputs, "-filter_complex", `concat=${parts.length}`, "-c:v", "libvpx");
}

/**
 * Drops a moving picture on the page. Waits until the background has been red, blue and red again. Returns the toast
 * about the dropped file.
 */
async function playBackground(page, ...file) {
    await sendFiles(page, "drop", file);
    const toast = await waitForToast(page, `${file[0]} is the background now`);
    await expectPlaying(page);
    return toast;
}

/** Waits until the background has been red, blue and red again. */
async function expectPlaying(page) {
    const end = Date.now() + 60000;
    for (const wanted of ["red", "blue", "red"]) {
        let color;
        do {
            assert.ok(Date.now() < end, `the moving picture must become ${wanted} within a minute`);
            const [red, , blue] = (await readFrame(page)).pixel(48, 80);
            color = red > blue ? "red" : "blue";
        } while (color !== wanted);
    }
}

test("an animated image plays as the background, also after a reload", needs("imageDecoder"), async () => {
    const page = await open(browser, { size: [96, 160] });
    await playBackground(page, "turns.gif", "image/gif", animation);
    await page.evaluate(() => window.velmora.stored());
    await page.reload();
    await page.waitForFunction(() => window.velmora?.counts().frames > 0);
    await expectPlaying(page);
    await close(page);
});

test("a video plays as the background, and stops during a pause", async () => {
    const page = await open(browser, { size: [96, 160] });
    const toast = await playBackground(page, "turns.webm", "video/webm", makeVideo());
    assert.match(toast, /The page does not keep videos for the next visit/);
    await page.keyboard.press(" ");
    await waitUntilIdle(page);
    await page.keyboard.press(" ");
    await sendFiles(page, "drop", ["still.png", "image/png", await makeImage(page, [9, 16], [["red", 0, 0, 9, 16]])]);
    await sendFiles(page, "drop", ["still.png", "image/png", await makeImage(page, [9, 16], [["red", 0, 0, 9, 16]])]);
    await page.evaluate(() => window.velmora.filesImported());
    await waitUntilIdle(page); // the page becomes idle only if no video plays
    await close(page);
});

test("a file that has only sound is refused", async () => {
    const page = await open(browser, { size: [96, 160] });
    await sendFiles(page, "drop", ["song.webm", "video/webm", makeWebm("-i", "sine=d=0.5", "-c:a", "libvorbis")]);
    await waitForToast(page, "song.webm is not a picture that this browser can show");
    await close(page);
});

/** Runs before the page's scripts. Keeps the stream of the camera in `window.camera`. */
function keepCamera() {
    if (!window.MediaDevices) {
        return; // Firefox first opens an empty page without cameras, and also runs this function there.
    }
    const { getUserMedia } = MediaDevices.prototype;
    MediaDevices.prototype.getUserMedia = async function (wanted) {
        return (window.camera = await getUserMedia.call(this, wanted));
    };
}

test("the camera can be the background until the user chooses another one, and a refused camera is reported", async () => {
    const withCamera = await launch({ camera: true });
    for (const [one, message] of [[browser, "The camera is missing or not allowed"], [withCamera, "The camera is the background now"]]) {
        const page = await open(one, { size: [96, 160], before: keepCamera });
        const before = await readFrame(page);
        await page.keyboard.press("Tab");
        await page.getByText("Picture", { exact: true }).click();
        await page.getByRole("button", { name: "Use camera" }).click();
        await waitForToast(page, message);
        assert.equal(difference(before, await readFrame(page)) > 5, one === withCamera);
        if (one === withCamera) {
            await page.getByRole("button", { name: "sky" }).click();
            const states = await page.evaluate(() => window.camera.getTracks().map((track) => track.readyState));
            assert.deepEqual(states, ["ended"]);
            await page.keyboard.press("b");
            assert.ok(difference(before, await readFrame(page)) < 5, "the second background must be the previous background");
        }
        await close(page);
    }
    await withCamera.close();
});

test("images are shown in the order in which they were dropped", async () => {
    const page = await open(browser);
    const large = await makeImage(page, [5000, 3000], [["red", 0, 0, 5000, 3000]]);
    const small = await fourFields(page, "image/png");
    await sendFiles(page, "drop", ["large.png", "image/png", large], ["small.png", "image/png", small]);
    await page.evaluate(() => window.velmora.filesImported());
    assert.deepEqual(quarters(await readFrame(page)), ["red", "lime", "blue", "white"]);
    await close(page);
});

test("a context loss removes the ink and keeps background and settings", async () => {
    const page = await open(browser);
    // The drag has 16 moves of 7.5 pixels. Moves of more than 10 pixels would be a fast drag, which adds much less ink.
    // A drag of at most 9 frames would add ink after its end, as a tap does.
    const [width, height] = pageSize;
    const stir = () => drag(page, [75, height / 2], [195, height / 2], 16);
    const box = [81 / width, 0.45, 189 / width, 0.55];
    await sendFiles(page, "drop", ["fields.png", "image/png", await fourFields(page, "image/png")]);
    await set(page, { damping: 0.85 }); // the waves fade fast
    await expectQuarters(page, ["red", "lime", "blue", "white"]);
    const [flat, before] = [await readFrame(page), await settings(page)];
    await stir();
    const inked = difference(flat, await readFrame(page), box);
    assert.ok(inked > 2, `the drag must draw ink, but the mean colour difference is only ${inked} of 255`);
    await page.keyboard.press("l");
    await page.waitForFunction(() => window.velmora.counts().contexts === 2 && !window.velmora.isContextLost());
    await waitUntilIdle(page);
    const left = difference(flat, await readFrame(page));
    assert.ok(left < 0.5, `a context loss must remove the ink, but the mean colour difference is ${left} of 255`);
    assert.deepEqual(await settings(page), before);
    await stir();
    const inkedAgain = difference(flat, await readFrame(page), box);
    assert.ok(inkedAgain > 2, `a drag after the loss must draw ink, but the difference is only ${inkedAgain} of 255`);
    await close(page, /CONTEXT_LOST/);
});
