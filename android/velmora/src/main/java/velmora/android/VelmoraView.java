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
import java.util.Objects;
import javax.microedition.khronos.egl.EGLConfig;
import javax.microedition.khronos.opengles.GL10;
import velmora.host.EffectRenderer;
import velmora.host.EffectScene;
import velmora.host.FramePacer;
import velmora.host.GesturePlayer;
import velmora.host.GestureScript;
import velmora.host.ReflectionMap;
import velmora.host.Setting;
import velmora.host.Settings;
import velmora.host.TouchTranslator;

/**
 * A view that shows a photo under water and reacts to touches. The activity must call onPause and
 * onResume. If a process has several views, only the view that was resumed last draws.
 *
 * <p>The GL thread owns the scene. It draws on request, at most 60 times per second. While the
 * screen is idle, no frame is requested.
 */
public class VelmoraView extends GLSurfaceView implements GLSurfaceView.Renderer {
    private final NativeForVelmora velmora = new NativeForVelmora();
    private final EffectRenderer renderer = new EffectRenderer(velmora, ReflectionMap.makeBitmap());
    private final Photos photos = new Photos();
    private final EffectScene scene = new EffectScene(velmora, photos);
    private final TouchTranslator touches = new TouchTranslator();
    private final FramePacer pacer = new FramePacer();
    private final Choreographer.FrameCallback vsync = this::onVsync;

    /**
     * True while a call of onVsync at the next display frame is scheduled. Used on the UI thread
     * only.
     */
    private boolean waitsForVsync;

    /**
     * False between onPause and onResume, while the GL thread does not draw. Used on the UI thread
     * only.
     */
    private boolean isResumed = true;

    /** True if the next frame may differ from the last frame. Written by the GL thread. */
    private volatile boolean needsFrame;

    /**
     * Time of the display frame for which drawing was requested, in nanoseconds. Written by the UI
     * thread.
     */
    private volatile long frameTime;

    private volatile float timeScale = 1.0f;

    /** The current photo, or null. Used on the UI thread only. */
    private File photo;

    /** Player of gesture scripts. Used on the GL thread only. */
    private final GesturePlayer gesture = new GesturePlayer(scene);

    public VelmoraView(Context context) { this(context, null); }

    public VelmoraView(Context context, AttributeSet attributes) {
        super(context, attributes);
        setEGLContextClientVersion(2);
        setEGLConfigChooser(8, 8, 8, 0, 0, 0);
        setPreserveEGLContextOnPause(true);
        setClickable(true);
        setFocusable(true);
        setRenderer(this);
        setRenderMode(RENDERMODE_WHEN_DIRTY);
    }

    /** Applies settings, for example those of a preset. */
    public void setSettings(Settings settings) {
        timeScale = settings.get(Setting.TIME_SCALE);
        change(() -> scene.setSettings(settings));
    }

    /**
     * Shows a photo, or a gradient if `newPhoto` is null. The file must stay readable and unchanged
     * while the view shows it.
     */
    public void setPhoto(File newPhoto) {
        if (Objects.equals(newPhoto, photo)) {
            return;
        }
        photo = newPhoto;
        change(() -> {
            photos.setPhoto(newPhoto);
            scene.replaceBackgrounds();
        });
    }

    /** Returns true if this device can decode the image file. Any thread can call this method. */
    public static boolean canShow(File photo) { return Photos.canDecode(photo); }

    /** Plays a gesture script. Throws HostException at the first invalid line. */
    public void play(String script, String name) {
        GestureScript.parse(script, name, 1, 1);
        change(
            () -> gesture.play(GestureScript.parse(script, name, scene.width(), scene.height())));
    }

    @Override
    public void onPause() {
        isResumed = false;
        queueEvent(() -> {
            gesture.stop();
            scene.releaseFinger();
        });
        super.onPause();
    }

    @Override
    public void onResume() {
        // Make this view the active one first, because the GL thread draws nothing while another
        // view is active.
        renderer.activate();
        super.onResume();
        isResumed = true;
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

    /**
     * Makes a ripple in the middle of the water. A double tap in a screen reader calls this method.
     */
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
        // Android calls onSurfaceCreated for each new context, also after the previous context was
        // lost. Android does not call it if only the surface is new.
        renderer.contextCreated();
    }

    @Override
    public void onSurfaceChanged(GL10 unused, int width, int height) {
        scene.resize(width, height);
        scene.wake();
    }

    @Override
    public void onDrawFrame(GL10 unused) {
        boolean isDrawn = renderer.drawFrame(scene, frameTime);
        if (isDrawn) {
            gesture.frameDrawn();
        } else {
            // The system shows the current buffer even if nothing was drawn. The content of this
            // buffer is undefined, so clear it.
            GLES20.glClear(GLES20.GL_COLOR_BUFFER_BIT);
        }
        // If another view is active, isDrawn is false. This view then stays idle until it is
        // resumed.
        needsFrame = isDrawn && (scene.needsFrame() || gesture.plays());
        post(this::waitForVsync);
    }

    /**
     * Asks a faster display to run at 60 frames per second. If the display refuses, FramePacer
     * skips some of the display's frames.
     */
    static void askForSixtyFrames(Surface surface) {
        if (Build.VERSION.SDK_INT >= Build.VERSION_CODES.R && surface.isValid()) {
            surface.setFrameRate(60.0f, Surface.FRAME_RATE_COMPATIBILITY_DEFAULT);
        }
    }

    /**
     * Runs a task that changes the scene on the GL thread, then draws. Any thread can call this
     * method.
     */
    private void change(Runnable change) {
        queueEvent(() -> {
            change.run();
            needsFrame = true;
            post(this::waitForVsync);
        });
    }

    private void touch(int action, float x, float y, float pressure) {
        gesture.stop();
        scene.touch(action, x, y, TouchTranslator.pressure(pressure, scene.settings()));
    }

    private void waitForVsync() {
        if (needsFrame && isResumed && !waitsForVsync) {
            waitsForVsync = true;
            Choreographer.getInstance().postFrameCallback(vsync);
        }
    }

    /**
     * Requests that the GL thread draws. Runs on the UI thread, at each frame of the display while
     * the effect moves.
     */
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
}
