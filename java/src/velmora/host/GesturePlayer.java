package velmora.host;

/**
 * Plays a gesture script on a scene, one frame of the script per drawn frame. All calls come from the
 * render thread.
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

    /** Starts a script at its first frame. */
    public void play(GestureScript newScript) {
        stop();
        script = newScript;
        frame = -1;
        frameDrawn();
    }

    public boolean plays() { return script != null; }

    /** Passes the events of the next frame to the scene. Call it after each drawn frame. */
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

    /** Ends the script: lifts its finger and restores the colour of the settings' ink. */
    public void stop() {
        if (script != null) {
            script = null;
            scene.releaseFinger();
            scene.setSettings(scene.settings());
        }
    }

    private static final class SceneTarget implements GestureScript.Target {
        private final EffectScene scene;

        SceneTarget(EffectScene scene) { this.scene = scene; }

        @Override
        public void touch(int action, double x, double y, float pressure) {
            scene.touch(action, x, y, pressure);
        }

        @Override
        public void setInk(float red, float green, float blue) {
            scene.setInk(red, green, blue);
        }

        @Override
        public void showSecondBackground(boolean on) {
            scene.showSecondBackground(on);
        }

        @Override
        public void clearInk() {
            scene.clearInk();
        }

        @Override
        public void loseContext() {
            // Scripts lose contexts for tests. A window keeps the context that it has.
        }
    }
}
