package android.graphics;

public class Paint {
    public static final int FILTER_BITMAP_FLAG = 2;
    public Paint() {}
    public Paint(int flags) {}
    public Shader setShader(Shader shader) { throw new UnsupportedOperationException(); }
}
