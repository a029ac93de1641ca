// The two backgrounds: the visitor's pictures, or those that the page paints itself.

import type { Size } from "./effect";
import { paintLeaves, paintPebbles } from "./painting";

/** Larger ones are kept smaller: no screen shows more of them. */
const longestSide = 4096;

/** A picture of any size, upright. */
type Source = ImageBitmap | "pebbles" | "leaves";

export interface Pictures {
    sources: [Source, Source];
}

export function firstPictures(): Pictures {
    return { sources: ["pebbles", "leaves"] };
}

/** Turned as its camera says. Throws an Error in words for the visitor. */
export async function readPicture(file: Blob, name: string): Promise<ImageBitmap> {
    const refusal = new Error(`${name} is no picture that this browser can show`);
    const whole = await createImageBitmap(file, { imageOrientation: "from-image" }).catch(() => {
        throw refusal;
    });
    const scale = longestSide / Math.max(whole.width, whole.height);
    if (scale >= 1) {
        return whole;
    }
    const size = {
        resizeWidth: Math.max(1, Math.round(whole.width * scale)),
        resizeHeight: Math.max(1, Math.round(whole.height * scale)),
    };
    const smaller = await createImageBitmap(whole, { ...size, resizeQuality: "high" });
    whole.close();
    return smaller;
}

/** The picture becomes the background, and the one before the second background. */
export function putFirst(pictures: Pictures, picture: ImageBitmap): void {
    replace(pictures, 1, pictures.sources[0]);
    pictures.sources[0] = picture;
}

export function putSecond(pictures: Pictures, picture: ImageBitmap): void {
    replace(pictures, 1, picture);
}

function replace(pictures: Pictures, place: 0 | 1, source: Source): void {
    const before = pictures.sources[place];
    if (before instanceof ImageBitmap && before !== source) {
        before.close();
    }
    pictures.sources[place] = source;
}

/**
 * The pixels of a picture cropped to the screen's shape. What the page paints itself is laid out for `whole`, the screen
 * with all of its pixels: on fewer it is the same picture.
 */
export function pixelsOf(source: Source, size: Size, whole: Size): ImageData {
    const context = makeContext(size);
    drawCropped(context, source instanceof ImageBitmap ? source : painted(source, whole), size);
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

function drawCropped(context: CanvasRenderingContext2D, picture: ImageBitmap | HTMLCanvasElement, size: Size): void {
    const scale = Math.max(size.width / picture.width, size.height / picture.height);
    const width = picture.width * scale;
    const height = picture.height * scale;
    context.imageSmoothingQuality = "high";
    context.fillRect(0, 0, size.width, size.height); // black under what is see-through
    context.drawImage(picture, (size.width - width) / 2, (size.height - height) / 2, width, height);
}
