package android.view;

public final class MotionEvent {
    public int getActionMasked() { throw new UnsupportedOperationException(); }
    public int getActionIndex() { throw new UnsupportedOperationException(); }
    public int getPointerId(int pointerIndex) { throw new UnsupportedOperationException(); }
    public int findPointerIndex(int pointerId) { throw new UnsupportedOperationException(); }
    public float getX(int pointerIndex) { throw new UnsupportedOperationException(); }
    public float getY(int pointerIndex) { throw new UnsupportedOperationException(); }
    public float getPressure(int pointerIndex) { throw new UnsupportedOperationException(); }
}
