// The image under the water: an image, video or canvas, drawn as CSS would draw it.

import type { Size } from "../engine/size";
import type { VideoLayout } from "./video_pass";

/** Element whose pixels the water shows. */
export type BackgroundSource = HTMLImageElement | HTMLVideoElement | HTMLCanvasElement;

/** Value of HTMLMediaElement.HAVE_CURRENT_DATA. */
const haveCurrentData = 2;
/** Width and height in pixels of the small copy of the background, from which attract mode chooses its inks. */
const smallSide = 16;

interface Box {
    x: number;
    y: number;
    width: number;
    height: number;
}

// Each document has its own element classes, so these functions compare tag names instead of using instanceof.

export function isImage(element: Element): element is HTMLImageElement {
    return element.localName === "img";
}

export function isVideo(element: Element): element is HTMLVideoElement {
    return element.localName === "video";
}

/** Returns the natural size of the source in pixels. Both sides are 0 before it is loaded. */
function naturalSize(source: BackgroundSource): Size {
    if (isImage(source)) {
        return { width: source.naturalWidth, height: source.naturalHeight };
    }
    if (isVideo(source)) {
        return { width: source.videoWidth, height: source.videoHeight };
    }
    return { width: source.width, height: source.height };
}

/** Returns true if the source has an image to draw. */
export function isDrawable(source: BackgroundSource): boolean {
    const { width, height } = naturalSize(source);
    const isLoaded = isImage(source) ? source.complete : !isVideo(source) || source.readyState >= haveCurrentData;
    return width > 0 && height > 0 && isLoaded;
}

/**
 * Waits until the browser has decoded an image. Until then, WebKit draws nothing on a canvas instead of the image.
 * Resolves to false if the browser still loads the image. Its event "load" or "error" will follow.
 */
export async function decoded(source: BackgroundSource | null): Promise<boolean> {
    if (source && isImage(source)) {
        await source.decode().catch(() => {}); // a damaged or replaced image
        return source.complete;
    }
    return true;
}

/**
 * Returns the offset of an image in its box along one axis, in CSS pixels. `text` is the computed value of
 * object-position: a length, a percentage of `room`, or their sum, for example calc(100% - 10px). `room` is the free
 * space along this axis.
 */
function positionOf(text: string, room: number): number {
    const terms = [...text.matchAll(/([+-]?) ?([\d.]+)(%|px)/g)];
    return terms.reduce((sum, [, sign, number, unit]) => sum + Number(sign! + number) * (unit === "%" ? room / 100 : 1), 0);
}

/**
 * Returns the box in which CSS draws the source. `fit` and `position` are the values of object-fit and object-position.
 */
function fittedBox(source: BackgroundSource, content: Box, fit: string, position: string): Box {
    const natural = naturalSize(source);
    const scales = [content.width / natural.width, content.height / natural.height] as const;
    let scale = fit === "cover" ? Math.max(...scales) : Math.min(...scales);
    if (fit === "none" || (fit === "scale-down" && scale > 1)) {
        scale = 1;
    }
    const isStretched = fit === "fill";
    const width = isStretched ? content.width : natural.width * scale;
    const height = isStretched ? content.height : natural.height * scale;
    const [x = "50%", y = "50%"] = position.split(/ (?![^(]*\))/);
    return {
        x: content.x + positionOf(x, content.width - width),
        y: content.y + positionOf(y, content.height - height),
        width,
        height,
    };
}

/**
 * Returns true if `area` is in the shadow tree of a custom element, and the source is inside this element or this tree.
 */
function isInside(source: BackgroundSource, area: HTMLElement): boolean {
    const root = area.getRootNode() as Partial<ShadowRoot>;
    return root.host !== undefined && (root.host.contains(source) || source.getRootNode() === root);
}

/** Returns the content box of the source in CSS pixels, relative to `area`. */
function contentBox(source: BackgroundSource, area: HTMLElement, style: CSSStyleDeclaration): Box {
    const outer = area.getBoundingClientRect();
    const box = source.getBoundingClientRect();
    const inset = (side: "Left" | "Top" | "Right" | "Bottom") =>
        parseFloat(style[`border${side}Width`]) + parseFloat(style[`padding${side}`]) || 0;
    // A CSS transform of the page scales `outer` and `box`, so both are divided by its factor.
    const zoom = outer.width / (area.offsetWidth || 1) || 1;
    return {
        x: (box.left - outer.left) / zoom - area.clientLeft + inset("Left"),
        y: (box.top - outer.top) / zoom - area.clientTop + inset("Top"),
        width: box.width / zoom - inset("Left") - inset("Right"),
        height: box.height / zoom - inset("Top") - inset("Bottom"),
    };
}

