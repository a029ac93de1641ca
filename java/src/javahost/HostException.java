package javahost;

/** What went wrong, in one line that a user can read as it stands. */
final class HostException extends RuntimeException {
    private static final long serialVersionUID = 1;

    HostException(String message) { super(message); }
}
