// Tests shipped presets, and presets in files, links and the browser's storage. Also tests error messages in browsers
// that have no WebGL or no WebAssembly.

import assert from "node:assert/strict";
import { readdirSync, readFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";
import {
    close, difference, drag, launch, open, pageSize, readFrame, screenshotFolder, sendFiles, serve, settings,
    top, waitForToast,
} from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

const shipped = (name) => name === "default" ? {} : JSON.parse(readFileSync(join(top, "presets", `${name}.json`), "utf8"));

/** Asserts that the current settings contain all settings of the preset. */
async function assertShown(page, preset, name) {
    const shown = await settings(page);
    assert.deepEqual({ ...shown, ...preset }, shown, name);
}

const grid = (page) => page.getByRole("list");
const names = (page) => grid(page).locator("button").allTextContents();
const choose = (page, name) => grid(page).getByRole("button", { name, exact: true }).click();

test("a page from a server shows each shipped preset, and its content security policy forbids all requests", async () => {
    const server = await serve();
    const page = await open(browser, { url: server.url });
    const files = readdirSync(join(top, "presets")).filter((name) => name.endsWith(".json")).sort();
    const seen = [];
    for (const file of files) {
        await page.keyboard.press("n");
        await assertShown(page, shipped(file.slice(0, -5)), file);
        await page.keyboard.press("c");
        const [width, height] = pageSize;
        await drag(page, [0.28 * width, 0.42 * height], [0.72 * width, 0.44 * height], 5);
        seen.push(await readFrame(page));
        await page.screenshot({ path: join(screenshotFolder, file.replace("json", "png")) });
    }
    seen.slice(1).forEach((one, at) => assert.ok(difference(seen[at], one) > 1, `the frame of ${files[at]} must differ from the frame of ${files[at + 1]}`));
    const refused = await page.evaluate((url) => fetch(url).then(() => "", (error) => String(error)), server.url);
    assert.match(refused, /TypeError/);
    await close(page, /Content.Security.Policy|Fetch API cannot load/);
    server.stop();
});

const hashOf = (preset) => `#look=${encodeURIComponent(JSON.stringify(preset))}`;
const json = (value) => Buffer.from("\uFEFF" + JSON.stringify(value));

test("a link sets the settings, and a reset restores the settings of the link", async () => {
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

test("a shared link is short, and opens with the same settings even if other sites add parameters to the link", async () => {
    const page = await open(browser);
    const link = await open(browser, { hash: "#look&damping=0.91&ink=0.1,0.2,0.3&waterOnly=true&utm_source=mail" });
    await assertShown(link, { damping: 0.91, ink: [0.1, 0.2, 0.3], waterOnly: true });
    await close(link);
    const damaged = await open(browser, { hash: "#look&damping=wet" });
    await waitForToast(damaged, "This link or file is damaged: 'damping' must be a number");
    await close(damaged);
    await page.keyboard.press("m");
    const shown = await settings(page);
    await page.evaluate(() => void Object.defineProperty(navigator, "clipboard", { value: { writeText: async () => {} } }));
    await page.keyboard.press("u");
    await waitForToast(page, "Copied a link to these settings. It works only on this device");
    const hash = await page.evaluate(() => location.hash);
    assert.ok(hash.length < 300, hash);
    const copy = await open(browser, { hash: `${hash}&utm_source=mail` });
    assert.deepEqual(await settings(copy), shown);
    await close(copy);
    await close(page);
});

test("a dropped preset is applied, and a faulty file shows an error and changes nothing", async () => {
    const page = await open(browser);
    await sendFiles(page, "drop", ["evening.json", "application/json", json({ exponent: 7 })]);
    await waitForToast(page, "evening is added to the presets");
    const evening = await settings(page);
    assert.equal(evening.exponent, 7);
    const faults = [
        ["bad.json", json({ wet: true }), "bad.json: there is no setting 'wet'"],
        ["bad.json", json({ damping: 3, ink: [1, 2, 3] }), "bad.json: 'damping' must be a number from 0.8 to 0.999, " +
            "not 3; 'ink' must be three numbers from 0 to 1, not [1,2,3]"],
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
    await sendFiles(page, "drop"); // a drop without files, for example of a link or text
    await waitForToast(page, "Nothing to open here");
    await close(page);
});

test("the panel's presets, inks, toggles and buttons work", async () => {
    const page = await open(browser);
    const button = (name, pressed) => page.getByRole("button", { name, exact: true, pressed });
    await page.keyboard.press("Tab");
    for (const name of ["ember", "storm", "mercury"]) {
        await choose(page, name);
        await assertShown(page, shipped(name), name);
    }
    for (const section of ["Ink", "Developer", "Gestures"]) {
        await page.getByText(section, { exact: true }).click();
    }
    await button("red ink").click();
    assert.deepEqual((await settings(page)).ink, [1, 0.35, 0.35]);
    await button("mercury *", true).waitFor();
    await page.getByLabel("Colour").fill("#ff0000");
    assert.deepEqual((await settings(page)).ink, [1, 0, 0]);

    await button("Velocity field", false).click();
    await button("Velocity field", true).waitFor();
    await page.keyboard.press("v"); // the key must also work while the button has the focus
    await button("Velocity field", false).waitFor();
    await page.getByRole("checkbox", { name: "Water only" }).click();
    await page.keyboard.press("w");
    await assertShown(page, { waterOnly: shipped("mercury").waterOnly });
    await choose(page, "Default");
    await assertShown(page, shipped("default"));
    await button("tap").click();
    await page.waitForFunction(() => window.velmora.isReplaying());
    const times = String.raw`\d frames/s, [\d.]+ ms of script per frame, ${pageSize.join(" × ")}`;
    await page.locator(".frame-times", { hasText: new RegExp(times) }).waitFor();
    await close(page);
});

/** Presses a key that opens a dialog, replaces the text of the dialog's field if `text` is given, and confirms. */
async function answerDialog(page, key, text) {
    await page.keyboard.press(key);
    if (text !== undefined) {
        await page.locator("dialog input").fill(text);
    }
    await page.keyboard.press("Enter");
}

test("presets can be saved, renamed and deleted, and do not replace built-in presets of the same name", async () => {
    const page = await open(browser);
    await page.keyboard.press("Tab");
    const dropped = { exponent: 7 };
    await sendFiles(page, "drop", ["calm pond.json", "", Buffer.from(JSON.stringify(dropped))]);
    await waitForToast(page, "calm pond 2 is added to the presets");
    await page.keyboard.press("p");
    await waitForToast(page, "and added it to the presets");
    await page.keyboard.press("m");
    const mine = await settings(page);
    await page.keyboard.press("p");
    await waitForToast(page, "Saved velmora-preset");
    await answerDialog(page, "t", "Calm Pond");
    await waitForToast(page, "A preset named 'calm pond' already exists; choose another name");
    await page.keyboard.press("b"); // changes a setting, which the rename must keep
    await answerDialog(page, "t", "my_pond ");
    await waitForToast(page, "Renamed to my_pond");
    await assertShown(page, { ...mine, secondBackground: !mine.secondBackground });

    await page.reload();
    await page.waitForFunction(() => window.velmora?.counts().frames > 0);
    await page.keyboard.press("Tab");
    await choose(page, "Default"); // so that no name ends in " *", which marks a changed preset
    const kept = await names(page);
    assert.equal(kept.filter((name) => /^velmora-preset/.test(name)).length, 1, "one saved preset was renamed, so only the other must keep its name");
    await choose(page, "my_pond");
    assert.deepEqual(await settings(page), mine);
    assert.match(await grid(page).getByRole("button", { name: "my_pond" }).locator("img").getAttribute("src"), /^data:image/);
    await choose(page, "calm pond 2");
    await assertShown(page, dropped);
    await page.keyboard.press("Delete");
    await page.keyboard.press("Escape");
    assert.ok((await names(page)).includes("calm pond 2"), "the preset must stay if the user declines the deletion");
    await page.locator("#panel").getByRole("button", { name: "Delete" }).press("Enter");
    await page.keyboard.press("Enter");
    await waitForToast(page, "Deleted calm pond 2");
    await page.keyboard.press("Tab");
    assert.ok(await page.locator("#panel").isVisible(), "Tab must not close the panel, although the focused button is hidden");
    assert.ok(!(await names(page)).some((name) => name.startsWith("calm pond 2")));
    await choose(page, "calm pond");
    await assertShown(page, shipped("calm_pond"));
    for (const key of ["Delete", "t"]) {
        await page.evaluate(() => (document.getElementById("toast").textContent = ""));
        await page.keyboard.press(key);
        await waitForToast(page, "calm pond is built in and cannot be renamed or deleted");
    }
    await close(page);
});

test("the page works if the browser's storage is damaged, full or forbidden", async () => {
    for (const text of ["null", "[1]", "{", '{"mine": 3, "yours": "{}"}']) {
        // Firefox first opens an empty page without storage, and also runs this function there.
        const store = Function(`if (location.protocol === "file:") {
            localStorage.setItem("velmora presets", ${JSON.stringify(text)});
        }`);
        const page = await open(browser, { before: store });
        await page.keyboard.press("n");
        await assertShown(page, shipped("calm_pond"), text);
        await close(page);
    }
    const outcomes = { presets: ".json. This browser allows no more storage", thumbnails: ".json and added it to the presets" };
    for (const [entry, message] of Object.entries(outcomes)) {
        const fill = Function(`
            const { setItem } = Storage.prototype;
            Storage.prototype.setItem = function (name, value) {
                if (name === "velmora ${entry}") {
                    throw new DOMException("full", "QuotaExceededError");
                }
                setItem.call(this, name, value);
            };`);
        const page = await open(browser, { before: fill });
        await page.keyboard.press("p");
        await waitForToast(page, message);
        await answerDialog(page, "t", "renamed");
        await waitForToast(page, `Renamed to renamed${entry === "presets" ? ". This browser allows no more storage" : ""}`);
        await close(page);
    }
});

test("an imported preset replaces no other preset of the user, and the same preset is listed once", async () => {
    const page = await open(browser);
    const imports = [
        ["my_pond.json", 7, "my_pond is added"],
        ["My_pond.json", 8, "My_pond 2 is added"],
        ["my_pond.json", 9, "my_pond 3 is added"],
        ["My_pond.json", 7, "my_pond is added"],
        ["my_pond.json", 8, "My_pond 2 is added"],
    ];
    for (const [name, exponent, message] of imports) {
        await sendFiles(page, "drop", [name, "", json({ exponent })]);
        await waitForToast(page, message);
        assert.equal((await settings(page)).exponent, exponent);
    }
    // Another tab can save a preset with the same name.
    await page.evaluate(() => {
        const stored = JSON.parse(localStorage.getItem("velmora presets"));
        localStorage.setItem("velmora presets", JSON.stringify({ ...stored, Other: '{"exponent": 7}' }));
    });
    await sendFiles(page, "drop", ["other.json", "", json({ exponent: 8 })]);
    await waitForToast(page, "other 2 is added");
    await page.reload();
    await page.waitForFunction(() => window.velmora?.counts().frames > 0);
    await page.keyboard.press("Tab");
    const own = (await names(page)).filter((name) => /^my_pond/i.test(name)).sort();
    assert.deepEqual(own, ["My_pond 2", "my_pond", "my_pond 3"]);
    assert.ok((await names(page)).includes("Other"));
    await close(page);
});

test("undo and redo also restore the current preset", async () => {
    const page = await open(browser);
    await page.keyboard.press("n");
    await sendFiles(page, "drop", ["mine.json", "", json({ exponent: 7 })]);
    await waitForToast(page, "mine is added");
    await page.keyboard.press("z");
    await page.keyboard.press("t");
    await waitForToast(page, "calm pond is built in");
    await page.keyboard.press("y");
    await answerDialog(page, "t", "renamed");
    await waitForToast(page, "Renamed to renamed");
    await close(page);
});

test("the page shows an error that occurs while it opens", async () => {
    const page = await open(browser, { ready: false, before: () => (window.ResizeObserver = undefined) });
    await page.locator("[role=alert]", { hasText: "The page could not be opened" }).waitFor();
    await close(page);
});

test("a browser without WebGL or WebAssembly shows an error", async () => {
    const browserWithoutGl = await launch({ webgl: false });
    for (const [missing, opener] of [["WebGL", browserWithoutGl], ["WebAssembly", browser]]) {
        const before = opener === browser ? () => delete window.WebAssembly : undefined;
        const page = await open(opener, { ready: false, before });
        await page.waitForFunction((text) => document.querySelector("[role=alert]")?.textContent.includes(text), missing);
        await close(page, /WebGL/);
    }
    await browserWithoutGl.close();
});
