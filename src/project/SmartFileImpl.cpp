#include "project/SmartFileImpl.h"

#include "core/DataSearch.h"

namespace orv {

bool SmartFileImpl::FileOpen(unsigned type, const std::wstring& name) {
    std::wstring path = name;
    if (name.empty() || !DataSearch::GetDataSearch().GetFullPath(type, path)) return false;
    if (GetSubscriber()) Subscribe(path);  // first, or a change between the two would be missed
    return file->FileOpen(path, kOpenRead);
}

bool SmartFileImpl::FileSave(unsigned type, const std::wstring& name) {
    std::wstring path = name;
    if (name.empty() || !DataSearch::GetDataSearch().GetFullPathForWriting(type, path)) return false;
    Unsubscribe();
    const bool saved = file->FileSave(path, kSave);
    if (GetSubscriber()) Subscribe(path);
    return saved;
}

}  // namespace orv
