// What stands around the library while everything of it is called at once: no dialog, no waiting,
// no hook in other programs, no real drive, no registration that other tests would see.
#pragma once

#include <tests/support/import_patch.h>
#include <tests/support/text_folder.h>

#include <list>

namespace kitbag::test {

class Surroundings {
 public:
    Surroundings();
    ~Surroundings();

    /// Calls the hook procedures that the library has installed.
    static void PressAKey();

 private:
    std::list<ImportPatch> patches_;
    HKEY classes_ = nullptr;
};

}  // namespace kitbag::test
