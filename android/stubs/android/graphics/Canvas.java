package android.graphics;

public class Canvas {
    public Canvas(Bitmap bitmap) {}
    public void drawBitmap(Bitmap bitmap, Matrix matrix, Paint paint) {
        throw new UnsupportedOperationException();
    }
    public void drawPaint(Paint paint) { throw new UnsupportedOperationException(); }
}
