package javahost;

/**
 * A GL context, surfaces and pictures for a JVM, which has none of its own. A context belongs to the
 * thread that made it.
 */
final class HostKit {
    static { System.loadLibrary("velmoraHostKit"); }

    private HostKit() {}

    /** Makes an off-screen OpenGL ES 2.0 context, current on this thread. */
    static native long createContext(int width, int height);

    static native void destroyContext(long context);

    /** Makes another off-screen surface of the current context. */
    static native long createSurface(int width, int height);

    /** Makes the surface current with the current context. */
    static native void useSurface(long surface);

    /** Destroys a surface. If it is current, it lives until another surface is current. */
    static native void destroySurface(long surface);

    /** Returns the number of buffers, textures, framebuffers and programs of the current context. */
    static native int countObjects();

    /** Returns the current surface of this size as RGBA bytes, rows top to bottom. */
    static native byte[] readScreen(int width, int height);

    /** Returns a board of coloured squares as RGBA bytes. */
    static native byte[] makeTestImage(int width, int height);
}
