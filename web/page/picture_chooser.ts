// Shows thumbnails of the user's pictures and of the paintings. A click on a thumbnail makes its image the background.

import type { Source } from "./backgrounds";
import { make } from "./controls";
import { croppedPixels, thumbnailSide } from "./cropping";
import type { Player } from "./player";
import type { PresetChooser } from "./preset_chooser";
import type { Picture } from "./read_picture";

/** Group of buttons. Paints the thumbnails of the paintings when the group becomes visible for the first time. */
export class PictureChooser {
    readonly element = make("div", { className: "tiles", role: "group", ariaLabel: "Pictures" });
    private readonly paintings: HTMLButtonElement[];
    /** Buttons of the user's pictures. */
    private readonly pictures = new Map<Picture, HTMLButtonElement>();

    constructor(
        private readonly player: Player,
        private readonly presets: PresetChooser,
    ) {
        const show = (name: string) => {
            this.presets.showBackground("first");
            this.player.choosePainting(name);
        };
        this.paintings = player.effect.paintingNames.map((name) => makeButton(name, () => show(name)));
        this.element.append(...this.paintings);
        new IntersectionObserver((entries, observer) => {
            if (entries.some((entry) => entry.isIntersecting)) {
                observer.disconnect();
                this.paintThumbnails();
            }
        }).observe(this.element);
    }

    /** Lists the user's pictures, and marks the button of the background on screen. */
    update(): void {
        const { settings, stage } = this.player;
        const { sources } = stage.backgrounds;
        const pictures = sources.filter((source): source is Picture => typeof source !== "string");
        const listed = [...this.pictures.keys()];
        if (pictures.length !== listed.length || pictures.some((picture, at) => picture !== listed[at])) {
            this.listPictures(pictures);
        }
        const shown = sources[settings.secondBackground ? 1 : 0];
        this.paintings.forEach((button) => mark(button, button.value === shown));
        this.pictures.forEach((button, picture) => mark(button, picture === shown));
    }

    private listPictures(pictures: Picture[]): void {
        this.pictures.forEach((button) => button.remove());
        this.pictures.clear();
        pictures.forEach((picture, at) => {
            const button = makeButton(at === 0 ? "yours" : `yours ${at + 1}`, () => this.show(picture));
            showThumbnail(button, croppedPixels(picture.frame, picture, { width: thumbnailSide, height: thumbnailSide }));
            this.pictures.set(picture, button);
        });
        this.element.prepend(...this.pictures.values());
    }

    private show(picture: Source): void {
        this.presets.showBackground(this.player.stage.backgrounds.sources[0] === picture ? "first" : "second");
    }

    private paintThumbnails(): void {
        for (const button of this.paintings) {
            const pixels = this.player.effect.paint(button.value, { width: thumbnailSide, height: thumbnailSide });
            showThumbnail(button, pixels);
        }
    }
}

function makeButton(name: string, run: () => void): HTMLButtonElement {
    const thumbnail = make("canvas", { className: "thumbnail", width: thumbnailSide, height: thumbnailSide });
    const button = make("button", { type: "button", value: name }, thumbnail, make("span", { className: "name" }, name));
    button.addEventListener("click", run);
    return button;
}

function mark(button: HTMLButtonElement, isShown: boolean): void {
    button.ariaPressed = String(isShown);
}

function showThumbnail(button: HTMLButtonElement, pixels: ImageData): void {
    button.querySelector("canvas")?.getContext("2d")?.putImageData(pixels, 0, 0);
}
