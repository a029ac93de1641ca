// Tests the panel and the page around it: accessibility, keyboard, phones, iframes, hidden controls and printing.

import assert from "node:assert/strict";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { engine } from "./engines/engine.mjs";
import {
    axe, close, launch, makeImage, needs, open, readFrame, screenshotFolder, sendFiles, serve, settings, waitForToast,
} from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

/** Devices. Each has the options of the browser and the options of the page. */
const phone = { browser: { touchScreen: true }, page: { size: [390, 844] } };
const desktop = { browser: {}, page: { size: [1600, 900] } };

/** Returns the violated accessibility rules with the elements that violate them. */
async function violations(page) {
    const found = await page.evaluate(async () => (await window.axe.run()).violations);
    return found.map(({ id, nodes }) => `${id}: ${nodes.map((node) => node.target).join(" ")}`);
}

/**
 * Returns the elements of the panel whose text or accent colour has a contrast below 4.5. The panel is translucent, so
 * the contrast is computed for black water and for white water behind it.
 */
function faintElements(page) {
    return page.evaluate(() => {
        const parts = (color) => color.match(/[\d.]+/g).map(Number);
        const luminance = (rgb) => {
            const [red, green, blue] = rgb.map((part) => ((part / 255 + 0.055) / 1.055) ** 2.4);
            return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
        };
        const contrast = (one, other) => {
            const [low, high] = [luminance(one), luminance(other)].sort((a, b) => a - b);
            return (high + 0.05) / (low + 0.05);
        };
        const [red, green, blue, alpha] = parts(getComputedStyle(document.getElementById("panel")).backgroundColor);
        const behind = [0, 255].map((water) => [red, green, blue].map((part) => alpha * part + (1 - alpha) * water));
        return [...document.querySelectorAll("#panel :is(label, summary, input)")].flatMap((element) => {
            const { color, accentColor } = getComputedStyle(element);
            const shown = element.type === "range" ? accentColor : color;
            const worst = Math.min(...behind.map((water) => contrast(parts(shown).slice(0, 3), water)));
            return worst < 4.5 ? [`${element.outerHTML.slice(0, 80)}: ${worst.toFixed(1)}`] : [];
        });
    });
}

/**
 * Checks the accessibility of the page on a device, in light and in dark colours: first with the panel closed, then with
 * the panel open.
 */
async function checkAccessibility(name, device) {
    for (const colorScheme of ["light", "dark"]) {
        const themed = await launch({ ...device.browser, colorScheme });
        const page = await open(themed, device.page);
        const hint = await waitForToast(page, "Drag to stir the water.");
        const hasTouch = device === phone;
        assert.equal(/F1/.test(hint), !hasTouch, "the hint must name the key F1 only if the device has no touch screen");
        await page.evaluate(Function(axe));
        assert.deepEqual(await violations(page), [], `the page in ${colorScheme} colours with a closed panel must violate no rule`);
        await page.locator("#open").click();
        await page.screenshot({ path: join(screenshotFolder, `panel-${engine.name}-${name}-${colorScheme}.png`) });
        for (const section of ["Picture", "Water", "Light", "Ink"]) {
            const box = await page.getByText(section, { exact: true }).boundingBox();
            assert.ok(box.y + box.height <= device.page.size[1], `${section} must be on the screen`);
        }
        await page.evaluate(() => document.querySelectorAll("details").forEach((each) => (each.open = true)));
        assert.deepEqual(await violations(page), [], `the page in ${colorScheme} colours with an open panel must violate no rule`);
        assert.deepEqual(await faintElements(page), []);
        await sendFiles(page, "drop", ["mine.json", "", Buffer.from("{}")]);
        await waitForToast(page, "mine is added to the presets");
        await page.keyboard.press("t");
        await page.screenshot({ path: join(screenshotFolder, `rename-${engine.name}-${name}-${colorScheme}.png`) });
        assert.deepEqual(await violations(page), [], `the rename dialog in ${colorScheme} colours must violate no rule`);
        const small = await page.evaluate(() =>
            [...document.querySelectorAll("button, summary, label.setting, input:not([type=checkbox], [type=color])")]
                .filter((one) => one.checkVisibility() && one.getBoundingClientRect().height < 40)
                .map((one) => one.outerHTML),
        );
        assert.ok(!hasTouch || small.length === 0, `targets on a phone must be at least 40 pixels high, but these are lower: ${small}`);
        await close(page);
        await themed.close();
    }
}

