// Saves screenshots, videos and recorded gestures as files.

import { commandTexts, sharedTexts } from "../../build/web/settings";
import type { Size } from "../engine/size";
import { showBadge } from "./badges";
import { drawCropped, thumbnailSide } from "./cropping";
import { canShare, download, share, uniqueName } from "./files";
import { Film } from "./film";
import { blobOf } from "./paused_frame";
import type { Player } from "./player";
import { isSameSize } from "./stage";
import { attempt, showErrorToast, showToast } from "./toast";

export class Capture {
    private film: Film | null = null;
    private hideFilmBadge = () => {};
    private stopAdding = () => {};
    private hideRecordingBadge = () => {};
    /** State of the page when the newest gesture recording began. The size is in pixels of the canvas. */
    private atStart: { size: Size; waterOnly: boolean } | undefined;
    /** File of the newest video. */
    private video: Blob | undefined;
    /** Script of the newest recorded gesture. */
    private gesture = "";

    constructor(private readonly player: Player) {
        player.effect.onRecordingEnd = (script) => this.saveRecording(script);
        window.addEventListener("beforeunload", (event) => {
            if (this.film || player.effect.isRecording) {
                event.preventDefault(); // the browser asks the user whether to leave
            }
        });
    }

    get isFilming(): boolean {
        return this.film !== null;
    }

    async screenshot(): Promise<void> {
        const image = await this.takeScreenshot();
        if (image) {
            save(image, uniqueName("screenshot", ".png"));
        }
    }

    /** Saves a screenshot that is scaled and cropped to the size of the device's screen. */
    async wallpaper(): Promise<void> {
        const image = await this.takeScreenshot();
        if (image) {
            save(await atScreenSize(image), uniqueName("wallpaper", ".png"));
        }
    }

    /** Takes a screenshot and opens the device's share sheet for it. */
    async shareScreenshot(): Promise<void> {
        const image = await this.takeScreenshot();
        if (image) {
            await share(image, uniqueName("screenshot", ".png"));
        }
    }

    get canShareVideo(): boolean {
        return this.video !== undefined && canShare(this.video.type);
    }

    /** Opens the device's share sheet for the newest video. */
    async shareVideo(): Promise<void> {
        if (this.video) {
            await share(this.video, uniqueName("film", suffixOf(this.video)));
        }
    }

    /** Resolves to a square thumbnail of the current frame as a data URL, or to undefined if the context is lost. */
    async thumbnail(): Promise<string | undefined> {
        const image = this.player.context.isLost ? null : await this.takeScreenshot();
        return image ? thumbnailOf(await createImageBitmap(image)) : undefined;
    }

    /** Starts a video, or ends it and saves the file. Does nothing while the end of the video is being encoded. */
    async toggleFilm(): Promise<void> {
        if (!this.film) {
            this.startFilm();
        } else if (!this.film.isFinishing) {
            const file = await this.finishFilm(this.film);
            showToast(`Saved ${this.saveFilm(file, sharedTexts.emptyVideo)}`);
        }
    }

    toggleRecording(): void {
        if (this.player.effect.isRecording) {
            this.player.gestures.finishRecording();
        } else {
            this.player.gestures.startRecording();
            this.atStart = { size: this.player.stage.size, waterOnly: this.player.settings.waterOnly };
            this.hideRecordingBadge = showBadge("Gesture", sharedTexts.stopRecording, () => this.toggleRecording());
            showToast(`Recording a gesture${sharedTexts.effectRestarted}`);
        }
    }

    replayNewest(): void {
        this.player.context.need();
        this.player.gestures.finishRecording();
        if (this.gesture) {
            this.player.gestures.replay(this.gesture, "the recording");
        } else {
            showToast(sharedTexts.noRecording);
        }
    }

