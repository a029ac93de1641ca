package android.opengl;

public class GLES20 {
    public static final int GL_COLOR_BUFFER_BIT = 16384;
    public static void glClear(int mask) { throw new UnsupportedOperationException(); }
}