test("on a phone, the page violates no accessibility rule, and has enough contrast and large targets", needs("touch"), () =>
    checkAccessibility("phone", phone));

test("on a desktop, the page violates no accessibility rule, and has enough contrast", () =>
    checkAccessibility("desktop", desktop));

test("the panel is on the screen and beside the toast, and its controls work by keyboard", async () => {
    for (const device of [phone, desktop]) {
        const { size } = device.page;
        const onDevice = await launch(device.browser);
        const page = await open(onDevice, device.page);
        await page.keyboard.press("Tab");
        const [box, toast] = [await page.locator("#panel").boundingBox(), await page.locator("#toast").boundingBox()];
        assert.ok(box.x >= 0 && box.y >= 0 && box.x + box.width <= size[0] && box.y + box.height <= size[1]);
        assert.ok(toast.x + toast.width <= box.x || toast.y + toast.height <= box.y, "the toast must be beside the panel");
        await page.getByText("Water", { exact: true }).press("Enter");
        const damping = page.getByRole("spinbutton", { name: "Damping" });
        await damping.fill("0.9");
        await damping.press("Enter");
        assert.equal((await settings(page)).damping, 0.9);
        await page.getByRole("slider", { name: "Damping" }).press("ArrowRight");
        assert.equal((await settings(page)).damping, 0.901);
        await damping.fill("7");
        await damping.blur();
        assert.deepEqual([await damping.inputValue(), (await settings(page)).damping], ["0.999", 0.999]);

        const before = await settings(page);
        await damping.press("F1");
        assert.equal(await page.evaluate(() => document.getElementById("help").scrollTop), 0);
        await page.keyboard.press("n");
        await page.keyboard.press("Escape");
        assert.deepEqual([await page.locator("#help").isVisible(), await page.locator("#panel").isVisible()], [false, true]);
        assert.deepEqual(await settings(page), before);
        // After Esc has closed the panel, Tab must open it again, even if the panel was opened with the settings button
        // before.
        for (const reopen of [() => page.keyboard.press("Tab"), () => page.locator("#open").click()]) {
            await page.keyboard.press("Escape");
            assert.equal(await page.locator("#panel").isVisible(), false);
            await reopen();
            assert.equal(await page.locator("#panel").isVisible(), true);
        }
        await page.keyboard.press("Escape");
        await page.keyboard.press("Tab");
        assert.equal(await page.locator("#panel").isVisible(), true);
        await page.keyboard.press("Control+b");
        assert.equal((await settings(page)).secondBackground, false, "Ctrl+B must not run the command of the key B");
        await close(page);
        await onDevice.close();
    }
});

test("changes of the settings can be undone and redone, and a drag of a slider is one change", async () => {
    const page = await open(browser, desktop.page);
    // Stops the clock. Otherwise a drag with a pause of a second on a slow machine would count as two changes.
    await page.evaluate(() => {
        const now = performance.now();
        performance.now = () => now;
    });
    const states = [await settings(page)];
    await page.keyboard.press("n");
    states.push(await settings(page));
    await page.keyboard.press("Tab");
    await page.getByText("Water", { exact: true }).click();
    for (const name of ["Damping", "Rain"]) {
        const box = await page.getByRole("slider", { name }).boundingBox();
        await page.mouse.move(box.x + box.width / 2, box.y + box.height / 2);
        await page.mouse.down();
        for (const part of [0.54, 0.58, 0.62, 0.66, 0.7]) {
            await page.mouse.move(box.x + box.width * part, box.y + box.height / 2);
        }
        await page.mouse.up();
        states.push(await settings(page));
    }
    for (const [key, order] of [["z", [2, 1, 0, 0]], ["y", [1, 2, 3, 3]]]) {
        for (const state of order) {
            await page.keyboard.press(key);
            assert.deepEqual(await settings(page), states[state], `${key} must restore state ${state}`);
        }
    }
    await waitForToast(page, "There is no undone change to repeat");
    await close(page);
});

