// Reads the user's pictures and videos. A worker decodes and scales pictures.

import type { Size } from "../engine/size";
import { croppedPixels } from "./cropping";
import { decodePicture, type DecodedPicture } from "./decode_picture";
import { openMovingPicture, type MovingPicture } from "./moving_picture";
import { StillPicture } from "./still_picture";

/** Bundled script of picture_worker.ts, which the build inserts. */
declare const PICTURE_WORKER: string;

export type Picture = StillPicture | MovingPicture;

/** Length in pixels of the longer side of a drawn SVG picture. */
const svgSide = 2048;

/**
 * Reads a picture or video. Rotates a picture by its EXIF orientation and crops it for a screen of this size. Throws an
 * Error with a message for the user if the browser cannot show the file.
 */
export async function readPicture(file: Blob, name: string, screen: Size): Promise<Picture> {
    const moving = await openMovingPicture(file);
    if (moving) {
        return moving;
    }
    try {
        const isSvg = file.type === "image/svg+xml";
        return new StillPicture(file, await (isSvg ? drawSvg(file, screen) : decodeInWorker(file, screen)));
    } catch {
        throw new Error(`${name} is not a picture that this browser can show. Choose a JPEG, PNG, SVG or video file`);
    }
}

/**
 * Decodes a picture in a worker. If the worker does not start or fails, decodes the picture on the page's thread. For
 * example, workers of WebKit cannot read files if the page is opened from disk. Throws if the picture is damaged.
 */
async function decodeInWorker(file: Blob, screen: Size): Promise<DecodedPicture> {
    const url = URL.createObjectURL(new Blob([PICTURE_WORKER], { type: "text/javascript" }));
    let worker: Worker | undefined;
    try {
        worker = new Worker(url);
        return await resultOf(worker, file, screen);
    } catch {
        return await decodePicture(file, screen);
    } finally {
        worker?.terminate();
        URL.revokeObjectURL(url);
    }
}

/** Resolves to the worker's result. Rejects if the worker fails or cannot decode the picture. */
function resultOf(worker: Worker, ...job: Parameters<typeof decodePicture>): Promise<DecodedPicture> {
    return new Promise((resolve, reject) => {
        worker.onmessage = ({ data }: MessageEvent<DecodedPicture | null>) => (data ? resolve(data) : reject());
        worker.onerror = (event) => (event.preventDefault(), reject());
        worker.postMessage(job);
    });
}

/**
 * Draws an SVG picture on the page's thread, because a worker cannot. If the browser reports no size for the picture, the
 * picture becomes square.
 */
async function drawSvg(file: Blob, screen: Size): Promise<DecodedPicture> {
    const image = new Image();
    image.src = URL.createObjectURL(file);
    try {
        await loaded(image);
        const [width, height] = [image.naturalWidth || 1, image.naturalHeight || 1];
        const scale = svgSide / Math.max(width, height);
        image.width = Math.max(1, Math.round(width * scale));
        image.height = Math.max(1, Math.round(height * scale));
        const canvas = new OffscreenCanvas(image.width, image.height);
        (canvas.getContext("2d") as OffscreenCanvasRenderingContext2D).drawImage(image, 0, 0, canvas.width, canvas.height);
        const pixels = croppedPixels(canvas, canvas, screen); // throws if the page may not read the image
        return { image: canvas.transferToImageBitmap(), pixels };
    } finally {
        URL.revokeObjectURL(image.src);
    }
}

function loaded(image: HTMLImageElement): Promise<void> {
    return new Promise((resolve, reject) => {
        image.onload = () => resolve();
        image.onerror = reject;
    });
}
