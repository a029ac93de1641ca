package velmora.app;

import android.content.ContentProvider;
import android.content.ContentValues;
import android.content.Context;
import android.database.Cursor;
import android.database.MatrixCursor;
import android.net.Uri;
import android.os.ParcelFileDescriptor;
import android.provider.OpenableColumns;
import java.io.File;
import java.io.FileNotFoundException;

/** Hands stills to the apps with which the user shares them, and no other file. */
public final class StillProvider extends ContentProvider {
    private static final String FOLDER = "stills";

    /**
     * Returns a file for a new still. Each still has a name of its own, since the receiving app can
     * read it much later. The system empties the cache that holds them.
     */
    static File newFile(Context context) {
        File folder = folder(context);
        folder.mkdirs();
        return new File(folder, "velmora-" + System.currentTimeMillis() + ".png");
    }

    static Uri uri(Context context, File still) {
        return Uri.parse("content://" + context.getPackageName() + ".stills/" + still.getName());
    }

    private static File folder(Context context) { return new File(context.getCacheDir(), FOLDER); }

    /** Returns the still of an address. Only the last segment counts, so no other file is reached. */
    private File still(Uri uri) {
        return new File(folder(getContext()), new File(uri.getPath()).getName());
    }

    @Override
    public boolean onCreate() {
        return true;
    }

    @Override
    public String getType(Uri uri) {
        return "image/png";
    }

    @Override
    public ParcelFileDescriptor openFile(Uri uri, String mode) throws FileNotFoundException {
        return ParcelFileDescriptor.open(still(uri), ParcelFileDescriptor.MODE_READ_ONLY);
    }

    @Override
    public Cursor query(
        Uri uri, String[] columns, String selection, String[] arguments, String order) {
        File still = still(uri);
        String[] asked = columns == null
            ? new String[] {OpenableColumns.DISPLAY_NAME, OpenableColumns.SIZE}
            : columns;
        Object[] row = new Object[asked.length];
        for (int at = 0; at < asked.length; ++at) {
            if (OpenableColumns.DISPLAY_NAME.equals(asked[at])) {
                row[at] = still.getName();
            } else if (OpenableColumns.SIZE.equals(asked[at])) {
                row[at] = still.length();
            }
        }
        MatrixCursor answer = new MatrixCursor(asked);
        answer.addRow(row);
        return answer;
    }

    @Override
    public Uri insert(Uri uri, ContentValues values) {
        throw new UnsupportedOperationException("stills are read only");
    }

    @Override
    public int update(Uri uri, ContentValues values, String selection, String[] arguments) {
        throw new UnsupportedOperationException("stills are read only");
    }

    @Override
    public int delete(Uri uri, String selection, String[] arguments) {
        throw new UnsupportedOperationException("stills are read only");
    }
}