test("a click on the thumbnail of a painting or of the user's picture shows this background, and undo shows the second background again", async () => {
    const page = await open(browser, desktop.page);
    const isSecondShown = async () => (await settings(page)).secondBackground;
    await page.keyboard.press("Tab");
    await page.getByText("Picture", { exact: true }).click();
    const file = ["red.png", "image/png", await makeImage(page, [16, 9], [["red", 0, 0, 16, 9]])];
    for (const choose of [() => page.getByRole("button", { name: "paper" }).click(), () => sendFiles(page, "drop", file)]) {
        await page.keyboard.press("b");
        await page.keyboard.press("w"); // a change of another setting, so that "b" and `choose` are two undo steps
        await choose();
        await page.waitForFunction(() => !window.velmora.settings.secondBackground);
        await page.keyboard.press("z");
        assert.equal(await isSecondShown(), true);
        await page.keyboard.press("y");
        assert.equal(await isSecondShown(), false);
    }
    for (const [name, isRed] of [["yours", true], ["sky", false], ["yours", true]]) {
        await page.getByRole("button", { name, exact: true }).click();
        await page.getByRole("button", { name, exact: true, pressed: true }).waitFor();
        const [red, green] = (await readFrame(page)).pixel(800, 450);
        assert.equal(red > 100 && green < 100, isRed, `${name}: ${red}, ${green}`);
    }
    await close(page);
});

test("commands with letter keys work on a keyboard that has no Latin letters", needs("keyboardLayout"), async () => {
    const page = await open(browser);
    const presses = [["т", "KeyN", "calm pond"], ["и", "KeyB", "Second picture"], ["'", "KeyW", "Water only is on"]];
    for (const [key, code, message] of presses) {
        for (const type of ["keyDown", "keyUp"]) {
            const text = type === "keyDown" ? key : "";
            await page.devTools.send("Input.dispatchKeyEvent", { type, key, code, text });
        }
        await waitForToast(page, message);
    }
    await close(page);
});

test("in an iframe, arrow keys, wheel and Tab act on the outer page, and commands without permission report this", async () => {
    const server = await serve();
    const page = await browser.newPage({ size: [400, 400] });
    await page.goto(server.outerUrl);
    await page.waitForFunction(() => {
        window.inner = document.querySelector("iframe").contentWindow;
        return window.inner.velmora?.counts().frames > 0;
    });
    await page.mouse.click(150, 150);
    await page.keyboard.press("Tab");
    assert.equal(await page.evaluate(() => window.inner.document.getElementById("panel").checkVisibility()), false);
    await page.keyboard.press("x");
    const waitForInnerToast = (text) =>
        page.waitForFunction((wanted) => window.inner.document.querySelector("#toast.shown")?.textContent.includes(wanted), text);
    await waitForInnerToast("Full screen is not possible here");
    await page.evaluate(() => {
        const writeText = () => Promise.reject(new Error("not allowed"));
        Object.defineProperty(window.inner.navigator, "clipboard", { value: { writeText } });
    });
    await page.keyboard.press("u");
    await waitForInnerToast("The link cannot be copied in a page inside another page");
    await page.keyboard.press("p");
    await waitForInnerToast("added it to the presets");
    for (const key of ["t", "o", "n", "e", "Enter"]) {
        await page.keyboard.press(key);
    }
    await waitForInnerToast("Renamed to one");
    await page.mouse.wheel(0, 500);
    await page.waitForFunction(() => scrollY > 0);
    await page.evaluate(() => {
        window.inner.addEventListener("keydown", (event) => (window.isKeyTaken = event.defaultPrevented));
        window.inner.document.activeElement.blur();
    });
    await page.keyboard.press("ArrowDown");
    await page.waitForFunction(() => window.isKeyTaken !== undefined);
    assert.equal(await page.evaluate(() => window.isKeyTaken), false, "an arrow key must scroll the outer page");
    await page.close();
    server.stop();
});

