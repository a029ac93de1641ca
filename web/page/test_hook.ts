// What the page's tests and benchmarks see and do beyond what a visitor can.

import type { Settings } from "../../build/web/settings";
import type { Size } from "./effect";
import type { VelocityField } from "./effect_probe";
import type { FrameTime } from "./frame_times";
import type { Incoming } from "./incoming";
import type { Player } from "./player";
import { qualityLabel } from "./times";

export interface TestHook {
    /** The settings in force from the next frame on. */
    readonly settings: Settings;
    readonly view: Player["view"];
    readonly gl: WebGLRenderingContext;
    /** Since the page was opened. */
    counts(): { animationFrames: number; frames: number; contexts: number };
    screen(): Size;
    /** No frame is needed, and none is asked for. */
    isResting(): boolean;
    isWaterIdle(): boolean;
    isContextLost(): boolean;
    isRecording(): boolean;
    isReplaying(): boolean;
    attractMode(): { on: boolean; runs: boolean };
    quality(): { phase: string; level: number; label: string };
    /** Keeps a level of quality, of which 0 is all detail. */
    fixQuality(level: number): void;
    /** The water's heights and velocities. */
    waterBytes(): Uint8Array;
    /** The velocities of the last frame that an overlay showed. */
    velocity(): VelocityField;
    frameTimes(): readonly FrameTime[];
    /** Length of the module's table of textures. */
    textureNames(): number;
    /** Calls `call` after each frame with the frame's milliseconds, until the returned function is called. */
    onFrame(call: (elapsed: number) => void): () => void;
    /** Settles once the files that were dropped or pasted are taken. */
    filesTaken(): Promise<unknown>;
    /** As a key does: the next frame is drawn. */
    noteInput(): void;
    press(x: number, y: number, pressure: number): void;
    move(x: number, y: number, pressure: number): void;
    lift(): void;
    restart(): void;
    startRecording(): void;
    /** Plays a gesture script; returns its fault. */
    replay(script: string, name: string): string;
}

declare global {
    interface Window {
        velmora: TestHook;
    }
}

export function offerTestHook(player: Player, incoming: Incoming): void {
    const { effect, stage, loop } = player;
    window.velmora = {
        settings: player.settings,
        view: player.view,
        gl: effect.gl,
        counts: () => ({ animationFrames: loop.count, frames: player.frames, contexts: player.contexts }),
        screen: () => stage.size,
        isResting: () => !loop.isRunning && player.isResting,
        isWaterIdle: () => effect.isWaterIdle,
        isContextLost: () => player.isContextLost,
        isRecording: () => effect.isRecording,
        isReplaying: () => effect.isReplaying,
        attractMode: () => ({ on: effect.attractModeOn, runs: effect.attractModeRuns }),
        quality: () => ({ phase: effect.qualityPhase, level: effect.quality.level, label: qualityLabel(effect.quality) }),
        fixQuality: (level) => (effect.fixQuality(level), loop.wake()),
        waterBytes: () => effect.waterBytes(),
        velocity: () => player.probe.velocity,
        frameTimes: () => player.times.newest,
        textureNames: () => effect.textureNames,
        onFrame(call) {
            player.afterFrame.add(call);
            return () => player.afterFrame.delete(call);
        },
        filesTaken: () => incoming.settled,
        noteInput: () => player.noteInput(),
        press: (...touch) => (effect.press(...touch), loop.wake()),
        move: (...touch) => (effect.move(...touch), loop.wake()),
        lift: () => (effect.lift("up", 0, 0), loop.wake()),
        restart: () => player.restart(),
        startRecording: () => player.startRecording(),
        replay: (script, name) => player.replay(script, name),
    };
}
