// Copy of the frame that a pause shows. The canvas loses its image after the browser has shown it.

export class PausedFrame {
    private copy: HTMLCanvasElement | null = null;

    /** The copy, or null if the screen is not up to date. */
    get image(): HTMLCanvasElement | null {
        return this.copy;
    }

    /** True if the screen is up to date. Otherwise the pause must draw a frame. */
    get isCurrent(): boolean {
        return this.copy !== null;
    }

    /** Copies the canvas. Must be called directly after a frame, while the canvas has an image. */
    take(canvas: HTMLCanvasElement): void {
        this.copy = document.createElement("canvas");
        this.copy.width = canvas.width;
        this.copy.height = canvas.height;
        this.copy.getContext("2d")?.drawImage(canvas, 0, 0);
    }

    drop(): void {
        this.copy = null;
    }

    blob(): Promise<Blob | null> {
        return this.copy ? blobOf(this.copy) : Promise.resolve(null);
    }
}

export function blobOf(canvas: HTMLCanvasElement): Promise<Blob | null> {
    return new Promise((resolve) => canvas.toBlob(resolve, "image/png"));
}
