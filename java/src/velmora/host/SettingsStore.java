package velmora.host;

import java.io.ByteArrayOutputStream;
import java.io.File;
import java.io.FileInputStream;
import java.io.FileOutputStream;
import java.io.IOException;
import java.io.InputStream;
import java.io.OutputStream;
import java.nio.charset.StandardCharsets;
import java.util.function.Predicate;
import org.json.JSONException;
import org.json.JSONObject;

/**
 * Stores the user's choices in files: the name of the preset, the settings and a copy of the photo.
 * Only one process writes to the store, on any of its threads. Other processes only read. Each file
 * is replaced as a whole, so a reader never sees an incomplete file.
 */
public final class SettingsStore {
    private static final String PRESET = "preset";
    private static final String SETTINGS = "settings";
    private static final String PHOTO = "photo";
    private static final String PHOTO_PREFIX = "photo-";

    private final File folder;

    public SettingsStore(File folder) { this.folder = folder; }

    /** Returns the name of the chosen preset, or an empty string if there is none. */
    public String presetName() { return read().optString(PRESET, ""); }

    /** Returns the chosen settings, or the default settings if there are none. */
    public Settings settings() {
        try {
            return Preset.parse(read().optString(SETTINGS, "{}"), PRESET);
        } catch (HostException damaged) {
            return new Settings();
        }
    }

    /** Returns the copy of the chosen photo, or null if there is none. */
    public File photo() {
        File photo = new File(folder, read().optString(PHOTO, "none"));
        return photo.isFile() ? photo : null;
    }

    public void savePreset(String name, Settings settings) throws IOException {
        write(PRESET, name, SETTINGS, Preset.write(settings));
    }

    /**
     * Copies a photo into the store, because the permission to read the original expires. If
     * copying fails or isPhoto rejects the copy, keeps the earlier photo and throws IOException.
     *
     * @param isPhoto returns false if the file is not a photo
     */
    public File savePhoto(InputStream photo, Predicate<File> isPhoto) throws IOException {
        makeFolder();
        File copy = File.createTempFile(PHOTO_PREFIX, "", folder);
        try {
            try (FileOutputStream out = new FileOutputStream(copy)) {
                copy(photo, out);
            }
            if (!isPhoto.test(copy)) {
                throw new IOException(
                    "expected an image that this device can decode; choose another file");
            }
            replacePhoto(copy);
        } catch (IOException | RuntimeException error) {
            copy.delete();
            throw error;
        }
        return copy;
    }

    private void replacePhoto(File copy) throws IOException {
        synchronized (SettingsStore.class) {
            File old = photo();
            write(PHOTO, copy.getName());
            if (old != null) {
                old.delete();
            }
        }
    }

    /** Copies the remaining bytes of a stream. */
    public static void copy(InputStream from, OutputStream to) throws IOException {
        byte[] buffer = new byte[1 << 16];
        for (int count; (count = from.read(buffer)) >= 0;) {
            to.write(buffer, 0, count);
        }
    }

    private JSONObject read() {
        try (InputStream in = new FileInputStream(file())) {
            ByteArrayOutputStream bytes = new ByteArrayOutputStream();
            copy(in, bytes);
            return new JSONObject(new String(bytes.toByteArray(), StandardCharsets.UTF_8));
        } catch (IOException | JSONException missing) {
            return new JSONObject();
        }
    }

    /**
     * Replaces the given members of the stored JSON object and keeps the others. Holds a lock,
     * because two threads of an activity may save at the same time.
     */
    private void write(String... membersAndValues) throws IOException {
        synchronized (SettingsStore.class) {
            makeFolder();
            JSONObject stored = read();
            try {
                for (int at = 0; at < membersAndValues.length; at += 2) {
                    stored.put(membersAndValues[at], membersAndValues[at + 1]);
                }
            } catch (JSONException error) {
                throw new IllegalStateException(error);
            }
            replaceFile(stored.toString().getBytes(StandardCharsets.UTF_8));
        }
    }

    private void replaceFile(byte[] content) throws IOException {
        File whole = File.createTempFile("settings-", "", folder);
        try {
            try (FileOutputStream out = new FileOutputStream(whole)) {
                out.write(content);
            }
            if (!whole.renameTo(file())) {
                throw new IOException("cannot replace " + file());
            }
        } catch (IOException error) {
            whole.delete();
            throw error;
        }
    }

    private void makeFolder() throws IOException {
        if (!folder.isDirectory() && !folder.mkdirs()) {
            throw new IOException("cannot make " + folder);
        }
    }

    private File file() { return new File(folder, "settings.json"); }
}
