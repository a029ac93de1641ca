package velmora.android;

import android.opengl.EGL14;
import android.opengl.EGLConfig;
import android.opengl.EGLContext;
import android.opengl.EGLDisplay;
import android.opengl.EGLSurface;
import android.view.Surface;

/** One OpenGL ES 2.0 context and the window surfaces that share it. One thread at a time. */
final class EglContext {
    private static final int[] CONFIG = {EGL14.EGL_RENDERABLE_TYPE, EGL14.EGL_OPENGL_ES2_BIT,
        EGL14.EGL_SURFACE_TYPE, EGL14.EGL_WINDOW_BIT, EGL14.EGL_RED_SIZE, 8, EGL14.EGL_GREEN_SIZE,
        8, EGL14.EGL_BLUE_SIZE, 8, EGL14.EGL_NONE};
    private static final int[] VERSION_2 = {EGL14.EGL_CONTEXT_CLIENT_VERSION, 2, EGL14.EGL_NONE};
    private static final int[] DEFAULTS = {EGL14.EGL_NONE};

    private EGLDisplay display = EGL14.EGL_NO_DISPLAY;
    private EGLConfig config;
    private EGLContext context = EGL14.EGL_NO_CONTEXT;

    boolean exists() { return context != EGL14.EGL_NO_CONTEXT; }

    /** Makes the context. Returns false if the system has none to give. */
    boolean create() {
        display = EGL14.eglGetDisplay(EGL14.EGL_DEFAULT_DISPLAY);
        int[] version = new int[2];
        EGLConfig[] configs = new EGLConfig[1];
        int[] count = new int[1];
        if (!EGL14.eglInitialize(display, version, 0, version, 1)
            || !EGL14.eglChooseConfig(display, CONFIG, 0, configs, 0, 1, count, 0)
            || count[0] == 0) {
            return false;
        }
        config = configs[0];
        context = EGL14.eglCreateContext(display, config, EGL14.EGL_NO_CONTEXT, VERSION_2, 0);
        return exists();
    }

    /** Returns a surface of the window, or EGL_NO_SURFACE if the window is gone. */
    EGLSurface createSurface(Surface window) {
        try {
            return EGL14.eglCreateWindowSurface(display, config, window, DEFAULTS, 0);
        } catch (IllegalArgumentException released) {
            return EGL14.EGL_NO_SURFACE;
        }
    }

    boolean makeCurrent(EGLSurface surface) {
        return EGL14.eglMakeCurrent(display, surface, surface, context);
    }

    /** Puts the frame on the screen. Returns EGL_SUCCESS or the reason why it is not shown. */
    int present(EGLSurface surface) {
        return EGL14.eglSwapBuffers(display, surface) ? EGL14.EGL_SUCCESS : EGL14.eglGetError();
    }

    void destroySurface(EGLSurface surface) {
        detach();
        EGL14.eglDestroySurface(display, surface);
    }

    void destroy() {
        detach();
        EGL14.eglDestroyContext(display, context);
        context = EGL14.EGL_NO_CONTEXT;
    }

    private void detach() {
        EGL14.eglMakeCurrent(
            display, EGL14.EGL_NO_SURFACE, EGL14.EGL_NO_SURFACE, EGL14.EGL_NO_CONTEXT);
    }
}
