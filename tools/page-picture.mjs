// Renders docs/page.jpg: the page on a phone with a gesture, and on a desktop with its panel open.
// Usage: node tools/page-picture.mjs

import { execFileSync } from "node:child_process";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { bring, frames, launch, open, rest, shots, top } from "../tests/web/page.mjs";

const browser = await launch();

async function take(name, preset, gesture, frame, options, withPanel) {
    const look = JSON.parse(readFileSync(join(top, "presets", `${preset}.json`), "utf8"));
    const page = await open(browser, { ...options, hash: `#look=${encodeURIComponent(JSON.stringify(look))}` });
    await bring(page, "drop", [`${gesture}.gesture`, "", readFileSync(join(top, `gestures/${gesture}.gesture`))]);
    if (withPanel) {
        await page.keyboard.press("Tab");
    }
    await frames(page, frame);
    await page.evaluate(() => (window.velmora.view.paused = true));
    await rest(page);
    await page.addStyleTag({ content: "#notice, .times { display: none }" });
    await page.screenshot({ path: join(shots, name) });
    await page.context().close();
}

await take("phone.png", "calm_pond", "scribble", 52, { size: [390, 844], deviceScaleFactor: 2 }, false);
await take("desktop.png", "ink_bath", "scribble", 60, { size: [1280, 800], colorScheme: "dark" }, true);
await browser.close();
execFileSync("ffmpeg", ["-v", "error", "-y", "-i", join(shots, "phone.png"), "-i", join(shots, "desktop.png"),
    "-filter_complex", "[0]scale=-2:800:flags=lanczos[a];[a][1]hstack", "-q:v", "3", join(top, "docs/page.jpg")]);
