package velmora.app;

import android.app.Activity;
import android.app.WallpaperManager;
import android.content.ActivityNotFoundException;
import android.content.ClipData;
import android.content.ComponentName;
import android.content.Intent;
import android.graphics.Bitmap;
import android.graphics.Insets;
import android.net.Uri;
import android.os.Build;
import android.os.Bundle;
import android.os.Handler;
import android.os.Looper;
import android.provider.MediaStore;
import android.view.LayoutInflater;
import android.view.PixelCopy;
import android.view.View;
import android.view.ViewGroup;
import android.view.WindowInsets;
import android.widget.Button;
import android.widget.Toast;
import java.io.File;
import java.io.FileNotFoundException;
import java.io.FileOutputStream;
import java.io.IOException;
import java.io.InputStream;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import velmora.android.VelmoraView;
import velmora.android.VelmoraWallpaperService;
import velmora.host.Settings;
import velmora.host.SettingsStore;

/**
 * Shows a photo under water and offers the shipped presets. A SettingsStore keeps the photo and the
 * preset. Both therefore survive a rotation and the end of the process, and the wallpaper can read
 * both.
 */
public final class MainActivity extends Activity {
    private static final int PHOTO_REQUEST = 1;
    private static final int THUMBNAIL_DP = 64;

    /**
     * The activity that shows a photo after it has been copied: the activity that was started last,
     * or null. Several activities can exist. A rotation replaces the activity while a photo is
     * still being copied, and the settings button in the wallpaper's preview starts another
     * activity.
     */
    private static MainActivity current;

    private final ExecutorService background = Executors.newSingleThreadExecutor();
    private SettingsStore store;
    private PresetFiles presets;
    private VelmoraView water;
    private ViewGroup presetButtons;

    @Override
    protected void onCreate(Bundle savedState) {
        super.onCreate(savedState);
        setContentView(R.layout.main);
        store = VelmoraWallpaperService.settingsStore(this);
        presets = new PresetFiles(getAssets());
        water = findViewById(R.id.water);
        presetButtons = findViewById(R.id.presets);
        drawEdgeToEdge(findViewById(R.id.panel));
        findViewById(R.id.choose_photo).setOnClickListener(view -> choosePhoto());
        findViewById(R.id.set_wallpaper).setOnClickListener(view -> setWallpaper());
        findViewById(R.id.share_screenshot).setOnClickListener(view -> shareScreenshot());
        findViewById(R.id.demo).setOnClickListener(view -> playDemo());
        addPresetButtons();
    }

    @Override
    protected void onStart() {
        super.onStart();
        current = this;
        water.setSettings(store.settings());
        water.setPhoto(store.photo());
        markPreset(store.presetName());
    }

    @Override
    protected void onResume() {
        super.onResume();
        water.onResume();
    }

    @Override
    protected void onPause() {
        water.onPause();
        super.onPause();
    }

    @Override
    protected void onDestroy() {
        background.shutdown();
        current = current == this ? null : current;
        super.onDestroy();
    }

    @Override
    protected void onActivityResult(int request, int result, Intent data) {
        super.onActivityResult(request, result, data);
        if (request == PHOTO_REQUEST && result == RESULT_OK && data != null
            && data.getData() != null) {
            Uri photo = data.getData();
            background.execute(() -> copyPhoto(photo));
        }
    }

    /**
     * Draws the water behind the system bars too, and keeps the controls outside the system bars.
     */
    private void drawEdgeToEdge(View panel) {
        layOutBelowBars();
        panel.setOnApplyWindowInsetsListener((view, insets) -> {
            if (Build.VERSION.SDK_INT >= Build.VERSION_CODES.R) {
                Insets bars = insets.getInsets(
                    WindowInsets.Type.systemBars() | WindowInsets.Type.displayCutout());
                view.setPadding(bars.left, 0, bars.right, bars.bottom);
            } else {
                padByOldInsets(view, insets);
            }
            return insets;
        });
    }

    /**
     * Requests a layout that extends behind the system bars. Android 15 uses this layout by
     * default.
     */
    @SuppressWarnings("deprecation")
    private void layOutBelowBars() {
        if (Build.VERSION.SDK_INT >= Build.VERSION_CODES.R) {
            getWindow().setDecorFitsSystemWindows(false);
            return;
        }
        getWindow().getDecorView().setSystemUiVisibility(View.SYSTEM_UI_FLAG_LAYOUT_STABLE
            | View.SYSTEM_UI_FLAG_LAYOUT_FULLSCREEN | View.SYSTEM_UI_FLAG_LAYOUT_HIDE_NAVIGATION);
    }

    @SuppressWarnings("deprecation")
    private static void padByOldInsets(View view, WindowInsets insets) {
        view.setPadding(insets.getSystemWindowInsetLeft(), 0, insets.getSystemWindowInsetRight(),
            insets.getSystemWindowInsetBottom());
    }

