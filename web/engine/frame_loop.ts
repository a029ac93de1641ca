// Requests animation frames while something moves. Requests none while the page is idle.

export interface FrameLoopOwner {
    /** Returns false if frames cannot be drawn. */
    canRun(): boolean;
    /** Called before the first frame after an idle time, and when the page is hidden or shown again. */
    skipTime(): void;
    /** Draws the frames that are due. Returns true if another frame is needed. */
    tick(now: number): boolean;
}

export class FrameLoop {
    /** Number of animation frames since the page was opened. */
    count = 0;
    private scheduled = false;

    /** `signal` removes the event listener. */
    constructor(
        private readonly owner: FrameLoopOwner,
        signal?: AbortSignal,
    ) {
        const onVisibility = () => {
            // If a frame is already requested, the browser draws it only after the page is shown again, and `wake` does
            // nothing. Skip the hidden time here, so that this frame does not advance the water by the hidden time.
            this.owner.skipTime();
            this.wake();
        };
        document.addEventListener("visibilitychange", onVisibility, signal ? { signal } : {});
    }

    get isRunning(): boolean {
        return this.scheduled;
    }

    /** Starts the loop. The loop runs until `tick` returns false. */
    wake(): void {
        if (!this.scheduled && this.owner.canRun() && !document.hidden) {
            this.owner.skipTime();
            this.schedule();
        }
    }

    private schedule(): void {
        this.scheduled = true;
        requestAnimationFrame((now) => this.run(now));
    }

    private run(now: number): void {
        this.scheduled = false;
        ++this.count;
        if (this.owner.canRun() && this.owner.tick(now)) {
            this.schedule();
        }
    }
}
