// Remembers settings and backgrounds for the next visit. If the browser allows no storage, the page works without it.

import { defaultSources, type Source } from "./backgrounds";
import { presetInLink } from "./links";
import type { Player } from "./player";
import type { PresetChooser } from "./preset_chooser";
import { readPicture } from "./read_picture";
import { deleteBackgrounds, storeBackgrounds, type StoredBackground } from "./stored_backgrounds";
import { showErrorToast, showToast } from "./toast";

/** Name of the localStorage entry that holds the settings and the name of their preset. */
const lookEntry = "velmora look";
/** Maximum time in milliseconds that the first frame waits for the remembered backgrounds. */
const maxWait = 1000;

export class Memory {
    /** Backgrounds that the database holds. Undefined until they are read. */
    private stored: readonly StoredBackground[] | undefined;
    /** Newest write to the database. Each write waits for the previous one. */
    private latest: Promise<void> = Promise.resolve();

    constructor(
        private readonly player: Player,
        private readonly presets: PresetChooser,
        /** Result of loadBackgrounds. */
        private readonly loading: Promise<unknown>,
    ) {}

    /** Settles once everything is stored. */
    get settled(): Promise<unknown> {
        return this.latest;
    }

    /**
     * Stores the settings. Stores nothing while the settings come from a link and the user has not changed them, or
     * while a replay changes them.
     */
    noteSettings(): void {
        if (presetInLink(location.hash) === undefined && !this.player.effect.isReplaying) {
            const look = { preset: this.presets.current.name, settings: this.player.settings };
            withoutErrors(() => localStorage.setItem(lookEntry, JSON.stringify(look)));
        }
    }

    /** Stores the backgrounds if they have changed. */
    noteBackgrounds(): void {
        const backgrounds = this.storable(this.player.stage.backgrounds.sources);
        if (this.stored?.every((each, at) => each === backgrounds[at])) {
            return;
        }
        this.stored = backgrounds;
        // If a picture is too large to be stored, the previously stored backgrounds are deleted. Otherwise they would
        // return at the next visit, although the user has replaced them.
        this.write(() => storeBackgrounds(backgrounds).catch(deleteBackgrounds));
    }

    /** Applies the remembered settings. Tells the user if they are damaged. */
    recallSettings(): void {
        const text = withoutErrors(() => localStorage.getItem(lookEntry));
        if (!text) {
            return;
        }
        try {
            const { preset, settings } = JSON.parse(text) as { preset: unknown; settings: unknown };
            this.presets.resume(String(preset), this.player.effect.readPreset(JSON.stringify(settings)));
        } catch {
            this.forgetSettings();
            showErrorToast("The remembered settings are damaged, so these are the default settings");
        }
    }

    /**
     * Shows the remembered backgrounds. If reading them takes longer than `maxWait`, resolves first and shows them when
     * they are read.
     */
    async recallBackgrounds(): Promise<void> {
        await Promise.race([this.showStored(), new Promise((resolve) => setTimeout(resolve, maxWait))]);
    }

    /** Restores the default settings and backgrounds, and forgets the stored ones. The user's presets stay. */
    startFresh(): void {
        this.presets.selectDefault();
        this.player.showBackgrounds(defaultSources(this.player.effect.paintingNames));
        this.forgetSettings();
        this.write(deleteBackgrounds);
        showToast("Restored the default settings and pictures. Your presets are kept");
    }

    private forgetSettings(): void {
        withoutErrors(() => localStorage.removeItem(lookEntry));
    }

    private async showStored(): Promise<void> {
        const stored = await this.loading;
        if (stored === undefined) {
            return;
        }
        let isLost = false;
        const sources = await Promise.all(
            defaultSources(this.player.effect.paintingNames).map(async (painting, at): Promise<Source> => {
                const source = await this.sourceOf((stored as unknown[] | null)?.[at]).catch(() => undefined);
                isLost ||= source === undefined;
                return source ?? painting;
            }),
        );
        if (this.stored) {
            // While the page read the stored backgrounds, the user chose another background. So do not show the stored
            // backgrounds.
            sources.forEach((source) => typeof source !== "string" && source.close());
            return;
        }
        if (isLost) {
            showErrorToast("A remembered picture is damaged, so this is the default picture");
        } else {
            this.stored = this.storable(sources);
        }
        this.player.showBackgrounds(sources as [Source, Source]);
    }

    /** Resolves to the background for a stored value. Rejects if this version of the page cannot show it. */
    private async sourceOf(stored: unknown): Promise<Source> {
        if (stored instanceof Blob) {
            return readPicture(stored, "The remembered picture", this.player.stage.wantedSize);
        }
        const painting = this.player.effect.paintingNames.find((name) => name === stored);
        return painting ?? Promise.reject(new Error("unknown painting"));
    }

    /** Returns the values to store for backgrounds. A video or the camera is stored as the name of a painting. */
    private storable(sources: readonly Source[]): StoredBackground[] {
        const paintings = defaultSources(this.player.effect.paintingNames);
        return sources.map((source, at) => (typeof source === "string" ? source : source.file) ?? (paintings[at] as string));
    }

    private write(change: () => Promise<void>): void {
        this.latest = this.latest.then(change).catch(() => {}); // the browser allows no database
    }
}

/** Returns the result of an access to storage, or undefined if the browser does not allow it. */
function withoutErrors<Result>(access: () => Result): Result | undefined {
    try {
        return access();
    } catch {
        return undefined;
    }
}
