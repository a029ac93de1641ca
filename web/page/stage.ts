// The canvas in its size in pixels, with the backgrounds in that size.

import type { Effect, Size } from "./effect";
import { firstPictures, pixelsOf } from "./pictures";
import { onPixelRatio, pixelSize } from "./screen";

/** Milliseconds for which a canvas keeps its size before the effect starts anew: while a window is dragged larger there
 * are many sizes. */
const resizeRest = 150;

export class Stage {
    readonly pictures = firstPictures();
    private current: Size = { width: 0, height: 0 };

    constructor(
        private readonly effect: Effect,
        readonly canvas: HTMLCanvasElement,
        onResize: () => void,
    ) {
        let timer = 0;
        const follow = () => {
            clearTimeout(timer);
            timer = window.setTimeout(onResize, resizeRest);
        };
        new ResizeObserver(follow).observe(canvas);
        onPixelRatio(follow);
    }

    get size(): Size {
        return this.current;
    }

    /** Whether the canvas has the size that it should have by its box and the quality. */
    get hasWantedSize(): boolean {
        return isSame(this.wantedSize, this.current);
    }

    /** Starts the effect anew in the size that the canvas should have. */
    restart(): void {
        this.takeSize(this.wantedSize);
    }

    /** Gives a gesture all of the pixels, so that it is the same on every machine. */
    useAllPixels(): void {
        if (!isSame(this.wholeSize, this.current)) {
            this.takeSize(this.wholeSize);
        }
    }

    uploadPictures(): void {
        const { sources } = this.pictures;
        this.effect.setBackgrounds(
            pixelsOf(sources[0], this.current, this.wholeSize),
            pixelsOf(sources[1], this.current, this.wholeSize),
        );
    }

    private get wholeSize(): Size {
        return pixelSize(this.canvas, 1);
    }

    private get wantedSize(): Size {
        const { effect, canvas } = this;
        return effect.isRecording || effect.isReplaying ? this.wholeSize : pixelSize(canvas, effect.quality.pixels);
    }

    private takeSize(size: Size): void {
        this.current = size;
        this.canvas.width = size.width;
        this.canvas.height = size.height;
        this.uploadPictures();
        this.effect.restart(size);
    }
}

function isSame(one: Size, other: Size): boolean {
    return one.width === other.width && one.height === other.height;
}
