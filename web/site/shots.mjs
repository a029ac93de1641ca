// Takes the screenshots on the cards of the front page. Run it again after a visible change of an example.
// Usage: node web/site/shots.mjs NAME...    after the site is built in build/site, for example: hero cards velmora

import { execFileSync } from "node:child_process";
import { mkdirSync } from "node:fs";
import { fileURLToPath } from "node:url";
import { launch } from "../../tests/web/engines/chromium.mjs";

const site = new URL("../../build/site/", import.meta.url);
const shots = new URL("shots/", import.meta.url);
mkdirSync(shots, { recursive: true });

/** Draws a wave-shaped stroke of ink on the first velmora-water element of an example. */
async function stroke() {
    const water = document.querySelector("velmora-water");
    const { clientWidth: width, clientHeight: height } = water;
    const point = (part) => ({ x: width * (0.2 + 0.6 * part), y: height * (0.5 + 0.22 * Math.sin(7 * part)) });
    await water.stroke(Array.from({ length: 9 }, (_, at) => point(at / 8)), { duration: 300 });
}

const browser = await launch();
for (const name of process.argv.slice(2)) {
    const page = await browser.newPage({ size: [960, 900] });
    await page.goto(new URL(`${name}.html`, site).href);
    let clip = { x: 0, y: 0, width: 960, height: 600 };
    if (name === "velmora") {
        await page.waitForFunction(() => document.getElementById("toast").classList.contains("shown"));
        await page.keyboard.press("Tab");
    } else {
        await page.evaluate(() => document.querySelector(".code").remove());
        await page.waitForFunction(() => document.querySelector("velmora-water").live);
        await page.evaluate(stroke);
        const { x, y, width } = await page.evaluate(() => document.querySelector(".example").getBoundingClientRect().toJSON());
        clip = { x, y, width, height: (width * 5) / 8 };
    }
    const input = await page.screenshot({ clip });
    const output = fileURLToPath(new URL(`${name}.jpg`, shots));
    execFileSync("ffmpeg", ["-v", "error", "-y", "-i", "-", "-vf", "scale=640:400", "-q:v", "6", output], { input });
    await page.close();
}
await browser.close();
