#include "sections_text.h"

#include <algorithm>

#include "getter_answers.h"
#include "system_error.h"

namespace kitbag::tool {

namespace {

/// What is shown of a long block or text; kitbag get shows all of it.
constexpr std::size_t kMostShown = 128;
constexpr std::size_t kWidestName = 32;

std::size_t NameWidth(const Values& values) {
    std::size_t width = 0;
    for (const auto& [name, value] : values) width = std::max(width, DisplayName(name).size());
    return std::min(width, kWidestName);
}

std::size_t DepthOf(const std::wstring& section) {
    return section.empty() ? 0 : 1 + static_cast<std::size_t>(std::ranges::count(section, L'\\'));
}

std::wstring LastStep(const std::wstring& section) {
    return section.substr(section.rfind(L'\\') + 1);
}

std::wstring Heading(const std::wstring& section) {
    return section.empty() ? KeyName(section) : section;
}

bool IsRightBelow(const std::wstring& section, const std::wstring& outer) {
    return DepthOf(section) == DepthOf(outer) + 1;
}

std::size_t SectionsBelow(const Sections& sections, const std::wstring& outer) {
    return static_cast<std::size_t>(
        std::ranges::count_if(
            sections, [&outer](const auto& entry) { return IsWithin(entry.first, outer); }) -
        1);
}

}  // namespace

std::wstring StatusText(const Section& section) {
    if (section.status == ERROR_SUCCESS) return {};
    return L"! cannot be read: " + ErrorText(static_cast<DWORD>(section.status)) + L'\n';
}

std::wstring ValuesText(const std::wstring& section, const Values& values) {
    const std::size_t width = NameWidth(values);
    std::wstring text;
    for (const auto& [name, value] : values) {
        text += Padded(DisplayName(name), width) + L"  " + Padded(TypeName(value.type), 6) + L"  " +
                ContentText(value, kMostShown) + L'\n';
        const std::wstring mark = GetterMark(section, name, value);
        if (!mark.empty()) text += std::wstring(width, L' ') + L"  ! " + mark + L'\n';
    }
    return text;
}

std::wstring TreeText(const Sections& sections) {
    std::wstring text;
    if (sections.empty()) return text;
    const std::wstring& top = sections.begin()->first;
    for (const auto& [path, section] : sections) {
        const std::size_t column = 4 * (DepthOf(path) - DepthOf(top));
        text += std::wstring(column, L' ') + (path == top ? Heading(path) : LastStep(path)) + L'\n';
        text += Indented(StatusText(section) + ValuesText(path, section.values), column + 4);
    }
    return text;
}

std::wstring SectionText(const Sections& sections) {
    const auto& [top, section] = *sections.begin();
    std::wstring text = Heading(top) + L'\n';
    text += Indented(StatusText(section) + ValuesText(top, section.values), 4);
    for (const auto& [path, inner] : sections) {
        if (!IsRightBelow(path, top)) continue;
        text += L"    " + Padded(LastStep(path) + L'\\', 20) + L"  " +
                Counted(inner.values.size(), L"value");
        const std::size_t below = SectionsBelow(sections, path);
        if (below > 0) text += L", " + Counted(below, L"section");
        text += L'\n' + Indented(StatusText(inner), 8);
    }
    return text;
}

std::wstring ContentsOf(const Sections& sections) {
    std::size_t values = 0;
    for (const auto& [path, section] : sections) values += section.values.size();
    const std::wstring& top = sections.begin()->first;
    return KeyName(top) + L" (" + Counted(values, L"value") + L", " +
           Counted(SectionsBelow(sections, top), L"section") + L" below)";
}

}  // namespace kitbag::tool
