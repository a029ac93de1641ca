// Finds the background among the children of the element, and reports when it changes.

import { isVideo, type BackgroundSource } from "./background";

const sourceNames = "img, video, canvas";
/** Attributes of a child that change its image or the box in which it is drawn. */
const watchedAttributes = ["src", "srcset", "sizes", "media", "class", "style", "width", "height", "slot"];
/** Events of a child that change its image. They do not bubble, so they are caught on the way down. */
const watchedEvents = ["load", "loadeddata", "resize", "seeked", "emptied", "play"];

export class BackgroundWatch {
    private readonly observer: MutationObserver;
    private readonly changed = () => this.onChange();

    /** `fallback` is the background if no child is one. */
    constructor(
        private readonly host: HTMLElement,
        private readonly fallback: HTMLImageElement,
        private readonly onChange: () => void,
    ) {
        this.observer = new MutationObserver(this.changed);
    }

    start(): void {
        this.observer.observe(this.host, { childList: true, subtree: true, attributeFilter: watchedAttributes });
        for (const type of watchedEvents) {
            this.host.addEventListener(type, this.changed, true);
            this.fallback.addEventListener(type, this.changed);
        }
    }

    stop(): void {
        this.observer.disconnect();
        for (const type of watchedEvents) {
            this.host.removeEventListener(type, this.changed, true);
            this.fallback.removeEventListener(type, this.changed);
        }
    }

    /** The first image, video or canvas outside slot "over", else the image of attribute `src`, else null. */
    get source(): BackgroundSource | null {
        for (const child of this.host.children) {
            const found = child.matches(sourceNames) ? child : child.querySelector(sourceNames);
            if (found && !child.slot) {
                return found as BackgroundSource;
            }
        }
        return this.fallback.hasAttribute("src") ? this.fallback : null;
    }

    /** Name of the background for assistive technology. */
    get label(): string {
        const { source } = this;
        return source?.getAttribute("aria-label") ?? source?.getAttribute("alt") ?? "";
    }

    /** True if the background moves by itself. */
    get isPlaying(): boolean {
        const { source } = this;
        return source !== null && isVideo(source) && !source.paused;
    }
}
