package velmora.host;

/**
 * An error that the user can understand. Its message is one line that names the invalid input and
 * the expected form.
 */
public final class HostException extends RuntimeException {
    private static final long serialVersionUID = 1;

    public HostException(String message) { super(message); }
}
