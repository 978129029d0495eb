// Makes any import of the library fail, whatever its signature.
#pragma once

#include <tests/support/import_patch.h>

#include <string>
#include <vector>

namespace kitbag::test {

/// The imports that can fail, new ones of the system included.
std::vector<std::string> ImportsThatCanFail();

/// While it lives, the import answers with its kind of failure and does nothing. One at a time.
class FailingImport {
 public:
    explicit FailingImport(const std::string& name);

    /// How often the library called it.
    int Calls() const;

 private:
    ImportPatch patch_;
};

}  // namespace kitbag::test
