// These tests run on EGL without any display, whatever the machine has.

#include "platform/Backend.h"

#include <gtest/gtest.h>

namespace {

class ConEgl : public testing::Environment {
  public:
    void SetUp() override { ASSERT_TRUE(plataforma::FuerzaBackend("egl-surfaceless")); }
};

[[maybe_unused]] const auto* entorno = testing::AddGlobalTestEnvironment(new ConEgl);

}  // namespace
