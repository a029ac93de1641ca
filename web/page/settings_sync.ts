// Passes the page's settings to the effect, and copies back settings that a gesture script has changed. After a replay,
// the user's settings return.

import { numbersOf, type Settings } from "../../build/web/settings";
import type { Effect } from "./effect";

/** Settings that a gesture script can change. */
const scriptSettings = ["ink", "secondBackground"] as const;

export class SettingsSync {
    /** Numbers of the settings that the effect has, as a string. `isCurrent` compares them with the page's settings. */
    private passed = "";
    /** Values that a script has set last, and the values of the user that the script has replaced. */
    private script: Partial<Settings> = {};
    private user: Partial<Settings> = {};

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
        const { settings, script, user } = this;
        const pulled = this.effect.settings;
        for (const name of scriptSettings.filter((each) => !isEqual(pulled[each], settings[each]))) {
            if (!isEqual(settings[name], script[name])) {
                Object.assign(user, { [name]: settings[name] });
            }
            Object.assign(script, { [name]: pulled[name] });
        }
        Object.assign(settings, pulled);
        const before = this.passed;
        this.passed = String(numbersOf(settings));
        return this.passed !== before;
    }

    /** Undoes the changes of scripts. Keeps a setting that the user has changed since. */
    restore(): void {
        const { settings, script, user } = this;
        for (const name of scriptSettings.filter((each) => isEqual(settings[each], script[each]))) {
            Object.assign(settings, { [name]: user[name] });
        }
        this.script = {};
        this.user = {};
    }
}

function isEqual(one: unknown, other: unknown): boolean {
    return String(one) === String(other);
}
