// The picture of a pause: the canvas' own is gone once the browser has shown it.

export class Still {
    private picture: HTMLCanvasElement | null = null;

    /** Whether it shows what the next frame would; otherwise that one is to be drawn. */
    get stands(): boolean {
        return this.picture !== null;
    }

    /** Directly after a frame, while the canvas has it. */
    take(canvas: HTMLCanvasElement): void {
        this.picture = document.createElement("canvas");
        this.picture.width = canvas.width;
        this.picture.height = canvas.height;
        this.picture.getContext("2d")?.drawImage(canvas, 0, 0);
    }

    drop(): void {
        this.picture = null;
    }

    blob(): Promise<Blob | null> {
        return this.picture ? blobOf(this.picture) : Promise.resolve(null);
    }
}

export function blobOf(canvas: HTMLCanvasElement): Promise<Blob | null> {
    return new Promise((resolve) => canvas.toBlob(resolve, "image/png"));
}
