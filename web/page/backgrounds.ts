// The two backgrounds: the user's images, or images that the page paints.

import type { Size } from "./effect";
import { MovingPicture } from "./moving_picture";
import { paintLeaves, paintPebbles } from "./painted_backgrounds";
import type { Picture } from "./read_picture";

/** Upright picture of any size, or the name of a painted background. */
type Source = Picture | "pebbles" | "leaves";

export interface Backgrounds {
    sources: [Source, Source];
}

export function defaultBackgrounds(): Backgrounds {
    return { sources: ["pebbles", "leaves"] };
}

/** Makes the picture the first background, and the previous first background the second one. */
export function setFirst(backgrounds: Backgrounds, image: Picture): void {
    replace(backgrounds, 1, backgrounds.sources[0]);
    backgrounds.sources[0] = image;
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

/**
 * Returns the pixels of a background, scaled and cropped to `size`. A painted background is painted at `fullSize` and
 * then scaled, so that it shows the same image with fewer pixels.
 */
export function croppedPixels(source: Source, size: Size, fullSize: Size): ImageData {
    const context = makeContext(size);
    drawCropped(context, typeof source === "string" ? painted(source, fullSize) : source, size);
    return context.getImageData(0, 0, size.width, size.height);
}

function painted(source: "pebbles" | "leaves", size: Size): HTMLCanvasElement {
    const context = makeContext(size);
    ({ pebbles: paintPebbles, leaves: paintLeaves })[source](context, size);
    return context.canvas;
}

function makeContext(size: Size): CanvasRenderingContext2D {
    const canvas = document.createElement("canvas");
    canvas.width = size.width;
    canvas.height = size.height;
    return canvas.getContext("2d", { willReadFrequently: true }) as CanvasRenderingContext2D;
}

function drawCropped(context: CanvasRenderingContext2D, image: Picture | HTMLCanvasElement, size: Size): void {
    const scale = Math.max(size.width / image.width, size.height / image.height);
    const width = image.width * scale;
    const height = image.height * scale;
    context.imageSmoothingQuality = "high";
    context.fillRect(0, 0, size.width, size.height); // black behind transparent pixels
    const frame = image instanceof MovingPicture ? image.frame : image;
    context.drawImage(frame, (size.width - width) / 2, (size.height - height) / 2, width, height);
}
