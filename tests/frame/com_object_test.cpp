#include <gtest/gtest.h>
#include <kitbag/pages.h>
#include <wrl/client.h>

namespace {

using Microsoft::WRL::ComPtr;

TEST(ComObject, AnswersForItsInterfacesWithOneIdentityAndForNoOther) {
    ComPtr<IKivPageFactory> factory;
    ASSERT_TRUE(KB_CreateKivPageFactory(&factory));
    ComPtr<IUnknown> object;
    factory.As(&object);
    const auto query = [&](REFIID id) {
        ComPtr<IUnknown> answer, identity;
        const HRESULT result = object.CopyTo(id, reinterpret_cast<void**>(answer.GetAddressOf()));
        if (answer) answer.As(&identity);
        EXPECT_EQ(result == S_OK ? object.Get() : nullptr, identity.Get());
        return result;
    };
    EXPECT_EQ(S_OK, query(IID_IUnknown));
    EXPECT_EQ(S_OK, query(IID_IDispatch));
    EXPECT_EQ(S_OK, query(IID_IKivPageFactory));
    EXPECT_EQ(S_OK, query(IID_ISupportErrorInfo));
    EXPECT_EQ(E_NOINTERFACE, query(IID_IKivPageOwner));
    EXPECT_EQ(E_NOINTERFACE, query(IID_IMarshal));
    EXPECT_EQ(E_POINTER, object->QueryInterface(IID_IUnknown, nullptr));
}

}  // namespace
