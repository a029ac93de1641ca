// Chooses the browser engine of the tests. The environment variable VELMORA_ENGINE is chromium (default), firefox or
// webkit.
//
// Each engine's file exports `name`, `cannot` and `launch()`. A launched browser has `newPage(options)` and `close()`.
// Options of a page: `size`, `deviceScaleFactor`, `hasTouch`, `isMobile`, `reducedMotion`, `colorScheme`, and `before`,
// a function that runs before the page's scripts. A page has these members, which are named as in Playwright:
//   goto(url), url(), reload(), back(), close(), setViewportSize({ width, height, deviceScaleFactor })
//   evaluate(call, argument), waitForFunction(call, argument)   the argument must be JSON
//   mouse.move(x, y), mouse.down({ button }), mouse.up({ button }), mouse.click(x, y)
//   keyboard.down(key), keyboard.up(key), keyboard.press("Control+b")
//   screenshot({ path })                                        returns the PNG file as a buffer
// and these members of its own:
//   touch(type, ...points)                                      type: touchStart, touchMove, touchEnd or touchCancel;
//                                                               points: [id, x, y], and [id] for touchEnd
//   download(act)                                               calls `act`; returns { name, bytes } of the saved file
//   consoleMessages                                             "type: text" each; complete after close()
//   requests                                                    addresses of all requests

const chosen = process.env.VELMORA_ENGINE ?? "chromium";

/** The chosen engine. */
export const engine = await import(`./${chosen}.mjs`);

/**
 * Returns the options of a test that needs these abilities. If the engine lacks one of the abilities, the test is
 * skipped.
 */
export function needs(...abilities) {
    const reasons = abilities.map((ability) => engine.cannot[ability]).filter(Boolean);
    return { skip: reasons.length > 0 && `${engine.name}: ${reasons.join(", ")}` };
}
