// Tests the custom element on a page: the picture under the water, input, attributes, events and shared resources.

import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import {
    addStyle,
    close,
    difference,
    frame,
    launch,
    needs,
    open,
    serve,
    shot,
    waitForEvent,
    waitUntilIdle,
} from "./element_page.mjs";

let browser, server;
before(async () => ([browser, server] = await Promise.all([launch(), serve()])));
after(() => Promise.all([browser.close(), server.stop()]));

const picture = `<velmora-water quality="full"><img src="320x240.bmp" alt="A test"></velmora-water>`;

/** Moves the mouse from left to right in the upper half of the element. Holds the left button if `buttons` is true. */
async function drag(page, buttons = true, right = 240) {
    await page.mouse.move(60, 60);
    await (buttons && page.mouse.down());
    for (let x = 70; x <= right; x += 10) {
        await page.mouse.move(x, 60);
        await page.evaluate(() => new Promise((resolve) => requestAnimationFrame(resolve)));
    }
    await (buttons && page.mouse.up());
}

/** Waits for a frame for which `isFulfilled` returns true, and returns this frame. Fails after a minute. */
async function until(page, isFulfilled) {
    for (const start = Date.now(); Date.now() < start + 60000; ) {
        const now = await frame(page);
        if (isFulfilled(now)) {
            return now;
        }
        await page.evaluate(() => new Promise((resolve) => setTimeout(resolve, 50)));
    }
    assert.fail("no frame of the element had the expected pixels within a minute");
}

test("idle water draws the picture as CSS would draw it", async () => {
    for (const fit of ["fill", "cover; object-position: 10% 80%", "contain", "none; object-position: right 7px bottom -20px"]) {
        const image = `<img src="320x180.bmp" alt="" class="fitted">`;
        server.pages.set("/fit.css", `.fitted { display: block; width: 300px !important; height: 200px; object-fit: ${fit} !important }`);
        const link = `<link rel="stylesheet" href="fit.css">`;
        const plain = await open(browser, server, `${link}${image}`, { ready: 0 });
        const expected = await shot(plain);
        await close(plain);
        const page = await open(browser, server, `${link}<velmora-water quality="full">${image}</velmora-water>`);
        await waitUntilIdle(page);
        const { mean, max } = difference(await shot(page), expected);
        // The browser and the element scale the picture with different filters, so the mean difference can be up to 1.5
        // of 255. Only `none` does not scale the picture. The limits are then lower, but not 0, because the mesh shifts
        // the picture by a fraction of a pixel.
        assert.ok(mean < 1.5 && ((mean < 0.1 && max < 8) || !fit.startsWith("none")), `object-fit: ${fit} must look as in CSS, but colour channels differ by ${mean} on average and by ${max} at most`);
        await close(page);
    }
});

/** Makes canvases draw nothing for an image that is not decoded, as in WebKit, which decodes in the background. */
function drawOnlyDecoded() {
    const decoded = new Set();
    const { decode } = HTMLImageElement.prototype;
    HTMLImageElement.prototype.decode = async function () {
        const { currentSrc } = this;
        await decode.call(this);
        decoded.add(currentSrc);
    };
    const { drawImage } = CanvasRenderingContext2D.prototype;
    CanvasRenderingContext2D.prototype.drawImage = function (image, ...box) {
        if (image.localName !== "img" || decoded.has(image.currentSrc)) {
            drawImage.call(this, image, ...box);
        }
    };
}

test("the water shows the first image and a later image, even if the browser decodes them in the background", async () => {
    const shots = [];
    for (const before of [() => {}, drawOnlyDecoded]) {
        const page = await open(browser, server, picture, { before });
        await waitUntilIdle(page);
        const first = await shot(page);
        await page.evaluate(() => (document.querySelector("img").src = "320x180.bmp"));
        const later = await until(page, (now) => difference(now, first).mean > 4);
        shots.push([first, later]);
        await close(page);
    }
    const changes = [0, 1].map((at) => difference(shots[0][at], shots[1][at]).mean);
    assert.ok(Math.max(...changes) < 1, `the frames must be the same, but colour channels differ by ${changes} on average`);
});

