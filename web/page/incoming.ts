// Files that the visitor brings: pictures, presets and gestures, told apart by their names and types.

import { parseLook, type Look } from "./look";
import { attempt, say } from "./notice";
import { putFirst, putSecond, readPicture } from "./pictures";
import type { Player } from "./player";
import { addPreset, presetName, type Preset, type PresetList } from "./presets";

/** No script or preset is longer; a film that was dropped by mistake is. */
const longestText = 4 << 20;

export class Incoming {
    constructor(
        private readonly player: Player,
        private readonly presets: PresetList,
        private readonly takeUp: (preset: Preset) => void,
    ) {}

    /** Returns whether it could be read. */
    take(file: File, place: "first" | "second" = "first"): Promise<boolean> {
        return attempt(async () => {
            this.player.userCame();
            if (/\.json$/i.test(file.name)) {
                await this.takePreset(file);
            } else if (/\.gesture$/i.test(file.name)) {
                await this.takeGesture(file);
            } else {
                await this.takePicture(file, place);
            }
        });
    }

    private async takePicture(file: File, place: "first" | "second"): Promise<void> {
        const picture = await readPicture(file, file.name || "what was pasted");
        (place === "first" ? putFirst : putSecond)(this.player.pictures, picture);
        this.player.picturesChanged();
    }

    private async takePreset(file: File): Promise<void> {
        const name = presetName(file.name);
        let look: Look;
        try {
            look = parseLook(await readText(file), this.presets.settings);
        } catch (error) {
            throw new Error(`${file.name}: ${(error as Error).message}`);
        }
        this.takeUp(addPreset(this.presets, name, look));
        say(name);
    }

    private async takeGesture(file: File): Promise<void> {
        const fault = this.player.replay(await readText(file), file.name);
        say(fault || `playing ${file.name}`);
    }
}

async function readText(file: File): Promise<string> {
    if (file.size > longestText) {
        throw new Error(`${file.name} is too large`);
    }
    return (await file.text()).replace(/^\uFEFF/, "");
}
