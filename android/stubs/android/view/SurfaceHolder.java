package android.view;

public interface SurfaceHolder {
    Surface getSurface();
    public interface Callback {
        void surfaceChanged(SurfaceHolder holder, int format, int width, int height);
    }
    public interface Callback2 extends Callback {}
}
