// Chooses the browser engine of the tests. The environment variable VELMORA_ENGINE is chromium (default), firefox or
// webkit.
//
// Each engine's file exports `name`, `cannot` and `launch(options)`. A launched browser has `newPage(options)` and
// `close()`. Options of a browser: `webgl`, `camera` (an imitated camera), `touchScreen` (a touch screen in place of a
// mouse, not in WebKit), `reducedMotion` (default: true, so that the page does not start attract mode) and
// `colorScheme` (default: light). Options of a page: `size`, `deviceScaleFactor` and `before`, a function that runs
// before the page's scripts. A page has these members, which are named as in Playwright:
//   goto(url), reload(), close(), setViewportSize({ width, height, deviceScaleFactor })
//   evaluate(call, argument), waitForFunction(call, argument)   the argument must be convertible to JSON
//   mouse.move(x, y), mouse.down({ button }), mouse.up({ button }), mouse.click(x, y), mouse.wheel(deltaX, deltaY)
//   keyboard.down(key), keyboard.up(key), keyboard.press("Control+b")
//   locator(), getByRole(), getByText(), getByLabel()           find elements as class Locator of locator.mjs does
//   screenshot({ path })                                        returns the PNG file as a buffer
// and these members of its own:
//   back()                                                      returns to the previous page of the history
//   touch(type, ...points)                                      type: touchStart, touchMove, touchEnd or touchCancel;
//                                                               points: [id, x, y, force]; for touchEnd, the fingers
//                                                               that stay on the screen
//   download(act)                                               calls `act`; returns { name, bytes } of the saved file
//   chooseFile(act, name, bytes)                                calls `act`, which opens a file chooser, and chooses a
//                                                               file with this name and these bytes
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
