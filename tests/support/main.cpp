#include <gmock/gmock.h>
#include <tests/support/private_registry.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    // No test can forget to keep away from the real settings.
    const kitbag::test::PrivateRegistry registry;
    return RUN_ALL_TESTS();
}
