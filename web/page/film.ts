// Records the water as a video. The video keeps its size if the canvas is resized.

import { drawCropped } from "./cropping";
import { withDuration } from "./webm_duration";

const types = ["video/mp4;codecs=avc1", "video/webm;codecs=vp9", "video/webm"];
const bitsPerSecond = 12e6;
/** Wait in milliseconds after each repetition of the last frame, so that the encoder can write this frame. */
const lastFrameDelay = 100;
/**
 * A film repeats its last frame until the encoder writes data, because an encoder can hold back the first frames. This
 * is the maximum number of repetitions.
 */
const maxLastFrames = 30;
/** Time in milliseconds that the encoder has after an error to write its last data and to report its end. */
const maxEndDelay = 1000;

export class Film {
    isFinishing = false;
    /** Called if the encoder ends the video before `finish` is called, for example after an error. */
    onEarlyEnd = () => {};
    /** "video/mp4" or "video/webm". */
    private readonly type: string;
    private readonly context: CanvasRenderingContext2D;
    private readonly recorder: MediaRecorder;
    private readonly parts: Blob[] = [];
    private readonly start = performance.now();
    private readonly firstFrame: Promise<void>;
    /** Resolves when the encoder has ended the video and written all data, or `maxEndDelay` after an error. */
    private readonly ended: Promise<void>;
    private noteFrame = () => {};

    /**
     * Starts a video with the size of `source`, rounded down to even sides. Throws an Error with a message for the user
     * if the browser cannot record.
     */
    constructor(private readonly source: HTMLCanvasElement) {
        const canvas = document.createElement("canvas");
        canvas.width = even(source.width);
        canvas.height = even(source.height);
        this.context = canvas.getContext("2d", { alpha: false }) as CanvasRenderingContext2D;
        this.recorder = recorderOf(canvas);
        this.type = this.recorder.mimeType.replace(/;.*/, "");
        this.recorder.ondataavailable = (event) => this.parts.push(event.data);
        this.ended = endOf(this.recorder);
        this.firstFrame = new Promise((resolve) => (this.noteFrame = resolve));
        this.recorder.start(1000);
        void this.ended.then(() => {
            if (!this.isFinishing) {
                this.onEarlyEnd();
            }
        });
    }

    private get isEmpty(): boolean {
        return this.parts.every((part) => part.size === 0);
    }

    private get isRecording(): boolean {
        return this.recorder.state !== "inactive";
    }

    /** Adds a frame, scaled and cropped to the size of the video. */
    add(frame: HTMLCanvasElement = this.source): void {
        drawCropped(this.context, frame, frame);
        this.noteFrame();
    }

    /**
     * Waits until the video has a frame, then ends the video. Resolves to the file, which is empty if the encoder wrote
     * no data. If the encoder has already ended the video, resolves to the file at once.
     */
    async finish(): Promise<Blob> {
        this.isFinishing = true;
        await Promise.race([this.firstFrame, this.ended]);
        await this.repeatLastFrame();
        const duration = performance.now() - this.start;
        if (this.isRecording) {
            this.recorder.stop();
        }
        await this.ended;
        this.recorder.stream.getTracks().forEach((track) => track.stop());
        const file = new Blob(this.parts, { type: this.type });
        return this.type === "video/webm" ? withDuration(file, duration) : file;
    }

    /** Repeats the last frame, so that it is visible until the end of the video. */
    private async repeatLastFrame(): Promise<void> {
        for (let count = 0; this.isRecording && (count === 0 || (this.isEmpty && count < maxLastFrames)); ++count) {
            this.add(this.context.canvas);
            await new Promise((resolve) => setTimeout(resolve, lastFrameDelay));
            if (this.isRecording) {
                this.recorder.requestData();
            }
        }
    }
}

/** Resolves when the recorder has stopped, or `maxEndDelay` after an error. An error stops the recorder. */
function endOf(recorder: MediaRecorder): Promise<void> {
    return new Promise((resolve) => {
        recorder.onstop = () => resolve();
        recorder.onerror = () => {
            if (recorder.state !== "inactive") {
                recorder.stop();
            }
            setTimeout(resolve, maxEndDelay); // after an error, the event "stop" can be missing
        };
    });
}

/** Returns a recorder of the canvas. Throws an Error with a message for the user if the browser cannot record. */
function recorderOf(canvas: HTMLCanvasElement): MediaRecorder {
    const mimeType = window.MediaRecorder && types.find((type) => MediaRecorder.isTypeSupported(type));
    if (mimeType) {
        try {
            return new MediaRecorder(canvas.captureStream(60), { mimeType, videoBitsPerSecond: bitsPerSecond });
        } catch {
            // The system has no encoder for this format.
        }
    }
    throw new Error("This browser cannot record videos: it lacks MediaRecorder or an encoder. Try another browser");
}

/** Rounds a side down to an even number of pixels, because encoders need even sides. */
function even(side: number): number {
    return side - (side % 2);
}
