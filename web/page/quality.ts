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

/** Frames whose mean interval counts, milliseconds. */
const framesSeen = 24;
const slow = 1000 / 40;
const fluent = 1000 / 55;
/** Where a step down changes the mean by less than this part, the display is slow, and not the drawing. */
const leastChange = 0.03;
/** Fluent spans before a step up is tried; each step up that was too much doubles them. */
const firstPatience = 12;

export class Quality {
    /** 0: all of it. */
    level = 0;
    private on = true;
    private sum = 0;
    private frames = 0;
    private fluentSpans = 0;
    private patience = firstPatience;
    private raised = false;
    /** The mean before the last step down, until it is known what that gained. */
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
        this.sum += between;
        if (!this.on || ++this.frames < framesSeen) {
            return;
        }
        const mean = this.sum / this.frames;
        this.skip();
        if (this.before > 0 && Math.abs(mean / this.before - 1) < leastChange) {
            --this.level;
            this.on = false;
        } else if (mean > slow) {
            this.lower(mean);
        } else {
            this.before = 0;
            this.raise(mean);
        }
    }

    /** The frames before and after are of different spans. */
    skip(): void {
        this.sum = this.frames = 0;
    }

    private get step(): (typeof levels)[number] {
        return levels[this.level] ?? levels[0];
    }

    private lower(mean: number): void {
        this.fluentSpans = 0;
        if (this.level < levels.length - 1) {
            ++this.level;
            this.before = this.pixels < 1 ? 0 : mean; // fewer pixels come later, when nobody looks
            this.patience *= this.raised ? 2 : 1;
        } else {
            this.before = 0;
        }
        this.raised = false;
    }

    private raise(mean: number): void {
        this.fluentSpans = mean < fluent ? this.fluentSpans + 1 : 0;
        if (this.level > 0 && this.fluentSpans >= this.patience) {
            --this.level;
            this.fluentSpans = 0;
            this.raised = true;
        }
    }
}
