package android.graphics.drawable;

public abstract class Drawable {
    public void setBounds(int left, int top, int right, int bottom) {
        throw new UnsupportedOperationException();
    }
}
