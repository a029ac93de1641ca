// A still picture that the user has chosen as a background.

import type { Size } from "../engine/size";
import { croppedPixels } from "./cropping";
import type { DecodedPicture } from "./decode_picture";

export class StillPicture {
    /** The whole picture. */
    readonly frame: ImageBitmap;
    /** Pixels at the size that was requested last. Kept, because the effect often restarts at the same size. */
    private current: ImageData;

    constructor(
        readonly file: Blob,
        { image, pixels }: DecodedPicture,
    ) {
        this.frame = image;
        this.current = pixels;
    }

    get width(): number {
        return this.frame.width;
    }

    get height(): number {
        return this.frame.height;
    }

    /** Returns the pixels of the picture, scaled and cropped to `size`. */
    pixels(size: Size): ImageData {
        if (this.current.width !== size.width || this.current.height !== size.height) {
            this.current = croppedPixels(this.frame, this, size);
        }
        return this.current;
    }

    close(): void {
        this.frame.close();
    }
}
