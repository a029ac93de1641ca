// Parts that several engines share.

/** Size of a page in CSS pixels if a test gives none. */
export const defaultSize = [1280, 720];

/** Limit in milliseconds of each wait. It is high, because software GL on a busy machine draws one frame per second. */
export const waitLimit = 180000;

/** Runs in a page. Returns the addresses of the page and of all files that it requested. */
export function requestedFiles() {
    return [location.href.split("#")[0], ...performance.getEntriesByType("resource").map((entry) => entry.name)];
}

/**
 * Runs before the page's scripts. Keeps the browser's requestAnimationFrame as `requestRealFrame`, because a test may
 * replace requestAnimationFrame.
 */
export function keepAnimationFrames() {
    window.requestRealFrame = window.requestAnimationFrame.bind(window);
}

/** Runs in a page. Waits two animation frames, so that the window shows the page's last changes. */
export function untilShown() {
    return new Promise((done) => window.requestRealFrame(() => window.requestRealFrame(done)));
}
