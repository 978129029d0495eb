#include "field.h"

#include <cwchar>

#include "look.h"

namespace {

class TextMaker final : public CValueVisitor {
 public:
    using CValueVisitor::Visit;
    void Visit(const TStringValue& value) override { text = WideTextOf(value); }
    void Visit(const IdentValue& value) override { text = WideTextOf(value); }
    void Visit(const FilenameValue& value) override { text = WideTextOf(value); }
    void Visit(const UInt32Enum& value) override { text = kitbag::Widened(value.ToString()); }
    void Visit(const ByteArrayValue& value) override { text = HexadecimalText(value); }
    void Visit(const UInt32Value& value) override { Plainly(value); }
    void Visit(const Int32Value& value) override { Plainly(value); }
    void Visit(const GuidValue& value) override { Plainly(value); }
    void Visit(const BooleanValue& value) override { Plainly(value); }

    std::wstring text;

 private:
    void Plainly(const Value& value) { text = kitbag::Widened(value.SaveStringDataOnly()); }
};

}  // namespace

int Field::Height() const { return Look::OfTheSystem().ControlHeight(); }
bool Field::OnCommand(HWND, UINT) { return false; }
bool Field::OnNotify(const NMHDR&) { return false; }

bool IsShown(const Value& value, int level) {
    if (level == 0) return true;
    return !value.HasValueAction(Value::HiddenAction) &&
           KB_CompareUserInterfaceLevels(value.GetMinimumUserInterfaceLevel(), level);
}

bool IsContainer(const Value& value) {
    return KB_GetAsValueCollection(&value) || KB_GetAsValueTable(&value) ||
           KB_GetAsValueList(&value) || value.IsCollection() || value.IsTableEntry();
}

std::wstring DisplayText(const Value& value) {
    TextMaker maker;
    value.Accept(maker);
    return maker.text;
}

std::wstring HexadecimalText(const ByteArrayValue& value) {
    unsigned long size = 0;
    const unsigned char* bytes = value.GetValue(&size);
    std::wstring text;
    for (unsigned long i = 0; i < size; ++i) {
        wchar_t digits[4];
        std::swprintf(digits, std::size(digits), i ? L" %02X" : L"%02X", unsigned{bytes[i]});
        text += digits;
    }
    return text;
}

std::wstring WideTextOf(const TStringValue& value) {
    const auto* wide = dynamic_cast<const kitbag::WideTextValue*>(&value);
    return wide ? wide->GetWideValue() : kitbag::Widened(value.GetValue());
}
