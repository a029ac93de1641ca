// Imports the user's files: .json as a preset, .gesture as a gesture, every other file as a picture or video.

import type { Settings } from "../../build/web/settings";
import { setFirst, setSecond } from "./backgrounds";
import { openCamera } from "./moving_picture";
import type { Player } from "./player";
import type { PresetChooser } from "./preset_chooser";
import { readPicture, type Picture } from "./read_picture";
import { attempt, showToast } from "./toast";

/** Maximum size of a preset or gesture file in bytes. A larger file is refused without reading it. */
const maxTextBytes = 4 << 20;

/** Matches a script line that is not a comment. */
const scriptLine = /^\s*[^#\s]/m;

export class FileImporter {
    /** Import of the newest file. Each import waits for the previous one, so files are imported in order. */
    private latest: Promise<boolean> = Promise.resolve(true);

    constructor(
        private readonly player: Player,
        private readonly presets: PresetChooser,
    ) {}

    /** Settles once all files are imported. */
    get settled(): Promise<unknown> {
        return this.latest;
    }

    /** Imports a file. Resolves to true on success. */
    take(file: File, slot: "first" | "second" = "first"): Promise<boolean> {
        this.latest = this.latest.then(() => attempt(() => this.read(file, slot)));
        return this.latest;
    }

    /** Makes the live image of the camera the background. */
    async takeCamera(): Promise<void> {
        this.show(await openCamera(), "first");
        showToast("The camera is the background now");
    }

    private async read(file: File, slot: "first" | "second"): Promise<void> {
        this.player.noteInput();
        if (/\.json$/i.test(file.name)) {
            await this.importPreset(file);
        } else if (/\.gesture$/i.test(file.name)) {
            await this.importGesture(file);
        } else {
            await this.importBackground(file, slot);
        }
    }

    private async importBackground(file: File, slot: "first" | "second"): Promise<void> {
        const name = file.name || "The pasted file";
        const picture = await readPicture(file, name, this.player.stage.wantedSize);
        this.show(picture, slot);
        const note = picture.file ? "" : ". The page does not keep videos for the next visit";
        showToast(`${name} is the ${slot === "first" ? "" : "second "}background now${note}`);
    }

    /** Makes a picture one of the backgrounds, and shows it. */
    private show(picture: Picture, slot: "first" | "second"): void {
        this.player.watchPicture(picture);
        (slot === "first" ? setFirst : setSecond)(this.player.stage.backgrounds, picture);
        this.presets.showBackground(slot);
        this.player.onBackgroundsChanged();
    }

    private async importPreset(file: File): Promise<void> {
        const name = file.name.replace(/\.json$/i, "");
        let settings: Settings;
        try {
            settings = this.player.effect.readPreset(await readText(file));
        } catch (error) {
            throw new Error(`${file.name}: ${error instanceof Error ? error.message : error}`);
        }
        this.presets.import(name, settings);
    }

    private async importGesture(file: File): Promise<void> {
        const script = await readText(file);
        if (!scriptLine.test(script) || script.includes("\0")) {
            throw new Error(`${file.name} is not a gesture script: it has no action, or it is not a text file`);
        }
        this.player.gestures.replay(script, file.name);
    }
}

async function readText(file: File): Promise<string> {
    if (file.size > maxTextBytes) {
        throw new Error(`${file.name} is too large: at most ${maxTextBytes >> 20} MB are allowed`);
    }
    return (await file.text()).replace(/^\uFEFF/, "");
}
