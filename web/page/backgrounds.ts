// The two backgrounds: the user's images, or paintings.

import type { Size } from "./effect";
import type { Paintings } from "./paintings";

/** Maximum side of a background in pixels. Larger images are scaled down, because no screen shows more. */
const maxSide = 4096;

/** Upright image of any size, or the name of a painting. */
export type Source = ImageBitmap | string;

export interface Backgrounds {
    sources: [Source, Source];
}

export function defaultBackgrounds({ names: [first = "", second = ""] }: Paintings): Backgrounds {
    return { sources: [first, second] };
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
export function setFirst(backgrounds: Backgrounds, image: Source): void {
    replace(backgrounds, 1, backgrounds.sources[0]);
    backgrounds.sources[0] = image;
}

/** Makes the painting the first background. A first background that is the user's image becomes the second one. */
export function setPainting(backgrounds: Backgrounds, name: string): void {
    if (backgrounds.sources[0] instanceof ImageBitmap) {
        setFirst(backgrounds, name);
    } else {
        backgrounds.sources[0] = name;
    }
}

export function setSecond(backgrounds: Backgrounds, image: Source): void {
    replace(backgrounds, 1, image);
}

function replace(backgrounds: Backgrounds, index: 0 | 1, source: Source): void {
    const before = backgrounds.sources[index];
    if (before instanceof ImageBitmap && before !== source) {
        before.close();
    }
    backgrounds.sources[index] = source;
}

/** Returns the pixels of a background, scaled and cropped to `size`. */
export function croppedPixels(image: ImageBitmap, size: Size): ImageData {
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

function drawCropped(context: CanvasRenderingContext2D, image: ImageBitmap, size: Size): void {
    const scale = Math.max(size.width / image.width, size.height / image.height);
    const width = image.width * scale;
    const height = image.height * scale;
    context.imageSmoothingQuality = "high";
    context.fillRect(0, 0, size.width, size.height); // black behind transparent pixels
    context.drawImage(image, (size.width - width) / 2, (size.height - height) / 2, width, height);
}
