// The two backgrounds: the user's images, or images that the page paints.

import type { Size } from "./effect";
import { paintLeaves, paintPebbles } from "./painted_backgrounds";

/** Maximum side of a background in pixels. Larger images are scaled down, because no screen shows more. */
const maxSide = 4096;

/** Upright image of any size, or the name of a painted background. */
type Source = ImageBitmap | "pebbles" | "leaves";

export interface Backgrounds {
    sources: [Source, Source];
}

export function defaultBackgrounds(): Backgrounds {
    return { sources: ["pebbles", "leaves"] };
}

/** Decodes an image and rotates it by its EXIF orientation. Throws an Error with a message for the user. */
export async function readImage(file: Blob, name: string): Promise<ImageBitmap> {
    const refusal = new Error(`${name} is not an image that this browser can show`);
    const original = await createImageBitmap(file, { imageOrientation: "from-image" }).catch(() => {
        throw refusal;
    });
    const scale = maxSide / Math.max(original.width, original.height);
    if (scale >= 1) {
        return original;
    }
    const size = {
        resizeWidth: Math.max(1, Math.round(original.width * scale)),
        resizeHeight: Math.max(1, Math.round(original.height * scale)),
    };
    const smaller = await createImageBitmap(original, { ...size, resizeQuality: "high" });
    original.close();
    return smaller;
}

/** Makes the image the first background, and the previous first background the second one. */
export function setFirst(backgrounds: Backgrounds, image: ImageBitmap): void {
    replace(backgrounds, 1, backgrounds.sources[0]);
    backgrounds.sources[0] = image;
}

export function setSecond(backgrounds: Backgrounds, image: ImageBitmap): void {
    replace(backgrounds, 1, image);
}

function replace(backgrounds: Backgrounds, index: 0 | 1, source: Source): void {
    const before = backgrounds.sources[index];
    if (before instanceof ImageBitmap && before !== source) {
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
    drawCropped(context, source instanceof ImageBitmap ? source : painted(source, fullSize), size);
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

function drawCropped(context: CanvasRenderingContext2D, image: ImageBitmap | HTMLCanvasElement, size: Size): void {
    const scale = Math.max(size.width / image.width, size.height / image.height);
    const width = image.width * scale;
    const height = image.height * scale;
    context.imageSmoothingQuality = "high";
    context.fillRect(0, 0, size.width, size.height); // black behind transparent pixels
    context.drawImage(image, (size.width - width) / 2, (size.height - height) / 2, width, height);
}
