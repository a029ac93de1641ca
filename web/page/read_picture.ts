// Reads the user's pictures. The browser decodes and scales them off the main thread.

import { openMovingPicture, type MovingPicture } from "./moving_picture";

export type Picture = ImageBitmap | MovingPicture;

/** Maximum shorter side of a picture in pixels. Larger pictures are scaled down, because no screen shows more. */
const maxShorterSide = 2048;
/** Longer side of a drawn SVG picture in pixels. */
const svgSide = 2048;

/**
 * Reads a picture or video, rotated by its EXIF orientation. Throws an Error with a message for the user if the browser
 * cannot show it.
 */
export async function readPicture(file: Blob, name: string): Promise<Picture> {
    const moving = await openMovingPicture(file);
    if (moving) {
        return moving;
    }
    const image = new Image();
    image.src = URL.createObjectURL(file);
    try {
        await loaded(image);
        return await (file.type === "image/svg+xml" ? drawSvg(image) : decode(file, image));
    } catch {
        throw new Error(`${name} is not a picture that this browser can show. Choose a JPEG, PNG, SVG or video file`);
    } finally {
        URL.revokeObjectURL(image.src);
    }
}

/** Waits until the size of an image is known. The browser does not decode the image for that. */
function loaded(image: HTMLImageElement): Promise<void> {
    return new Promise((resolve, reject) => {
        image.onload = () => resolve();
        image.onerror = reject;
    });
}

function decode(file: Blob, { naturalWidth, naturalHeight }: HTMLImageElement): Promise<ImageBitmap> {
    const scale = maxShorterSide / Math.min(naturalWidth, naturalHeight);
    if (scale >= 1) {
        return createImageBitmap(file, { imageOrientation: "from-image" });
    }
    return createImageBitmap(file, {
        imageOrientation: "from-image",
        resizeWidth: Math.max(1, Math.round(naturalWidth * scale)),
        resizeHeight: Math.max(1, Math.round(naturalHeight * scale)),
        resizeQuality: "high",
    });
}

/** Draws an SVG image. An image without a size is square. Throws if the page may not read its pixels. */
function drawSvg(image: HTMLImageElement): ImageBitmap {
    const [width, height] = [image.naturalWidth || 1, image.naturalHeight || 1];
    const scale = svgSide / Math.max(width, height);
    image.width = Math.max(1, Math.round(width * scale));
    image.height = Math.max(1, Math.round(height * scale));
    const canvas = new OffscreenCanvas(image.width, image.height);
    const context = canvas.getContext("2d") as OffscreenCanvasRenderingContext2D;
    context.drawImage(image, 0, 0, canvas.width, canvas.height);
    context.getImageData(0, 0, 1, 1);
    return canvas.transferToImageBitmap();
}
