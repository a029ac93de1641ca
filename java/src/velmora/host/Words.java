package velmora.host;

import java.util.ArrayList;
import java.util.List;
import java.util.function.Function;
import java.util.regex.Pattern;

/** Reads the words of one line of a gesture script from left to right. */
final class Words {
    private static final Pattern BLANKS = Pattern.compile("[ \t\r]+");

    /**
     * Pattern of a valid number. Java's own parsers would also accept plus signs, suffixes and
     * names such as NaN.
     */
    private static final Pattern NUMERAL =
        Pattern.compile("-?(\\d+\\.?\\d*|\\.\\d+)([eE][+-]?\\d+)?");

    private final List<String> words = new ArrayList<>();
    private int taken;

    Words(String line) {
        for (String word : BLANKS.split(line)) {
            if (!word.isEmpty()) {
                words.add(word);
            }
        }
    }

    static HostException unexpected(String expected, String found) {
        String what = found.isEmpty() ? "the end of the line" : '"' + found + '"';
        return new HostException("expected " + expected + ", found " + what);
    }

    boolean atEnd() { return taken == words.size(); }

    /** Returns the next word, or an empty string at the end of the line. */
    String peek() { return atEnd() ? "" : words.get(taken); }

    String next() {
        String word = peek();
        taken += word.isEmpty() ? 0 : 1;
        return word;
    }

    void end() {
        if (!atEnd()) {
            throw unexpected("the end of the line", peek());
        }
    }

    int integer(int min, int max, String what) { return number(Integer::valueOf, min, max, what); }

    <N extends Comparable<N>> N number(Function<String, N> parse, N min, N max, String what) {
        String word = next();
        try {
            if (NUMERAL.matcher(word).matches()) {
                N value = parse.apply(word);
                if (value.compareTo(min) >= 0 && value.compareTo(max) <= 0) {
                    return value;
                }
            }
        } catch (NumberFormatException ignored) {
            // The word is a fraction or has too many digits. The statement below reports the error.
        }
        throw unexpected(what, word);
    }
}
