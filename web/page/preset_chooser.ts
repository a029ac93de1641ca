// Chooses, saves, renames and deletes presets, and copies links to them.

import { commandTexts, sharedTexts, type Settings } from "../../build/web/settings";
import { isFramed } from "./command";
import { download, uniqueName } from "./files";
import { linkOf, presetInLink, withoutPreset } from "./links";
import type { Player } from "./player";
import { addPreset, allPresets, findPreset, isSame, removePreset, storePreset, writePreset } from "./presets";
import type { Preset, PresetList } from "./presets";
import { askConfirmation, askText } from "./question";
import { hasKeys, showToast } from "./toast";

/** Maximum length of a preset's name in characters. Longer names do not fit the grid. */
const maxNameLength = 40;

export class PresetChooser {
    /** Called when the settings or the user's presets have changed. */
    onChange = () => {};
    /** Preset that was chosen last, without the changes that the user has made since. */
    private chosen: Preset;
    private seed = Math.floor(Math.random() * 2 ** 32);

    constructor(
        private readonly player: Player,
        private readonly presets: PresetList,
        /** Resolves to a thumbnail of the current frame as a data URL, or to undefined if there is no frame. */
        private readonly takeThumbnail: () => Promise<string | undefined>,
    ) {
        this.chosen = presets.builtIn[0] as Preset;
    }

    get all(): Preset[] {
        return allPresets(this.presets);
    }

    /** Preset that equals the current settings. If no preset equals them, the preset that was chosen last. */
    get current(): Preset {
        const isShown = (preset: Preset) => isSame(preset.settings, this.player.settings);
        return isShown(this.chosen) ? this.chosen : (this.all.find(isShown) ?? this.chosen);
    }

    /** True if the user has changed the settings of the current preset. */
    get isChanged(): boolean {
        return !isSame(this.current.settings, this.player.settings);
    }

    /** True if the preset that was chosen last is one of the user's presets. */
    get isOwn(): boolean {
        return this.presets.own.includes(this.chosen);
    }

    /** Applies settings. */
    show(settings: Settings): void {
        Object.assign(this.player.settings, structuredClone(settings));
        this.noteChange();
    }

    /** Adds the current settings to the history for undo, and calls onChange. Call it after each change by the user. */
    noteChange(): void {
        this.player.effect.noteSettings(this.player.settings);
        this.onChange();
        this.player.noteInput();
    }

    undo(): void {
        this.restore(this.player.effect.undo(), sharedTexts.undone, sharedTexts.nothingToUndo);
    }

    redo(): void {
        this.restore(this.player.effect.redo(), sharedTexts.redone, sharedTexts.nothingToRedo);
    }

    /** Makes a preset the current one. */
    select(preset: Preset): void {
        this.chosen = preset;
        this.show(preset.settings);
    }

    selectDefault(): void {
        this.select(this.presets.builtIn[0] as Preset);
    }

    /** Applies the settings of an earlier visit. `name` is the preset from which the user had made these settings. */
    resume(name: string, settings: Settings): void {
        this.chosen = findPreset(this.all, name) ?? this.chosen;
        this.player.effect.beginHistory(settings); // undo must not return to settings from before the visit
        this.show(settings);
    }

    choose(preset: Preset): void {
        this.select(preset);
        showToast(preset.name);
    }

    next(): void {
        const { all } = this;
        const at = all.indexOf(this.chosen);
        this.choose(all[(at + 1) % all.length] as Preset);
    }

    /** Restores the settings of the preset that was chosen last. Discards the user's changes of these settings. */
    reset(): void {
        this.show(this.chosen.settings);
        showToast(`${this.chosen.name}${sharedTexts.changesDiscarded}`);
    }

    random(): void {
        this.show(this.player.effect.randomSettings(this.seed++));
        showToast(`${sharedTexts.randomSettings}${hasKeys ? ". P saves it as a preset" : ""}`);
    }

    /** Chooses an ink that stands out from the background. */
    chooseContrastingInk(): void {
        this.show({ ...this.player.settings, ink: this.player.effect.inkAgainstBackground() });
        showToast(sharedTexts.matchedInk);
    }

    toggle(name: "secondBackground" | "waterOnly"): void {
        this.show({ ...this.player.settings, [name]: !this.player.settings[name] });
    }

    /** Shows the first or the second background. */
    showBackground(slot: "first" | "second"): void {
        if (this.player.settings.secondBackground !== (slot === "second")) {
            this.toggle("secondBackground");
        }
    }

