#include "project/SmartFileImpl.h"

#include "core/DataSearch.h"

namespace orv {

bool SmartFileImpl::FileOpen(unsigned type, const std::wstring& name) {
    std::wstring path = name;
    if (name.empty() || !DataSearch::GetDataSearch().GetFullPath(type, path)) return false;
    if (GetSubscriber()) Subscribe(path);  // first, or a change between the two would be missed
    const bool opened = file->FileOpen(path, kOpenRead);
    if (merge) merge->Remember();
    return opened;
}

bool SmartFileImpl::FileSave(unsigned type, const std::wstring& name) {
    std::wstring path = name;
    if (name.empty() || !DataSearch::GetDataSearch().GetFullPathForWriting(type, path)) return false;
    Unsubscribe();
    const auto subscribe = [&] {
        if (GetSubscriber()) Subscribe(path);
    };
    // Under the lock still: whoever saves next is told of.
    if (merge && merge->Save(path, subscribe)) return true;
    const bool saved = !merge && file->FileSave(path, kSave);
    subscribe();
    return saved;
}

void SmartFileImpl::SetMergeSave(bool on) {
    merge = on ? std::make_unique<MergeSave>(*file) : nullptr;
}

}  // namespace orv
