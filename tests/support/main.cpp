#include <gmock/gmock.h>
#include <tests/support/private_registry.h>

#include <optional>

namespace {

/// No test can forget to keep away from the real settings: the whole run uses a private registry.
class PrivateRegistryForAll : public testing::Environment {
    void SetUp() override { registry_.emplace(); }
    void TearDown() override { registry_.reset(); }

    std::optional<kitbag::test::PrivateRegistry> registry_;
};

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    testing::AddGlobalTestEnvironment(new PrivateRegistryForAll);
    return RUN_ALL_TESTS();
}
