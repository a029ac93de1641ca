// Parts that several engines share.

/** Size of a page in CSS pixels if a test gives none. */
export const defaultSize = [1280, 720];

/** Runs in a page. Returns the addresses of the page and of all files that it requested. */
export function requestedFiles() {
    return [location.href.split("#")[0], ...performance.getEntriesByType("resource").map((entry) => entry.name)];
}
