#pragma once

#include <string>

#include "core/ProtectedFileObject.h"
#include "platform/service/GetStringFunctionObject.h"

namespace orv {

/// Takes one section out of many protected files: `DataSearch::GetFileNames` calls it with the full path of each.
class ORV_EXPORT UserDBSectionRemover : public GetStringFunctionObject {
public:
    explicit UserDBSectionRemover(std::wstring name) : section(std::move(name)) {}
    /// False, which ends the walk, if the file can't be opened or saved. A file without the section is signed and saved
    /// like the others.
    bool operator()(const std::wstring& path) override;

private:
    std::wstring section;
    ProtectedFileObject file;
};

}  // namespace orv
