package android.opengl;

import android.content.Context;
import android.util.AttributeSet;
import android.view.SurfaceHolder;
import android.view.SurfaceView;
import javax.microedition.khronos.egl.EGLConfig;
import javax.microedition.khronos.opengles.GL10;

public class GLSurfaceView extends SurfaceView implements SurfaceHolder.Callback2 {
    public static final int RENDERMODE_WHEN_DIRTY = 0;
    public GLSurfaceView(Context context) { super(context); }
    public GLSurfaceView(Context context, AttributeSet attrs) { super(context); }
    public void setEGLContextClientVersion(int version) {
        throw new UnsupportedOperationException();
    }
    public void setEGLConfigChooser(
        int redSize, int greenSize, int blueSize, int alphaSize, int depthSize, int stencilSize) {
        throw new UnsupportedOperationException();
    }
    public void setPreserveEGLContextOnPause(boolean preserveOnPause) {
        throw new UnsupportedOperationException();
    }
    public void setRenderer(Renderer renderer) { throw new UnsupportedOperationException(); }
    public void setRenderMode(int renderMode) { throw new UnsupportedOperationException(); }
    public void requestRender() { throw new UnsupportedOperationException(); }
    public void queueEvent(Runnable r) { throw new UnsupportedOperationException(); }
    public void onPause() { throw new UnsupportedOperationException(); }
    public void onResume() { throw new UnsupportedOperationException(); }
    protected void onDetachedFromWindow() { throw new UnsupportedOperationException(); }
    public void surfaceChanged(SurfaceHolder holder, int format, int w, int h) {
        throw new UnsupportedOperationException();
    }
    public interface Renderer {
        void onSurfaceCreated(GL10 gl, EGLConfig config);
        void onSurfaceChanged(GL10 gl, int width, int height);
        void onDrawFrame(GL10 gl);
    }
}
