// The page opens, draws, asks for nothing and complains of nothing; the finger lays ink where it goes.

import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { join } from "node:path";
import { close, difference, drag, frames, launch, open, picture, shots } from "./page.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

test("a drag from disk leaves ink along its way and none beside it", async () => {
    const page = await open(browser, { size: [540, 960] });
    const start = await picture(page);
    await drag(page, [150, 300], [390, 300]);
    await frames(page, 3);
    const end = await picture(page);
    await page.screenshot({ path: join(shots, "opens.png") });
    assert.ok(difference(start, end, [0.3, 0.28, 0.7, 0.34]) > 5, "ink along the way");
    assert.ok(difference(start, end, [0, 0.75, 1, 1]) < 1, "none far from it");
    await close(page);
});
