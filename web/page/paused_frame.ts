// The frame that a pause shows, as an image: the canvas loses its own once the browser has shown it.

export class PausedFrame {
    private image: HTMLCanvasElement | null = null;

    /** Whether the pause shows what another frame would; otherwise that frame must be drawn. */
    get isCurrent(): boolean {
        return this.image !== null;
    }

    /** Copies the canvas; directly after a frame, while it has an image. */
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
