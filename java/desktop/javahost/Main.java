package javahost;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import velmora.host.GestureScript;
import velmora.host.HostException;

/** Plays a gesture script on a JVM and saves every N-th frame as a PNG file (option --every N). */
final class Main {
    private Main() {}

    public static void main(String[] arguments) {
        try {
            play(Options.parse(arguments));
        } catch (HostException | UnsatisfiedLinkError error) {
            fail(error.getMessage());
        } catch (IOException error) {
            fail("cannot write the images of the frames to the folder --out: " + error);
        }
    }

    private static void fail(String line) {
        System.err.println(line);
        System.exit(2);
    }

    private static void play(Options options) throws IOException {
        GestureScript script = readScript(options);
        int frames = options.frames() > 0 ? options.frames() : script.frames();
        Files.createDirectories(options.out());
        try (EffectHost host = newHost(options)) {
            for (int frame = 0; frame < frames; ++frame) {
                host.apply(script, frame);
                host.frame();
                if ((frame + 1) % options.every() == 0) {
                    host.screenshot().writePng(options.out().resolve(nameOf(frame + 1)));
                }
            }
            String ink = host.inkShown() ? "ink shown" : "no ink shown";
            System.out.println(frames + " frames played, " + ink + ": " + options.out());
        }
    }

    private static GestureScript readScript(Options options) {
        Path file = options.script();
        try {
            return GestureScript.parse(
                Files.readString(file), file.toString(), options.width(), options.height());
        } catch (IOException error) {
            throw new HostException(
                file + ": cannot read the gesture script; check the path and the permissions");
        }
    }

    private static EffectHost newHost(Options options) {
        RgbaImage background = options.background() == null
            ? RgbaImage.testImage(options.width(), options.height())
            : Photograph.read(options.background(), options.width(), options.height());
        return new EffectHost(options.width(), options.height(), background);
    }

    private static String nameOf(int framesPlayed) {
        return String.format("frame-%04d.png", framesPlayed);
    }
}
