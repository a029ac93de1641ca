package velmora.host;

/**
 * Passes the events of a gesture script to a scene. Ignores events that ask for the loss of the GL
 * context.
 */
public class SceneTarget implements GestureScript.Target {
    private final EffectScene scene;

    public SceneTarget(EffectScene scene) { this.scene = scene; }

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

    /** Does nothing, because only test hosts can lose a context on request. */
    @Override
    public void loseContext() {}
}