/**
 * Returns the CSS colour behind the image: the background colour of `area`, or of its nearest ancestor that has one, or
 * white.
 */
function backdropColor(area: Element): string {
    let element: Element | null | undefined = area;
    while (element) {
        const color = getComputedStyle(element).backgroundColor;
        if (color && color !== "transparent" && !/^rgba\(.*, 0\)$/.test(color)) {
            return color;
        }
        element = element.parentElement ?? (element.getRootNode() as Partial<ShadowRoot>).host;
    }
    return "#fff";
}

export class Background {
    private readonly canvas = document.createElement("canvas");
    private readonly context = this.canvas.getContext("2d");
    /** CSS colour behind the image, and its red, green and blue from 0 to 1. */
    private backdropText = "";
    private backdrop: VideoLayout["backdrop"] = [1, 1, 1];

    /** `area` is the element whose box the water covers. */
    constructor(private readonly area: HTMLElement) {}

    /** Draws the source on a canvas of this size in pixels. Returns the canvas. */
    draw(source: BackgroundSource | null, size: Size): HTMLCanvasElement {
        const { canvas, context } = this;
        if (canvas.width !== size.width || canvas.height !== size.height) {
            canvas.width = size.width;
            canvas.height = size.height;
        }
        if (context) {
            this.paint(context, source, size);
        }
        return canvas;
    }

    /** Returns a downscaled copy of the source. Throws if the source is from another origin without CORS. */
    smallCopy(source: BackgroundSource | null): ImageData {
        const canvas = document.createElement("canvas");
        canvas.width = canvas.height = smallSide;
        // With willReadFrequently, the browser draws on the CPU, so that reading the pixels does not wait for the GPU.
        const context = canvas.getContext("2d", { willReadFrequently: true });
        if (!context) {
            return new ImageData(smallSide, smallSide);
        }
        this.paint(context, source, canvas);
        return context.getImageData(0, 0, smallSide, smallSide);
    }

    private paint(context: CanvasRenderingContext2D, source: BackgroundSource | null, size: Size): void {
        const { area } = this;
        context.setTransform(1, 0, 0, 1, 0, 0);
        context.fillStyle = "#fff";
        context.fillRect(0, 0, size.width, size.height);
        context.fillStyle = backdropColor(area);
        context.fillRect(0, 0, size.width, size.height);
        if (source && isDrawable(source)) {
            context.setTransform(size.width / area.clientWidth, 0, 0, size.height / area.clientHeight, 0, 0);
            this.drawFitted(context, source);
        }
    }

    /** Returns the rectangle of `area` in which CSS draws the video. */
    layoutOf(video: HTMLVideoElement): VideoLayout {
        const { clientWidth, clientHeight } = this.area;
        const [content, box] = this.boxesOf(video).map(({ x, y, width, height }) => [
            x / clientWidth,
            y / clientHeight,
            (x + width) / clientWidth,
            (y + height) / clientHeight,
        ]) as [number[], number[]];
        const visible = box.map((side, at) => (at < 2 ? Math.max : Math.min)(side, content[at]!));
        const color = backdropColor(this.area);
        if (color !== this.backdropText) {
            this.backdropText = color;
            const [red, green, blue] = this.smallCopy(null).data;
            this.backdrop = [red! / 255, green! / 255, blue! / 255];
        }
        return { box, visible, backdrop: this.backdrop };
    }

    /**
     * Returns the content box of the source, and the box in which CSS draws the source. Both are in CSS pixels,
     * relative to `area`.
     */
    private boxesOf(source: BackgroundSource): [content: Box, box: Box] {
        const { area } = this;
        const style = getComputedStyle(source);
        let content: Box = { x: 0, y: 0, width: area.clientWidth, height: area.clientHeight };
        let [fit, position] = ["cover", "50% 50%"]; // for a source outside the element
        if (isInside(source, area)) {
            content = contentBox(source, area, style);
            [fit, position] = [style.objectFit, style.objectPosition];
        }
        return [content, fittedBox(source, content, fit, position)];
    }

    private drawFitted(context: CanvasRenderingContext2D, source: BackgroundSource): void {
        const [content, box] = this.boxesOf(source);
        context.save();
        context.beginPath();
        context.rect(content.x, content.y, content.width, content.height);
        context.clip();
        context.imageSmoothingQuality = "high";
        context.drawImage(source, box.x, box.y, box.width, box.height);
        context.restore();
    }
}
