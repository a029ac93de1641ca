package android.graphics;

public final class Insets {
    public final int left = 0;
    public final int top = 0;
    public final int right = 0;
    public final int bottom = 0;
}
