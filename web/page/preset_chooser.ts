// How settings are chosen, saved and shared.

import { defaultSettings, type Settings } from "../../build/web/settings";
import { download, freshName } from "./files";
import { linkOf, presetInLink } from "./links";
import { hasKeys, say } from "./notice";
import type { Player } from "./player";
import { addPreset, allPresets, isSame, named, presetName, removePreset, writePreset } from "./presets";
import type { Preset, PresetList } from "./presets";

/** Letters of a preset's name: longer ones do not fit the list. */
const longestName = 40;

export class PresetChooser {
    /** Called when the settings have changed. */
    onChange = () => {};
    /** The preset before the visitor changed its settings. */
    private chosen: Preset;
    private seed = Math.floor(Math.random() * 2 ** 32);

    constructor(
        private readonly player: Player,
        readonly presets: PresetList,
    ) {
        this.chosen = { name: "the first look", settings: defaultSettings };
    }

    /** Name of the preset in force, with a mark if the visitor has changed it. */
    get name(): string {
        const isShown = (preset: Preset) => isSame(preset.settings, this.player.settings);
        const same = isShown(this.chosen) ? this.chosen : this.all.find(isShown);
        return same?.name ?? `${this.chosen.name} *`;
    }

    /** The names to choose from. */
    get names(): string[] {
        return this.all.map((preset) => preset.name);
    }

    show(settings: Settings): void {
        Object.assign(this.player.settings, structuredClone(settings));
        this.onChange();
        this.player.noteInput();
    }

    takeUp(preset: Preset): void {
        this.chosen = preset;
        this.show(preset.settings);
    }

    choose(name: string): void {
        const preset = named(this.all, name);
        if (preset) {
            this.takeUp(preset);
            say(preset.name);
        }
    }

    next(): void {
        const at = this.names.indexOf(this.chosen.name);
        this.choose(this.names[(at + 1) % this.names.length] ?? "");
    }

    /** The preset as it was before anything was changed on it. */
    reset(): void {
        this.show(this.chosen.settings);
        say(`${this.chosen.name}, as it was`);
    }

    random(): void {
        this.show(this.player.effect.randomSettings(this.seed++));
        say(`a look by chance${hasKeys ? "; P saves it" : ""}`);
    }

    takeInkOfBackground(): void {
        this.show({ ...this.player.settings, ink: this.player.effect.inkAgainstBackground() });
        say("an ink that stands out from the picture");
    }

    turn(name: "secondBackground" | "waterOnly"): void {
        this.show({ ...this.player.settings, [name]: !this.player.settings[name] });
    }

    save(): void {
        const name = freshName("look", "");
        this.chosen = addPreset(this.presets, name, this.player.settings);
        download(writePreset(this.player.settings), `${name}.json`);
        this.onChange();
        say(`saved ${name}.json, and in the list of presets`);
    }

    /** Another name for the shown preset of the visitor's own. */
    rename(): void {
        const { own } = this.presets;
        const preset = this.ownPreset();
        const given = prompt("The preset's name", preset.name) ?? "";
        const name = presetName(given, this.player.effect).trim().slice(0, longestName);
        if (!name || name === preset.name) {
            return;
        }
        if (named(own, name)) {
            throw new Error(`there is a preset ${name} already`);
        }
        removePreset(this.presets, preset.name, this.player.effect);
        this.chosen = addPreset(this.presets, name, preset.settings);
        this.onChange();
        say(name);
    }

    /** Its look stays until another is chosen. */
    remove(): void {
        const { name } = this.ownPreset();
        removePreset(this.presets, name, this.player.effect);
        this.onChange();
        say(`removed ${name}; its look can be saved again`);
    }

    async share(): Promise<void> {
        const link = linkOf(this.player.settings, location.href);
        history.replaceState(null, "", link);
        if (navigator.share && /^https?:/.test(link)) {
            await navigator.share({ title: document.title, url: link }).catch(() => {}); // the visitor changed their mind
            return;
        }
        // Only a page from disk or from a secure server has a clipboard.
        const copied = navigator.clipboard?.writeText(link).then(
            () => true,
            () => false,
        );
        say((await copied) ? "the link to this look is copied" : "the page's address now carries this look");
    }

    /** The look that came with the page's address, if one did. */
    readLink(): void {
        const text = presetInLink(location.hash);
        if (text === undefined) {
            return;
        }
        try {
            this.takeUp({ name: "the look of the link", settings: this.player.effect.readPreset(text) });
        } catch (error) {
            throw new Error(`the look in this link: ${(error as Error).message}`);
        }
    }

    private get all(): Preset[] {
        return allPresets(this.presets);
    }

    private ownPreset(): Preset {
        const own = named(this.presets.own, this.chosen.name);
        if (!own) {
            throw new Error(`${this.chosen.name} is no preset of your own`);
        }
        return own;
    }
}
