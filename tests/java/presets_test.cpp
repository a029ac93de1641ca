// Tests that the Java host draws the same frames for a preset as the player does.

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "app/settings.h"
#include "hostkit/image.h"
#include "tests/java/run_java.h"

namespace {

namespace fs = std::filesystem;

/// Minimum, maximum and default of each setting. The keys are the names of the settings.
using Table = std::map<std::string, std::vector<float>>;

TEST(Settings, HaveTheSameRangesAndDefaultsInJava) {
    Table expected;
    app::forEachField([&](const auto& field) {
        expected[field.name] = {static_cast<float>(field.min), static_cast<float>(field.max),
                                static_cast<float>(app::Settings{}.*field.member)};
    });
    Table seen;
    std::istringstream lines(runJava("-cp " HOST_JAR ":" TEST_JAR ":" JSON_JAR
                                     " javahost.LifecycleCases table " STROKE_GESTURE)
                                 .output);
    std::string name;
    for (float min = 0, max = 0, initial = 0; lines >> name >> min >> max >> initial;) {
        seen[name] = {min, max, initial};
    }
    EXPECT_EQ(seen, expected);
}

TEST(Presets, DrawTheSameFramesAsInThePlayer) {
    const fs::path folder = fs::current_path() / "java-presets";
    fs::create_directories(folder);
    const std::string picture = (folder / "picture.png").string();
    hostkit::Image board = hostkit::makeTestImage(180, 320);
    GdkPixbuf* const image = gdk_pixbuf_new_from_data(board.rgba.data(), GDK_COLORSPACE_RGB, TRUE,
                                                      8, 180, 320, 4 * 180, nullptr, nullptr);
    gdk_pixbuf_save(image, picture.c_str(), "png", nullptr, nullptr);
    g_object_unref(image);
    std::string pairs;
    for (const fs::directory_entry& entry : fs::directory_iterator(PRESETS)) {
        if (entry.path().extension() == ".json") {
            const fs::path still = folder / entry.path().stem() / "frame-12.png";
            pairs.append(" ").append(entry.path().string()).append(" ").append(still.string());
        }
    }
    // These two presets cover many settings: "storm" has rain, "glass" has wide ripples, and both have fine meshes and
    // more than 60 steps per second.
    for (const char* const name : {"storm", "glass"}) {
        std::string command = PLAYER " --headless --size 180x320 --script " STROKE_GESTURE " ";
        command.append(picture)
            .append(" --preset " PRESETS "/")
            .append(name)
            .append(".json --out ");
        command.append((folder / name).string()).append(" >/dev/null 2>&1");
        ASSERT_EQ(std::system(command.c_str()), 0);
        const Ended java = runJava("-cp " HOST_JAR ":" TEST_JAR ":" JSON_JAR
                                   " javahost.LifecycleCases presets " STROKE_GESTURE +
                                   pairs);
        EXPECT_EQ(java.output, "true\n") << name;
        fs::remove_all(folder / name);
    }
    fs::remove_all(folder);
}

}  // namespace
