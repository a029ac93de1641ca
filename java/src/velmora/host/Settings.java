package velmora.host;

import java.util.Arrays;

/** Values of all settings, and the ink colour. */
public final class Settings {
    private static final int SLOWEST_RATE = 60;

    /** Maximum of WaterSettings.waveSpeed. Waves become unstable above 0.5. */
    private static final double MAX_WAVE_WEIGHT = 0.45;

    /** Radius of a touch's ripple, as a fraction of the screen's shorter side. */
    private static final double RIPPLE_RADIUS = 3.0 / 90.0;

    private final float[] values = new float[Setting.values().length];
    private final float[] ink;

    /** Creates settings with the default values. */
    public Settings() {
        EffectSettings effect = new EffectSettings();
        ink = new float[] {effect.inkRed, effect.inkGreen, effect.inkBlue};
        for (Setting setting : Setting.values()) {
            values[setting.ordinal()] = setting.initial;
        }
    }

    public float get(Setting setting) { return values[setting.ordinal()]; }

    /** Sets the value of a setting, clamped to its range. */
    public void set(Setting setting, float value) {
        values[setting.ordinal()] = Math.max(setting.min, Math.min(value, setting.max));
    }

    public boolean isOn(Setting setting) { return get(setting) != 0; }

    /** Returns the ink colour: red, green and blue, each from 0 to 1. */
    public float[] ink() { return ink.clone(); }

    public void setInk(float red, float green, float blue) {
        ink[0] = red;
        ink[1] = green;
        ink[2] = blue;
    }

    /** Sets all fields of `effect` that depend on these settings, including the ink colour. */
    void applyTo(EffectSettings effect) {
        EffectSettings defaults = new EffectSettings();
        effect.refractiveIndex = get(Setting.REFRACTIVE_INDEX);
        effect.alphaRatio1Scale = get(Setting.REFLECTION);
        effect.fresnelRatio = get(Setting.FRESNEL);
        effect.specularRatio = get(Setting.SPECULAR);
        effect.exponent = get(Setting.EXPONENT);
        effect.downRipple = get(Setting.RIPPLE);
        effect.moveRipple = get(Setting.RIPPLE) * (defaults.moveRipple / defaults.downRipple);
        effect.inkRed = ink[0];
        effect.inkGreen = ink[1];
        effect.inkBlue = ink[2];
        effect.useSecondBackground = isOn(Setting.SECOND_BACKGROUND);
    }

    /**
     * Returns water settings that give waves the speed and damping of these settings. A fine grid
     * with fast waves needs more simulation steps per second.
     */
    WaterSettings water() {
        int cells = (int) get(Setting.MESH_DETAIL);
        double cellsPerSecond = (double) get(Setting.WAVE_SPEED) * cells;
        int rate = SLOWEST_RATE;
        while (waveWeight(cellsPerSecond, rate) > MAX_WAVE_WEIGHT) {
            rate += SLOWEST_RATE;
        }
        float damping = (float) Math.pow(get(Setting.DAMPING), 60.0f / rate);
        return new WaterSettings(
            cells, damping, (float) waveWeight(cellsPerSecond, rate), rate, RIPPLE_RADIUS * cells);
    }

    private static double waveWeight(double cellsPerSecond, int rate) {
        return Math.pow(cellsPerSecond / rate, 2.0);
    }

    @Override
    public boolean equals(Object other) {
        return other instanceof Settings && Arrays.equals(values, ((Settings) other).values)
            && Arrays.equals(ink, ((Settings) other).ink);
    }

    @Override
    public int hashCode() {
        return 31 * Arrays.hashCode(values) + Arrays.hashCode(ink);
    }
}
