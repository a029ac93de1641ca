package velmora.android;

import android.content.Context;
import android.opengl.GLES20;
import android.opengl.GLSurfaceView;
import android.os.Build;
import android.util.AttributeSet;
import android.view.Choreographer;
import android.view.MotionEvent;
import android.view.Surface;
import android.view.SurfaceHolder;
import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;
import java.io.File;
import javax.microedition.khronos.egl.EGLConfig;
import javax.microedition.khronos.opengles.GL10;
import velmora.host.EffectRenderer;
import velmora.host.EffectScene;
import velmora.host.FramePacer;
import velmora.host.GestureScript;
import velmora.host.Setting;
import velmora.host.Settings;
import velmora.host.Sheen;
import velmora.host.TouchTranslator;

/**
 * The effect in an activity: a photo under water that answers to touches. Call onPause and onResume
 * from the activity. One view of a process draws at a time, the last one that was resumed.
 *
 * <p>The GL thread owns the scene. It draws when it is asked to, up to 60 times a second, and it
 * is not asked while the screen does not change.
 */
public class VelmoraView extends GLSurfaceView implements GLSurfaceView.Renderer {
    private final NativeForVelmora velmora = new NativeForVelmora();
    private final EffectRenderer renderer = new EffectRenderer(velmora, Sheen.makeBitmap());
    private final Photos photos = new Photos();
    private final EffectScene scene = new EffectScene(velmora, photos);
    private final TouchTranslator touches = new TouchTranslator();
    private final FramePacer pacer = new FramePacer();
    private final Choreographer.FrameCallback vsync = this::onVsync;

    /** UI thread: true while onVsync waits for the display. */
    private boolean waitsForVsync;

    /** UI thread: false from onPause to onResume, when the GL thread does not draw. */
    private boolean isResumed = true;

    /** Written by the GL thread: true if the next frame differs from the last. */
    private volatile boolean needsFrame;

    /** Written by the UI thread: the display's time of the requested frame, in nanoseconds. */
    private volatile long frameTime;

    private volatile float timeScale = 1.0f;

    /** GL thread: the gesture that plays by itself, or null. */
    private GestureScript gesture;

    private int gestureFrame;

    public VelmoraView(Context context) { this(context, null); }

    public VelmoraView(Context context, AttributeSet attributes) {
        super(context, attributes);
        setEGLContextClientVersion(2);
        setEGLConfigChooser(8, 8, 8, 0, 0, 0);
        setPreserveEGLContextOnPause(true);
        setClickable(true);
        setRenderer(this);
        setRenderMode(RENDERMODE_WHEN_DIRTY);
    }

    /** Applies settings, for example a preset. */
    public void setSettings(Settings settings) {
        timeScale = settings.get(Setting.TIME_SCALE);
        change(() -> scene.setSettings(settings));
    }

    /** Shows a photo; null shows a picture without a photo. The file must stay readable. */
    public void setPhoto(File photo) {
        change(() -> {
            photos.setPhoto(photo);
            scene.replacePictures();
        });
    }

    /** Plays a gesture script. Throws HostException at its first faulty line. */
    public void play(String script, String name) {
        GestureScript.parse(script, name, 1, 1);
        change(() -> {
            gesture = GestureScript.parse(script, name, scene.width(), scene.height());
            gestureFrame = 0;
        });
    }

    @Override
    public void onPause() {
        isResumed = false;
        queueEvent(scene::releaseFinger);
        super.onPause();
    }

    @Override
    public void onResume() {
        super.onResume();
        isResumed = true;
        renderer.activate();
        change(scene::wake);
    }

    @Override
    protected void onDetachedFromWindow() {
        super.onDetachedFromWindow();
        renderer.release();
    }

    @Override
    public void surfaceChanged(SurfaceHolder holder, int format, int width, int height) {
        super.surfaceChanged(holder, format, width, height);
        askForSixtyFrames(holder.getSurface());
    }