    /**
     * Resolves to a PNG file of the water. If a pause keeps a frame, the file shows this frame. In all other cases,
     * requests a frame, and the file shows the requested frame.
     */
    private takeScreenshot(): Promise<Blob | null> {
        const { player } = this;
        player.context.need();
        if (player.pause.isOn && player.pause.frame.isCurrent) {
            return player.pause.frame.blob();
        }
        return new Promise((resolve) => {
            const take = () => {
                player.afterFrame.delete(take);
                resolve(blobOf(player.canvas));
            };
            player.afterFrame.add(take);
            player.noteInput();
        });
    }

    private saveRecording(script: string): void {
        this.hideRecordingBadge();
        this.gesture = script;
        const name = uniqueName("gesture", ".gesture");
        download(script, name);
        showToast(`${this.reasonForEnd()}Saved ${name}. ${commandTexts.replay.label} plays it again`);
    }

    /** Returns why the gesture recording ended. Returns an empty text if the user has ended it. */
    private reasonForEnd(): string {
        const { player, atStart } = this;
        if (atStart && !isSameSize(atStart.size, player.stage.size)) {
            return sharedTexts.resizeEndedRecording;
        }
        return atStart && atStart.waterOnly !== player.settings.waterOnly ? sharedTexts.inkEndedRecording : "";
    }

    private startFilm(): void {
        const { player } = this;
        player.context.need();
        const film = new Film(player.canvas);
        const add = () => film.add();
        player.afterFrame.add(add);
        this.film = film;
        this.stopAdding = () => player.afterFrame.delete(add);
        film.onEarlyEnd = () => void attempt(() => this.saveEarlyFilm(film));
        this.hideFilmBadge = showBadge("Video", sharedTexts.stopFilming, () => void attempt(() => this.toggleFilm()));
        player.filming = true;
        if (player.pause.frame.image) {
            film.add(player.pause.frame.image);
        } else {
            player.noteInput(); // requests the first frame of the video
        }
    }

    /** Ends a video and returns its file, which can be empty. */
    private async finishFilm(film: Film): Promise<Blob> {
        const { player } = this;
        try {
            return await film.finish();
        } finally {
            this.film = null;
            this.stopAdding();
            this.hideFilmBadge();
            player.filming = false;
            player.loop.wake(); // a deferred resize of the canvas is now possible
        }
    }

    /** Saves the recorded frames of a video that the browser has ended. */
    private async saveEarlyFilm(film: Film): Promise<void> {
        const emptyVideo = "The browser stopped the video before its first frame, so it is not saved. Try again";
        const name = this.saveFilm(await this.finishFilm(film), emptyVideo);
        showErrorToast(`The browser stopped the video early. Saved ${name}`);
    }

    /** Saves a video. Returns the name of its file. If the video is empty, throws an Error with the message. */
    private saveFilm(file: Blob, emptyMessage: string): string {
        if (file.size === 0) {
            throw new Error(emptyMessage);
        }
        this.video = file;
        const name = uniqueName("film", suffixOf(file));
        download(file, name);
        return name;
    }
}

function save(file: Blob, name: string): void {
    download(file, name);
    showToast(`Saved ${name}`);
}

/** Returns the suffix of a video's file name, for example ".mp4". */
function suffixOf({ type }: Blob): string {
    return `.${type.replace("video/", "")}`;
}

/** Scales and crops a PNG image to the size of the device's screen. */
async function atScreenSize(file: Blob): Promise<Blob> {
    const image = await createImageBitmap(file);
    const [width, height] = [screen.width, screen.height].map((side) => Math.round(side * devicePixelRatio));
    const canvas = new OffscreenCanvas(width as number, height as number);
    const context = canvas.getContext("2d") as OffscreenCanvasRenderingContext2D;
    context.imageSmoothingQuality = "high";
    drawCropped(context, image, image);
    image.close();
    return canvas.convertToBlob();
}

function thumbnailOf(image: ImageBitmap): string {
    const canvas = document.createElement("canvas");
    canvas.width = canvas.height = thumbnailSide;
    drawCropped(canvas.getContext("2d") as CanvasRenderingContext2D, image, image);
    image.close();
    return canvas.toDataURL("image/jpeg", 0.85);
}