test("the water shows the old image until the new image is loaded, and no image if the new image is missing", async () => {
    const plain = await open(browser, server, picture.replace("320x240", "320x180"));
    await waitUntilIdle(plain);
    const expected = await frame(plain);
    await close(plain);
    const page = await open(browser, server, picture);
    await waitUntilIdle(page);
    const first = await frame(page);
    await page.evaluate(() => (document.querySelector("img").src = "320x180.bmp?slow"));
    const next = await until(page, (now) => difference(now, first).mean > 4);
    const { mean } = difference(next, expected);
    assert.ok(mean < 1, `the first different frame must show the new image, but colour channels differ by ${mean} on average`);
    // Replaces the image while the water waits for the decoded image, before the GL context opens.
    const replaceOnce = () => {
        const { decode } = HTMLImageElement.prototype;
        HTMLImageElement.prototype.decode = async function () {
            HTMLImageElement.prototype.decode = decode;
            this.src = "320x180.bmp?slow";
        };
    };
    const opening = await open(browser, server, picture, { before: replaceOnce });
    const opened = difference(await frame(opening), expected).mean;
    assert.ok(opened < 1, `the first frame must show the new image, but colour channels differ by ${opened} on average`);
    await close(opening);
    await page.evaluate(() => (document.querySelector("img").src = "missing.bmp"));
    await until(page, (now) => now.pixel(150, 100).every((channel) => channel > 240)); // the page's white
    await close(page, /404|missing/);
});

test("a drag draws ink, and an idle element runs no frame", async () => {
    const page = await open(browser, server, picture);
    await waitUntilIdle(page);
    const still = await shot(page);
    const frames = await page.evaluate(() => window.animationFrames);
    await page.evaluate(() => new Promise((resolve) => setTimeout(resolve, 300)));
    assert.equal(await page.evaluate(() => window.animationFrames), frames);
    await drag(page, true, 80); // the flow of a longer stroke would fill the small element
    const inked = await shot(page);
    const [near, far] = [[50, 40, 110, 80], [220, 150, 300, 200]].map((box) => difference(still, inked, box).mean);
    assert.ok(near > 8 && near > 2 * far, `ink must be visible at the stroke only: the mean change of a channel is ${near} near the stroke and ${far} far from it`);
    assert.deepEqual((await page.evaluate(() => window.seen)).slice(0, 3), ["ready", "idle", "active"]);
    await close(page);
});

test("a hovering mouse draws only if pointer=hover, and no mouse draws if pointer=none", async () => {
    const page = await open(browser, server, picture);
    await waitUntilIdle(page);
    const still = await shot(page);
    for (const [mode, draws] of [["drag", false], ["none", false], ["hover", true]]) {
        await page.evaluate((value) => (document.querySelector("velmora-water").pointer = value), mode);
        await drag(page, mode === "none", 100);
        const isChanged = difference(still, await shot(page), [60, 50, 120, 70]).mean > 4;
        assert.equal(isChanged, draws, mode);
    }
    await close(page);
});

test("a vertical swipe scrolls the page, but with pointer=capture it touches the water", needs("touch", "touchScroll"), async () => {
    const page = await open(browser, server, `${picture}<hr class="tall">`);
    await addStyle(page, ".tall { height: 2000px }");
    const swipe = async () => {
        await page.touch("touchStart", [1, 150, 180]);
        for (const y of [160, 120, 80, 40]) {
            await page.touch("touchMove", [1, 150, y]);
        }
        await page.touch("touchEnd");
    };
    await page.evaluate(() => (document.querySelector("velmora-water").pointer = "capture"));
    await waitUntilIdle(page);
    const still = await frame(page);
    await swipe();
    await until(page, (now) => difference(still, now, [140, 40, 160, 180]).mean > 4);
    assert.equal(await page.evaluate(() => scrollY), 0);
    await page.evaluate(() => (document.querySelector("velmora-water").pointer = "drag"));
    await swipe();
    await page.waitForFunction(() => scrollY > 30);
    await close(page);
});

