package javahost;

import java.nio.file.Path;
import java.util.Arrays;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import velmora.host.HostException;

/**
 * Command-line options. If `background` is null, the host draws the test image. If `frames` is 0,
 * the script sets the number of frames.
 */
record Options(
    Path script, Path background, Path out, int width, int height, int frames, int every) {
    private static final String USAGE =
        "usage: --script FILE --out FOLDER [--background FILE] [--size WxH] [--frames N]"
        + " [--every N]";
    private static final List<String> NAMES =
        List.of("--script", "--out", "--background", "--size", "--frames", "--every");
    private static final Pattern SIZE = Pattern.compile("(\\d{2,4})x(\\d{2,4})");
    private static final Pattern COUNT = Pattern.compile("[1-9]\\d{0,5}");

    static Options parse(String[] arguments) {
        Map<String, String> given = new HashMap<>();
        for (int at = 0; at < arguments.length; at += 2) {
            if (!NAMES.contains(arguments[at]) || at + 1 == arguments.length) {
                throw new HostException(USAGE);
            }
            given.put(arguments[at], arguments[at + 1]);
        }
        if (!given.keySet().containsAll(List.of("--script", "--out"))) {
            throw new HostException(USAGE);
        }
        int[] size = size(given.getOrDefault("--size", "1080x1920"));
        return new Options(Path.of(given.get("--script")),
            given.containsKey("--background") ? Path.of(given.get("--background")) : null,
            Path.of(given.get("--out")), size[0], size[1],
            given.containsKey("--frames") ? count(given.get("--frames")) : 0,
            count(given.getOrDefault("--every", "30")));
    }

    private static int[] size(String text) {
        Matcher matcher = SIZE.matcher(text);
        int[] sides = matcher.matches() ? sides(matcher) : new int[0];
        if (sides.length == 0 || Arrays.stream(sides).anyMatch(s -> s < 16 || s > 4096)) {
            throw new HostException(
                "--size: expected WIDTHxHEIGHT, each from 16 to 4096 pixels, not " + text);
        }
        return sides;
    }

    private static int[] sides(Matcher matcher) {
        return new int[] {Integer.parseInt(matcher.group(1)), Integer.parseInt(matcher.group(2))};
    }

    private static int count(String text) {
        if (!COUNT.matcher(text).matches()) {
            throw new HostException(
                "--frames and --every: expected a number from 1 to 999999, not " + text);
        }
        return Integer.parseInt(text);
    }
}
