#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

#include "tests/robust/stage.h"

// Every GL name that the library makes, counted: through failures, second set-ups and replaced
// contexts none is left over, and none is deleted twice.

namespace robust {
namespace {

using hostkit::GlKind;

/// Reads the recorded lines of the library's calls as a ledger of names.
class Ledger {
public:
    Ledger() {
        hostkit::glRecorder().programNames.clear();
        hostkit::glRecorder().recording = true;
    }

    /// Enters what was recorded since the last time. Deleting a name that does not live is a fault.
    void enter() {
        for (const std::string& line : hostkit::glRecorder().lines()) {
            const auto result = line.rfind(" = ");
            if (line.starts_with("glDelete") && !isNull(deletedBy(line)) &&
                alive.erase(deletedBy(line)) == 0) {
                strangers.push_back(line);
            } else if (line.starts_with("glGen") || line.starts_with("glCreate")) {
                const std::string name = line.substr(result + 3);
                alive.insert(isNull(name) ? "none" : name);
            }
        }
        hostkit::glRecorder().calls.clear();
    }
    int count(const std::string& kind) const {
        return static_cast<int>(std::ranges::count_if(alive, [&](const std::string& name) {
            return name.starts_with(kind) && name.find_first_of("0123456789") == kind.size();
        }));
    }
    std::string counts() const {
        std::string text;
        for (const char* kind : {"program", "shader", "framebuffer", "texture", "buffer"}) {
            text.append(kind).append(" ").append(std::to_string(count(kind))).append("; ");
        }
        return text;
    }
    /// The context took all its names with it.
    void newContext() { alive.clear(); }

    std::set<std::string> alive;
    std::vector<std::string> strangers;  // deleted, and not alive

private:
    /// glDeleteTextures(1, texture5) or glDeleteShader(shader3)
    static std::string deletedBy(const std::string& line) {
        const auto start =
            std::max(line.find('('), line.find(", ") == line.npos ? 0 : line.find(", ") + 1);
        return line.substr(start + 1, line.size() - start - 2);
    }
    static bool isNull(const std::string& name) {
        return name.substr(name.find_first_of("0123456789")) == "0";
    }
};

constexpr char allNames[] = "program 3; shader 6; framebuffer 3; texture 4; buffer 4; ";

/// From now on the `nth` call of a function fails.
void refuse(const std::string& function, int nth) {
    hostkit::glRecorder().refuse = [=, calls = 0](const char* name, int) mutable {
        return name == function && ++calls == nth;
    };
}

TEST(GlNames, NoneIsLeftByASetUpThatFailed) {
    const std::map<std::string, int> failures = {{"glCreateShader", 6},    {"glGetShaderiv", 6},
                                                 {"glCreateProgram", 3},   {"glGetProgramiv", 3},
                                                 {"glGenFramebuffers", 3}, {"glGenTextures", 3},
                                                 {"glGenBuffers", 1}};
    Stage stage;
    Ledger ledger;
    stage.setUp();
    for (const auto& [function, count] : failures) {
        for (int nth = 1; nth <= count; ++nth) {
            SCOPED_TRACE(function + " " + std::to_string(nth));
            refuse(function, nth);
            stage.resources();
            hostkit::glRecorder().refuse = nullptr;
            stage.tap(Down);
            stage.draw();
            stage.draw();
            stage.resources();
            ledger.enter();
            EXPECT_EQ(ledger.counts(), allNames);
            EXPECT_EQ(ledger.strangers, std::vector<std::string>{});
        }
    }
    stage.tap(Cancel);
    stage.tap(Down);
    stage.draw();
    stage.draw();
    EXPECT_EQ(stage.pixelOfFrame(5), background);
    EXPECT_NE(stage.pixelOfFrame(70), background);
}

TEST(GlNames, WithoutAMeshBufferNothingIsDrawn) {
    for (int nth = 1; nth <= 3; ++nth) {
        Stage stage;
        refuse("glGenBuffers", nth);
        stage.setUp();
        EXPECT_EQ(stage.pixelOfFrame(5), magenta);
        stage.setUp();
        EXPECT_EQ(stage.pixelOfFrame(5), background);
    }
}

TEST(GlNames, AMissingTargetLeavesTheScreenAlone) {
    for (int failing = 1; failing <= 3; ++failing) {
        Stage stage;
        refuse("glGenFramebuffers", failing);
        stage.setUp();
        // The water covers nothing.
        std::ranges::fill(hostkit::JniEnvironment::elements(stage.indices), jshort{0});
        stage.tap(Down);
        for (int frame = 0; frame < 6; ++frame) {
            EXPECT_EQ(stage.pixelOfFrame(70), magenta);
        }
    }
}

TEST(GlNames, ThroughAnyOrderOfSetUps) {
    std::minstd_rand random(5);
    Stage stage;
    glScissor(0, 0, 1, 1);
    Ledger ledger;
    int contexts = 1, setUps = 0;
    bool isQuadStale = false;
    hostkit::glRecorder().refuse = [&](const char*, int) { return random() % 64 == 0; };
    for (int call = 0; call < 500; ++call) {
        switch (random() % 8) {
            case 0:
                stage.width = 100 + static_cast<int>(random() % 500);
                stage.setting(random() % 4 != 0);
                break;
            case 1:
            case 2:
                stage.resources();
                ++setUps;
                break;
            case 3:
                stage.load(static_cast<int>(random() % 3));
                break;
            case 4:
                stage.tap(static_cast<jint>(random() % 3));
                break;
            case 5:
                if (random() % 4 == 0) {  // a context and what its host must call
                    ledger.enter();
                    stage.newContext();
                    glScissor(0, 0, 1, 1);
                    hostkit::glRecorder().calls.clear();
                    ledger.newContext();
                    stage.buffers();
                    isQuadStale = true;
                    ++contexts;
                }
                break;
            default:
                stage.draw();
        }
        ledger.enter();
        // The quad's buffer outlives its context as a number, and goes at the next set-up.
        if (isQuadStale && ledger.strangers.size() == 1) {
            EXPECT_TRUE(ledger.strangers[0].starts_with("glDeleteBuffers"));
            ledger.strangers.clear();
            isQuadStale = false;
        }
        ASSERT_EQ(ledger.strangers, std::vector<std::string>{}) << "call " << call;
        ASSERT_LE(ledger.count("program"), 3) << "call " << call;
        ASSERT_LE(ledger.count("shader"), 6) << "call " << call;
        ASSERT_LE(ledger.count("framebuffer"), 3) << "call " << call;
        ASSERT_LE(ledger.count("texture"), 3 + 3) << "call " << call;
        ASSERT_LE(ledger.count("buffer"), 3 + 1) << "call " << call;
    }
    std::cout << setUps << " set-ups in " << contexts << " contexts\n";
    EXPECT_GT(contexts, 10);
}

}  // namespace
}  // namespace robust
