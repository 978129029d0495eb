// Makes any import of the library fail, whatever its signature.
#pragma once

#include <tests/support/import_patch.h>

#include <optional>
#include <string>
#include <vector>

namespace kitbag::test {

/// The imports that can fail: the system's functions but those without a failure, and the
/// compiler's runtime where it runs out of memory or into a file that is not there.
std::vector<std::string> ImportsThatCanFail();

/// While it lives, the import answers with its kind of failure and does nothing.
class FailingImport {
 public:
    explicit FailingImport(const std::string& name);

    /// How often the library called it.
    int Calls() const { return calls_; }

 private:
    std::optional<ImportPatch> patch_;
    int calls_ = 0;
};

}  // namespace kitbag::test
