// How the look is chosen, kept and passed on.

import { download, freshName } from "./files";
import { firstLook, linkOf, lookInLink, lookOf, parseLook, writeLook, type Look } from "./look";
import { say } from "./notice";
import type { Player } from "./player";
import { addPreset, type Preset, type PresetList } from "./presets";

export class Looks {
    /** Shows the look's values elsewhere on the page. */
    onChange = () => {};
    /** What the look was before the visitor changed it. */
    private chosen: Preset | undefined;
    private seed = Math.floor(Math.random() * 2 ** 32);

    constructor(
        private readonly player: Player,
        readonly presets: PresetList,
    ) {}

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
        const preset = this.presets.all.find((one) => one.name === name);
        if (preset) {
            this.takeUp(preset);
            say(preset.name);
        }
    }

    next(): void {
        const { all } = this.presets;
        const at = all.findIndex((preset) => preset.name === this.chosen?.name);
        this.choose(all[(at + 1) % all.length]?.name ?? "");
    }

    /** The preset as it was before anything was changed on it. */
    reset(): void {
        this.show(this.chosen?.look ?? firstLook(this.presets.settings));
        say(this.chosen ? `${this.chosen.name}, as it was` : "as it was");
    }

    random(): void {
        const { effect } = this.player;
        this.show(lookOf(effect.randomValues(this.seed++), effect.fields));
        say("a look by chance; P saves it");
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

    async share(): Promise<void> {
        const link = linkOf(this.player.look, location.href);
        history.replaceState(null, "", link);
        if (navigator.share && /^https?:/.test(link)) {
            await navigator.share({ title: document.title, url: link }).catch(() => {}); // the visitor changed their mind
            return;
        }
        await navigator.clipboard.writeText(link).then(
            () => say("the link to this look is copied"),
            () => say("the page's address now carries this look"),
        );
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
}
