// Passes the page's settings to the effect, and copies back settings that a gesture script has changed.

import { numbersOf, type Settings } from "../../build/web/settings";
import type { Effect } from "./effect";

export class SettingsSync {
    /** Numbers of the settings that the effect has, as a string. `isCurrent` compares them with the page's settings. */
    private passed = "";

    constructor(
        private readonly effect: Effect,
        private readonly settings: Settings,
    ) {}

    /** True if the effect has the current settings. */
    get isCurrent(): boolean {
        return String(numbersOf(this.settings)) === this.passed;
    }

    /** Passes the settings to the effect if they have changed. */
    push(): void {
        if (!this.isCurrent) {
            this.passed = String(numbersOf(this.settings));
            this.effect.settings = this.settings;
        }
    }

    /** Copies the effect's settings into the page's settings. Returns true if they have changed. */
    pull(): boolean {
        Object.assign(this.settings, this.effect.settings);
        const before = this.passed;
        this.passed = String(numbersOf(this.settings));
        return this.passed !== before;
    }
}
