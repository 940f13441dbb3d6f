#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

/// Texts in the user's language. None is active until a host brings its lookups; then every query answers with a text
/// or with an empty one, which means: take the built-in text. Set up before background work; queries: any thread.
class ORV_EXPORT Translator {
public:
    static Translator& Instance();

    bool IsActive() const { return active; }
    std::wstring GetFileTypesString(unsigned fileTypeId, std::wstring_view subType) const;
    std::wstring GetFileTypeListString(unsigned fileTypeId) const;
    std::wstring GetDataDefString(std::wstring_view section, std::wstring_view key) const;
    std::wstring GetResourceString(std::wstring_view id) const;

    struct Lookups {
        std::function<std::wstring(unsigned, std::wstring_view)> fileTypes;
        std::function<std::wstring(unsigned)> fileTypeList;
        std::function<std::wstring(std::wstring_view, std::wstring_view)> dataDef;
        std::function<std::wstring(std::wstring_view)> resource;
    };
    void Activate(Lookups newLookups);
    void Deactivate();

private:
    Lookups lookups;
    bool active = false;
};

}  // namespace orv
