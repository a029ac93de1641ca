// Moving backgrounds: videos, animated images and the camera. Each calls onFrame when it has a new frame.

import type { Size } from "../engine/size";
import { croppedPixels } from "./cropping";

/** Types of images that may be animated. */
const animatedTypes = /^image\/(gif|webp|avif|apng|png)$/;
/** Duration in milliseconds of an animation frame that states none. Browsers use the same value. */
const defaultDuration = 100;

export abstract class MovingPicture {
    /** Called when the picture shows a new frame. */
    onFrame = () => {};

    /** File that can be stored for the next visit. Null for a video and for the camera. */
    abstract readonly file: Blob | null;
    abstract get frame(): HTMLVideoElement | VideoFrame;
    abstract get width(): number;
    abstract get height(): number;
    abstract close(): void;

    /** Returns the pixels of the current frame, scaled and cropped to `size`. */
    pixels(size: Size): ImageData {
        return croppedPixels(this.frame, this, size);
    }
}

/** Opens a video or an animated image. Resolves to undefined if the file is neither, or cannot be decoded. */
export async function openMovingPicture(file: Blob): Promise<MovingPicture | undefined> {
    if (file.type.startsWith("video/")) {
        return openVideo(file);
    }
    return animatedTypes.test(file.type) ? openAnimation(file) : undefined;
}

class Video extends MovingPicture {
    /** Null: WebKitGTK can hang if a stored video plays before the page's first frame, and a camera has no file. */
    readonly file = null;

    /** `release` frees the video's file or stops its camera. */
    constructor(
        readonly frame: HTMLVideoElement,
        private readonly release: () => void,
    ) {
        super();
        const next = () => {
            this.onFrame();
            frame.requestVideoFrameCallback(next);
        };
        frame.requestVideoFrameCallback(next);
    }

    get width(): number {
        return this.frame.videoWidth;
    }

    get height(): number {
        return this.frame.videoHeight;
    }

    close(): void {
        this.onFrame = () => {};
        this.frame.pause();
        this.release();
    }
}

/** Live image of a camera. */
export class Camera extends Video {}

/** Opens the rear camera, or another camera if there is none. Throws an Error with a message for the user. */
export async function openCamera(): Promise<Camera> {
    const stream = await navigator.mediaDevices.getUserMedia({ video: { facingMode: "environment" } }).catch(() => {
        throw new Error("The camera is missing or not allowed. Connect a camera, and allow this page to use it");
    });
    const video = makeVideo();
    const stop = () => stream.getTracks().forEach((track) => track.stop());
    video.srcObject = stream;
    try {
        await video.play();
    } catch {
        stop();
        throw new Error("The camera shows no image. Close other programs that use the camera, and try again");
    }
    return new Camera(video, stop);
}

/** Opens a video. Resolves to undefined if the browser cannot decode it, or if it has only sound. */
async function openVideo(file: Blob): Promise<MovingPicture | undefined> {
    const video = makeVideo();
    video.src = URL.createObjectURL(file);
    const release = () => {
        video.pause();
        URL.revokeObjectURL(video.src);
        video.removeAttribute("src");
    };
    try {
        await video.play();
        if (video.videoWidth > 0) {
            return new Video(video, release);
        }
    } catch {
        // a damaged file, or a format that the browser does not know
    }
    release();
    return undefined;
}

function makeVideo(): HTMLVideoElement {
    return Object.assign(document.createElement("video"), { muted: true, loop: true, playsInline: true });
}

class Animation extends MovingPicture {
    private index = 0;
    private timer = 0;
    private isClosed = false;

    constructor(
        readonly file: Blob,
        private readonly encoded: ImageDecoderInit,
        private decoder: ImageDecoder,
        private readonly frameCount: number,
        private current: VideoFrame,
    ) {
        super();
        this.wait();
    }

    get frame(): VideoFrame {
        return this.current;
    }

    get width(): number {
        return this.current.displayWidth;
    }

    get height(): number {
        return this.current.displayHeight;
    }

    close(): void {
        this.isClosed = true;
        clearTimeout(this.timer);
        this.decoder.close();
        this.current.close();
    }

    /** Shows the next frame after the duration of the current one. */
    private wait(): void {
        if (!this.isClosed) {
            const duration = (this.current.duration ?? 0) / 1000 || defaultDuration;
            this.timer = window.setTimeout(() => void this.next(), duration);
        }
    }

    private async next(): Promise<void> {
        this.index = (this.index + 1) % this.frameCount;
        if (this.index === 0) {
            // Each round needs a new decoder: Firefox's decoder would return the closed frames of the previous round.
            this.decoder.close();
            this.decoder = new ImageDecoder(this.encoded);
        }
        const decoded = await this.decoder.decode({ frameIndex: this.index }).catch(() => undefined);
        if (!decoded || this.isClosed) {
            decoded?.image.close();
            return; // the picture was closed, or a damaged frame ends the animation
        }
        this.current.close();
        this.current = decoded.image;
        this.onFrame();
        this.wait();
    }
}

async function openAnimation(file: Blob): Promise<MovingPicture | undefined> {
    if (!("ImageDecoder" in window) || !(await ImageDecoder.isTypeSupported(file.type))) {
        return undefined; // the page then shows the first frame as a still picture
    }
    const encoded = { data: await file.arrayBuffer(), type: file.type };
    if (encoded.data.byteLength === 0) {
        return undefined; // the constructor of ImageDecoder would throw
    }
    const decoder = new ImageDecoder(encoded);
    try {
        await Promise.all([decoder.tracks.ready, decoder.completed]); // both reject for a damaged file
        const track = decoder.tracks.selectedTrack;
        if (track?.animated) {
            const { image } = await decoder.decode();
            return new Animation(file, encoded, decoder, track.frameCount, image);
        }
    } catch {
        // a damaged file
    }
    decoder.close();
    return undefined;
}
