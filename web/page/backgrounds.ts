// The two backgrounds: the user's images, or paintings.

import type { Size } from "./effect";
import { MovingPicture } from "./moving_picture";
import type { Paintings } from "./paintings";
import type { Picture } from "./read_picture";

/** Upright picture of any size, or the name of a painting. */
export type Source = Picture | string;

export interface Backgrounds {
    sources: [Source, Source];
}

export function defaultBackgrounds({ names: [first = "", second = ""] }: Paintings): Backgrounds {
    return { sources: [first, second] };
}

/** Makes the image the first background, and the previous first background the second one. */
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

/** Returns the pixels of a background, scaled and cropped to `size`. */
export function croppedPixels(image: Picture, size: Size): ImageData {
    const context = makeContext(size);
    drawCropped(context, image, size);
    return context.getImageData(0, 0, size.width, size.height);
}

function makeContext(size: Size): CanvasRenderingContext2D {
    const canvas = document.createElement("canvas");
    canvas.width = size.width;
    canvas.height = size.height;
    return canvas.getContext("2d", { willReadFrequently: true }) as CanvasRenderingContext2D;
}

function drawCropped(context: CanvasRenderingContext2D, image: Picture, size: Size): void {
    const scale = Math.max(size.width / image.width, size.height / image.height);
    const width = image.width * scale;
    const height = image.height * scale;
    context.imageSmoothingQuality = "high";
    context.fillRect(0, 0, size.width, size.height); // black behind transparent pixels
    const frame = image instanceof MovingPicture ? image.frame : image;
    context.drawImage(frame, (size.width - width) / 2, (size.height - height) / 2, width, height);
}
