// Backgrounds that the effect's module paints.

import type { Effect, Size } from "./effect";

/** Paints the backgrounds, and keeps the images of the current screen size, because the effect restarts often. */
export class Paintings {
    private size: Size = { width: 0, height: 0 };
    private images = new Map<string, ImageData>();

    constructor(private readonly effect: Effect) {}

    /** Returns a painting that fills a screen of the size. */
    at(name: string, size: Size): ImageData {
        if (size.width !== this.size.width || size.height !== this.size.height) {
            this.images.clear();
            this.size = { ...size };
        }
        const image = this.images.get(name) ?? this.effect.paint(name, size);
        this.images.set(name, image);
        return image;
    }

    /** Drops the images of all paintings except these. */
    keepOnly(names: readonly unknown[]): void {
        for (const name of this.images.keys()) {
            if (!names.includes(name)) {
                this.images.delete(name);
            }
        }
    }
}
