// The two backgrounds. Each is a picture of the user or a painting.

import { Camera } from "./moving_picture";
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

/**
 * Makes the image the first background. The previous first background becomes the second background. A camera is
 * closed instead, because it must not run unseen.
 */
export function setFirst(backgrounds: Backgrounds, image: Source): void {
    const [previous] = backgrounds.sources;
    if (previous instanceof Camera) {
        replace(backgrounds, 0, image);
    } else {
        replace(backgrounds, 1, previous);
        backgrounds.sources[0] = image;
    }
}

/**
 * Makes the painting the first background. If it replaces a picture of the user, this picture becomes the second
 * background.
 */
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
