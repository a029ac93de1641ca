package velmora.android;

import android.opengl.EGL14;
import android.opengl.EGLSurface;
import android.os.Handler;
import android.os.HandlerThread;
import android.os.Process;
import android.view.Choreographer;
import android.view.Surface;
import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.CountDownLatch;
import velmora.host.EffectRenderer;
import velmora.host.EffectScene;
import velmora.host.EffectStage;
import velmora.host.ReflectionMap;

/**
 * The GL thread that all wallpaper engines of the process share. The system runs several engines in
 * one process: for the home screen, the lock screen and a preview. The library has one state per
 * process, so the engines also share one GL context. Each engine has its own window surface.
 */
final class WallpaperThread {
    private static WallpaperThread shared;

    private final NativeForVelmora velmora = new NativeForVelmora();
    private final EffectRenderer renderer = new EffectRenderer(velmora, ReflectionMap.makeBitmap());
    private final EffectStage stage = new EffectStage(renderer);
    private final EglContext egl = new EglContext();
    private final List<Window> windows = new ArrayList<>();
    private final Choreographer.FrameCallback vsync = this::onVsync;
    private final Handler handler;
    private boolean waitsForVsync;

    private WallpaperThread() {
        HandlerThread thread =
            new HandlerThread("velmora-wallpaper", Process.THREAD_PRIORITY_DISPLAY);
        thread.start();
        handler = new Handler(thread.getLooper());
    }

    static synchronized WallpaperThread get() {
        if (shared == null) {
            shared = new WallpaperThread();
        }
        return shared;
    }

    /** The window of one wallpaper engine. All methods run on the GL thread. */
    final class Window implements EffectStage.Screen {
        final EffectScene scene;
        private Surface surface;
        private EGLSurface eglSurface = EGL14.EGL_NO_SURFACE;

        Window(Photos photos) {
            scene = new EffectScene(velmora, photos);
            windows.add(this);
        }

        /**
         * Replaces the surface. Call it even if the Surface object is the same as before, because
         * the object can belong to another window now.
         */
        void resize(Surface newSurface, int width, int height) {
            removeSurface();
            surface = newSurface;
            scene.resize(width, height);
            scene.wake();
            waitForVsync();
        }

        void show() {
            stage.show(scene, this);
            waitForVsync();
        }

        void hide() {
            stage.hide(scene);
            waitForVsync();
        }

        void touch(int action, double x, double y, float pressure) {
            stage.touch(scene, action, x, y, pressure);
            waitForVsync();
        }

        /**
         * Draws one frame immediately. Called when the system waits until the window is redrawn.
         */
        void redraw() {
            stage.drawNow(scene, this, System.nanoTime());
            waitForVsync();
        }

        void removeSurface() {
            if (eglSurface != EGL14.EGL_NO_SURFACE) {
                egl.destroySurface(eglSurface);
                eglSurface = EGL14.EGL_NO_SURFACE;
            }
            surface = null;
        }

        /**
         * Closes the window. Closing the last window also destroys the context and frees the
         * bitmaps.
         */
        void close() {
            stage.hide(scene);
            removeSurface();
            windows.remove(this);
            if (windows.isEmpty()) {
                renderer.release();
                if (egl.exists()) {
                    egl.destroy();
                }
            }
            waitForVsync();
        }

        @Override
        public boolean makeCurrent() {
            if (surface == null || !hasContext()) {
                return false;
            }
            if (eglSurface == EGL14.EGL_NO_SURFACE) {
                eglSurface = egl.createSurface(surface);
            }
            return eglSurface != EGL14.EGL_NO_SURFACE && egl.makeCurrent(eglSurface);
        }

        @Override
        public boolean present() {
            return egl.present(eglSurface);
        }

        @Override
        public void discardLost() {
            if (eglSurface != EGL14.EGL_NO_SURFACE) {
                boolean contextIsLost = egl.isLost();
                egl.destroySurface(eglSurface);
                eglSurface = EGL14.EGL_NO_SURFACE;
                if (contextIsLost) {
                    egl.destroy();
                }
            }
        }
    }

    /** Runs a task on the GL thread. */
    void post(Runnable task) { handler.post(task); }

    /** Runs a task on the GL thread and waits until it has finished. */
    void run(Runnable task) {
        CountDownLatch done = new CountDownLatch(1);
        handler.post(() -> {
            task.run();
            done.countDown();
        });
        boolean interrupted = false;
        while (done.getCount() > 0) {
            try {
                done.await();
            } catch (InterruptedException later) {
                interrupted = true;
            }
        }
        if (interrupted) {
            Thread.currentThread().interrupt();
        }
    }

    private boolean hasContext() {
        if (!egl.exists() && egl.create()) {
            renderer.contextCreated();
        }
        return egl.exists();
    }

    private void waitForVsync() {
        if (!waitsForVsync) {
            waitsForVsync = true;
            Choreographer.getInstance().postFrameCallback(vsync);
        }
    }

    private void onVsync(long time) {
        waitsForVsync = false;
        if (stage.frame(time)) {
            waitForVsync();
        }
    }
}
