package velmora.host;

/**
 * All settings except the ink colour. Each has its name in presets, its type, its range and its
 * default value.
 */
public enum Setting {
    DAMPING("damping", Kind.NUMBER, 0.8f, 0.999f, 0.97f),
    WAVE_SPEED("waveSpeed", Kind.NUMBER, 0.05f, 1.2f, 0.365f),
    RIPPLE("ripple", Kind.NUMBER, 0.0f, 6.0f, 2.4f),
    RAIN("rain", Kind.NUMBER, 0.0f, 40.0f, 0.0f),
    TIME_SCALE("timeScale", Kind.NUMBER, 0.05f, 2.0f, 1.0f),
    REFRACTIVE_INDEX("refractiveIndex", Kind.NUMBER, 1.0f, 2.0f, 1.33f),
    REFLECTION("sheen", Kind.NUMBER, 0.0f, 1.0f, 0.06f),
    FRESNEL("fresnel", Kind.NUMBER, 0.0f, 3.0f, 0.4f),
    SPECULAR("specular", Kind.NUMBER, 1.0f, 5.5f, 3.0f),
    EXPONENT("exponent", Kind.NUMBER, 1.0f, 128.0f, 24.0f),
    PRESSURE("pressure", Kind.NUMBER, 0.0f, 1.0f, 0.5f),
    MESH_DETAIL("meshDetail", Kind.WHOLE_NUMBER, 24.0f, 180.0f, 90.0f),
    SECOND_BACKGROUND("secondBackground", Kind.SWITCH, 0.0f, 1.0f, 0.0f),
    WATER_ONLY("waterOnly", Kind.SWITCH, 0.0f, 1.0f, 0.0f);

    /** Type of the value that a preset contains for a setting. */
    enum Kind { NUMBER, WHOLE_NUMBER, SWITCH }

    /** Name of the setting in presets. */
    public final String member;

    final Kind kind;
    public final float min;
    public final float max;

    /** Default value. In a switch, 1 means on and 0 means off. */
    public final float initial;

    Setting(String member, Kind kind, float min, float max, float initial) {
        this.member = member;
        this.kind = kind;
        this.min = min;
        this.max = max;
        this.initial = initial;
    }

    /** Describes the valid values, for an error message. */
    String range() {
        if (kind == Kind.SWITCH) {
            return "true or false";
        }
        return kind == Kind.NUMBER ? "a number from " + min + " to " + max
                                   : "a whole number from " + (int) min + " to " + (int) max;
    }
}