    private void addPresetButtons() {
        int side = Math.round(THUMBNAIL_DP * getResources().getDisplayMetrics().density);
        try {
            for (String name : presets.names()) {
                Button button = (Button) LayoutInflater.from(this).inflate(
                    R.layout.preset, presetButtons, false);
                button.setText(PresetFiles.label(name));
                button.setTag(name);
                button.setCompoundDrawables(
                    null, presets.thumbnail(name, side, getResources()), null, null);
                button.setOnClickListener(view -> choosePreset(name));
                presetButtons.addView(button);
            }
        } catch (IOException error) {
            throw new IllegalStateException(
                "cannot read the presets of the APK; build the app again", error);
        }
    }

    private void choosePreset(String name) {
        try {
            Settings settings = presets.load(name);
            water.setSettings(settings);
            markPreset(name);
            store.savePreset(name, settings);
        } catch (IOException error) {
            showToast(R.string.preset_not_saved);
        }
    }

    private void markPreset(String chosen) {
        for (int at = 0; at < presetButtons.getChildCount(); ++at) {
            View button = presetButtons.getChildAt(at);
            String name = (String) button.getTag();
            boolean isChosen = name.equals(chosen);
            button.setActivated(isChosen);
            button.setAlpha(isChosen ? 1.0f : 0.7f);
            button.setContentDescription(getString(
                isChosen ? R.string.chosen_preset_description : R.string.preset_description,
                PresetFiles.label(name)));
        }
    }

    /**
     * Opens the system's photo picker, or the document picker if the device has no photo picker.
     */
    private void choosePhoto() {
        try {
            choosePhoto(new Intent(MediaStore.ACTION_PICK_IMAGES));
        } catch (ActivityNotFoundException noPicker) {
            try {
                choosePhoto(
                    new Intent(Intent.ACTION_OPEN_DOCUMENT).addCategory(Intent.CATEGORY_OPENABLE));
            } catch (ActivityNotFoundException noDocuments) {
                showToast(R.string.no_photo_app);
            }
        }
    }

    private void choosePhoto(Intent choose) {
        startActivityForResult(choose.setType("image/*"), PHOTO_REQUEST);
    }

    /** Copies a photo into the store and shows the copy. Runs on the background thread. */
    private void copyPhoto(Uri photo) {
        try (InputStream in = getContentResolver().openInputStream(photo)) {
            if (in == null) {
                throw new FileNotFoundException(photo.toString());
            }
            File copy = store.savePhoto(in, VelmoraView::canShow);
            runOnUiThread(() -> {
                if (current != null) {
                    current.water.setPhoto(copy);
                }
            });
        } catch (IOException | RuntimeException error) {
            // The photo comes from a content provider of another app, which can throw any
            // exception.
            runOnUiThread(() -> showToast(R.string.photo_unreadable));
        }
    }

    private void setWallpaper() {
        Intent change = new Intent(WallpaperManager.ACTION_CHANGE_LIVE_WALLPAPER);
        change.putExtra(WallpaperManager.EXTRA_LIVE_WALLPAPER_COMPONENT,
            new ComponentName(this, VelmoraWallpaperService.class));
        try {
            startActivity(change);
        } catch (ActivityNotFoundException missing) {
            showToast(R.string.no_wallpaper_app);
        }
    }

    private void shareScreenshot() {
        if (water.getWidth() == 0 || !water.getHolder().getSurface().isValid()) {
            showToast(R.string.screenshot_failed);
            return;
        }
        Bitmap screenshot =
            Bitmap.createBitmap(water.getWidth(), water.getHeight(), Bitmap.Config.ARGB_8888);
        PixelCopy.request(water, screenshot, result -> {
            if (result == PixelCopy.SUCCESS && !background.isShutdown()) {
                background.execute(() -> writeScreenshot(screenshot));
            } else {
                showToast(R.string.screenshot_failed);
            }
        }, new Handler(Looper.getMainLooper()));
    }

    /** Saves a screenshot and offers it for sharing. Runs on the background thread. */
    private void writeScreenshot(Bitmap screenshot) {
        File file = ScreenshotProvider.newFile(this);
        try (FileOutputStream out = new FileOutputStream(file)) {
            screenshot.compress(Bitmap.CompressFormat.PNG, 100, out);
            runOnUiThread(() -> offerScreenshot(ScreenshotProvider.uri(this, file)));
        } catch (IOException error) {
            runOnUiThread(() -> showToast(R.string.screenshot_failed));
        }
    }

    private void offerScreenshot(Uri screenshot) {
        Intent send = new Intent(Intent.ACTION_SEND).setType("image/png");
        send.putExtra(Intent.EXTRA_STREAM, screenshot);
        send.setClipData(ClipData.newRawUri(null, screenshot));
        send.addFlags(Intent.FLAG_GRANT_READ_URI_PERMISSION);
        startActivity(Intent.createChooser(send, getString(R.string.share_screenshot_description)));
    }

    private void playDemo() {
        try {
            water.play(presets.read("showcase.gesture"), "showcase");
        } catch (IOException error) {
            throw new IllegalStateException(
                "cannot read the gestures of the APK; build the app again", error);
        }
    }

    private void showToast(int text) { Toast.makeText(this, text, Toast.LENGTH_LONG).show(); }
}
