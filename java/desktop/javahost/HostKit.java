package javahost;

/**
 * Native functions that create GL contexts, surfaces and images, because a JVM has none. A context
 * belongs to the thread that created it.
 */
final class HostKit {
    static { System.loadLibrary("velmoraHostKit"); }

    private HostKit() {}

    /** Creates an off-screen OpenGL ES 2.0 context and makes it current on the calling thread. */
    static native long createContext(int width, int height);

    static native void destroyContext(long context);

    /** Creates another off-screen surface for the current context. */
    static native long createSurface(int width, int height);

    /** Makes the current context draw into a surface. */
    static native void useSurface(long surface);

    /**
     * Destroys a surface. If the surface is current, EGL keeps it until another surface becomes
     * current.
     */
    static native void destroySurface(long surface);

    /**
     * Returns the total number of buffers, textures, framebuffers and programs in the current
     * context.
     */
    static native int countObjects();

    /** Reads the pixels of the current surface. Returns RGBA bytes, rows from top to bottom. */
    static native byte[] readScreen(int width, int height);

    /** Returns a coloured checkerboard as RGBA bytes. */
    static native byte[] makeTestImage(int width, int height);
}
