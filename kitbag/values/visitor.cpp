#include <kitbag/values/visitor.h>

CValueVisitor::CValueVisitor() = default;
CValueVisitor::CValueVisitor(const CValueVisitor&) = default;
CValueVisitor& CValueVisitor::operator=(const CValueVisitor&) = default;

void CValueVisitor::Visit(const ExternalProgramValueTableEntry&) {}
void CValueVisitor::Visit(const ExternalProgramValueTable&) {}
void CValueVisitor::Visit(const MediaLocationValueTableEntry&) {}
void CValueVisitor::Visit(const MediaLocationValueTable&) {}
void CValueVisitor::Visit(const ValueTableEntry&) {}
void CValueVisitor::Visit(const IdentValue&) {}
void CValueVisitor::Visit(const FilenameValue&) {}
void CValueVisitor::Visit(const UInt32Enum&) {}
void CValueVisitor::Visit(const TStringValue&) {}
void CValueVisitor::Visit(const UInt32Value&) {}
void CValueVisitor::Visit(const Int32Value&) {}
void CValueVisitor::Visit(const GuidValue&) {}
void CValueVisitor::Visit(const ByteArrayValue&) {}
void CValueVisitor::Visit(const BooleanValue&) {}
void CValueVisitor::Visit(const ValueCollection&) {}
void CValueVisitor::Visit(const ValueList&) {}
void CValueVisitor::Visit(const ValueTable&) {}
void CValueVisitor::Visit(const Value&) {}