    /** Saves the current settings as a preset, in the browser and as a file. */
    async save(): Promise<void> {
        const thumbnail = await this.takeThumbnail();
        const name = uniqueName("preset", "");
        const isStored = this.add(name, this.player.settings, thumbnail);
        download(writePreset(this.player.settings), `${name}.json`);
        showToast(`Saved ${name}.json${isStored ? " and added it to the presets" : `. ${this.warning}`}`);
    }

    /** Adds a preset from a file and makes it the current one. */
    import(name: string, settings: Settings): void {
        const isStored = this.add(name, settings);
        this.show(settings);
        showToast(`${this.chosen.name}${isStored ? " is added to the presets" : `: ${this.warning}`}`);
    }

    /** Asks for a new name for the current preset, which must be one of the user's presets. */
    async rename(): Promise<void> {
        const preset = this.ownPreset();
        const { label } = commandTexts.renamePreset;
        const name = (await askText(sharedTexts.newPresetName, preset.name, maxNameLength, label))?.trim();
        if (!name || name === preset.name) {
            return;
        }
        const existing = findPreset(this.all, name);
        if (existing && existing !== preset) {
            throw new Error(`A preset named '${existing.name}'${sharedTexts.presetExists}`);
        }
        removePreset(this.presets, preset.name);
        const isStored = this.add(name, preset.settings, preset.thumbnail);
        showToast(`${sharedTexts.renamedTo}${this.chosen.name}${isStored ? "" : `. ${this.warning}`}`);
    }

    /** Deletes the current preset, which must be one of the user's presets. Its settings stay in force. */
    async remove(): Promise<void> {
        const { name } = this.ownPreset();
        const question = `${sharedTexts.deletePresetQuestion}${name}?`;
        if (!(await askConfirmation(question, commandTexts.deletePreset.label))) {
            return;
        }
        removePreset(this.presets, name);
        this.chosen = this.presets.builtIn[0] as Preset;
        this.onChange();
        showToast(`${sharedTexts.deleted}${name}${sharedTexts.deletedCurrent}`);
    }

    /** Copies a link to the current settings. The link also becomes the page's address. */
    async copyLink(): Promise<void> {
        const link = linkOf(this.player.settings, location.href);
        history.replaceState(null, "", link);
        // `navigator.clipboard` exists only in a page that was loaded over HTTPS or from disk.
        const copied = navigator.clipboard?.writeText(link).then(
            () => true,
            () => false,
        );
        const isCopied = await copied;
        if (!isCopied && isFramed) {
            throw new Error("The link cannot be copied in a page inside another page. Open this page in its own tab");
        }
        const message = isCopied ? "Copied a link to these settings" : "The page's address is now a link to these settings";
        showToast(location.protocol === "file:" ? `${message}. It works only on this device` : message);
    }

    /** Applies the preset in the page's address. Returns false if there is none. Throws if the preset is damaged. */
    readLink(): boolean {
        const text = presetInLink(location.hash);
        if (text === undefined) {
            return false;
        }
        try {
            this.select({ name: sharedTexts.linkSettings, settings: this.player.effect.readPreset(text) });
            return true;
        } catch (error) {
            throw new Error(`${sharedTexts.damaged}: ${(error as Error).message}`);
        }
    }

    /** Removes the preset from the page's address if it differs from the current settings. */
    dropOldLink(): void {
        const text = presetInLink(location.hash);
        if (text !== undefined && !this.isInLink(text)) {
            history.replaceState(null, "", location.pathname + location.search + withoutPreset(location.hash));
        }
    }

    private isInLink(text: string): boolean {
        try {
            return isSame(this.player.effect.readPreset(text), this.player.settings);
        } catch {
            return false; // the link is damaged
        }
    }

    /** Applies settings of the history. If a preset has these settings, this preset becomes the chosen one. */
    private restore(settings: Settings | undefined, done: string, nothing: string): void {
        if (settings) {
            this.chosen = [this.chosen, ...this.all].find((preset) => isSame(preset.settings, settings)) ?? this.chosen;
            this.show(settings);
        }
        showToast(settings ? done : nothing);
    }

    private get warning(): string {
        return "This browser allows no more storage, so the preset leaves the list when you close the page";
    }

    /**
     * Adds a preset to the user's presets and makes it the current one. Does not apply its settings. Returns false if
     * the browser cannot store the preset.
     */
    private add(name: string, settings: Settings, thumbnail?: string): boolean {
        const preset = addPreset(this.presets, name, settings, thumbnail);
        this.chosen = preset;
        this.onChange();
        return storePreset(preset);
    }

    /** Returns the preset that was chosen last. Throws if it is not one of the user's presets. */
    private ownPreset(): Preset {
        if (!this.isOwn) {
            throw new Error(`${this.chosen.name}${sharedTexts.builtIn}`);
        }
        return this.chosen;
    }
}
