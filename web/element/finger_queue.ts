// Queue of the touches and strokes that a script of the page requests with `drop` and `stroke`. They run one after the
// other; each frame of the effect runs the next step of the queue.

/** A point in the element. */
export interface Point {
    /** Position in CSS pixels from the left edge of the element. */
    x: number;
    /** Position in CSS pixels from the top edge of the element. */
    y: number;
}

/** Options of a stroke that a script of the page draws. */
export interface StrokeOptions {
    /** Pressure from 0 to 1; more pressure leaves more ink. Default: the setting `pressure`. */
    pressure?: number;
    /** Duration in milliseconds. Default: 400. */
    duration?: number;
}

/** One step of a stroke: presses, moves or lifts the finger, or does nothing. Takes one frame. */
type Step = (finger: Finger) => void;

/** The finger that touches the effect. Positions are in CSS pixels. */
export interface Finger {
    press(point: Point, pressure: number | undefined): void;
    move(point: Point, pressure: number | undefined): void;
    lift(point: Point): void;
}

const frameTime = 1000 / 60;
const defaultDuration = 400;
/** Duration in frames of a touch that `drop` makes. A shorter touch would leave too little ink. */
const dropFrames = 6;

/** Returns `count` points at equal distances along the polyline through `points`. */
function resample(points: Point[], count: number): Point[] {
    const lengths = [0];
    for (let at = 1; at < points.length; ++at) {
        const [from, to] = [points[at - 1]!, points[at]!];
        lengths.push(lengths[at - 1]! + Math.hypot(to.x - from.x, to.y - from.y));
    }
    const total = lengths[lengths.length - 1]!;
    return Array.from({ length: count }, (_, index) => {
        const wanted = (total * index) / Math.max(count - 1, 1);
        const next = Math.max(1, lengths.findIndex((length) => length >= wanted));
        const [from, to] = [points[next - 1]!, points[next] ?? points[next - 1]!];
        const part = (wanted - lengths[next - 1]!) / (lengths[next]! - lengths[next - 1]! || 1);
        return { x: from.x + (to.x - from.x) * part, y: from.y + (to.y - from.y) * part };
    });
}

/** The steps of touches and strokes that are still to be run, in order. */
export class FingerQueue {
    private steps: Step[] = [];
    private finished: (() => void)[] = [];

    get isEmpty(): boolean {
        return this.steps.length === 0;
    }

    /** Adds a touch at one point. Resolves when the touch has ended. */
    addDrop(point: Point, pressure: number | undefined): Promise<void> {
        const hold = Array<Step>(dropFrames).fill(() => {});
        return this.add([(finger) => finger.press(point, pressure), ...hold, (finger) => finger.lift(point)]);
    }

    /** Adds a stroke along the points. Resolves when the stroke has ended. */
    addStroke(points: Point[], { pressure, duration = defaultDuration }: StrokeOptions): Promise<void> {
        const [first, ...others] = resample(points, Math.max(2, Math.round(duration / frameTime)));
        return this.add([
            (finger) => finger.press(first!, pressure),
            ...others.map((point): Step => (finger) => finger.move(point, pressure)),
            (finger) => finger.lift(others[others.length - 1]!),
        ]);
    }

    /** Runs the next step. Called once per frame. */
    step(finger: Finger): void {
        this.steps.shift()?.(finger);
        if (this.isEmpty) {
            this.finish();
        }
    }

    /** Discards the remaining steps, for example because the user touches the water. */
    clear(): void {
        this.steps = [];
        this.finish();
    }

    private add(steps: Step[]): Promise<void> {
        this.steps.push(...steps);
        return new Promise((resolve) => this.finished.push(resolve));
    }

    private finish(): void {
        this.finished.splice(0).forEach((resolve) => resolve());
    }
}
