// Asks the browser for animation frames while something moves, and for none while nothing does.

export interface FrameLoopOwner {
    /** False while frames could not be drawn. */
    canRun(): boolean;
    /** Called before the first frame after a rest, and where a page was hidden: nobody saw the time since. */
    skipTime(): void;
    /** Draws what is due; returns whether another frame is needed. */
    tick(now: number): boolean;
}

export class FrameLoop {
    /** Animation frames since the page was opened. */
    count = 0;
    private scheduled = false;

    constructor(private readonly owner: FrameLoopOwner) {
        document.addEventListener("visibilitychange", () => {
            // Also if a frame waits, which a hidden page gets only when it is seen again.
            this.owner.skipTime();
            this.wake();
        });
    }

    get isRunning(): boolean {
        return this.scheduled;
    }

    /** Lets frames run until nothing moves. */
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