test("children in the slot `over` stay clickable above the water, and their changes draw no frame", async () => {
    const body = picture.replace("</velmora-water>", `<button slot="over">Go somewhere</button></velmora-water>`);
    const page = await open(browser, server, body);
    await page.evaluate(() => document.querySelector("button").addEventListener("click", () => window.seen.push("click")));
    await page.mouse.click(10, 10);
    assert.ok((await page.evaluate(() => window.seen)).includes("click"));
    await waitUntilIdle(page);
    const drawn = await page.evaluate(async () => {
        const before = window.animationFrames;
        document.querySelector("button").style.opacity = "0.5";
        document.querySelector("button").textContent = "Go elsewhere";
        document.querySelector("velmora-water").style.opacity = "0.9";
        await new Promise((resolve) => setTimeout(resolve, 300));
        return window.animationFrames - before;
    });
    assert.equal(drawn, 0);
    await close(page);
});

test("the water shows the current frame of a video, placed by object-fit and object-position", async () => {
    const page = await open(browser, server, `<velmora-water quality="full"><video muted style="width: 100%; height: 100%"></video></velmora-water>`, { ready: 0 });
    await page.evaluate(async () => {
        const canvas = document.createElement("canvas");
        [canvas.width, canvas.height] = [300, 150];
        const context = canvas.getContext("2d");
        // The colour of the top left quarter changes later. The other quarters show the orientation of the video, and
        // the black left edge shows how much is cropped.
        const paint = () => {
            const quarters = [window.color ?? "#f00", "#0f0", "#00f", "#ff0"];
            quarters.forEach((color, at) => {
                context.fillStyle = color;
                context.fillRect(at % 2 ? 150 : 0, at < 2 ? 0 : 75, 150, 75);
            });
            context.fillStyle = "#000";
            context.fillRect(0, 0, 30, 150);
        };
        paint();
        const video = document.querySelector("video");
        video.srcObject = canvas.captureStream(30);
        setInterval(paint, 30);
        await video.play();
    });
    /**
     * Waits until all these pixels have the expected colours. Each item is [[x, y], [red, green, blue]]. An expected
     * channel is 1 (above 128) or 0 (at most 128).
     */
    const untilShown = (...pixels) =>
        until(page, (now) => pixels.every(([at, color]) => now.pixel(...at).every((part, index) => part > 128 === color[index] > 0)));
    await waitForEvent(page, "ready");
    // The video is drawn with object-fit "contain": it fills rows 25 to 174 of the 200 rows, and the rest is white.
    const [right, left, last] = [[[225, 60], [0, 1, 0]], [[75, 140], [0, 0, 1]], [[225, 140], [1, 1, 0]]];
    await untilShown([[75, 60], [1, 0, 0]], right, left, last, [[15, 60], [0, 0, 0]], [[75, 10], [1, 1, 1]], [[75, 190], [1, 1, 1]]);
    await page.evaluate(() => (window.color = "#f0f"));
    await untilShown([[75, 60], [1, 0, 1]], right, left, last);
    await page.evaluate(() => (document.querySelector("video").style.objectFit = "cover"));
    await untilShown([[4, 10], [1, 0, 1]], [[75, 10], [1, 0, 1]], [[225, 10], [0, 1, 0]], [[75, 190], [0, 0, 1]]);
    await page.evaluate(() => (document.querySelector("video").style.objectPosition = "0 0"));
    const moved = [[[4, 10], [0, 0, 0]], [[75, 10], [1, 0, 1]], [[225, 10], [0, 1, 0]], [[75, 190], [0, 0, 1]]];
    await untilShown(...moved);
    await page.evaluate(async () => {
        document.querySelector("video").pause(); // a paused video has no new frame after the context loss
        const canvas = document.querySelector("velmora-water").shadowRoot.querySelector("canvas");
        const extension = canvas.getContext("webgl").getExtension("WEBGL_lose_context");
        extension.loseContext();
        await new Promise((resolve) => canvas.addEventListener("webglcontextlost", resolve));
        setTimeout(() => extension.restoreContext(), 50);
    });
    await waitForEvent(page, "contextrestored");
    await untilShown(...moved);
    await close(page, /CONTEXT_LOST/);
});

