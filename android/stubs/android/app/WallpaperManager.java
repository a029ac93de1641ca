package android.app;

public class WallpaperManager {
    public static final String ACTION_CHANGE_LIVE_WALLPAPER =
        "android.service.wallpaper.CHANGE_LIVE_WALLPAPER";
    public static final String EXTRA_LIVE_WALLPAPER_COMPONENT =
        "android.service.wallpaper.extra.LIVE_WALLPAPER_COMPONENT";
}
