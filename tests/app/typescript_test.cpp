#include "web/settings/typescript.h"

#include <gtest/gtest.h>

namespace {

TEST(SettingsModule, LiteralsEscapeQuotesBackslashesAndControls) {
    EXPECT_EQ(web::literal("a \"b\" \\ c\nd"), R"("a \"b\" \\ c\u000ad")");
}

}  // namespace