test("on a phone, a key hides the controls, and a touch with three fingers shows them again", needs("touch"), async () => {
    const onPhone = await launch(phone.browser);
    const page = await open(onPhone);
    await page.keyboard.press("h");
    await waitForToast(page, "Touch with three fingers to show the controls again");
    assert.equal(await page.locator("#open").isVisible(), false);
    await page.touch("touchStart", ...[1, 2, 3].map((id) => [id, 60 * id, 200]));
    await page.touch("touchEnd");
    await page.locator("#open").waitFor();
    await close(page);
    await onPhone.close();
});

test("a key or #clean in the address hides the controls, but not errors, and Tab shows the controls again", async () => {
    const page = await open(browser, { hash: "#clean" });
    const visible = async () => [await page.locator("#open").isVisible(), await page.locator("#toast.shown").isVisible()];
    assert.deepEqual(await visible(), [false, false]);
    await page.keyboard.press("h");
    await page.locator("#open").waitFor();
    await page.keyboard.press("h");
    await waitForToast(page, "H shows the controls again");
    assert.equal(await page.locator("#open").isVisible(), false);
    await page.keyboard.press("n"); // chooses a preset, which must not show a toast now
    assert.doesNotMatch(await page.locator("#toast").textContent(), /calm pond/);
    await sendFiles(page, "drop", ["bad.json", "", Buffer.from("{")]);
    await waitForToast(page, "bad.json: this is not valid JSON");
    await page.keyboard.press("Tab");
    assert.deepEqual([await page.locator("#open").isVisible(), await page.locator("#panel").isVisible()], [true, true]);
    await page.evaluate(() => (location.hash = ""));
    await page.evaluate(() => (location.hash = "#clean"));
    await page.waitForFunction(() => !document.getElementById("open").checkVisibility());
    await close(page);
});

test("text follows the browser's font size, and no toast covers the settings button", async () => {
    const page = await open(browser, { size: [133, 225] }); // 400 x 675 at 300 % zoom
    const [toast, button] = [await page.locator("#toast").boundingBox(), await page.locator("#open").boundingBox()];
    assert.ok(toast.y >= button.y + button.height, "the toast must not cover the settings button");
    await page.setViewportSize({ width: 800, height: 600 });
    await page.keyboard.press("Tab");
    const textSize = () => page.evaluate(() => parseFloat(getComputedStyle(document.querySelector("summary")).fontSize));
    const usual = await textSize();
    await page.evaluate(() => (document.documentElement.style.fontSize = "32px"));
    assert.ok((await textSize()) > 1.9 * usual);
    await close(page);
});

test("only the water is printed", needs("printed"), async () => {
    const page = await open(browser);
    await page.keyboard.press("Tab");
    await page.emulateMedia({ media: "print" });
    assert.deepEqual(await page.locator("button, #panel, #toast").evaluateAll((all) => all.filter((one) => one.checkVisibility())), []);
    assert.equal(await page.locator("#water").evaluate((one) => getComputedStyle(one).objectFit), "contain");
    await close(page);
});

test("a focus ring appears around the water only if Tab has moved the focus there", async () => {
    const page = await open(browser);
    const ring = () => page.evaluate(() => getComputedStyle(document.getElementById("water")).outlineStyle);
    await page.mouse.click(50, 60);
    await page.keyboard.press("v");
    assert.equal(await page.evaluate(() => document.activeElement.id), "water");
    assert.equal(await ring(), "none");
    // Simulates a switch of browser tabs after a key press: the water loses the focus and gets it back.
    await page.evaluate(() => {
        const water = document.getElementById("water");
        water.dispatchEvent(new FocusEvent("blur"));
        water.dispatchEvent(new FocusEvent("focus"));
    });
    assert.equal(await ring(), "none");
    await page.locator("#open").focus();
    await page.keyboard.press("Shift+Tab");
    assert.equal(await ring(), "solid");
    await close(page);
});
