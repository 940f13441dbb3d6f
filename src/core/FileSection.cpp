#include "core/FileSection.h"

#include <algorithm>

#include "core/FileObject.h"
#include "platform/text/NumberText.h"

namespace orv {

namespace {

template <class T, class Parsed>
bool Assign(const std::optional<Parsed>& parsed, T& out) {
    if (parsed) out = static_cast<T>(*parsed);
    return parsed.has_value();
}

// What keys and values may be, and how a number is written, is the file object's to say.
template <class T>
bool AsStored(std::wstring_view key, const T& value, std::wstring& text) {
    constexpr std::wstring_view section = L"section";
    FileObject file;
    return file.SetItem(section, key, value, true) && file.GetItem(section, key, text);
}

}  // namespace

bool FileSection::GetFromFileObject(std::wstring_view sectionName, const FileObject& file) {
    if (!file.HasSection(sectionName)) return false;
    name = sectionName;
    items.clear();
    FobjSection cursor;
    std::wstring key, value;
    for (bool more = file.GetFirstMapEntry(cursor, name, key, value); more;
         more = file.GetNextMapEntry(cursor, key, value)) {
        items.emplace_back(key, value);
    }
    return true;
}

bool FileSection::SetToFileObject(FileObject& file) const {
    return SetToFileObject(name, file);
}

bool FileSection::SetToFileObject(std::wstring_view sectionName, FileObject& file) const {
    bool written = file.CreateSection(sectionName, true);
    for (const auto& [key, value] : items) written = file.SetItem(sectionName, key, value, true) && written;
    return written;
}

const std::wstring* FileSection::Find(std::wstring_view key) const {
    const auto item = std::find_if(items.begin(), items.end(), [&](const auto& i) { return i.first == key; });
    return item != items.end() ? &item->second : nullptr;
}

bool FileSection::GetItem(std::wstring_view key, int& out) const {
    const std::wstring* text = Find(key);
    return text && Assign(ParseInt(*text), out);
}

bool FileSection::GetItem(std::wstring_view key, long& out) const {
    const std::wstring* text = Find(key);
    return text && Assign(ParseInt64(*text), out);
}

bool FileSection::GetItem(std::wstring_view key, double& out) const {
    const std::wstring* text = Find(key);
    return text && Assign(ParseDouble(*text), out);
}

bool FileSection::GetItem(std::wstring_view key, std::wstring& out) const {
    const std::wstring* text = Find(key);
    if (text) out = *text;
    return text != nullptr;
}

bool FileSection::GetItem(std::wstring_view key, bool& out) const {
    const std::wstring* text = Find(key);
    return text && Assign(ParseBool(*text), out);
}

template <class T>
bool FileSection::Set(std::wstring_view key, const T& value) {
    std::wstring text;
    if (!AsStored(key, value, text)) return false;
    const auto item = std::find_if(items.begin(), items.end(), [&](const auto& i) { return i.first == key; });
    if (item != items.end()) {
        item->second = std::move(text);
    } else {
        items.emplace_back(key, std::move(text));
    }
    return true;
}

bool FileSection::SetItem(std::wstring_view key, int value) {
    return Set(key, value);
}
bool FileSection::SetItem(std::wstring_view key, long value) {
    return Set(key, value);
}
bool FileSection::SetItem(std::wstring_view key, double value) {
    return Set(key, value);
}
bool FileSection::SetItem(std::wstring_view key, std::wstring_view value) {
    return Set(key, value);
}
bool FileSection::SetItem(std::wstring_view key, bool value) {
    return Set(key, value);
}

}  // namespace orv
