// Decodes pictures, both on the page's thread and in picture_worker.ts.

import type { Size } from "../engine/size";
import { croppedPixels } from "./cropping";

/** Maximum length of a picture's shorter side in pixels. Larger pictures are scaled down, which saves memory. */
const maxShorterSide = 2048;

export interface DecodedPicture {
    image: ImageBitmap;
    /** Pixels of the image, scaled and cropped to the size of the screen. */
    pixels: ImageData;
}

/** Decodes a picture, rotates it by its EXIF orientation and crops it for a screen of this size. Throws on a fault. */
export async function decodePicture(file: Blob, screen: Size): Promise<DecodedPicture> {
    const image = await scaledDown(await createImageBitmap(file, { imageOrientation: "from-image" }));
    return { image, pixels: croppedPixels(image, image, screen) };
}

async function scaledDown(image: ImageBitmap): Promise<ImageBitmap> {
    const scale = maxShorterSide / Math.min(image.width, image.height);
    if (scale >= 1) {
        return image;
    }
    try {
        return await createImageBitmap(image, {
            resizeWidth: Math.max(1, Math.round(image.width * scale)),
            resizeHeight: Math.max(1, Math.round(image.height * scale)),
            resizeQuality: "high",
        });
    } finally {
        image.close();
    }
}
