package velmora.host;

import java.util.Iterator;
import org.json.JSONArray;
import org.json.JSONException;
import org.json.JSONObject;

/**
 * Converts settings to and from JSON with one member per setting. Missing members have their
 * default values.
 */
public final class Preset {
    private static final String INK = "ink";

    private Preset() {}

    /**
     * Parses a preset. If it is invalid, throws a HostException that names the preset and the
     * member.
     */
    public static Settings parse(String text, String presetName) {
        Settings settings = new Settings();
        try {
            JSONObject json = new JSONObject(text);
            for (Iterator<?> names = json.keys(); names.hasNext();) {
                String name = (String) names.next();
                readMember(name, json.get(name), settings, presetName);
            }
        } catch (JSONException error) {
            throw new HostException(presetName + ": expected a JSON object: " + error.getMessage());
        }
        return settings;
    }

    /** Returns the settings as JSON text. `parse` converts the text back to equal settings. */
    public static String write(Settings settings) {
        try {
            JSONObject json = new JSONObject();
            for (Setting setting : Setting.values()) {
                if (setting.kind == Setting.Kind.SWITCH) {
                    json.put(setting.member, settings.isOn(setting));
                } else if (setting.kind == Setting.Kind.WHOLE_NUMBER) {
                    json.put(setting.member, (int) settings.get(setting));
                } else {
                    json.put(setting.member, settings.get(setting));
                }
            }
            JSONArray ink = new JSONArray();
            for (float channel : settings.ink()) {
                ink.put(channel);
            }
            return json.put(INK, ink).toString();
        } catch (JSONException error) {
            throw new IllegalStateException(error);
        }
    }

    private static void readMember(String name, Object value, Settings settings, String presetName)
        throws JSONException {
        if (name.equals(INK)) {
            readInk(value, settings, presetName);
            return;
        }
        for (Setting setting : Setting.values()) {
            if (setting.member.equals(name)) {
                settings.set(setting, read(setting, value, presetName));
                return;
            }
        }
        throw new HostException(
            presetName + ": there is no setting \"" + name + "\"; check the spelling");
    }

    private static float read(Setting setting, Object value, String presetName) {
        if (setting.kind == Setting.Kind.SWITCH && value instanceof Boolean) {
            return (Boolean) value ? 1.0f : 0.0f;
        }
        if (setting.kind != Setting.Kind.SWITCH && value instanceof Number) {
            float number = ((Number) value).floatValue();
            boolean hasKind = setting.kind == Setting.Kind.NUMBER || value instanceof Integer;
            if (hasKind && number >= setting.min && number <= setting.max) {
                return number;
            }
        }
        throw new HostException(
            presetName + ": expected " + setting.range() + " for \"" + setting.member + '"');
    }

    private static void readInk(Object value, Settings settings, String presetName)
        throws JSONException {
        float[] ink = new float[3];
        boolean good = value instanceof JSONArray && ((JSONArray) value).length() == ink.length;
        for (int channel = 0; good && channel < ink.length; ++channel) {
            Object part = ((JSONArray) value).get(channel);
            ink[channel] = part instanceof Number ? ((Number) part).floatValue() : -1.0f;
            good = ink[channel] >= 0.0f && ink[channel] <= 1.0f;
        }
        if (!good) {
            throw new HostException(
                presetName + ": expected three numbers from 0 to 1 for \"ink\"");
        }
        settings.setInk(ink[0], ink[1], ink[2]);
    }
}
