// Files that the visitor brings: pictures, presets and gestures, told apart by their names and types.

import type { Settings } from "../../build/web/settings";
import { attempt, say } from "./notice";
import { putFirst, putSecond, readPicture } from "./pictures";
import type { Player } from "./player";
import { addPreset, presetName, type Preset, type PresetList } from "./presets";

/** No script or preset is longer; a film that was dropped by mistake is. */
const longestText = 4 << 20;

/** A line that is no comment. */
const anyLine = /^\s*[^#\s]/m;

export class Incoming {
    /** A large file is read longer than a small one after it: they are taken in their order all the same. */
    private latest: Promise<boolean> = Promise.resolve(true);

    constructor(
        private readonly player: Player,
        private readonly presets: PresetList,
        private readonly takeUp: (preset: Preset) => void,
    ) {}

    /** Settles once all files up to now are taken. */
    get settled(): Promise<unknown> {
        return this.latest;
    }

    /** Returns whether the file could be read. */
    take(file: File, place: "first" | "second" = "first"): Promise<boolean> {
        this.latest = this.latest.then(() => attempt(() => this.read(file, place)));
        return this.latest;
    }

    private async read(file: File, place: "first" | "second"): Promise<void> {
        this.player.noteInput();
        if (/\.json$/i.test(file.name)) {
            await this.takePreset(file);
        } else if (/\.gesture$/i.test(file.name)) {
            await this.takeGesture(file);
        } else {
            await this.takePicture(file, place);
        }
    }

    private async takePicture(file: File, place: "first" | "second"): Promise<void> {
        const picture = await readPicture(file, file.name || "what was pasted");
        (place === "first" ? putFirst : putSecond)(this.player.stage.pictures, picture);
        this.player.picturesChanged();
    }

    private async takePreset(file: File): Promise<void> {
        const name = presetName(file.name, this.player.effect);
        let settings: Settings;
        try {
            settings = this.player.effect.readPreset(await readText(file));
        } catch (error) {
            throw new Error(`${file.name}: ${error instanceof Error ? error.message : error}`);
        }
        this.takeUp(addPreset(this.presets, name, settings));
        say(name);
    }

    private async takeGesture(file: File): Promise<void> {
        const script = await readText(file);
        if (!anyLine.test(script) || script.includes("\0")) {
            throw new Error(`${file.name} is no gesture`);
        }
        const fault = this.player.replay(script, file.name);
        say(fault || `playing ${file.name}`);
    }
}

async function readText(file: File): Promise<string> {
    if (file.size > longestText) {
        throw new Error(`${file.name} is too large`);
    }
    return (await file.text()).replace(/^\uFEFF/, "");
}
