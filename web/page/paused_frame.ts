// Copy of the frame that a pause shows. It is needed because a WebGL canvas loses its image after the browser shows it.

export class PausedFrame {
    private copy: HTMLCanvasElement | null = null;

    /** The copy, or null if the pause must draw a frame first. */
    get image(): HTMLCanvasElement | null {
        return this.copy;
    }

    /** True if the copy shows the current state. Otherwise the pause must draw a frame. */
    get isCurrent(): boolean {
        return this.copy !== null;
    }

    /** Copies the canvas. Must be called directly after a frame, while the canvas still has its image. */
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
