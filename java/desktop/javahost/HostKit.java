package javahost;

/**
 * Creates GL contexts, surfaces and images, which a JVM cannot create itself. A context belongs to
 * the thread that created it.
 */
final class HostKit {
    static { System.loadLibrary("velmoraHostKit"); }

    private HostKit() {}

    /** Creates an off-screen OpenGL ES 2.0 context and makes it current on this thread. */
    static native long createContext(int width, int height);

    static native void destroyContext(long context);

    /** Creates another off-screen surface for the current context. */
    static native long createSurface(int width, int height);

    /** Makes a surface the target of the current context. */
    static native void useSurface(long surface);

    /** Destroys a surface. A current surface lives on until another surface becomes current. */
    static native void destroySurface(long surface);

    /** Counts the buffers, textures, framebuffers and programs of the current context. */
    static native int countObjects();

    /** Reads the current surface of this size. Returns RGBA bytes, rows from top to bottom. */
    static native byte[] readScreen(int width, int height);

    /** Returns a checkerboard of coloured squares as RGBA bytes. */
    static native byte[] makeTestImage(int width, int height);
}
