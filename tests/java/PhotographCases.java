package javahost;

import java.nio.file.Path;

/** Prints of each picture the colours of its quarters on a screen of 64 x 96, in reading order. */
final class PhotographCases {
    private PhotographCases() {}

    public static void main(String[] arguments) {
        for (String file : arguments) {
            Picture picture = Photograph.read(Path.of(file), 64, 96);
            System.out.println(letter(picture, 6, 6) + letter(picture, 57, 6)
                + letter(picture, 6, 89) + letter(picture, 57, 89) + " " + picture.width() + "x"
                + picture.height());
        }
    }

    private static String letter(Picture picture, int x, int y) {
        int at = 4 * (y * picture.width() + x);
        int lit = 0;
        for (int part = 0; part < 3; ++part) {
            lit = 2 * lit + ((picture.rgba()[at + part] & 0xFF) > 128 ? 1 : 0);
        }
        return "kbgcrmyw".substring(lit, lit + 1);
    }
}
