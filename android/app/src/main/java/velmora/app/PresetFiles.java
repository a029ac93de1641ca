package velmora.app;

import android.content.res.AssetManager;
import android.content.res.Resources;
import android.graphics.BitmapFactory;
import android.graphics.drawable.BitmapDrawable;
import android.graphics.drawable.Drawable;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.InputStream;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.Collections;
import java.util.List;
import velmora.host.Preset;
import velmora.host.Settings;
import velmora.host.SettingsStore;

/** Reads the shipped presets. A preset is a JSON file with a thumbnail of the same name. */
final class PresetFiles {
    /** Folder of the presets among the assets of the APK. */
    private static final String FOLDER = "velmora";

    private static final String SUFFIX = ".json";

    private final AssetManager assets;

    PresetFiles(AssetManager assets) { this.assets = assets; }

    /** Returns the names of all presets in alphabetical order. */
    List<String> names() throws IOException {
        List<String> names = new ArrayList<>();
        for (String file : assets.list(FOLDER)) {
            if (file.endsWith(SUFFIX)) {
                names.add(file.substring(0, file.length() - SUFFIX.length()));
            }
        }
        Collections.sort(names);
        return names;
    }

    /** Returns the name of a preset as the user sees it. */
    static String label(String name) { return name.replace('_', ' '); }

    Settings load(String name) throws IOException {
        return Preset.parse(read(name + SUFFIX), name);
    }

    /** Returns the text of an asset. */
    String read(String file) throws IOException {
        try (InputStream in = open(file)) {
            ByteArrayOutputStream bytes = new ByteArrayOutputStream();
            SettingsStore.copy(in, bytes);
            return new String(bytes.toByteArray(), StandardCharsets.UTF_8);
        }
    }

    /** Returns the thumbnail of a preset as a square of `side` pixels. */
    Drawable thumbnail(String name, int side, Resources resources) throws IOException {
        try (InputStream in = open(name + ".jpg")) {
            Drawable thumbnail = new BitmapDrawable(resources, BitmapFactory.decodeStream(in));
            thumbnail.setBounds(0, 0, side, side);
            return thumbnail;
        }
    }

    private InputStream open(String file) throws IOException {
        return assets.open(FOLDER + "/" + file);
    }
}
