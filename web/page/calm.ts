// Tells when another frame would show the same, so that no more need be drawn.

/** The ink has begun to fade after so many frames without a touch; two pictures so many frames apart tell whether it
 * still does. */
const quietFramesBefore = 60;
const quietFramesBetween = 30;

export class CalmWatch {
    private quietFrames = 0;
    private lastPicture = 0;
    /** Without a touch since the start no ink lies, and calm water is enough. */
    private mayInk = false;
    private stands = false;

    constructor(private readonly gl: WebGLRenderingContext) {}

    get calm(): boolean {
        return this.stands;
    }

    /** What fades leaves a trace that stands. */
    get inkMayLie(): boolean {
        return this.mayInk;
    }

    /** No ink lies. */
    start(): void {
        this.mayInk = false;
        this.disturb();
    }

    touch(): void {
        this.mayInk = true;
        this.disturb();
    }

    disturb(): void {
        this.quietFrames = 0;
        this.stands = false;
    }

    /** After each frame, while the picture can still be read. */
    see(waterIsCalm: boolean): void {
        if (!waterIsCalm) {
            this.disturb();
            return;
        }
        ++this.quietFrames;
        if (!this.mayInk) {
            this.stands = true;
        } else if (this.quietFrames >= quietFramesBefore && this.quietFrames % quietFramesBetween === 0) {
            const picture = this.picture();
            this.stands = picture === this.lastPicture;
            this.lastPicture = picture;
        }
    }

    /** A number that changes with the picture. */
    private picture(): number {
        const { drawingBufferWidth: width, drawingBufferHeight: height } = this.gl;
        const pixels = new Uint32Array(width * height);
        this.gl.readPixels(0, 0, width, height, this.gl.RGBA, this.gl.UNSIGNED_BYTE, new Uint8Array(pixels.buffer));
        return pixels.reduce((digest, pixel) => Math.imul(digest ^ pixel, 0x01000193), 0x811c9dc5);
    }
}
