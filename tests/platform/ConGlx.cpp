// These tests run on an X11 display, and only where there is one.

#include "platform/Backend.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

class ConGlx : public testing::Environment {
  public:
    void SetUp() override {
        if (!std::getenv("DISPLAY")) GTEST_SKIP() << "DISPLAY isn't set: these tests need an X11 display (xvfb-run)";
        ASSERT_TRUE(plataforma::FuerzaBackend("glx"));
    }
};

[[maybe_unused]] const auto* entorno = testing::AddGlobalTestEnvironment(new ConGlx);

}  // namespace
