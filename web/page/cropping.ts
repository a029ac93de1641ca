// Scales and crops pictures. The page and its worker for pictures share this file.

import type { Size } from "../engine/size";

type Context = CanvasRenderingContext2D | OffscreenCanvasRenderingContext2D;

/** Draws an image of the size `of` in the middle of a canvas, scaled and cropped so that it covers the canvas. */
export function drawCropped(context: Context, image: CanvasImageSource, of: Size): void {
    const { canvas } = context;
    const scale = Math.max(canvas.width / of.width, canvas.height / of.height);
    const [width, height] = [of.width * scale, of.height * scale];
    context.drawImage(image, (canvas.width - width) / 2, (canvas.height - height) / 2, width, height);
}

/** Returns the pixels of an image of the size `of`, scaled and cropped to `size`. */
export function croppedPixels(image: CanvasImageSource, of: Size, { width, height }: Size): ImageData {
    const canvas = new OffscreenCanvas(width, height);
    const context = canvas.getContext("2d", { willReadFrequently: true }) as OffscreenCanvasRenderingContext2D;
    context.imageSmoothingQuality = "high";
    context.fillRect(0, 0, width, height); // black behind transparent pixels
    drawCropped(context, image, of);
    return context.getImageData(0, 0, width, height);
}
