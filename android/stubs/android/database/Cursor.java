package android.database;

public interface Cursor {}
