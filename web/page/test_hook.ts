// Installs `window.velmora`, which the page's tests and benchmarks use, if the page is opened with `?test`.

import type { Settings } from "../../build/web/settings";
import type { Size, VelocityField } from "./effect";
import type { FileImporter } from "./file_importer";
import { qualityLabel } from "./frame_time_chart";
import type { FrameTime } from "./frame_times";
import type { Memory } from "./memory";
import type { Player } from "./player";

export interface TestHook {
    /** Settings that the effect applies with its next frame. */
    readonly settings: Settings;
    readonly pause: { isOn: boolean };
    readonly overlays: { velocity: boolean; density: boolean };
    readonly gl: WebGLRenderingContext;
    /** Returns the number of animation frames, drawn frames and GL contexts since the page was opened. */
    counts(): { animationFrames: number; frames: number; contexts: number };
    screen(): Size;
    /** Returns true if the effect needs no frame and the page has requested none. */
    isIdle(): boolean;
    isWaterIdle(): boolean;
    isContextLost(): boolean;
    isRecording(): boolean;
    isReplaying(): boolean;
    attractMode(): { on: boolean; runs: boolean };
    quality(): { phase: string; level: number; label: string };
    /** Fixes the quality at a level. Level 0 has full detail. */
    fixQuality(level: number): void;
    /** Returns the bytes of all water heights, followed by the bytes of all water velocities. */
    waterBytes(): Uint8Array;
    /** Returns the velocities of the last frame that was drawn with an overlay. */
    velocity(): VelocityField;
    frameTimes(): readonly FrameTime[];
    /** Returns the length of the module's table of GL texture names. */
    textureNames(): number;
    /** Calls `call` with the duration in milliseconds after each frame. Returns a function that ends the calls. */
    onFrame(call: (elapsed: number) => void): () => void;
    /** Settles once all dropped and pasted files are imported. */
    filesImported(): Promise<unknown>;
    /** Settles once settings and backgrounds are stored for the next visit. */
    stored(): Promise<unknown>;
    /** Has the effect of a key press on the page: the user counts as active, and the page draws a frame. */
    noteInput(): void;
    press(x: number, y: number, pressure: number): void;
    move(x: number, y: number, pressure: number): void;
    lift(): void;
    restart(): void;
    startRecording(): void;
    /** Replays a gesture script. Throws an Error that describes the fault if the script is invalid. */
    replay(script: string, name: string): void;
}

declare global {
    interface Window {
        velmora: TestHook;
    }
}

export function installTestHook(player: Player, importer: FileImporter, memory: Memory): void {
    const { effect, stage, loop } = player;
    window.velmora = {
        settings: player.settings,
        pause: player.pause,
        overlays: player.overlays,
        gl: effect.gl,
        counts: () => ({ animationFrames: loop.count, frames: player.frames, contexts: player.context.count }),
        screen: () => stage.size,
        isIdle: () => !loop.isRunning && player.isIdle,
        isWaterIdle: () => effect.isWaterIdle,
        isContextLost: () => player.context.isLost,
        isRecording: () => effect.isRecording,
        isReplaying: () => effect.isReplaying,
        attractMode: () => ({ on: effect.attractModeOn, runs: effect.attractModeRuns }),
        quality: () => ({ phase: effect.qualityPhase, level: effect.quality.level, label: qualityLabel(effect.quality) }),
        fixQuality: (level) => (effect.fixQuality(level), loop.wake()),
        waterBytes: () => effect.waterBytes(),
        velocity: () => effect.velocity,
        frameTimes: () => player.times.newest,
        textureNames: () => effect.textureNames,
        onFrame(call) {
            player.afterFrame.add(call);
            return () => player.afterFrame.delete(call);
        },
        filesImported: () => importer.settled,
        stored: () => memory.settled,
        noteInput: () => player.noteInput(),
        press: (...touch) => (effect.press(...touch), loop.wake()),
        move: (...touch) => (effect.move(...touch), loop.wake()),
        lift: () => (effect.lift("up", 0, 0), loop.wake()),
        restart: () => player.restart(),
        startRecording: () => player.gestures.startRecording(),
        replay: (script, name) => player.gestures.replay(script, name),
    };
}