test("the water shows a picture that is added or changed later", async () => {
    const page = await open(browser, server, `<velmora-water quality="full"></velmora-water>`);
    const blank = await frame(page);
    assert.ok(Math.min(...blank.pixel(150, 100)) > 250, "the water must be white if there is no picture");
    await page.evaluate(() => document.querySelector("velmora-water").setAttribute("src", "320x240.bmp"));
    const first = await until(page, (now) => difference(blank, now).mean > 50);
    await page.evaluate(() => (document.querySelector("velmora-water").innerHTML = `<img src="64x240.bmp" alt="">`));
    await until(page, (now) => difference(first, now).mean > 3);
    await close(page);
});

test("the water follows the choice of a picture element, and draws a lazy image when it is loaded", async () => {
    const sources = `<source srcset="64x240.bmp" media="(max-height: 150px)"><img src="320x240.bmp" alt="">`;
    const choice = `<velmora-water quality="full"><picture>${sources}</picture></velmora-water>`;
    const lazy = picture.replace("<img", `<img loading="lazy"`);
    const page = await open(browser, server, `${choice}<hr class="tall">${lazy}`);
    await addStyle(page, ".tall { height: 5000px } img { width: 100%; height: 100%; object-fit: cover }");
    await waitUntilIdle(page);
    const wide = await frame(page);
    await page.setViewportSize({ width: 300, height: 140 });
    await until(page, (now) => difference(wide, now).mean > 3);
    await page.evaluate(() => document.querySelectorAll("velmora-water")[1].scrollIntoView());
    await page.waitForFunction(() => document.querySelectorAll("velmora-water")[1].live);
    await waitUntilIdle(page);
    const [red] = (await frame(page, 1)).pixel(150, 100);
    assert.ok(red < 130, `the middle of the image has a red of about 94, but the water shows ${red}`); // white has 255
    await close(page);
});

test("clear removes the ink, and a paused element draws no frame for a touch", async () => {
    const page = await open(browser, server, picture);
    await waitUntilIdle(page);
    const still = await frame(page);
    const apart = async () => difference(still, await frame(page), [90, 90, 110, 110]).mean;
    await page.evaluate(() => document.querySelector("velmora-water").drop(100, 100));
    assert.ok((await apart()) > 4);
    await page.evaluate(() => document.querySelector("velmora-water").clear());
    await waitUntilIdle(page);
    assert.ok((await apart()) < 1);
    await page.evaluate(() => (document.querySelector("velmora-water").paused = true));
    await waitUntilIdle(page);
    await drag(page);
    assert.ok((await apart()) < 1);
    await close(page);
});

test("twenty elements share eight GL contexts, and an element without a context gets one if a script touches it", async () => {
    const page = await open(browser, server, picture.repeat(20), { size: [300, 4000], ready: 8 });
    const live = () => page.evaluate(() => [...document.querySelectorAll("velmora-water")].map((water) => water.live));
    const isLive = await live();
    assert.equal(isLive.filter(Boolean).length, 8);
    assert.equal(await page.evaluate(() => window.liveContexts()), 8);
    const waiting = isLive.lastIndexOf(false);
    const still = await frame(page, isLive.lastIndexOf(true));
    await page.evaluate((at) => document.querySelectorAll("velmora-water")[at].drop(100, 100), waiting);
    const apart = difference(still, await frame(page, waiting), [90, 90, 110, 110]).mean;
    assert.ok(apart > 4, `the touch must leave ink, but the mean change of a channel is ${apart}`);
    assert.equal((await live()).filter(Boolean).length, 8);
    await page.evaluate(() => [...document.querySelectorAll("velmora-water")].slice(0, 15).forEach((water) => water.remove()));
    await page.waitForFunction(() => [...document.querySelectorAll("velmora-water")].every((water) => water.live));
    await close(page);
});

