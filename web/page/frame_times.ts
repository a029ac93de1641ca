// Durations of the newest frames.

export interface FrameTime {
    /** Milliseconds since the previous frame. Undefined for the first frame after the page was idle. */
    between: number | undefined;
    /** Milliseconds that the page's thread spent on drawing the frame. */
    effect: number;
}

const maxFrames = 120;

export class FrameTimes {
    readonly newest: FrameTime[] = [];
    private last: number | undefined;

    /**
     * Adds a frame that began at `now`, in milliseconds. `effect` is the number of milliseconds that the page's thread
     * spent on drawing the frame.
     */
    note(now: number, effect: number): void {
        this.newest.push({ between: this.last === undefined ? undefined : now - this.last, effect });
        this.last = now;
        if (this.newest.length > maxFrames) {
            this.newest.shift();
        }
    }

    /** Leaves `between` of the next frame undefined. Call this method when the page has been idle. */
    skip(): void {
        this.last = undefined;
    }
}
