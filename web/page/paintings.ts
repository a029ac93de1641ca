// Backgrounds that the effect's module paints.

import type { Effect, Size } from "./effect";

/** Paints backgrounds. Keeps the images of the newest size, because the effect often restarts at the same size. */
export class Paintings {
    private size: Size = { width: 0, height: 0 };
    private images = new Map<string, ImageData>();

    constructor(private readonly effect: Effect) {}

    /** Returns the image of the named painting at this size. */
    at(name: string, size: Size): ImageData {
        if (size.width !== this.size.width || size.height !== this.size.height) {
            this.images.clear();
            this.size = { ...size };
        }
        const image = this.images.get(name) ?? this.effect.paint(name, size);
        this.images.set(name, image);
        return image;
    }

    /** Drops the kept images of all paintings that are not in `names`. */
    keepOnly(names: readonly unknown[]): void {
        for (const name of this.images.keys()) {
            if (!names.includes(name)) {
                this.images.delete(name);
            }
        }
    }
}
