package velmora.host;

/**
 * An error whose message the user can understand. The message is one line that names the invalid
 * input and the expected form.
 */
public final class HostException extends RuntimeException {
    private static final long serialVersionUID = 1;

    public HostException(String message) { super(message); }
}
