#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Export.h"

namespace orv {

class FileObject;

/// A value copy of one section: its items without the file, in their order. One thread at a time.
class ORV_EXPORT FileSection {
public:
    virtual ~FileSection() = default;
    /// Fills it and remembers the name; false, and nothing changes, if the section is missing.
    bool GetFromFileObject(std::wstring_view sectionName, const FileObject& file);
    /// Writes all items, under the remembered name or the one given.
    bool SetToFileObject(FileObject& file) const;
    bool SetToFileObject(std::wstring_view sectionName, FileObject& file) const;

    /// As the like operations of FileObject.
    bool GetItem(std::wstring_view key, int& out) const;
    bool GetItem(std::wstring_view key, long& out) const;
    bool GetItem(std::wstring_view key, double& out) const;
    bool GetItem(std::wstring_view key, std::wstring& out) const;
    bool GetItem(std::wstring_view key, bool& out) const;
    bool SetItem(std::wstring_view key, int value);
    bool SetItem(std::wstring_view key, long value);
    bool SetItem(std::wstring_view key, double value);
    bool SetItem(std::wstring_view key, std::wstring_view value);
    bool SetItem(std::wstring_view key, const wchar_t* value) { return SetItem(key, std::wstring_view(value)); }
    bool SetItem(std::wstring_view key, bool value);
    bool SetItem(std::wstring_view key, const void* value) = delete;

    const std::wstring& Name() const { return name; }
    const std::vector<std::pair<std::wstring, std::wstring>>& Items() const { return items; }

private:
    const std::wstring* Find(std::wstring_view key) const;
    template <class T>
    bool Set(std::wstring_view key, const T& value);
    std::wstring name;
    std::vector<std::pair<std::wstring, std::wstring>> items;
};

}  // namespace orv
