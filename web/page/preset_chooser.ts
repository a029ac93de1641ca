// Chooses, saves, renames, removes and shares presets.

import { defaultSettings, type Settings } from "../../build/web/settings";
import { download, uniqueName } from "./files";
import { linkOf, presetInLink } from "./links";
import type { Player } from "./player";
import { addPreset, allPresets, isSame, findPreset, presetName, removePreset, writePreset } from "./presets";
import type { Preset, PresetList } from "./presets";
import { hasKeys, showToast } from "./toast";

/** Maximum length of a preset's name in characters. Longer names do not fit the list. */
const maxNameLength = 40;

export class PresetChooser {
    /** Called when the settings have changed. */
    onChange = () => {};
    /** Preset that was chosen last, without the changes that the user has made since. */
    private chosen: Preset;
    private seed = Math.floor(Math.random() * 2 ** 32);

    constructor(
        private readonly player: Player,
        readonly presets: PresetList,
    ) {
        this.chosen = { name: "default", settings: defaultSettings };
    }

    /** Name of the current preset, with " *" if the user has changed its settings. */
    get name(): string {
        const isShown = (preset: Preset) => isSame(preset.settings, this.player.settings);
        const same = isShown(this.chosen) ? this.chosen : this.all.find(isShown);
        return same?.name ?? `${this.chosen.name} *`;
    }

    /** Names of all presets. */
    get names(): string[] {
        return this.all.map((preset) => preset.name);
    }

    /** Applies settings. */
    show(settings: Settings): void {
        Object.assign(this.player.settings, structuredClone(settings));
        this.onChange();
        this.player.noteInput();
    }

    /** Makes a preset the current one. */
    select(preset: Preset): void {
        this.chosen = preset;
        this.show(preset.settings);
    }

    choose(name: string): void {
        const preset = findPreset(this.all, name);
        if (preset) {
            this.select(preset);
            showToast(preset.name);
        }
    }

    next(): void {
        const at = this.names.indexOf(this.chosen.name);
        this.choose(this.names[(at + 1) % this.names.length] ?? "");
    }

    /** Applies the current preset again, without changes. */
    reset(): void {
        this.show(this.chosen.settings);
        showToast(`${this.chosen.name}, without changes`);
    }

    random(): void {
        this.show(this.player.effect.randomSettings(this.seed++));
        showToast(`random settings${hasKeys ? "; P saves them as a preset" : ""}`);
    }

    /** Chooses an ink that stands out from the background. */
    chooseContrastingInk(): void {
        this.show({ ...this.player.settings, ink: this.player.effect.inkAgainstBackground() });
        showToast("ink that stands out from the background");
    }

    toggle(name: "secondBackground" | "waterOnly"): void {
        this.show({ ...this.player.settings, [name]: !this.player.settings[name] });
    }

    save(): void {
        const name = uniqueName("preset", "");
        this.chosen = addPreset(this.presets, name, this.player.settings);
        download(writePreset(this.player.settings), `${name}.json`);
        this.onChange();
        showToast(`saved ${name}.json and added it to the list of presets`);
    }

    /** Asks for a new name for the current preset, which must be a saved one. */
    rename(): void {
        const { own } = this.presets;
        const preset = this.ownPreset();
        const given = prompt("New name of the preset", preset.name) ?? "";
        const name = presetName(given, this.player.effect).trim().slice(0, maxNameLength);
        if (!name || name === preset.name) {
            return;
        }
        if (findPreset(own, name)) {
            throw new Error(`a preset named ${name} already exists: choose another name`);
        }
        removePreset(this.presets, preset.name, this.player.effect);
        this.chosen = addPreset(this.presets, name, preset.settings);
        this.onChange();
        showToast(name);
    }

    /** Removes the current preset, which must be a saved one. Its settings stay until another preset is chosen. */
    remove(): void {
        const { name } = this.ownPreset();
        removePreset(this.presets, name, this.player.effect);
        this.onChange();
        showToast(`removed ${name}; its settings stay until you choose another preset`);
    }

    async share(): Promise<void> {
        const link = linkOf(this.player.settings, location.href);
        history.replaceState(null, "", link);
        if (navigator.share && /^https?:/.test(link)) {
            await navigator.share({ title: document.title, url: link }).catch(() => {}); // the user cancelled
            return;
        }
        // The clipboard is missing on a page from an insecure server.
        const copied = navigator.clipboard?.writeText(link).then(
            () => true,
            () => false,
        );
        showToast((await copied) ? "copied a link to these settings" : "the page's address is now a link to these settings");
    }

    /** Applies the preset in the page's address, if there is one. */
    readLink(): void {
        const text = presetInLink(location.hash);
        if (text === undefined) {
            return;
        }
        try {
            this.select({ name: "settings of the link", settings: this.player.effect.readPreset(text) });
        } catch (error) {
            throw new Error(`cannot read the settings in this link: ${(error as Error).message}`);
        }
    }

    private get all(): Preset[] {
        return allPresets(this.presets);
    }

    /** Returns the current preset. Throws if it is not a saved one. */
    private ownPreset(): Preset {
        const own = findPreset(this.presets.own, this.chosen.name);
        if (!own) {
            throw new Error(`${this.chosen.name} is not a preset that you saved`);
        }
        return own;
    }
}
