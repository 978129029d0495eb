#include <gmock/gmock.h>
#include <tests/support/private_registry.h>

#include <optional>

namespace {

/// Every test has an empty private registry; none can forget to keep away from the real settings.
class PrivateRegistryForEach : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { registry_.emplace(); }
    void OnTestEnd(const testing::TestInfo&) override { registry_.reset(); }

    std::optional<kitbag::test::PrivateRegistry> registry_;
};

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new PrivateRegistryForEach);
    return RUN_ALL_TESTS();
}
