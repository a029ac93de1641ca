// A picture of the user that does not move.

import type { Size } from "../engine/size";
import { croppedPixels } from "./cropping";
import type { DecodedPicture } from "./decode_picture";

export class StillPicture {
    private readonly image: ImageBitmap;
    /** Pixels for the newest size of the screen. The effect restarts often at the same size. */
    private current: ImageData;

    constructor(
        readonly file: Blob,
        { image, pixels }: DecodedPicture,
    ) {
        this.image = image;
        this.current = pixels;
    }

    /** Returns the pixels of the picture, scaled and cropped to `size`. */
    pixels(size: Size): ImageData {
        if (this.current.width !== size.width || this.current.height !== size.height) {
            this.current = croppedPixels(this.image, this.image, size);
        }
        return this.current;
    }

    close(): void {
        this.image.close();
    }
}
