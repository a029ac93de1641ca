// Fits what is drawn to the machine: a page that is slow loses more than one whose water is a little coarser.

import type { SettingField } from "./effect";

/** Parts of the full cells along a side of the water, and of the full pixels along a side of the screen. */
const levels = [
    { mesh: 1, pixels: 1 },
    { mesh: 2 / 3, pixels: 1 },
    { mesh: 1 / 2, pixels: 1 },
    { mesh: 1 / 2, pixels: 0.75 },
    { mesh: 1 / 3, pixels: 0.75 },
] as const;

/** Frames of a span. What a few of them wait for, a hitch or a display's beat, does not count: only the middle half. */
const framesSeen = 24;
/** Milliseconds from frame to frame; between the two nothing changes. */
const slow = 1000 / 40;
const fluent = 1000 / 47;
/** Where a step down changes the interval by less than this part, the display is slow, and not the drawing. */
const leastChange = 0.03;
/** Fluent spans before a step up is tried; each step up that was too much doubles them. */
const firstPatience = 12;

export class Quality {
    /** 0: all of it. */
    level = 0;
    private on = true;
    private span: number[] = [];
    private fluentSpans = 0;
    private patience = firstPatience;
    private raised = false;
    /** The interval before the last step down, until it is known what that gained. */
    private before = 0;

    get fits(): boolean {
        return this.on;
    }
    set fits(on: boolean) {
        this.on = on;
        this.level = 0;
        this.patience = firstPatience;
        this.fluentSpans = this.before = 0;
        this.skip();
    }

    /** Along a side of the screen. */
    get pixels(): number {
        return this.step.pixels;
    }

    get words(): string {
        const parts = { water: this.step.mesh, screen: this.step.pixels };
        const lessened = Object.entries(parts).filter(([, part]) => part < 1);
        return lessened.map(([name, part]) => `${name} at ${Math.round(100 * part)} %`).join(", ");
    }

    /**
     * The settings' values with the mesh of this level. Its slopes are steeper as its cells are wider: the water bends
     * as much less, and looks the same.
     */
    fit(values: number[], fields: SettingField[]): number[] {
        return values.map((value, at) => {
            const field = fields[at];
            if (field?.name === "meshDetail") {
                return Math.max(field.least, Math.round(value * this.step.mesh));
            }
            return field?.name === "refractiveIndex" ? 1 + (value - 1) * this.step.mesh : value;
        });
    }

    /** Milliseconds from one frame to the next while frames run. */
    note(between: number): void {
        if (!this.on || this.span.push(between) < framesSeen) {
            return;
        }
        const usual = middleMean(this.span);
        this.skip();
        if (this.before > 0 && Math.abs(usual / this.before - 1) < leastChange) {
            --this.level;
            this.on = false;
        } else if (usual > slow) {
            this.lower(usual);
        } else {
            this.before = 0;
            this.raise(usual);
        }
    }

    /** The frames before and after are of different spans. */
    skip(): void {
        this.span = [];
    }

    private get step(): (typeof levels)[number] {
        return levels[this.level] ?? levels[0];
    }

    private lower(interval: number): void {
        this.fluentSpans = 0;
        if (this.level < levels.length - 1) {
            ++this.level;
            this.before = this.pixels < 1 ? 0 : interval; // fewer pixels come later, when no ink lies
            this.patience *= this.raised ? 2 : 1;
        } else {
            this.before = 0;
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
function middleMean(span: number[]): number {
    const quarter = span.length / 4;
    const middle = span.sort((one, other) => one - other).slice(quarter, -quarter);
    return middle.reduce((sum, one) => sum + one, 0) / middle.length;
}
