package android.opengl;

public class EGL14 {
    public static final int EGL_DEFAULT_DISPLAY = 0;
    public static EGLDisplay EGL_NO_DISPLAY;
    public static EGLContext EGL_NO_CONTEXT;
    public static EGLSurface EGL_NO_SURFACE;
    public static final int EGL_CONTEXT_LOST = 12302;
    public static final int EGL_BLUE_SIZE = 12322;
    public static final int EGL_GREEN_SIZE = 12323;
    public static final int EGL_RED_SIZE = 12324;
    public static final int EGL_SURFACE_TYPE = 12339;
    public static final int EGL_NONE = 12344;
    public static final int EGL_RENDERABLE_TYPE = 12352;
    public static final int EGL_CONTEXT_CLIENT_VERSION = 12440;
    public static final int EGL_WINDOW_BIT = 4;
    public static final int EGL_OPENGL_ES2_BIT = 4;
    public static EGLDisplay eglGetDisplay(int display_id) {
        throw new UnsupportedOperationException();
    }
    public static boolean eglInitialize(
        EGLDisplay dpy, int[] major, int majorOffset, int[] minor, int minorOffset) {
        throw new UnsupportedOperationException();
    }
    public static boolean eglChooseConfig(EGLDisplay dpy, int[] attrib_list, int attrib_listOffset,
        EGLConfig[] configs, int configsOffset, int config_size, int[] num_config,
        int num_configOffset) {
        throw new UnsupportedOperationException();
    }
    public static boolean eglGetConfigAttrib(
        EGLDisplay dpy, EGLConfig config, int attribute, int[] value, int offset) {
        throw new UnsupportedOperationException();
    }

    public static EGLContext eglCreateContext(
        EGLDisplay dpy, EGLConfig config, EGLContext share_context, int[] attrib_list, int offset) {
        throw new UnsupportedOperationException();
    }
    public static EGLSurface eglCreateWindowSurface(
        EGLDisplay dpy, EGLConfig config, Object win, int[] attrib_list, int offset) {
        throw new UnsupportedOperationException();
    }
    public static boolean eglMakeCurrent(
        EGLDisplay dpy, EGLSurface draw, EGLSurface read, EGLContext ctx) {
        throw new UnsupportedOperationException();
    }
    public static boolean eglSwapBuffers(EGLDisplay dpy, EGLSurface surface) {
        throw new UnsupportedOperationException();
    }
    public static boolean eglDestroySurface(EGLDisplay dpy, EGLSurface surface) {
        throw new UnsupportedOperationException();
    }
    public static boolean eglDestroyContext(EGLDisplay dpy, EGLContext ctx) {
        throw new UnsupportedOperationException();
    }
    public static int eglGetError() { throw new UnsupportedOperationException(); }
}
