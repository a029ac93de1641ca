// Presets: those that ship, files, links, the panel; and what a browser without the means shows.

import assert from "node:assert/strict";
import { readdirSync, readFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { bring, close, difference, drag, launch, notice, open, picture, serve, settings, shots, top } from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

const shipped = (name) => JSON.parse(readFileSync(join(top, "presets", `${name}.json`), "utf8"));

/** The settings in force are those of the preset. */
async function assertShown(page, preset, name) {
    const shown = await settings(page);
    assert.deepEqual({ ...shown, ...preset }, shown, name);
}

const list = (page) => page.getByRole("combobox", { name: "preset" });
const names = (page) => list(page).locator("option").allTextContents();

test("each preset that ships, from a server, and a page that may not ask for anything", async () => {
    const server = await serve();
    const page = await open(browser, { size: [540, 960], url: server.url });
    const files = readdirSync(join(top, "presets")).filter((name) => name.endsWith(".json")).sort();
    const seen = [];
    for (const file of files) {
        await page.keyboard.press("n");
        await assertShown(page, shipped(file.slice(0, -5)), file);
        await page.keyboard.press("c");
        await drag(page, [150, 400], [390, 420], 5);
        seen.push(await picture(page));
        await page.screenshot({ path: join(shots, file.replace("json", "png")) });
    }
    seen.slice(1).forEach((one, at) => assert.ok(difference(seen[at], one) > 1, `${files[at]} looks like the next`));
    const refused = await page.evaluate((url) => fetch(url).then(() => "", (error) => String(error)), server.url);
    assert.match(refused, /TypeError/);
    await close(page, /Content Security Policy|Fetch API cannot load/);
    server.stop();
});

const hashOf = (preset) => `#look=${encodeURIComponent(JSON.stringify(preset))}`;
const json = (value) => Buffer.from("\uFEFF" + JSON.stringify(value));

test("settings in a link, which a reset brings back", async () => {
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

test("a link of the page opens with its settings", async () => {
    const page = await open(browser);
    await page.keyboard.press("n");
    const shown = await settings(page);
    await page.evaluate(() => Object.defineProperty(navigator, "clipboard", { value: { writeText: async () => {} } }));
    await page.keyboard.press("u");
    await notice(page, "link to this look is copied");
    const copy = await open(browser, { hash: new URL(page.url()).hash });
    assert.deepEqual(await settings(copy), shown);
    await close(copy);
    await close(page);
});

test("a dropped preset is taken, and a faulty file changes nothing and says why", async () => {
    const page = await open(browser);
    await bring(page, "drop", ["evening.json", "application/json", json({ exponent: 7 })]);
    await notice(page, "evening");
    const evening = await settings(page);
    assert.equal(evening.exponent, 7);
    const faults = [
        ["bad.json", json({ damping: 3 }), "bad.json: 'damping' must be a number from 0.8 to 0.999, not 3"],
        ["bad.json", json({ wet: true }), "bad.json: there is no setting 'wet'"],
        ["bad.json", json({ ink: [1, 2, 3] }), "bad.json: 'ink' must be three numbers from 0 to 1, not [1,2,3]"],
        ["bad.json", Buffer.from("{"), "bad.json: this is no JSON"],
        ["bad.json", json([1]), "bad.json: a preset must be a JSON object"],
        ["bad.gesture", Buffer.from("0 down 1 2\n"), "bad.gesture:1: expected a pressure"],
        ["bad.gesture", Buffer.from("# nothing\n"), "bad.gesture is no gesture"],
        ["bad.gesture", Buffer.from("0 down 1 2 0.5\n\0"), "bad.gesture is no gesture"],
    ];
    for (const [name, bytes, words] of faults) {
        await page.evaluate(() => (document.getElementById("notice").textContent = ""));
        await bring(page, "drop", [name, "", bytes]);
        await notice(page, words);
        assert.deepEqual(await settings(page), evening);
    }
    await bring(page, "drop"); // a link, or words
    await notice(page, "that is no file");
    await close(page);
});

test("the panel's list, inks, toggles and buttons do what they say", async () => {
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

    await button("the velocity field", false).click();
    await button("the velocity field", true).waitFor();
    await page.keyboard.press("v"); // also at a button that was pressed
    await button("the velocity field", false).waitFor();
    await page.getByRole("checkbox", { name: "water only" }).click();
    await page.keyboard.press("w");
    await assertShown(page, { waterOnly: shipped("mercury").waterOnly });
    await button("tap").click();
    await page.waitForFunction(() => window.velmora.isReplaying());
    await page.locator(".times", { hasText: /\d frames\/s, [\d.]+ ms of script each, 270 × 480/ }).waitFor();
    await close(page);
});

test("presets of one's own are kept, named and removed, and stand in for shipped ones", async () => {
    const page = await open(browser);
    const dropped = { exponent: 7 };
    await bring(page, "drop", ["calm_pond.json", "", Buffer.from(JSON.stringify(dropped))]);
    await notice(page, "calm pond");
    await page.keyboard.press("p");
    await page.keyboard.press("m");
    const mine = await settings(page);
    await page.keyboard.press("p");
    page.once("dialog", (dialog) => dialog.accept("my_pond "));
    await page.keyboard.press("t");
    await notice(page, "my pond");

    page.requests = [];
    await page.reload();
    await page.waitForFunction(() => window.velmora?.counts().frames > 0);
    await page.keyboard.press("Tab");
    const kept = await names(page);
    assert.equal(kept.filter((name) => name === "calm pond").length, 1);
    assert.equal(kept.filter((name) => /^velmora-look/.test(name)).length, 1, "two saved in a second, one named since");
    await list(page).selectOption("calm pond");
    await assertShown(page, dropped);
    await page.keyboard.press("Delete");
    await list(page).selectOption("my pond");
    assert.deepEqual(await settings(page), mine);
    await list(page).selectOption("calm pond");
    await assertShown(page, shipped("calm_pond"));
    await page.keyboard.press("Delete");
    await notice(page, "calm pond is no preset of your own");
    await close(page);
});

test("the panel and the help by keyboard, in the dark, on a phone", async () => {
    const phone = { size: [390, 844], colorScheme: "light", hasTouch: true, isMobile: true };
    for (const [name, options] of [["phone", phone], ["desktop", { size: [1280, 720], colorScheme: "dark" }]]) {
        const page = await open(browser, options);
        const { size } = options;
        assert.equal(/F1/.test(await notice(page, "Touch the water")), name === "desktop");
        assert.equal(await page.locator("#panel").isVisible(), false);
        await page.keyboard.press("Tab");
        await page.getByRole("button", { name: "Water", exact: true }).click();
        const damping = page.getByRole(name === "phone" ? "spinbutton" : "textbox", { name: "damping" });
        assert.match(await damping.evaluate((one) => one.ariaDescription), /wave/);
        await damping.fill("0.9");
        await damping.press("Enter");
        assert.equal((await settings(page)).damping, 0.9);
        await page.screenshot({ path: join(shots, `panel-${name}.png`) });
        const [box, line] = [await page.locator("#panel").boundingBox(), await page.locator("#notice").boundingBox()];
        assert.ok(box.x >= 0 && box.y >= 0 && box.x + box.width <= size[0] && box.y + box.height <= size[1]);
        assert.ok(line.x + line.width <= box.x || line.y + line.height <= box.y, "a notice beside the panel or above it");
        const color = await page.locator("#panel").evaluate((one) => Number(/\d+/.exec(getComputedStyle(one).color)[0]));
        assert.equal(color > 128, name === "desktop", "light letters in the dark");
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
        assert.equal((await settings(page)).secondBackground, false, "Ctrl and B are the browser's");
        await close(page);
    }
});

test("a browser without WebGL or WebAssembly shows a sentence", async () => {
    const poor = await launch(["--disable-gpu", "--disable-3d-apis"]);
    const noGl = await open(poor, { ready: false });
    await noGl.getByRole("alert").filter({ hasText: "WebGL" }).waitFor();
    await poor.close();
    const noWasm = await open(browser, { ready: false, before: () => delete window.WebAssembly });
    await noWasm.getByRole("alert").filter({ hasText: "WebAssembly" }).waitFor();
    await close(noWasm);
});
