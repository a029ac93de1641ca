// Shows the presets as a grid of thumbnails.

import { hexOf, make, type Control } from "./controls";
import type { PresetChooser } from "./preset_chooser";
import type { Preset } from "./presets";

export class PresetGrid implements Control {
    readonly element = make("ul", { className: "tiles" });
    /** Presets that have a tile in the grid, in order. */
    private shown: Preset[] = [];

    constructor(private readonly presets: PresetChooser) {}

    update(): void {
        const { current, all } = this.presets;
        const listed = all.includes(current) ? all : [current, ...all];
        if (listed.length !== this.shown.length || listed.some((preset, at) => preset !== this.shown[at])) {
            this.shown = listed;
            this.element.replaceChildren(...listed.map((preset) => this.makeTile(preset)));
        }
        this.element.querySelectorAll("button").forEach((button, at) => this.showState(button, listed[at] as Preset));
    }

    private makeTile(preset: Preset): HTMLElement {
        const image = preset.thumbnail ? make("img", { src: preset.thumbnail, alt: "" }) : make("span");
        image.className = "thumbnail";
        image.style.backgroundColor = hexOf(preset.settings.ink);
        const button = make("button", { type: "button" }, image, make("span", { className: "name" }));
        button.addEventListener("click", () => this.presets.choose(preset));
        return make("li", {}, button);
    }

    private showState(button: HTMLButtonElement, preset: Preset): void {
        const isCurrent = preset === this.presets.current;
        const isChanged = isCurrent && this.presets.isChanged;
        button.ariaPressed = String(isCurrent);
        button.title = isChanged ? `${preset.name}, changed` : preset.name;
        (button.lastElementChild as HTMLElement).textContent = isChanged ? `${preset.name} *` : preset.name;
    }
}
