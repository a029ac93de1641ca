package javahost;

import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.function.Consumer;

/**
 * A gesture script for a screen of a given size: what a finger does in which frame. Its text is
 * described by hostkit/gesture_script.h.
 */
final class GestureScript {
    /** Frames count from 0 and never go down. */
    record Event(int frame, Consumer<EffectHost> action) {}

    private static final int LARGEST_NUMBER = 1_000_000;
    private static final int FRAMES_AFTER_LAST_EVENT = 60;

    private final List<Event> events = new ArrayList<>();
    private final int width;
    private final int height;
    private int scriptWidth = 1080;
    private int scriptHeight = 1920;

    /** 0 while the text has not said it. */
    private int frames;

    private GestureScript(int width, int height) {
        this.width = width;
        this.height = height;
    }

    /** Throws HostException "FILE:LINE: expected ..." at the first line that is no gesture. */
    static GestureScript load(Path file, int width, int height) {
        GestureScript script = new GestureScript(width, height);
        List<String> lines = readLines(file);
        for (int number = 1; number <= lines.size(); ++number) {
            try {
                script.readLine(new Words(lines.get(number - 1).replaceFirst("#.*", "")));
            } catch (HostException error) {
                throw new HostException(file + ":" + number + ": " + error.getMessage());
            }
        }
        return script;
    }

    int frames() { return frames > 0 ? frames : lastEventFrame() + FRAMES_AFTER_LAST_EVENT; }

    void applyFrame(int frame, EffectHost host) {
        events.stream().filter(e -> e.frame == frame).forEach(e -> e.action.accept(host));
    }

    private static List<String> readLines(Path file) {
        try {
            String byteOrderMark = "\uFEFF";
            return Files.readString(file).replaceFirst("^" + byteOrderMark, "").lines().toList();
        } catch (IOException error) {
            throw new HostException(file + ": cannot be read as a gesture script");
        }
    }

    private int lastEventFrame() {
        return events.isEmpty() ? 0 : events.get(events.size() - 1).frame;
    }

    private void readLine(Words words) {
        if (words.atEnd()) {
            return;
        }
        switch (words.peek()) {
            case "screen" -> {
                beginHeader(words);
                scriptWidth = words.integer(1, LARGEST_NUMBER, "a width in pixels");
                scriptHeight = words.integer(1, LARGEST_NUMBER, "a height in pixels");
            }
            case "frames" -> {
                beginHeader(words);
                frames = words.integer(1, LARGEST_NUMBER, "a number of frames, at least 1");
            }
            default -> {
                int earliest = lastEventFrame();
                String what = "a frame number, " + earliest + " or later";
                int frame = words.integer(earliest, LARGEST_NUMBER, what);
                events.add(new Event(frame, readAction(words)));
            }
        }
        words.end();
    }

    private void beginHeader(Words words) {
        String name = words.next();
        if (!events.isEmpty()) {
            throw Words.unexpected("an event: headers come before the first event", name);
        }
    }

    private Consumer<EffectHost> readAction(Words words) {
        String name = words.next();
        return switch (name) {
            case "down" -> readTouch(NativeForVelmora.ACTION_DOWN, words);
            case "move" -> readTouch(NativeForVelmora.ACTION_MOVE, words);
            case "up" -> readTouch(NativeForVelmora.ACTION_UP, words);
            case "cancel" -> readTouch(NativeForVelmora.ACTION_CANCEL, words);
            case "ink" -> readInk(words);
            case "second" -> readSecondBackground(words);
            case "clear" -> EffectHost::clearInk;
            case "lose-context" -> EffectHost::loseContext;
            default -> {
                String actions = "down, move, up, cancel, ink, second, clear or lose-context";
                throw Words.unexpected(actions, name);
            }
        };
    }

    private Consumer<EffectHost> readTouch(int action, Words words) {
        double x = position(words, "x") * ((double) width / scriptWidth);
        double y = position(words, "y") * ((double) height / scriptHeight);
        float pressure = words.number(Float::valueOf, 0.0f, 1e6f, "a pressure of 0 or more");
        return host -> host.touch(action, x, y, pressure);
    }

    private static double position(Words words, String axis) {
        double most = LARGEST_NUMBER;
        return words.number(Double::valueOf, -most, most, axis + " in pixels");
    }

    private static Consumer<EffectHost> readInk(Words words) {
        float red = words.number(Float::valueOf, 0.0f, 1.0f, "red from 0 to 1");
        float green = words.number(Float::valueOf, 0.0f, 1.0f, "green from 0 to 1");
        float blue = words.number(Float::valueOf, 0.0f, 1.0f, "blue from 0 to 1");
        return host -> host.setInk(red, green, blue);
    }

    private static Consumer<EffectHost> readSecondBackground(Words words) {
        String name = words.next();
        if (!name.equals("on") && !name.equals("off")) {
            throw Words.unexpected("on or off", name);
        }
        boolean on = name.equals("on");
        return host -> host.showSecondBackground(on);
    }
}
