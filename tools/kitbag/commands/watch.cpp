#include <windows.h>

#include "commands.h"
#include "tools/kitbag/console.h"
#include "tools/kitbag/differences.h"
#include "tools/kitbag/system_error.h"

namespace kitbag::tool {

namespace {

/// Signalled by the next change of the settings, from when it was made.
///
/// Watches a key above the settings' root: a section that is watched itself may be deleted and
/// created again. Each notice needs a key opened afresh.
class ChangeNotice {
 public:
    ChangeNotice() : event_(::CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
        LSTATUS status = OpenKey(HKEY_LOCAL_MACHINE, L"Software\\Tarnwick", KEY_READ, key_);
        if (status == ERROR_FILE_NOT_FOUND)
            status = OpenKey(HKEY_LOCAL_MACHINE, L"Software", KEY_READ, key_);
        if (status == ERROR_SUCCESS)
            status = ::RegNotifyChangeKeyValue(key_.get(), TRUE,
                                               REG_NOTIFY_CHANGE_NAME | REG_NOTIFY_CHANGE_LAST_SET,
                                               event_, TRUE);
        if (status != ERROR_SUCCESS) throw SystemFailure(L"Cannot watch the settings", status);
    }
    ~ChangeNotice() {
        // Closing the key signals the event: the event goes last.
        key_.reset();
        ::CloseHandle(event_);
    }
    ChangeNotice(const ChangeNotice&) = delete;
    ChangeNotice& operator=(const ChangeNotice&) = delete;

    void Wait() const { ::WaitForSingleObject(event_, INFINITE); }

 private:
    HANDLE event_;
    Key key_;
};

std::wstring Now() {
    SYSTEMTIME now;
    ::GetLocalTime(&now);
    return TimeText(now);
}

std::wstring Text(const Difference& difference) {
    const std::wstring section = L'[' + difference.section + L']';
    if (!difference.name) return section + (difference.isThere ? L" created" : L" deleted");
    const std::wstring where = section + L' ' + DisplayName(*difference.name);
    if (!difference.wasThere) return where + L" created: " + ValueText(*difference.after);
    if (!difference.isThere) return where + L" deleted, was " + ValueText(*difference.before);
    return where + L": " + ValueText(*difference.before) + L" -> " + ValueText(*difference.after);
}

ExitCode Watch(const Arguments& arguments) {
    const std::wstring section = SectionArgument(arguments[0]);
    Sections known = ReadAllSections(section);
    PrintLine(L"watching " + KeyName(section) +
              (known.empty() ? L", which does not exist yet" : L"") + L"; Ctrl+C ends it");
    for (;;) {
        // Before reading: a change in between is signalled.
        const ChangeNotice notice;
        Sections now = ReadAllSections(section);
        for (const Difference& difference : DifferencesOf(known, now))
            PrintLine(Now() + L"  " + Text(difference));
        known = std::move(now);
        notice.Wait();
    }
}

}  // namespace

const Command kWatch = {
    L"watch",
    L"SECTION",
    L"shows the changes of a section as they come",
    L"Also those of the sections below it, and the creation and deletion of all of them. A "
    L"section\n"
    L"that does not exist is waited for. Changes that follow one another at once may be shown as\n"
    L"one. Ends with Ctrl+C.\n",
    {1, 1, {}},
    Watch};

}  // namespace kitbag::tool