test("an element outside the viewport releases its GL context and shows its last frame", async () => {
    const page = await open(browser, server, `${picture}<hr class="tall">`);
    await addStyle(page, ".tall { height: 3000px }");
    await waitUntilIdle(page);
    const still = await shot(page);
    await page.evaluate(() => scrollTo(0, 2500));
    await page.waitForFunction(() => !document.querySelector("velmora-water").live && window.liveContexts() === 0);
    const last = await frame(page);
    assert.ok(difference(last, still).mean < 1);
    await page.evaluate(() => scrollTo(0, 0));
    await page.waitForFunction(() => document.querySelector("velmora-water").live);
    await close(page);
});

/** Counts the listeners of events of the window and the document in `window.listeners`. */
function countListeners() {
    window.listeners = 0;
    for (const target of [window, document]) {
        const add = target.addEventListener;
        target.addEventListener = function (type, call, options) {
            ++window.listeners;
            options?.signal?.addEventListener("abort", () => --window.listeners);
            add.call(target, type, call, options);
        };
    }
}

test("adding, moving and removing an element 300 times leaves no GL context and no event listener behind", async () => {
    const page = await open(browser, server, picture, { before: countListeners });
    const listeners = await page.evaluate(() => window.listeners);
    const contexts = await page.evaluate(async () => {
        const water = document.querySelector("velmora-water");
        const tick = () => new Promise((resolve) => setTimeout(resolve, 10));
        for (let turn = 0; turn < 300; ++turn) {
            water.remove();
            await (turn % 10 || tick());
            document.body.append(water);
            await (turn % 10 || tick());
        }
        await new Promise((resolve) => setTimeout(resolve, 500));
        return window.liveContexts();
    });
    assert.ok(contexts <= 1, `at most one GL context must be alive, not ${contexts}`);
    await page.waitForFunction(() => document.querySelector("velmora-water").live);
    assert.equal(await page.evaluate(() => window.listeners), listeners);
    const moved = await page.evaluate(() => {
        const inner = document.createElement("iframe");
        document.body.prepend(inner);
        inner.contentDocument.body.append(document.querySelector("velmora-water"));
        return inner.contentDocument.querySelector("velmora-water").shadowRoot.adoptedStyleSheets.length;
    });
    assert.equal(moved, 1);
    await page.waitForFunction(() => document.querySelector("iframe").contentDocument.querySelector("velmora-water").live);
    await close(page);
});

test("a resized element draws at its new size", async () => {
    const page = await open(browser, server, picture);
    await addStyle(page, "velmora-water { width: 200px !important; height: 120px !important }");
    await page.waitForFunction(() => document.querySelector("velmora-water").shadowRoot.querySelector("canvas")?.width === 200);
    await page.evaluate(() => document.querySelector("velmora-water").setAttribute("pixel-ratio", "2"));
    await page.waitForFunction(() => document.querySelector("velmora-water").shadowRoot.querySelector("canvas")?.width === 400);
    await close(page);
});

test("after a context loss, the element shows its picture again", async () => {
    const page = await open(browser, server, picture);
    await waitUntilIdle(page);
    const still = await frame(page);
    const refusal = await page.evaluate(async () => {
        const element = document.querySelector("velmora-water");
        const canvas = element.shadowRoot.querySelector("canvas");
        const extension = canvas.getContext("webgl").getExtension("WEBGL_lose_context");
        extension.loseContext();
        element.startRecording(); // restarts the effect in the lost context, before the element knows of the loss
        await new Promise((resolve) => canvas.addEventListener("webglcontextlost", resolve));
        await element.stopRecording();
        setTimeout(() => extension.restoreContext(), 50);
        try {
            element.startRecording();
        } catch (error) {
            return error.message;
        }
    });
    assert.match(refusal, /graphics are restarting/);
    await waitForEvent(page, "contextrestored");
    await waitUntilIdle(page);
    assert.ok((await page.evaluate(() => window.seen)).includes("contextlost"));
    assert.ok(difference(still, await frame(page)).max < 4);
    await close(page, /CONTEXT_LOST/);
});

