package velmora.host;

/**
 * Arguments of onDrawFrame that determine the look of the water, and the strengths of the ripples
 * of a touch.
 */
public final class EffectSettings {
    /** Refractive index: 1 means no refraction, 1.33 is the index of water. */
    public float refractiveIndex = 1.33f;

    /** Strength of the reflection on waves. The library multiplies it by alphaRatio1Scale. */
    public float alpha = 1.0f;

    public float alphaRatio1Scale = 0.1f;

    /** Has no effect. */
    public float alphaRatio2Scale = 1.0f;

    /**
     * Strength of the extra reflection on slopes that face the light. The light is at the lower
     * right.
     */
    public float fresnelRatio = 0.8f;

    /** Brightness factor of the reflection at the peak of the highlight. */
    public float specularRatio = 3.0f;

    /** Sharpness of the highlight: 1 gives a broad highlight, 24 a narrow one. */
    public float exponent = 24.0f;

    /** Ink colour, each channel from 0 to 1. */
    public float inkRed = 0.3f;

    public float inkGreen = 0.7f;
    public float inkBlue = 1.0f;

    public boolean useSecondBackground;

    /** Strength of the ripple of a touch-down event. */
    public float downRipple = 2.4f;

    /** Strength of each ripple of a finger movement. */
    public float moveRipple = 0.4f;
}
