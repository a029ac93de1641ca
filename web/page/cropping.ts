// Scales and crops pictures, both on the page's thread and in picture_worker.ts.

import type { Size } from "../engine/size";

type Context = CanvasRenderingContext2D | OffscreenCanvasRenderingContext2D;

/** Side of a thumbnail in pixels. It is about twice the CSS side, so that thumbnails are sharp on dense displays. */
export const thumbnailSide = 128;

/** Draws an image centred on a canvas, scaled and cropped to cover the canvas. `of` is the size of the image. */
export function drawCropped(context: Context, image: CanvasImageSource, of: Size): void {
    const { canvas } = context;
    const scale = Math.max(canvas.width / of.width, canvas.height / of.height);
    const [width, height] = [of.width * scale, of.height * scale];
    context.drawImage(image, (canvas.width - width) / 2, (canvas.height - height) / 2, width, height);
}

/** Returns the pixels of an image that is scaled and cropped to `width` and `height`. `of` is the size of the image. */
export function croppedPixels(image: CanvasImageSource, of: Size, { width, height }: Size): ImageData {
    const canvas = new OffscreenCanvas(width, height);
    const context = canvas.getContext("2d", { willReadFrequently: true }) as OffscreenCanvasRenderingContext2D;
    context.imageSmoothingQuality = "high";
    context.fillRect(0, 0, width, height); // black behind transparent pixels
    drawCropped(context, image, of);
    return context.getImageData(0, 0, width, height);
}
