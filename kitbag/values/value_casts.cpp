#include <kitbag/frame/guard.h>
#include <kitbag/values/value.h>
#include <kitbag/values/value_casts.h>

namespace kitbag {

namespace {

/// Keeps the value that it visits where that is of class T.
template <class T>
class CValueTypeVisitor : public CValueVisitor {
 public:
    using CValueVisitor::Visit;
    void Visit(const T& value) override { result_ = const_cast<T*>(&value); }

    T* Result() const { return result_; }

 private:
    T* result_ = nullptr;
};

template <class T>
T* GetAs(const Value* value) {
    return Guarded([&] {
        CValueTypeVisitor<T> visitor;
        if (value) value->Accept(visitor);
        return visitor.Result();
    });
}

}  // namespace

}  // namespace kitbag

#define KITBAG_DEFINE_CAST(Class) \
    Class* KB_GetAs##Class(const Value* value) { return kitbag::GetAs<Class>(value); }

KITBAG_DEFINE_CAST(ValueTable)
KITBAG_DEFINE_CAST(ValueList)
KITBAG_DEFINE_CAST(ValueCollection)
KITBAG_DEFINE_CAST(BooleanValue)
KITBAG_DEFINE_CAST(ByteArrayValue)
KITBAG_DEFINE_CAST(GuidValue)
KITBAG_DEFINE_CAST(Int32Value)
KITBAG_DEFINE_CAST(UInt32Value)
KITBAG_DEFINE_CAST(TStringValue)
KITBAG_DEFINE_CAST(UInt32Enum)
KITBAG_DEFINE_CAST(FilenameValue)
KITBAG_DEFINE_CAST(IdentValue)
KITBAG_DEFINE_CAST(ValueTableEntry)
KITBAG_DEFINE_CAST(MediaLocationValueTable)
KITBAG_DEFINE_CAST(MediaLocationValueTableEntry)
KITBAG_DEFINE_CAST(ExternalProgramValueTable)
KITBAG_DEFINE_CAST(ExternalProgramValueTableEntry)
