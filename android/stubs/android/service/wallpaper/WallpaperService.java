package android.service.wallpaper;

import android.app.Service;
import android.view.MotionEvent;
import android.view.SurfaceHolder;

public abstract class WallpaperService extends Service {
    public WallpaperService() {}
    public abstract Engine onCreateEngine();
    public class Engine {
        public Engine() {}
        public void onCreate(SurfaceHolder surfaceHolder) {
            throw new UnsupportedOperationException();
        }
        public void onDestroy() { throw new UnsupportedOperationException(); }
        public void onVisibilityChanged(boolean visible) {
            throw new UnsupportedOperationException();
        }
        public void onTouchEvent(MotionEvent event) { throw new UnsupportedOperationException(); }
        public void onSurfaceChanged(SurfaceHolder holder, int format, int width, int height) {
            throw new UnsupportedOperationException();
        }
        public void onSurfaceRedrawNeeded(SurfaceHolder holder) {
            throw new UnsupportedOperationException();
        }
        public void onSurfaceDestroyed(SurfaceHolder holder) {
            throw new UnsupportedOperationException();
        }
        public void setTouchEventsEnabled(boolean enabled) {
            throw new UnsupportedOperationException();
        }
        public void setOffsetNotificationsEnabled(boolean enabled) {
            throw new UnsupportedOperationException();
        }
    }
}
