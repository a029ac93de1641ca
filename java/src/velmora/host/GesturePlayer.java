package velmora.host;

/**
 * Plays a gesture script on a scene. Each drawn frame plays one frame of the script. All calls come
 * from the render thread.
 */
public final class GesturePlayer {
    private final EffectScene scene;
    private final GestureScript.Target target;
    private GestureScript script;
    private int frame;

    public GesturePlayer(EffectScene scene) {
        this.scene = scene;
        target = new SceneTarget(scene);
    }

    /** Plays a script from its first frame. */
    public void play(GestureScript newScript) {
        stop();
        script = newScript;
        frame = -1;
        frameDrawn();
    }

    public boolean plays() { return script != null; }

    /**
     * Passes the events of the script's next frame to the scene. Call it after each drawn frame.
     */
    public void frameDrawn() {
        if (script == null) {
            return;
        }
        ++frame;
        if (frame < script.frames()) {
            script.applyFrame(frame, target);
        } else {
            stop();
        }
    }

    /**
     * Stops the script: lifts the finger of the script and restores the ink colour of the settings.
     */
    public void stop() {
        if (script != null) {
            script = null;
            scene.releaseFinger();
            scene.setSettings(scene.settings());
        }
    }
}
