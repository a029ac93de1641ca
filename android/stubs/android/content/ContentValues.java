package android.content;

public final class ContentValues {
    public ContentValues() {}
}
