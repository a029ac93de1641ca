// Durations of the newest frames.

export interface FrameTime {
    /** Milliseconds since the previous frame. Undefined for the first frame after an idle time. */
    between: number | undefined;
    /** Milliseconds that the effect's script took. */
    effect: number;
}

const maxFrames = 120;

export class FrameTimes {
    readonly newest: FrameTime[] = [];
    private last: number | undefined;

    /** Adds a frame that began at `now`. */
    note(now: number, effect: number): void {
        this.newest.push({ between: this.last === undefined ? undefined : now - this.last, effect });
        this.last = now;
        if (this.newest.length > maxFrames) {
            this.newest.shift();
        }
    }

    /** Ignores the time between the last frame and the next one. */
    skip(): void {
        this.last = undefined;
    }
}
