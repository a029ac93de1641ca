// How the look is chosen, kept and passed on.

import { download, freshName } from "./files";
import { firstLook, linkOf, lookInLink, lookOf, parseLook, writeLook, type Look } from "./look";
import { hasKeys, say } from "./notice";
import type { Player } from "./player";
import { addPreset, allPresets, isSame, named, presetName, removePreset } from "./presets";
import type { Preset, PresetList } from "./presets";

/** Letters of a preset's name: longer ones do not fit the list. */
const longestName = 40;

export class Looks {
    /** Shows the look's values elsewhere on the page. */
    onChange = () => {};
    /** What the look was before the visitor changed it. */
    private chosen: Preset;
    private seed = Math.floor(Math.random() * 2 ** 32);

    constructor(
        private readonly player: Player,
        readonly presets: PresetList,
    ) {
        this.chosen = { name: "the first look", look: firstLook(presets.settings) };
    }

    /** Of the shown look; with a mark where the visitor changed it. */
    get name(): string {
        const { look } = this.player;
        const same = isSame(this.chosen.look, look) ? this.chosen : this.all.find((preset) => isSame(preset.look, look));
        return same?.name ?? `${this.chosen.name} *`;
    }

    /** The names to choose from. */
    get names(): string[] {
        return this.all.map((preset) => preset.name);
    }

    show(look: Look): void {
        Object.assign(this.player.look, structuredClone(look));
        this.onChange();
        this.player.userCame();
    }

    takeUp(preset: Preset): void {
        this.chosen = preset;
        this.show(preset.look);
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
        this.show(this.chosen.look);
        say(`${this.chosen.name}, as it was`);
    }

    random(): void {
        const { effect } = this.player;
        this.show(lookOf(effect.randomValues(this.seed++), effect.fields));
        say(`a look by chance${hasKeys ? "; P saves it" : ""}`);
    }

    takeInkOfPicture(): void {
        this.show({ ...this.player.look, ink: this.player.effect.inkOfPicture() });
        say("an ink that stands out from the picture");
    }

    turn(name: "secondBackground" | "waterOnly"): void {
        this.show({ ...this.player.look, [name]: !this.player.look[name] });
    }

    save(): void {
        const name = freshName("look", "");
        this.chosen = addPreset(this.presets, name, this.player.look);
        download(writeLook(this.player.look), `${name}.json`);
        this.onChange();
        say(`saved ${name}.json, and in the list of presets`);
    }

    /** Another name for the shown preset of the visitor's own. */
    rename(): void {
        const { own } = this.presets;
        const preset = this.ownPreset();
        const name = presetName(prompt("The preset's name", preset.name) ?? "").trim().slice(0, longestName);
        if (!name || name === preset.name) {
            return;
        }
        if (named(own, name)) {
            throw new Error(`there is a preset ${name} already`);
        }
        removePreset(this.presets, preset.name);
        this.chosen = addPreset(this.presets, name, preset.look);
        this.onChange();
        say(name);
    }

    /** Its look stays until another is chosen. */
    remove(): void {
        const { name } = this.ownPreset();
        removePreset(this.presets, name);
        this.onChange();
        say(`removed ${name}; its look can be saved again`);
    }

    async share(): Promise<void> {
        const link = linkOf(this.player.look, location.href);
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
        const text = lookInLink(location.hash);
        if (text === undefined) {
            return;
        }
        try {
            this.takeUp({ name: "the look of the link", look: parseLook(text, this.presets.settings) });
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
