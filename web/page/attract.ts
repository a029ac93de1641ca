// A gentle finger of nobody's that comes when the page has been idle for a while, and goes when the visitor comes.

import { TouchAction, type Size } from "./effect";

/** At the start a first look is soon not a still; later the visitor had the finger. In milliseconds. */
const firstPatience = 4000;
const patience = 20000;
const strokeFrames = 110;
const cycleFrames = 300;
/** Whom three of them did not bring is not there, and a page that nobody sees is to rest. */
const cycles = 3;
const pressure = 0.5;

export interface AttractOwner {
    touch(action: TouchAction, x: number, y: number, pressure: number): void;
    wake(): void;
    mayAttract(): boolean;
}

export class Attract {
    private frame = -1;
    private everTouched = false;
    private timer = 0;

    constructor(private readonly owner: AttractOwner) {
        this.wait();
    }

    get runs(): boolean {
        return this.frame >= 0;
    }

    /** The visitor did something; `touched`: with the finger. */
    userCame(touched: boolean): void {
        this.everTouched ||= touched;
        if (this.runs && (this.frame - 1) % cycleFrames < strokeFrames) {
            this.owner.touch(TouchAction.up, 0, 0, 0);
        }
        this.frame = -1;
        this.wait();
    }

    /**
     * What it does before the next frame: strokes along slow curves, with rests in which the ink fades. After the last
     * it goes, until the visitor was here again.
     */
    next(screen: Size): void {
        if (this.frame >= cycles * cycleFrames) {
            this.frame = -1;
            return;
        }
        const cycle = Math.floor(this.frame / cycleFrames);
        const at = this.frame++ % cycleFrames;
        if (at <= strokeFrames) {
            const action = at === 0 ? TouchAction.down : at === strokeFrames ? TouchAction.up : TouchAction.move;
            const [x, y] = pointOfStroke(cycle, at / strokeFrames, screen);
            this.owner.touch(action, x, y, pressure);
        }
    }

    private wait(): void {
        clearTimeout(this.timer);
        this.timer = window.setTimeout(() => this.comeIfIdle(), this.everTouched ? patience : firstPatience);
    }

    private comeIfIdle(): void {
        if (this.owner.mayAttract()) {
            this.frame = 0;
            this.owner.wake();
        } else {
            this.wait();
        }
    }
}

/** A point of stroke `cycle`, `part` of its way along; each stroke is turned against the last. */
function pointOfStroke(cycle: number, part: number, screen: Size): [number, number] {
    const turn = 2.4 * cycle;
    const angle = turn + 3.6 * part;
    const radius = Math.min(screen.width, screen.height) * (0.18 + 0.14 * Math.sin(2 * angle + turn));
    return [
        screen.width * (0.5 + 0.12 * Math.cos(turn)) + radius * Math.cos(angle),
        screen.height * (0.5 + 0.16 * Math.sin(turn)) + 1.3 * radius * Math.sin(angle),
    ];
}
