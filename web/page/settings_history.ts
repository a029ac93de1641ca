// Undo and redo of changes of the settings.

import type { Settings } from "../../build/web/settings";
import { isSame } from "./presets";

/** Maximum number of kept states. */
const maxStates = 100;

export class SettingsHistory {
    private states: Settings[];
    /** Index of the state that was noted or shown last. */
    private at = 0;
    /** Control of the last change, or "" if a further change must not be joined to it. */
    private control = "";

    constructor(settings: Settings) {
        this.states = [structuredClone(settings)];
    }

    /** Notes changed settings. Consecutive changes of the same `control` are one change, until `endChange`. */
    note(settings: Settings, control = ""): void {
        if (isSame(settings, this.states[this.at] as Settings)) {
            return;
        }
        const joins = control !== "" && control === this.control;
        const kept = this.states.slice(0, this.at + (joins ? 0 : 1));
        this.states = [...kept, structuredClone(settings)].slice(-maxStates);
        this.at = this.states.length - 1;
        this.control = control;
    }

    /** Ends a change that consists of many events, for example the drag of a slider. */
    endChange(): void {
        this.control = "";
    }

    /** Returns the state before the last change, or undefined if there is none. */
    undo(): Settings | undefined {
        return this.go(-1);
    }

    /** Returns the state after the change that was undone last, or undefined if there is none. */
    redo(): Settings | undefined {
        return this.go(1);
    }

    private go(step: number): Settings | undefined {
        const state = this.states[this.at + step];
        if (state) {
            this.at += step;
            this.endChange();
        }
        return state;
    }
}
