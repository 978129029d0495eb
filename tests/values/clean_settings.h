// Settings that every test finds empty.
#pragma once

#include <gtest/gtest.h>
#include <tests/support/private_registry.h>

namespace kitbag::test {

/// The private registry outlives the single test; what a test stores goes with it.
class CleanSettings : public testing::Test {
 protected:
    void TearDown() override { ::RegDeleteTreeA(HKEY_LOCAL_MACHINE, kRoot); }
};

}  // namespace kitbag::test
