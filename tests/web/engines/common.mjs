// Parts that several engines share.

/** Size of a page in CSS pixels if a test gives none. */
export const defaultSize = [1280, 720];

/** Runs in a page. Returns the addresses of the page and of all files that it requested. */
export function requestedFiles() {
    return [location.href.split("#")[0], ...performance.getEntriesByType("resource").map((entry) => entry.name)];
}

/** Runs before the page's scripts. Keeps the real animation frames, because a test may replace them. */
export function keepAnimationFrames() {
    window.requestRealFrame = window.requestAnimationFrame.bind(window);
}

/** Runs in a page. Waits two animation frames, so that the window shows the page's last changes. */
export function untilShown() {
    return new Promise((done) => window.requestRealFrame(() => window.requestRealFrame(done)));
}
