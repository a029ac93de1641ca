package velmora.android;

import android.opengl.EGL14;
import android.opengl.EGLConfig;
import android.opengl.EGLContext;
import android.opengl.EGLDisplay;
import android.opengl.EGLSurface;
import android.view.Surface;

/**
 * An OpenGL ES 2.0 context and the window surfaces that share it. Use it on one thread at a time.
 */
final class EglContext {
    private static final int[] CONFIG = {EGL14.EGL_RENDERABLE_TYPE, EGL14.EGL_OPENGL_ES2_BIT,
        EGL14.EGL_SURFACE_TYPE, EGL14.EGL_WINDOW_BIT, EGL14.EGL_RED_SIZE, 8, EGL14.EGL_GREEN_SIZE,
        8, EGL14.EGL_BLUE_SIZE, 8, EGL14.EGL_NONE};
    private static final int[] COLORS = {
        EGL14.EGL_RED_SIZE, EGL14.EGL_GREEN_SIZE, EGL14.EGL_BLUE_SIZE};
    private static final int MAX_CONFIGS = 64;
    private static final int[] VERSION_2 = {EGL14.EGL_CONTEXT_CLIENT_VERSION, 2, EGL14.EGL_NONE};
    private static final int[] DEFAULTS = {EGL14.EGL_NONE};

    private EGLDisplay display = EGL14.EGL_NO_DISPLAY;
    private EGLConfig config;
    private EGLContext context = EGL14.EGL_NO_CONTEXT;
    private boolean isLost;

    boolean exists() { return context != EGL14.EGL_NO_CONTEXT; }

    /** Creates the context. Returns false if the system cannot provide one. */
    boolean create() {
        display = EGL14.eglGetDisplay(EGL14.EGL_DEFAULT_DISPLAY);
        int[] version = new int[2];
        EGLConfig[] configs = new EGLConfig[MAX_CONFIGS];
        int[] count = new int[1];
        if (!EGL14.eglInitialize(display, version, 0, version, 1)
            || !EGL14.eglChooseConfig(display, CONFIG, 0, configs, 0, MAX_CONFIGS, count, 0)
            || count[0] == 0) {
            return false;
        }
        config = choose(configs, count[0]);
        context = EGL14.eglCreateContext(display, config, EGL14.EGL_NO_CONTEXT, VERSION_2, 0);
        isLost = false;
        return exists();
    }

    /**
     * Returns the first configuration with 8 bits per channel. EGL lists configurations with more
     * bits first. If no configuration has 8 bits per channel, returns the first of all
     * configurations.
     */
    private EGLConfig choose(EGLConfig[] configs, int count) {
        for (int at = 0; at < count; ++at) {
            if (hasBytes(configs[at])) {
                return configs[at];
            }
        }
        return configs[0];
    }

    private boolean hasBytes(EGLConfig candidate) {
        int[] bits = new int[1];
        for (int color : COLORS) {
            if (!EGL14.eglGetConfigAttrib(display, candidate, color, bits, 0) || bits[0] != 8) {
                return false;
            }
        }
        return true;
    }

    /** Creates a surface for a window. Returns EGL_NO_SURFACE if the window no longer exists. */
    EGLSurface createSurface(Surface window) {
        try {
            return EGL14.eglCreateWindowSurface(display, config, window, DEFAULTS, 0);
        } catch (IllegalArgumentException released) {
            return EGL14.EGL_NO_SURFACE;
        }
    }

    boolean makeCurrent(EGLSurface surface) {
        return succeeded(EGL14.eglMakeCurrent(display, surface, surface, context));
    }

    /** Shows the drawn frame on the screen. Returns false if that fails. */
    boolean present(EGLSurface surface) {
        return succeeded(EGL14.eglSwapBuffers(display, surface));
    }

    /** Returns true if the last EGL call failed because the context is lost. */
    boolean isLost() { return isLost; }

    private boolean succeeded(boolean success) {
        isLost = !success && EGL14.eglGetError() == EGL14.EGL_CONTEXT_LOST;
        return success;
    }

    void destroySurface(EGLSurface surface) {
        detach();
        EGL14.eglDestroySurface(display, surface);
    }

    void destroy() {
        detach();
        EGL14.eglDestroyContext(display, context);
        context = EGL14.EGL_NO_CONTEXT;
        isLost = false;
    }

    private void detach() {
        EGL14.eglMakeCurrent(
            display, EGL14.EGL_NO_SURFACE, EGL14.EGL_NO_SURFACE, EGL14.EGL_NO_CONTEXT);
    }
}
