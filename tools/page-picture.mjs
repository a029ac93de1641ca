// Renders docs/page.jpg, which shows the page on a phone during a gesture, and on a desktop with the panel open.
// Usage: node tools/page-picture.mjs

import { execFileSync } from "node:child_process";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { frames, launch, open, screenshotFolder, sendFiles, top, waitUntilIdle } from "../tests/web/page.mjs";

/**
 * Replays a gesture on a page with this preset. After about `frame` frames, pauses the page and saves a screenshot.
 * Opens the panel if `withPanel` is true.
 */
async function saveScreenshot(name, preset, gesture, frame, colorScheme, options, withPanel) {
    const browser = await launch({ colorScheme });
    const settings = JSON.parse(readFileSync(join(top, "presets", `${preset}.json`), "utf8"));
    const page = await open(browser, { ...options, hash: `#look=${encodeURIComponent(JSON.stringify(settings))}` });
    await sendFiles(page, "drop", [`${gesture}.gesture`, "", readFileSync(join(top, `gestures/${gesture}.gesture`))]);
    if (withPanel) {
        await page.keyboard.press("Tab");
    }
    await frames(page, frame);
    await page.evaluate(() => (window.velmora.pause.isOn = true));
    await waitUntilIdle(page);
    await page.addStyleTag({ content: "#toast, .frame-times { display: none }" });
    await page.screenshot({ path: join(screenshotFolder, name) });
    await browser.close();
}

await saveScreenshot("phone.png", "calm_pond", "scribble", 52, "light", { size: [390, 844], deviceScaleFactor: 2 }, false);
await saveScreenshot("desktop.png", "ink_bath", "scribble", 60, "dark", { size: [1280, 800] }, true);
execFileSync("ffmpeg", ["-v", "error", "-y", "-i", join(screenshotFolder, "phone.png"), "-i", join(screenshotFolder, "desktop.png"),
    "-filter_complex", "[0]scale=-2:800:flags=lanczos[a];[a][1]hstack", "-q:v", "3", join(top, "docs/page.jpg")]);
