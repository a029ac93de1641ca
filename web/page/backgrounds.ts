// The two backgrounds. Each is a picture of the user or a painting.

import type { Picture } from "./read_picture";

/** Picture of any size in upright orientation, or the name of a painting. */
export type Source = Picture | string;

export interface Backgrounds {
    sources: [Source, Source];
}

/** Returns the default backgrounds: the first two paintings. */
export function defaultSources([first = "", second = ""]: readonly string[]): [string, string] {
    return [first, second];
}

/** Replaces both backgrounds. */
export function setBoth(backgrounds: Backgrounds, [first, second]: [Source, Source]): void {
    replace(backgrounds, 0, first);
    replace(backgrounds, 1, second);
}

/** Makes the image the first background. The previous first background becomes the second one. */
export function setFirst(backgrounds: Backgrounds, image: Source): void {
    replace(backgrounds, 1, backgrounds.sources[0]);
    backgrounds.sources[0] = image;
}

/** Makes the painting the first background. A first background that is the user's image becomes the second one. */
export function setPainting(backgrounds: Backgrounds, name: string): void {
    if (typeof backgrounds.sources[0] === "string") {
        backgrounds.sources[0] = name;
    } else {
        setFirst(backgrounds, name);
    }
}

export function setSecond(backgrounds: Backgrounds, image: Picture): void {
    replace(backgrounds, 1, image);
}

function replace(backgrounds: Backgrounds, index: 0 | 1, source: Source): void {
    const before = backgrounds.sources[index];
    if (typeof before !== "string" && before !== source) {
        before.close();
    }
    backgrounds.sources[index] = source;
}
