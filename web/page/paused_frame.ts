// Copy of the frame that a pause shows. The canvas loses its image after the browser has shown it.

export class PausedFrame {
    private image: HTMLCanvasElement | null = null;

    /** True if the screen is up to date. Otherwise the pause must draw a frame. */
    get isCurrent(): boolean {
        return this.image !== null;
    }

    /** Copies the canvas. Must be called directly after a frame, while the canvas has an image. */
    take(canvas: HTMLCanvasElement): void {
        this.image = document.createElement("canvas");
        this.image.width = canvas.width;
        this.image.height = canvas.height;
        this.image.getContext("2d")?.drawImage(canvas, 0, 0);
    }

    drop(): void {
        this.image = null;
    }

    blob(): Promise<Blob | null> {
        return this.image ? blobOf(this.image) : Promise.resolve(null);
    }
}

export function blobOf(canvas: HTMLCanvasElement): Promise<Blob | null> {
    return new Promise((resolve) => canvas.toBlob(resolve, "image/png"));
}
