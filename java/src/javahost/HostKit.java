package javahost;

/**
 * What a device gives its host and a JVM does not: a GL context, and pictures to show. A context
 * belongs to the thread that made it.
 */
final class HostKit {
    static { System.loadLibrary("velmoraHostKit"); }

    private HostKit() {}

    /** Makes an off-screen OpenGL ES 2.0 context, current on this thread. */
    static native long createContext(int width, int height);

    static native void destroyContext(long context);

    /** The default framebuffer of the current context, RGBA, rows top to bottom. */
    static native byte[] readPixels(long context);

    /** The default sheen of the water, a square, RGBA. */
    static native byte[] makeSheen(int size);

    /** A board of coloured squares, RGBA. */
    static native byte[] makeTestPicture(int width, int height);
}
