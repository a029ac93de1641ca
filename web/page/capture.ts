// Saves screenshots, films and recorded gestures as files.

import { commandTexts, sharedTexts } from "../../build/web/settings";
import { showBadge } from "./badges";
import { download, share, uniqueName } from "./files";
import { Film } from "./film";
import { blobOf } from "./paused_frame";
import type { Player } from "./player";
import { attempt, showToast } from "./toast";

/** Side of a thumbnail in pixels, the same as that of the built-in presets' thumbnails. */
const thumbnailSide = 128;

export class Capture {
    private film: Film | null = null;
    private hideFilmBadge = () => {};
    private stopAdding = () => {};
    private hideRecordingBadge = () => {};
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
            const name = uniqueName("screenshot", ".png");
            download(image, name);
            showToast(`Saved ${name}`);
        }
    }

    /** Opens the device's sheet for sharing with a screenshot. */
    async shareScreenshot(): Promise<void> {
        const image = await this.takeScreenshot();
        if (image) {
            await share(image, uniqueName("screenshot", ".png"));
        }
    }

    /** Returns a square thumbnail of the frame on the screen as a data URL, or undefined if there is no frame. */
    async thumbnail(): Promise<string | undefined> {
        const image = this.player.context.isLost ? null : await this.takeScreenshot();
        return image ? thumbnailOf(await createImageBitmap(image)) : undefined;
    }

    /** Starts a video, or ends it and saves the file. Does nothing while the end is being encoded. */
    async toggleFilm(): Promise<void> {
        if (!this.film) {
            this.startFilm();
        } else if (!this.film.isFinishing) {
            await this.finishFilm(this.film);
        }
    }

    toggleRecording(): void {
        if (this.player.effect.isRecording) {
            this.player.gestures.finishRecording();
        } else {
            this.player.gestures.startRecording();
            this.hideRecordingBadge = showBadge("Gesture", "Stop recording", () => this.toggleRecording());
            showToast("Recording a gesture. The water has started anew");
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

    /** Returns the frame on the screen as a PNG. */
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
        showToast(`Saved ${name}. ${commandTexts.replay.label} plays it again`);
    }

    private startFilm(): void {
        const { player } = this;
        player.context.need();
        const film = new Film(player.canvas);
        const add = () => film.add();
        player.afterFrame.add(add);
        this.film = film;
        this.stopAdding = () => player.afterFrame.delete(add);
        this.hideFilmBadge = showBadge("Video", "Stop filming", () => void attempt(() => this.toggleFilm()));
        player.filming = true;
        if (player.pause.frame.image) {
            film.add(player.pause.frame.image);
        } else {
            player.noteInput(); // draws the first frame of the video
        }
    }

    private async finishFilm(film: Film): Promise<void> {
        const { player } = this;
        const file = await film.finish();
        this.film = null;
        this.stopAdding();
        this.hideFilmBadge();
        player.filming = false;
        player.loop.wake(); // adaptive quality may change the canvas size again
        if (file.size === 0) {
            throw new Error("The video has no frame and is not saved. Film a little longer");
        }
        const name = uniqueName("film", film.suffix);
        download(file, name);
        showToast(`Saved ${name}`);
    }
}

function thumbnailOf(image: ImageBitmap): string {
    const side = Math.min(image.width, image.height);
    const canvas = document.createElement("canvas");
    canvas.width = canvas.height = thumbnailSide;
    const [left, top] = [(image.width - side) / 2, (image.height - side) / 2];
    canvas.getContext("2d")?.drawImage(image, left, top, side, side, 0, 0, thumbnailSide, thumbnailSide);
    return canvas.toDataURL("image/jpeg", 0.85);
}
