#include "hostkit/instruments/checked_jni.h"

#include <gtest/gtest.h>
#include <jni.h>

#include <initializer_list>
#include <vector>

namespace hostkit {
namespace {

TEST(CheckedJni, ReleaseModesDecideWhetherACopyIsWrittenBack) {
    constexpr struct {
        ArrayAccess access;
        jint mode;
        float expected;
        int pinned;
    } cases[] = {{ArrayAccess::direct, 0, 5.0f, 0},
                 {ArrayAccess::direct, JNI_ABORT, 5.0f, 0},
                 {ArrayAccess::copy, 0, 5.0f, 0},
                 {ArrayAccess::copy, JNI_ABORT, 0.0f, 0},
                 {ArrayAccess::copy, JNI_COMMIT, 5.0f, 1}};
    for (const auto& test : cases) {
        CheckedJni jni({test.access, 4});
        const jfloatArray array = jni.newFloatArray(3);
        jboolean isCopy = JNI_FALSE;
        float* const data = jni.env()->GetFloatArrayElements(array, &isCopy);
        data[2] = 5.0f;
        EXPECT_EQ(isCopy == JNI_TRUE, test.access == ArrayAccess::copy);
        EXPECT_EQ(JniEnvironment::elements(array)[2], isCopy ? 0.0f : 5.0f);
        EXPECT_EQ(jni.pinned(), 1);
        jni.env()->ReleaseFloatArrayElements(array, data, test.mode);
        EXPECT_EQ(JniEnvironment::elements(array)[2], test.expected) << test.mode;
        EXPECT_EQ(jni.pinned(), test.pinned);
        EXPECT_TRUE(jni.checkGuards().empty());
    }
}

TEST(CheckedJni, EachDamagedGuardIsReportedOnce) {
    for (const ArrayAccess access : {ArrayAccess::direct, ArrayAccess::copy}) {
        CheckedJni jni({access, 8});
        jni.newFloatArray(1);
        const jshortArray array = jni.newShortArray(5);
        jshort* const data = jni.env()->GetShortArrayElements(array, nullptr);
        data[5] = 0;
        data[-8] = 1;
        EXPECT_TRUE(jni.damages().empty());
        const std::vector<GuardDamage> expected = {{2, -8}, {2, 5}};
        EXPECT_EQ(jni.checkGuards(), expected);
        jni.env()->ReleaseShortArrayElements(array, data, 0);
        EXPECT_EQ(jni.damages(), expected);

        jshort* const again = jni.env()->GetShortArrayElements(array, nullptr);
        again[12] = 0;
        jni.env()->ReleaseShortArrayElements(array, again, 0);
        EXPECT_EQ(jni.damages().back(), (GuardDamage{2, 12}));
    }
}

TEST(CheckedJniDeathTest, AbortsOnOtherCallsAndWrongPointersAndNamesThem) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    CheckedJni jni;
    const jfloatArray array = jni.newFloatArray(2);
    float elsewhere[2] = {};
    EXPECT_DEATH(jni.env()->FindClass("x"), "must not use: FindClass");
    EXPECT_DEATH(jni.env()->CallVoidMethod(nullptr, nullptr), ": CallVoidMethodV");
    EXPECT_DEATH(jni.env()->GetArrayLength(array), ": GetArrayLength");
    EXPECT_DEATH(jni.env()->GetModule(nullptr), ": GetModule");
    EXPECT_DEATH(
        jni.env()->ReleaseFloatArrayElements(array, elsewhere, 0),
        "ReleaseFloatArrayElements: array 1 was released with a pointer that no Get call returned");
}

}  // namespace
}  // namespace hostkit
