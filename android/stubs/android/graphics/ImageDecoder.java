package android.graphics;

import android.util.Size;
import java.io.File;
import java.io.IOException;

public final class ImageDecoder implements AutoCloseable {
    public static final int ALLOCATOR_SOFTWARE = 1;
    public static Source createSource(File file) { throw new UnsupportedOperationException(); }
    public static Bitmap decodeBitmap(Source src, OnHeaderDecodedListener listener)
        throws IOException {
        throw new UnsupportedOperationException();
    }
    public void setAllocator(int allocator) { throw new UnsupportedOperationException(); }
    public void setTargetSize(int width, int height) { throw new UnsupportedOperationException(); }
    public void close() { throw new UnsupportedOperationException(); }
    public static class ImageInfo {
        public Size getSize() { throw new UnsupportedOperationException(); }
    }
    public abstract static class Source {}
    public interface OnHeaderDecodedListener {
        void onHeaderDecoded(ImageDecoder decoder, ImageInfo info, Source source);
    }
}
