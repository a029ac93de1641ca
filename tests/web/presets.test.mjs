// Presets: shipped presets, files, links and the panel. Also errors in browsers without WebGL or WebAssembly.

import assert from "node:assert/strict";
import { readdirSync, readFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";
import {
    close, difference, drag, launch, open, readFrame, screenshotFolder, sendFiles, serve, settings, top,
    waitForToast,
} from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

const shipped = (name) => JSON.parse(readFileSync(join(top, "presets", `${name}.json`), "utf8"));

/** Asserts that the current settings are those of the preset. */
async function assertShown(page, preset, name) {
    const shown = await settings(page);
    assert.deepEqual({ ...shown, ...preset }, shown, name);
}

const list = (page) => page.getByRole("combobox", { name: "preset" });
const names = (page) => list(page).locator("option").allTextContents();

test("a page from a server shows each shipped preset and may not load anything", async () => {
    const server = await serve();
    const page = await open(browser, { size: [540, 960], url: server.url });
    const files = readdirSync(join(top, "presets")).filter((name) => name.endsWith(".json")).sort();
    const seen = [];
    for (const file of files) {
        await page.keyboard.press("n");
        await assertShown(page, shipped(file.slice(0, -5)), file);
        await page.keyboard.press("c");
        await drag(page, [150, 400], [390, 420], 5);
        seen.push(await readFrame(page));
        await page.screenshot({ path: join(screenshotFolder, file.replace("json", "png")) });
    }
    seen.slice(1).forEach((one, at) => assert.ok(difference(seen[at], one) > 1, `${files[at]} must differ from the next preset`));
    const refused = await page.evaluate((url) => fetch(url).then(() => "", (error) => String(error)), server.url);
    assert.match(refused, /TypeError/);
    await close(page, /Content Security Policy|Fetch API cannot load/);
    server.stop();
});

const hashOf = (preset) => `#look=${encodeURIComponent(JSON.stringify(preset))}`;
const json = (value) => Buffer.from("\uFEFF" + JSON.stringify(value));

test("a link sets the settings, and a reset restores them", async () => {
    const preset = { damping: 0.91, ink: [0.1, 0.2, 0.3], meshDetail: 60, secondBackground: true };
    const page = await open(browser, { hash: hashOf(preset) });
    await assertShown(page, preset);
    const linked = await settings(page);
    await page.keyboard.press("m");
    await page.keyboard.press("Backspace");
    assert.deepEqual(await settings(page), linked);
    await page.evaluate((hash) => (location.hash = hash), hashOf({ exponent: 5 }));
    await page.waitForFunction(() => window.velmora.settings.exponent === 5);
    await close(page);
});

test("a shared link opens with the same settings", async () => {
    const page = await open(browser);
    await page.keyboard.press("n");
    const shown = await settings(page);
    await page.evaluate(() => Object.defineProperty(navigator, "clipboard", { value: { writeText: async () => {} } }));
    await page.keyboard.press("u");
    await waitForToast(page, "copied a link to these settings");
    const copy = await open(browser, { hash: new URL(page.url()).hash });
    assert.deepEqual(await settings(copy), shown);
    await close(copy);
    await close(page);
});

test("a dropped preset is applied, and a faulty file shows an error and changes nothing", async () => {
    const page = await open(browser);
    await sendFiles(page, "drop", ["evening.json", "application/json", json({ exponent: 7 })]);
    await waitForToast(page, "evening");
    const evening = await settings(page);
    assert.equal(evening.exponent, 7);
    const faults = [
        ["bad.json", json({ damping: 3 }), "bad.json: 'damping' must be a number from 0.8 to 0.999, not 3"],
        ["bad.json", json({ wet: true }), "bad.json: there is no setting 'wet'"],
        ["bad.json", json({ ink: [1, 2, 3] }), "bad.json: 'ink' must be three numbers from 0 to 1, not [1,2,3]"],
        ["bad.json", Buffer.from("{"), "bad.json: this is not valid JSON"],
        ["bad.json", json([1]), "bad.json: a preset must be a JSON object"],
        ["bad.gesture", Buffer.from("0 down 1 2\n"), "bad.gesture:1: expected a pressure"],
        ["bad.gesture", Buffer.from("# nothing\n"), "bad.gesture is not a gesture script"],
        ["bad.gesture", Buffer.from("0 down 1 2 0.5\n\0"), "bad.gesture is not a gesture script"],
    ];
    for (const [name, bytes, message] of faults) {
        await page.evaluate(() => (document.getElementById("toast").textContent = ""));
        await sendFiles(page, "drop", [name, "", bytes]);
        await waitForToast(page, message);
        assert.deepEqual(await settings(page), evening);
    }
    await sendFiles(page, "drop"); // as for a dropped link or text
    await waitForToast(page, "nothing to open here");
    await close(page);
});

test("the panel's list, inks, toggles and buttons work", async () => {
    const page = await open(browser);
    const button = (name, pressed) => page.getByRole("button", { name, exact: true, pressed });
    await page.keyboard.press("Tab");
    for (const name of ["ember", "storm", "mercury"]) {
        await list(page).selectOption(name);
        await assertShown(page, shipped(name), name);
    }
    for (const folder of ["Ink", "Show", "Gestures"]) {
        await button(folder).click();
    }
    await page.getByRole("button", { name: "red ink" }).click();
    assert.deepEqual((await settings(page)).ink, [1, 0.35, 0.35]);
    assert.equal((await names(page))[0], "mercury *");

    await button("velocity field", false).click();
    await button("velocity field", true).waitFor();
    await page.keyboard.press("v"); // keys also work while a pressed button has the focus
    await button("velocity field", false).waitFor();
    await page.getByRole("checkbox", { name: "water only" }).click();
    await page.keyboard.press("w");
    await assertShown(page, { waterOnly: shipped("mercury").waterOnly });
    await button("tap").click();
    await page.waitForFunction(() => window.velmora.isReplaying());
    await page.locator(".frame-times", { hasText: /\d frames\/s, [\d.]+ ms of script per frame, 270 × 480/ }).waitFor();
    await close(page);
});

test("presets can be saved, renamed and removed, and can replace shipped ones", async () => {
    const page = await open(browser);
    const dropped = { exponent: 7 };
    await sendFiles(page, "drop", ["calm_pond.json", "", Buffer.from(JSON.stringify(dropped))]);
    await waitForToast(page, "calm pond");
    await page.keyboard.press("p");
    await page.keyboard.press("m");
    const mine = await settings(page);
    await page.keyboard.press("p");
    page.once("dialog", (dialog) => dialog.accept("my_pond "));
    await page.keyboard.press("t");
    await waitForToast(page, "my pond");

    page.requests = [];
    await page.reload();
    await page.waitForFunction(() => window.velmora?.counts().frames > 0);
    await page.keyboard.press("Tab");
    const kept = await names(page);
    assert.equal(kept.filter((name) => name === "calm pond").length, 1);
    assert.equal(kept.filter((name) => /^velmora-preset/.test(name)).length, 1, "two presets saved within a second, one of them renamed");
    await list(page).selectOption("calm pond");
    await assertShown(page, dropped);
    await page.keyboard.press("Delete");
    await list(page).selectOption("my pond");
    assert.deepEqual(await settings(page), mine);
    await list(page).selectOption("calm pond");
    await assertShown(page, shipped("calm_pond"));
    await page.keyboard.press("Delete");
    await waitForToast(page, "calm pond is not a preset that you saved");
    await close(page);
});

test("panel and help work by keyboard, in dark mode and on a phone", async () => {
    const phone = { size: [390, 844], colorScheme: "light", hasTouch: true, isMobile: true };
    for (const [name, options] of [["phone", phone], ["desktop", { size: [1280, 720], colorScheme: "dark" }]]) {
        const page = await open(browser, options);
        const { size } = options;
        assert.equal(/F1/.test(await waitForToast(page, "Touch the water")), name === "desktop");
        assert.equal(await page.locator("#panel").isVisible(), false);
        await page.keyboard.press("Tab");
        await page.getByRole("button", { name: "Water", exact: true }).click();
        const damping = page.getByRole(name === "phone" ? "spinbutton" : "textbox", { name: "damping" });
        assert.match(await damping.evaluate((one) => one.ariaDescription), /wave/);
        await damping.fill("0.9");
        await damping.press("Enter");
        assert.equal((await settings(page)).damping, 0.9);
        await page.screenshot({ path: join(screenshotFolder, `panel-${name}.png`) });
        const [box, toast] = [await page.locator("#panel").boundingBox(), await page.locator("#toast").boundingBox()];
        assert.ok(box.x >= 0 && box.y >= 0 && box.x + box.width <= size[0] && box.y + box.height <= size[1]);
        assert.ok(toast.x + toast.width <= box.x || toast.y + toast.height <= box.y, "the toast must be beside or above the panel");
        const color = await page.locator("#panel").evaluate((one) => Number(/\d+/.exec(getComputedStyle(one).color)[0]));
        assert.equal(color > 128, name === "desktop", "dark mode must have light text");
        const unnamed = await page.locator("button, input, select, canvas[role]").evaluateAll((all) =>
            all.filter((one) => !(one.ariaLabel || one.textContent.trim() || one.getAttribute("aria-labelledby")))
                .map((one) => one.outerHTML));
        assert.deepEqual(unnamed, []);

        const before = await settings(page);
        await damping.press("F1");
        assert.equal(await page.locator("#help").evaluate((help) => help.scrollTop), 0);
        await page.keyboard.press("n");
        await page.keyboard.press("Escape");
        assert.deepEqual([await page.locator("#help").isVisible(), await page.locator("#panel").isVisible()], [false, true]);
        assert.deepEqual(await settings(page), before);
        await page.keyboard.press("Escape");
        assert.equal(await page.locator("#panel").isVisible(), false);
        await page.keyboard.press("Control+b");
        assert.equal((await settings(page)).secondBackground, false, "Ctrl+B must stay a browser shortcut");
        await close(page);
    }
});

test("a browser without WebGL or WebAssembly shows an error", async () => {
    const browserWithoutGl = await launch(["--disable-gpu", "--disable-3d-apis"]);
    const noGl = await open(browserWithoutGl, { ready: false });
    await noGl.getByRole("alert").filter({ hasText: "WebGL" }).waitFor();
    await browserWithoutGl.close();
    const noWasm = await open(browser, { ready: false, before: () => delete window.WebAssembly });
    await noWasm.getByRole("alert").filter({ hasText: "WebAssembly" }).waitFor();
    await close(noWasm);
});
