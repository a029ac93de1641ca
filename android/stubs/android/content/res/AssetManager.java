package android.content.res;

import java.io.IOException;
import java.io.InputStream;

public final class AssetManager {
    public String[] list(String path) throws IOException {
        throw new UnsupportedOperationException();
    }
    public InputStream open(String fileName) throws IOException {
        throw new UnsupportedOperationException();
    }
}
