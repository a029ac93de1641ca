#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <string>

struct Ended {
    int exitCode;
    /// Text of both output streams, including the JVM's warnings.
    std::string output;
};

/// Runs a Java program from the build folder. The JVM checks each JNI call (-Xcheck:jni).
inline Ended runJava(const std::string& arguments) {
    const std::string command =
        "LD_LIBRARY_PATH=" LIBRARIES " " JAVA " -Xcheck:jni " + arguments + " 2>&1";
    std::FILE* const pipe = popen(command.c_str(), "r");
    Ended ended{};
    for (int letter; (letter = std::fgetc(pipe)) != EOF;) {
        ended.output += static_cast<char>(letter);
    }
    ended.exitCode = WEXITSTATUS(pclose(pipe));
    return ended;
}
