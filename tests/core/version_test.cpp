// The headers' version macros against the library's version text.
#include <gtest/gtest.h>

#include <string>

#include "ork/ork.h"

namespace {

TEST(Version, MacrosEqualTheLibrarysVersion) {
    const std::string parts = std::to_string(ORK_VERSION_MAJOR) + "." + std::to_string(ORK_VERSION_MINOR) + "." +
                              std::to_string(ORK_VERSION_PATCH);
    EXPECT_EQ(parts, ORK_VERSION_STRING);
    EXPECT_EQ(std::string("ork ") + ORK_VERSION_STRING, ork_version());
}

}  // namespace
