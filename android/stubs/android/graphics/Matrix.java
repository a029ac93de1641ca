package android.graphics;

public class Matrix {
    public Matrix() {}
    public void setScale(float sx, float sy) { throw new UnsupportedOperationException(); }
    public void setRotate(float degrees) { throw new UnsupportedOperationException(); }
    public void setTranslate(float dx, float dy) { throw new UnsupportedOperationException(); }
    public boolean postScale(float sx, float sy) { throw new UnsupportedOperationException(); }
    public boolean postTranslate(float dx, float dy) { throw new UnsupportedOperationException(); }
    public boolean postConcat(Matrix other) { throw new UnsupportedOperationException(); }
    public void mapVectors(float[] vecs) { throw new UnsupportedOperationException(); }
}
