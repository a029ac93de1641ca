package android.database;

public class MatrixCursor extends AbstractCursor {
    public MatrixCursor(String[] columnNames) {}
    public void addRow(Object[] columnValues) { throw new UnsupportedOperationException(); }
}
