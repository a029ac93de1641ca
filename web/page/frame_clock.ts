// Spreads the effect's frames, 60 a second of its own time, over the display's.

export const frameTime = 1000 / 60;
/** A display's frames come a little early or late; one that early is still taken. */
const early = frameTime / 8;
/** Milliseconds: the water waits out a longer gap, such as a machine's sleep. */
const longestGap = 250;

export class FrameClock {
    private last = performance.now();
    private owed = 0;

    /**
     * The effect's milliseconds of each frame that is due now. Frames are longer where the machine is too slow for
     * all of them, so that the water keeps its pace; `exact` gives each a 60th of a second, and slow motion on a slow
     * machine: what is recorded or replayed counts frames.
     */
    take(now: number, timeScale: number, exact: boolean): number[] {
        this.owed += Math.min(Math.max(now - this.last, 0), longestGap) * timeScale;
        this.last = now;
        const whole = Math.floor((this.owed + early) / frameTime);
        if (whole < 1) {
            return [];
        }
        const most = Math.max(1, Math.ceil(timeScale));
        const frames = Math.min(whole, most);
        const elapsed = exact || whole <= most ? frameTime : this.owed / frames;
        this.owed = whole <= most ? this.owed - whole * frameTime : 0;
        return Array<number>(frames).fill(elapsed);
    }

    /** Lets the time since the last call pass without frames; the next one is due at once. */
    skip(now: number): void {
        this.last = now;
        this.owed = frameTime;
    }
}
