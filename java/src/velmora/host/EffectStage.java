package velmora.host;

import java.util.ArrayList;
import java.util.List;

/**
 * The screens of a process that share one renderer, one GL context and one thread: a live wallpaper
 * on the home screen, on the lock screen and in its preview. Only the screen that was shown last
 * draws. All calls come from the render thread.
 */
public final class EffectStage {
    /**
     * A window surface of the shared context. The system can destroy the surface or the context at
     * any time.
     */
    public interface Screen {
        /**
         * Makes the surface current. Creates the surface and the context first if they are missing.
         */
        boolean makeCurrent();

        /** Shows the drawn frame on the screen. Returns false if that fails. */
        boolean present();

        /** Discards the surface after a failure. Also discards the context if it is lost. */
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

    /** Draws this scene from now on, in front of the scenes shown before. */
    public void show(EffectScene scene, Screen screen) {
        hide(scene);
        if (!visible.isEmpty()) {
            // The covered screen gets no further touch events, so its finger would stay down
            // forever.
            visible.get(visible.size() - 1).scene.releaseFinger();
        }
        visible.add(new Visible(scene, screen));
        scene.restartRain();
        scene.wake();
        renderer.activate();
    }

    /** Stops drawing the scene. The scene that was shown before it draws again. */
    public void hide(EffectScene scene) {
        scene.releaseFinger();
        if (visible.removeIf(entry -> entry.scene == scene) && !visible.isEmpty()) {
            visible.get(visible.size() - 1).scene.wake();
        }
    }

    /** Passes a touch to a scene. Ignores it unless the scene is drawing. */
    public void touch(EffectScene scene, int action, double x, double y, float pressure) {
        if (!visible.isEmpty() && visible.get(visible.size() - 1).scene == scene) {
            scene.touch(action, x, y, pressure);
        }
    }

    /**
     * Handles one frame of the display and draws if a frame is due. Returns true if the next frame
     * of the display may be needed. After false, nothing is drawn until a touch or a change.
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
     * Draws one frame at once, because the system waits for it. Does nothing if another scene is
     * shown.
     */
    public void drawNow(EffectScene scene, Screen screen, long time) {
        if (visible.isEmpty() || visible.get(visible.size() - 1).scene == scene) {
            draw(scene, screen, time);
        }
    }

    /** Draws and shows a frame. Returns false if the screen or the renderer cannot draw now. */
    private boolean draw(EffectScene scene, Screen screen, long time) {
        if (!screen.makeCurrent()) {
            // The surface or the context can be lost while the scene is idle.
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
