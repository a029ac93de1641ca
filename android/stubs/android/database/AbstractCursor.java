package android.database;

public abstract class AbstractCursor implements Cursor {
    public AbstractCursor() {}
}
