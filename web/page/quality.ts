// Fits what is drawn to the machine: a page that is slow loses more than one whose waves are drawn a little coarser.

/** Cells of the water between neighbours of the drawn mesh, and the part of the pixels along a side of the screen. */
const levels = [
    { cells: 1, pixels: 1 },
    { cells: 2, pixels: 1 },
    { cells: 3, pixels: 1 },
    { cells: 3, pixels: 0.75 },
] as const;
/** Fewer pixels are seen even where nothing moves: they stay where frames then take this part of the time, or less. */
const worthFewerPixels = 0.85;
/** Vertices along the shorter side that a coarser mesh keeps. */
const fewestVertices = 30;

/** Frames of a span. What a few of them wait for, a hitch, does not count: the slowest eighth. */
const framesSeen = 24;
/** Before anybody came there is nothing that a change could disturb, and the visitor should not have to wait for it. */
const framesTried = 6;
/** The first frames after a change wait for what it brought. */
const framesOfChange = 2;
/** Milliseconds from frame to frame; between the two, such as on a display of 50 a second, nothing changes. */
const slow = 1000 / 49;
const fluent = 1000 / 52;
/** Fluent spans before a step up is tried; each step up that was too much doubles them. */
const firstPatience = 12;

export class Quality {
    /** 0: all of it. */
    level = 0;
    /** Until the level of this machine is found, or somebody comes. */
    trying = true;
    private on = true;
    private span: number[] = [];
    private unseen = framesOfChange;
    private fluentSpans = 0;
    private patience = firstPatience;
    private raised = false;
    private lowest = levels.length - 1;
    /** The interval before a step to fewer pixels, until it is known what that gained. */
    private before = 0;

    get fits(): boolean {
        return this.on;
    }
    set fits(on: boolean) {
        this.on = on;
        this.start();
    }

    /** All of it, and a new trial of what the machine can do. */
    start(): void {
        this.level = 0;
        this.trying = this.on;
        this.lowest = levels.length - 1;
        this.patience = firstPatience;
        this.fluentSpans = this.before = 0;
        this.skip();
    }

    /** Along a side of the screen. */
    get pixels(): number {
        return this.step.pixels;
    }

    /** Between neighbours of the drawn mesh, where the water has so many cells along its shorter side. */
    cellsPerVertex(shortSideCells: number): number {
        return Math.max(1, Math.min(this.step.cells, Math.floor(shortSideCells / fewestVertices)));
    }

    get words(): string {
        const { cells, pixels } = this.step;
        const lessened = [cells > 1 && `waves drawn at ${Math.round(100 / cells)} %`, pixels < 1 && `screen at ${100 * pixels} %`];
        return lessened.filter(Boolean).join(", ");
    }

    /** Milliseconds from one frame to the next while frames run at this level: fewer pixels come when no ink lies. */
    note(between: number): void {
        if (!this.on || this.unseen-- > 0 || this.span.push(between) < (this.trying ? framesTried : framesSeen)) {
            return;
        }
        const usual = usualOf(this.span);
        this.skip();
        if (this.before > 0 && usual > this.before * worthFewerPixels) {
            this.lowest = --this.level; // the display is slow, or something else than pixels takes the time
            this.before = 0;
            this.trying = false;
        } else if (usual > slow) {
            this.lower(usual);
        } else {
            this.before = 0;
            this.trying = false;
            this.raise(usual);
        }
    }

    /** The frames before and after are of different spans. */
    skip(): void {
        this.span = [];
        this.unseen = framesOfChange;
    }

    private get step(): (typeof levels)[number] {
        return levels[this.level] ?? levels[0];
    }

    private lower(interval: number): void {
        this.fluentSpans = 0;
        const next = levels[this.level + 1];
        if (next && this.level < this.lowest) {
            ++this.level;
            this.before = next.pixels < levels[this.level - 1].pixels ? interval : 0;
            this.patience *= this.raised ? 2 : 1;
        } else {
            this.before = 0;
            this.trying = false;
        }
        this.raised = false;
    }

    private raise(interval: number): void {
        this.fluentSpans = interval < fluent ? this.fluentSpans + 1 : 0;
        if (this.level > 0 && this.fluentSpans >= this.patience) {
            --this.level;
            this.fluentSpans = 0;
            this.raised = true;
        }
    }
}

/** A display shows frames only at its own beats: a median would leap from one beat to the next. */
function usualOf(span: number[]): number {
    const quickest = span.sort((one, other) => one - other).slice(0, -Math.ceil(span.length / 8));
    return quickest.reduce((sum, one) => sum + one, 0) / quickest.length;
}