test("if WebGL or the CORS header is missing, one error names the cause and the plain picture stays visible", async () => {
    const other = await serve();
    const cases = [
        ["320x240.bmp", () => (window.withoutWebGl = true), /no WebGL/],
        [`${other.address}/320x240.bmp`, () => {}, /Access-Control-Allow-Origin/],
    ];
    for (const [address, before, message] of cases) {
        const body = picture.replace("320x240.bmp", address);
        const page = await open(browser, server, body, { before, ready: 0 });
        await waitForEvent(page, "error");
        const seen = await page.evaluate(() => window.seen);
        assert.ok(seen.length === 1 && message.test(seen[0]), `${seen}`);
        const [red, green, blue] = (await shot(page)).pixel(280, 180);
        assert.ok(red > 170 && red < 200 && green > 160 && green < 185 && blue < 170, `${[red, green, blue]}`);
        const isFocusable = () => document.querySelector("velmora-water").shadowRoot.querySelector("[aria-hidden=true][tabindex='0']");
        assert.equal(await page.evaluate(isFocusable), null, "a part that is hidden from screen readers must not have the focus");
        await page.evaluate(() => (document.querySelector("velmora-water").style.opacity = "0.9"));
        await page.evaluate(() => new Promise((resolve) => setTimeout(resolve, 300)));
        assert.equal(await page.evaluate(() => window.seen.length), 1, "a later change must not repeat the error");
        assert.equal(await page.evaluate(() => window.liveContexts()), 0);
        await close(page);
    }
    other.stop();
});

test("the element works under a strict content security policy", async () => {
    const policy = "default-src 'none'; script-src 'self' 'wasm-unsafe-eval'; style-src 'self'; img-src 'self' data:";
    const strict = await serve({ "Content-Security-Policy": policy });
    const page = await open(browser, strict, picture);
    assert.deepEqual((await page.evaluate(() => window.seen)).filter((event) => event.startsWith("policy")), []);
    const place = await page.evaluate(() => document.querySelector("velmora-water").shadowRoot.querySelector("canvas").clientWidth);
    assert.equal(place, 300); // the style sheet of the shadow tree is in force
    await close(page);
    strict.stop();
});

test("attributes and properties set the same settings, and a bad value is reported once for each preset", async () => {
    const attributes = `preset="lagoon" ripple="5" ink="rgb(255, 0, 0)" damping="7" pointer="fly"`;
    const page = await open(browser, server, picture.repeat(2).replaceAll("<velmora-water", `<velmora-water ${attributes}`), {
        ready: 2,
        size: [300, 400],
    });
    const result = await page.evaluate(() => {
        const water = document.querySelector("velmora-water");
        const before = water.settings;
        water.waveSpeed = 0.7;
        water.waterOnly = true;
        water.preset = `{"ripple": 1, "fresnel": 2}`;
        water.ripple = null;
        water.ink = "var(--brand)";
        return { before, after: water.settings, speed: water.getAttribute("wave-speed"), only: water.hasAttribute("water-only") };
    });
    assert.deepEqual([result.before.ripple, result.before.ink, result.before.meshDetail], [5, [1, 0, 0], 120]);
    assert.equal(result.before.damping, 0.98); // the preset's value replaces the invalid 7
    assert.deepEqual([result.speed, result.only], ["0.7", true]);
    assert.deepEqual([result.after.ripple, result.after.fresnel, result.after.waveSpeed], [1, 2, 0.7]);
    const warnings = await close(page, /^warning:/);
    assert.equal(warnings.length, 4, `${warnings}`); // two for damping, because each names the value of another preset
    assert.match(warnings.join("\n"), /ink="var\(--brand\)" is not valid. Expected a CSS colour/);
    assert.match(warnings.join("\n"), /damping="7" is not valid. Expected a number from 0.8 to 0.999. 0.98 is used instead/);
    assert.match(warnings.join("\n"), /pointer="fly" is not valid. Expected drag, hover, none, capture. drag is used instead/);
});

test("a property takes effect even if the page sets it before the element's script runs", async () => {
    const early = `<script>document.querySelector("velmora-water").waterOnly = true</script>`;
    const page = await open(browser, server, picture + early);
    const set = () => [document.querySelector("velmora-water").settings.waterOnly, document.querySelector("velmora-water").outerHTML];
    const [isOn, html] = await page.evaluate(set);
    assert.ok(isOn && html.includes("water-only"), html);
    await close(page);
});

