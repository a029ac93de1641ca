package javax.microedition.khronos.opengles;

public interface GL {}
