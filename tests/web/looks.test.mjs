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

test("each preset that ships, from a server, and a page that may not ask for anything", async () => {
    const server = await serve();
    const page = await open(browser, { size: [540, 960], url: server.url });
    const files = readdirSync(join(top, "presets")).filter((name) => name.endsWith(".json")).sort();
    const seen = [];
    for (const file of files) {
        await page.keyboard.press("n");
        const preset = JSON.parse(readFileSync(join(top, "presets", file), "utf8"));
        const shown = await look(page);
        assert.deepEqual(Object.fromEntries(Object.keys(preset).map((key) => [key, shown[key]])), preset, file);
        await page.keyboard.press("c");
        await drag(page, [150, 400], [390, 420], 5);
        seen.push(await picture(page));
        await page.screenshot({ path: join(shots, file.replace("json", "png")) });
    }
    seen.slice(1).forEach((one, at) => assert.ok(difference(seen[at], one) > 1, `${files[at]} looks like the next`));
    const refused = await page.evaluate((url) => fetch(url).then(() => "", (error) => String(error)), server.url);
    assert.match(refused, /TypeError/);
    page.complaints = page.complaints.filter((line) => !/Content Security Policy|Fetch API cannot load/.test(line));
    await close(page);
    server.stop();
});

test("a look in a link, in a dropped file, and with faults", async () => {
    const preset = { damping: 0.91, ink: [0.1, 0.2, 0.3], meshDetail: 60, secondBackground: true };
    const page = await open(browser, { hash: `#look=${encodeURIComponent(JSON.stringify(preset))}` });
    const linked = await look(page);
    assert.deepEqual({ ...linked, ...preset }, linked);
    await page.keyboard.press("m");
    await page.keyboard.press("Backspace");
    assert.deepEqual(await look(page), linked);

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
    await page.keyboard.press("m");
    await page.keyboard.press("Backspace");
    assert.deepEqual(await look(page), evening);
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
    await bring(page, "drop", ["bad.gesture", "", Buffer.from("0 down 1 2\n")]);
    await notice(page, "bad.gesture:1: expected a pressure");
    await close(page);
});

test("the panel by keyboard, in the dark, on a phone", async () => {
    for (const [name, size, colorScheme] of [["phone", [390, 844], "light"], ["desktop", [1280, 720], "dark"]]) {
        const page = await open(browser, { size, colorScheme });
        assert.equal(await page.locator("#panel").isVisible(), false);
        await page.keyboard.press("Tab");
        await page.getByRole("button", { name: /Water$/ }).click();
        const damping = page.getByRole("textbox", { name: /damping/ }).or(page.getByRole("spinbutton", { name: /damping/ }));
        await damping.fill("0.9");
        await damping.press("Enter");
        assert.equal((await look(page)).damping, 0.9);
        await page.screenshot({ path: join(shots, `panel-${name}.png`) });
        const box = await page.locator("#panel").boundingBox();
        assert.ok(box.x >= 0 && box.y >= 0 && box.x + box.width <= size[0] && box.y + box.height <= size[1]);
        const unnamed = await page.locator("button, input, select, canvas[role]").evaluateAll((all) =>
            all.filter((one) => !(one.ariaLabel || one.textContent.trim() || one.getAttribute("aria-labelledby")))
                .map((one) => one.outerHTML));
        assert.deepEqual(unnamed, []);
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