test("a user's touch ends a stroke that a script has begun, and begins another stroke", async () => {
    const page = await open(browser, server, picture);
    await page.evaluate(() => {
        const water = document.querySelector("velmora-water");
        water.startRecording();
        window.stroke = water.stroke([{ x: 30, y: 40 }, { x: 200, y: 40 }], { duration: 60000 });
    });
    const count = () => page.evaluate(() => window.animationFrames);
    const start = await count();
    await page.waitForFunction((wanted) => window.animationFrames > wanted, start + 5);
    await page.mouse.click(250, 150);
    const script = await page.evaluate(async () => {
        await window.stroke; // must resolve
        const water = document.querySelector("velmora-water");
        water.paused = true;
        await water.toBlob(); // must resolve although a paused element requests no frames by itself
        return water.stopRecording();
    });
    const touches = [...script.matchAll(/^\d+ (down|up) (\S+) (\S+)/gm)].map(([, action, x, y]) => [action, Number(x) > 200, Number(y)]);
    assert.deepEqual(touches.slice(-4), [["down", false, 40], ["up", false, 40], ["down", true, 150], ["up", true, 150]]);
    await close(page);
});

test("a recorded stroke is replayed, and a faulty gesture is refused", async () => {
    const page = await open(browser, server, picture);
    const script = await page.evaluate(async () => {
        const water = document.querySelector("velmora-water");
        water.startRecording();
        await water.stroke([{ x: 30, y: 40 }, { x: 200, y: 120 }], { duration: 150, pressure: 0.7 });
        return water.stopRecording();
    });
    const touches = [...script.matchAll(/^\d+ (down|move|up) (\S+) (\S+) (\S+)$/gm)].slice(3);
    assert.deepEqual(touches[0].slice(1), ["down", "30", "40", "0.7"]);
    assert.deepEqual(touches.at(-2).slice(1, 4), ["move", "200", "120"]);
    assert.equal(touches.at(-1)[1], "up");
    await page.evaluate((text) => document.querySelector("velmora-water").play(text), script);
    await waitForEvent(page, "gestureend");
    const fault = await page.evaluate(() => document.querySelector("velmora-water").play("0 dwn").catch((error) => error.message));
    assert.match(fault, /expected down, move/);
    await close(page);
});

test("createWater draws on a page's canvas, can use the canvas again after destroy, and rejects an unknown preset", async () => {
    const page = await open(browser, server, `<canvas class="mine"></canvas><img src="320x240.bmp" alt="">`, { ready: 0 });
    await page.waitForFunction(() => window.velmora && document.querySelector("img").complete);
    const [sizes, fault] = await page.evaluate(async () => {
        const canvas = document.querySelector("canvas");
        const sizes = [];
        for (let turn = 0; turn < 2; ++turn) {
            const options = { preset: "lagoon", background: document.querySelector("img") };
            const water = await window.velmora.createWater(canvas, options);
            sizes.push((await water.toBlob()).size);
            water.destroy();
        }
        return [sizes, await window.velmora.createWater(canvas, { preset: "fog" }).catch((error) => error.message)];
    });
    assert.ok(sizes[0] > 1000);
    assert.equal(sizes[1], sizes[0]);
    assert.match(fault, /^expected .*lagoon/);
    await close(page);
});

test("screen readers find one image with the name of the picture, and the Enter key touches the water", async () => {
    const page = await open(browser, server, picture);
    const shown = await page.evaluate(() => {
        const parts = [...document.querySelector("velmora-water").shadowRoot.children];
        const isShown = (part) => part.getAttribute("aria-hidden") !== "true" && part.className !== "over";
        return parts.filter(isShown).map((part) => [part.getAttribute("role"), part.getAttribute("aria-label")]);
    });
    assert.deepEqual(shown, [["img", "A test"]]);
    await page.keyboard.press("Tab");
    await page.keyboard.press("Enter");
    await page.waitForFunction(() => !document.querySelector("velmora-water").idle);
    await close(page);
});
