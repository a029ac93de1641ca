// Thumbnails of the paintings. A click makes a painting the background.

import { make } from "./controls";
import type { Player } from "./player";
import type { PresetChooser } from "./preset_chooser";

/** Side of a thumbnail in pixels, twice the side on the page. */
const side = 128;

/** Group of buttons. It paints the thumbnails when it becomes visible for the first time. */
export class PaintingChooser {
    readonly element = document.createElement("div");

    constructor(
        private readonly player: Player,
        private readonly presets: PresetChooser,
    ) {
        this.element.className = "tiles";
        this.element.setAttribute("role", "group");
        this.element.setAttribute("aria-label", "Paintings");
        this.element.append(...player.effect.paintingNames.map((name) => this.makeButton(name)));
        new IntersectionObserver((entries, observer) => {
            if (entries.some((entry) => entry.isIntersecting)) {
                observer.disconnect();
                this.paintThumbnails();
            }
        }).observe(this.element);
    }

    /** Marks the painting that is the background. */
    update(): void {
        const { settings, stage } = this.player;
        const shown = stage.backgrounds.sources[settings.secondBackground ? 1 : 0];
        for (const button of this.buttons) {
            button.setAttribute("aria-pressed", String(button.value === shown));
        }
    }

    private get buttons(): NodeListOf<HTMLButtonElement> {
        return this.element.querySelectorAll("button");
    }

    private makeButton(name: string): HTMLButtonElement {
        const button = document.createElement("button");
        button.type = "button";
        button.value = name;
        const thumbnail = make("canvas", { className: "thumbnail", width: side, height: side });
        button.append(thumbnail, make("span", { className: "name" }, name));
        button.addEventListener("click", () => {
            this.presets.showBackground("first");
            this.player.choosePainting(name);
            this.update();
        });
        return button;
    }

    private paintThumbnails(): void {
        for (const button of this.buttons) {
            const image = this.player.effect.paint(button.value, { width: side, height: side });
            button.querySelector("canvas")?.getContext("2d")?.putImageData(image, 0, 0);
        }
    }
}
