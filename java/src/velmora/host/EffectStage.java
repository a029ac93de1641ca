package velmora.host;

import java.util.ArrayList;
import java.util.List;

/**
 * Decides which of several screens draws. The screens of a live wallpaper are in one process: home
 * screen, lock screen and preview. They share one renderer, one GL context and one thread. Only the
 * screen that was shown last draws. All calls come from the render thread.
 */
public final class EffectStage {
    /**
     * A window surface of the shared context. The system can destroy the surface or the context at
     * any time.
     */
    public interface Screen {
        /**
         * Makes the surface current. If the surface or the context is missing, creates it first.
         */
        boolean makeCurrent();

        /** Shows the drawn frame on the screen. Returns false if that fails. */
        boolean present();

        /**
         * Discards the surface after a failure. If the context is lost, discards the context too.
         */
        void discardLost();
    }

    private static final class Visible {
        final EffectScene scene;
        final Screen screen;

        Visible(EffectScene scene, Screen screen) {
            this.scene = scene;
            this.screen = screen;
        }
    }

    private final EffectRenderer renderer;
    private final FramePacer pacer = new FramePacer();

    /** Visible screens, in the order in which they were shown. */
    private final List<Visible> visible = new ArrayList<>();

    public EffectStage(EffectRenderer renderer) { this.renderer = renderer; }

    /**
     * Shows a scene on top of the scenes that are visible already. From now on, this scene draws.
     */
    public void show(EffectScene scene, Screen screen) {
        hide(scene);
        if (!visible.isEmpty()) {
            // Lift the finger of the covered screen. The screen gets no more touch events, so its
            // finger would otherwise stay down.
            visible.get(visible.size() - 1).scene.releaseFinger();
        }
        visible.add(new Visible(scene, screen));
        scene.restartRain();
        scene.wake();
        renderer.activate();
    }

    /**
     * Hides a scene. From now on, the scene that was shown last among those still visible draws.
     */
    public void hide(EffectScene scene) {
        scene.releaseFinger();
        if (visible.removeIf(entry -> entry.scene == scene) && !visible.isEmpty()) {
            visible.get(visible.size() - 1).scene.wake();
        }
    }

    /**
     * Passes a touch to the scene if it is the scene that draws. Ignores touches of all other
     * scenes.
     */
    public void touch(EffectScene scene, int action, double x, double y, float pressure) {
        if (!visible.isEmpty() && visible.get(visible.size() - 1).scene == scene) {
            scene.touch(action, x, y, pressure);
        }
    }

    /**
     * Handles one frame of the display and draws if a frame of the effect is due. Returns true if
     * the caller must call this method again at the next display frame. If false, the caller can
     * wait for a touch or another change.
     */
    public boolean frame(long time) {
        if (visible.isEmpty()) {
            pacer.restart();
            return false;
        }
        Visible top = visible.get(visible.size() - 1);
        if (!top.scene.needsFrame()) {
            pacer.restart();
            return false;
        }
        if (pacer.isDue(time, top.scene.settings().get(Setting.TIME_SCALE))
            && !draw(top.scene, top.screen, time)) {
            return false;
        }
        return top.scene.needsFrame();
    }

    /**
     * Draws one frame immediately, because the system waits for it. Does nothing if another scene
     * draws.
     */
    public void drawNow(EffectScene scene, Screen screen, long time) {
        if (visible.isEmpty() || visible.get(visible.size() - 1).scene == scene) {
            draw(scene, screen, time);
        }
    }

    /** Draws and shows a frame. Returns false if the screen or the renderer cannot draw now. */
    private boolean draw(EffectScene scene, Screen screen, long time) {
        if (!screen.makeCurrent()) {
            // The system can destroy the surface or the context while the scene is idle. Discard
            // the lost objects and try once more.
            screen.discardLost();
            if (!screen.makeCurrent()) {
                return false;
            }
        }
        if (!renderer.drawFrame(scene, time)) {
            return false;
        }
        if (!screen.present()) {
            screen.discardLost();
            scene.wake();
        }
        return true;
    }
}
