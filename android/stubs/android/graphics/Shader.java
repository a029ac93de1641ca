package android.graphics;

public class Shader {
    public enum TileMode { CLAMP, REPEAT, MIRROR }
}
