// Looks: shipped presets, files, links, the panel; and what a browser without the means shows.

import assert from "node:assert/strict";
import { readdirSync, readFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { bring, close, difference, drag, launch, notice, open, picture, serve, shots, top } from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

const look = (page) => page.evaluate(() => JSON.parse(JSON.stringify(window.velmora.look)));
const shipped = (name) => JSON.parse(readFileSync(join(top, "presets", `${name}.json`), "utf8"));

/** Whether the look has what the preset sets. */
async function assertShown(page, preset, name) {
    const shown = await look(page);
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

test("a look in a link, in a dropped file, and with faults", async () => {
    const preset = { damping: 0.91, ink: [0.1, 0.2, 0.3], meshDetail: 60, secondBackground: true };
    const page = await open(browser, { hash: `#look=${encodeURIComponent(JSON.stringify(preset))}` });
    await assertShown(page, preset);
    const linked = await look(page);
    await page.keyboard.press("m");
    await page.keyboard.press("Backspace");
    assert.deepEqual(await look(page), linked);

    await page.evaluate((hash) => (location.hash = hash), `#look=${encodeURIComponent('{"exponent":5}')}`);
    await page.waitForFunction(() => window.velmora.look.exponent === 5);

    await page.keyboard.press("n");
    const other = await look(page);
    await page.evaluate(() => Object.defineProperty(navigator, "clipboard", { value: { writeText: async () => {} } }));
    await page.keyboard.press("u");
    await notice(page, "link to this look is copied");
    const copy = await open(browser, { hash: new URL(page.url()).hash });
    assert.deepEqual(await look(copy), other);
    await close(copy);

    const json = (value) => Buffer.from("\uFEFF" + JSON.stringify(value));
    await bring(page, "drop", ["evening.json", "application/json", json({ exponent: 7 })]);
    await notice(page, "evening");
    const evening = await look(page);
    assert.equal(evening.exponent, 7);
    const faults = [
        [json({ damping: 3 }), "bad.json: damping is to be a number from 0.8 to 0.999, not 3"],
        [json({ wet: true }), 'bad.json: there is no setting "wet"'],
        [json({ ink: [1, 2, 3] }), "bad.json: ink is to be three numbers from 0 to 1"],
        [Buffer.from("{"), "bad.json: this is no JSON"],
    ];
    for (const [bytes, words] of faults) {
        await bring(page, "drop", ["bad.json", "application/json", bytes]);
        await notice(page, words);
        assert.deepEqual(await look(page), evening);
    }
    for (const [text, words] of [["0 down 1 2\n", "bad.gesture:1: expected a pressure"],
        ["# nothing\n", "bad.gesture is no gesture"], ["0 down 1 2 0.5\n\0", "bad.gesture is no gesture"]]) {
        await bring(page, "drop", ["bad.gesture", "", Buffer.from(text)]);
        await notice(page, words);
        await page.evaluate(() => (document.getElementById("notice").textContent = ""));
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
    assert.deepEqual((await look(page)).ink, await page.evaluate(() => [...window.velmora.effect.palette.red]));
    assert.equal((await names(page))[0], "mercury *");

    await button("the velocity field", false).click();
    await button("the velocity field", true).waitFor();
    await page.keyboard.press("v"); // also at a button that was pressed
    await button("the velocity field", false).waitFor();
    await page.getByRole("checkbox", { name: "water only" }).click();
    await page.keyboard.press("w");
    await assertShown(page, { waterOnly: shipped("mercury").waterOnly });
    await button("tap").click();
    await page.waitForFunction(() => window.velmora.effect.replays);
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
    const mine = await look(page);
    await page.keyboard.press("p");
    page.once("dialog", (dialog) => dialog.accept("my_pond "));
    await page.keyboard.press("t");
    await notice(page, "my pond");

    page.requests = [];
    await page.reload();
    await page.waitForFunction(() => window.velmora?.counts.frames > 0);
    await page.keyboard.press("Tab");
    const kept = await names(page);
    assert.equal(kept.filter((name) => name === "calm pond").length, 1);
    assert.equal(kept.filter((name) => /^velmora-look/.test(name)).length, 1, "two saved in a second, one named since");
    await list(page).selectOption("calm pond");
    await assertShown(page, dropped);
    await page.keyboard.press("Delete");
    await list(page).selectOption("my pond");
    assert.deepEqual(await look(page), mine);
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
        assert.equal((await look(page)).damping, 0.9);
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

        const before = await look(page);
        await damping.press("F1");
        assert.equal(await page.locator("#help").evaluate((help) => help.scrollTop), 0);
        await page.keyboard.press("n");
        await page.keyboard.press("Escape");
        assert.deepEqual([await page.locator("#help").isVisible(), await page.locator("#panel").isVisible()], [false, true]);
        assert.deepEqual(await look(page), before);
        await page.keyboard.press("Escape");
        assert.equal(await page.locator("#panel").isVisible(), false);
        await page.keyboard.press("Control+b");
        assert.equal((await look(page)).secondBackground, false, "Ctrl and B are the browser's");
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
