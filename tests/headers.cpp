// Exists to compile the precompiled header.