    @Override
    public boolean onTouchEvent(MotionEvent event) {
        int action =
            touches.translate(event.getActionMasked(), event.getPointerId(event.getActionIndex()));
        int pointer = event.findPointerIndex(touches.pointer());
        if (action == TouchTranslator.IGNORED || pointer < 0) {
            return true;
        }
        float x = event.getX(pointer);
        float y = event.getY(pointer);
        float pressure = event.getPressure(pointer);
        change(() -> touch(action, x, y, pressure));
        return true;
    }

    /** Strikes the middle of the water: what a screen reader's double tap does. */
    @Override
    public boolean performClick() {
        super.performClick();
        change(() -> {
            touch(NativeForVelmora.ACTION_DOWN, scene.width() / 2.0f, scene.height() / 2.0f, 1.0f);
            touch(NativeForVelmora.ACTION_UP, scene.width() / 2.0f, scene.height() / 2.0f, 1.0f);
        });
        return true;
    }

    @Override
    public void onSurfaceCreated(GL10 unused, EGLConfig config) {
        // Also called for a context that was lost, but not for a new surface of a preserved context.
        renderer.contextCreated();
    }

    @Override
    public void onSurfaceChanged(GL10 unused, int width, int height) {
        scene.resize(width, height);
        scene.wake();
    }

    @Override
    public void onDrawFrame(GL10 unused) {
        if (gesture != null) {
            playGesture();
        }
        if (!renderer.drawFrame(scene, frameTime)) {
            // The view shows what is drawn here, so it must not stay undefined.
            GLES20.glClear(GLES20.GL_COLOR_BUFFER_BIT);
        }
        needsFrame = scene.needsFrame() || gesture != null;
        post(this::waitForVsync);
    }

    /** Asks a display of more than 60 frames a second for 60. The pacer skips frames if it refuses. */
    static void askForSixtyFrames(Surface surface) {
        if (Build.VERSION.SDK_INT >= Build.VERSION_CODES.R && surface.isValid()) {
            surface.setFrameRate(60.0f, Surface.FRAME_RATE_COMPATIBILITY_DEFAULT);
        }
    }

    /** Runs a change of the scene on the GL thread and draws it. Any thread. */
    private void change(Runnable change) {
        queueEvent(() -> {
            change.run();
            needsFrame = true;
            post(this::waitForVsync);
        });
    }

    private void touch(int action, float x, float y, float pressure) {
        endGesture();
        scene.touch(action, x, y, TouchTranslator.pressure(pressure, scene.settings()));
    }

    /** Lifts the script's finger and takes its ink colour back. */
    private void endGesture() {
        if (gesture != null) {
            gesture = null;
            scene.releaseFinger();
            scene.setSettings(scene.settings());
        }
    }

    private void waitForVsync() {
        if (needsFrame && isResumed && !waitsForVsync) {
            waitsForVsync = true;
            Choreographer.getInstance().postFrameCallback(vsync);
        }
    }

    /** UI thread, at each frame of the display while the effect moves. */
    private void onVsync(long time) {
        waitsForVsync = false;
        if (!needsFrame) {
            pacer.restart();
            return;
        }
        if (pacer.isDue(time, timeScale)) {
            frameTime = time;
            requestRender();
        }
        waitForVsync();
    }

    private void playGesture() {
        if (gestureFrame >= gesture.frames()) {
            endGesture();
            return;
        }
        gesture.applyFrame(gestureFrame, new GestureScript.Target() {
            @Override
            public void touch(int action, double x, double y, float pressure) {
                scene.touch(action, x, y, pressure);
            }

            @Override
            public void setInk(float red, float green, float blue) {
                scene.setInk(red, green, blue);
            }

            @Override
            public void showSecondBackground(boolean on) {
                scene.showSecondBackground(on);
            }

            @Override
            public void clearInk() {
                scene.clearInk();
            }

            @Override
            public void loseContext() {
                // Scripts lose contexts for tests. A view keeps the context that it has.
            }
        });
        ++gestureFrame;
    }
}
