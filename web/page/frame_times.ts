// How long the newest frames took.

/** Milliseconds: one whole frame of the page, unless frames only began with it, and what the effect took of it. */
export interface FrameTime {
    between: number | undefined;
    effect: number;
}
const kept = 120;

export class FrameTimes {
    readonly newest: FrameTime[] = [];
    private last: number | undefined;

    /** A frame of the display that was there at `now`. */
    note(now: number, effect: number): void {
        this.newest.push({ between: this.last === undefined ? undefined : now - this.last, effect });
        this.last = now;
        if (this.newest.length > kept) {
            this.newest.shift();
        }
    }

    /** Between the frames before and after nobody waited for one. */
    skip(): void {
        this.last = undefined;
    }
}
