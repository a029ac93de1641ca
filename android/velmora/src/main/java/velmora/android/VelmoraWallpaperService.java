package velmora.android;

import android.content.Context;
import android.service.wallpaper.WallpaperService;
import android.view.MotionEvent;
import android.view.Surface;
import android.view.SurfaceHolder;
import java.io.File;
import velmora.host.Settings;
import velmora.host.SettingsStore;
import velmora.host.TouchTranslator;

/**
 * The effect as a live wallpaper. The wallpaper shows the photo and the settings from the app's
 * store. It loads changes of the store whenever it becomes visible.
 *
 * <p>Declare a separate process for the service (android:process in the manifest). The library has
 * one state per process. In a shared process, the wallpaper and an activity's view would use this
 * state on two GL threads and in two contexts.
 */
public class VelmoraWallpaperService extends WallpaperService {
    /** Returns the store that the app's activity and the wallpaper share. */
    public static SettingsStore settingsStore(Context context) {
        return new SettingsStore(new File(context.getFilesDir(), "velmora"));
    }

    @Override
    public Engine onCreateEngine() {
        return new VelmoraEngine();
    }

    private final class VelmoraEngine extends Engine {
        private final WallpaperThread thread = WallpaperThread.get();
        private final SettingsStore store = settingsStore(VelmoraWallpaperService.this);
        private final TouchTranslator touches = new TouchTranslator();
        private final Photos photos = new Photos();
        private WallpaperThread.Window window;
        private File shownPhoto;

        @Override
        public void onCreate(SurfaceHolder holder) {
            super.onCreate(holder);
            setTouchEventsEnabled(true);
            setOffsetNotificationsEnabled(false);
            thread.post(() -> {
                window = thread.new Window(photos);
                applySettings();
            });
        }

        @Override
        public void onSurfaceChanged(SurfaceHolder holder, int format, int width, int height) {
            super.onSurfaceChanged(holder, format, width, height);
            Surface surface = holder.getSurface();
            VelmoraView.askForSixtyFrames(surface);
            thread.post(() -> window.resize(surface, width, height));
        }

        @Override
        public void onSurfaceRedrawNeeded(SurfaceHolder holder) {
            super.onSurfaceRedrawNeeded(holder);
            thread.run(() -> window.redraw());
        }

        @Override
        public void onVisibilityChanged(boolean visible) {
            thread.post(() -> {
                if (visible) {
                    applySettings();
                    window.show();
                } else {
                    window.hide();
                }
            });
        }

        @Override
        public void onTouchEvent(MotionEvent event) {
            int action = touches.translate(
                event.getActionMasked(), event.getPointerId(event.getActionIndex()));
            int pointer = event.findPointerIndex(touches.pointer());
            if (action == TouchTranslator.IGNORED || pointer < 0) {
                return;
            }
            float x = event.getX(pointer);
            float y = event.getY(pointer);
            float pressure = event.getPressure(pointer);
            thread.post(() -> {
                float felt = TouchTranslator.pressure(pressure, window.scene.settings());
                window.touch(action, x, y, felt);
            });
        }

        @Override
        public void onSurfaceDestroyed(SurfaceHolder holder) {
            // Wait until the GL thread no longer uses the surface, because the system frees the
            // surface when this method returns.
            thread.run(() -> window.removeSurface());
            super.onSurfaceDestroyed(holder);
        }

        @Override
        public void onDestroy() {
            thread.run(() -> window.close());
            super.onDestroy();
        }

        /**
         * Applies the settings and the photo if they have changed in the store. Runs on the GL
         * thread.
         */
        private void applySettings() {
            Settings settings = store.settings();
            if (!settings.equals(window.scene.settings())) {
                window.scene.setSettings(settings);
            }
            File photo = store.photo();
            if (photo != null && !photo.equals(shownPhoto)) {
                shownPhoto = photo;
                photos.setPhoto(photo);
                window.scene.replaceBackgrounds();
            }
        }
    }
}
