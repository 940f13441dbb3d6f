#include "housekeeping/TypeFolder.h"

#include "core/CFileTypeList.h"
#include "core/DataSearch.h"
#include "housekeeping/BaseORVMessage.h"
#include "platform/text/Format.h"

namespace orv {

std::optional<TypeFolder> FindTypeFolder(const DataSearch& search, unsigned fileTypeId) {
    const CFileType* const type = GetFileTypeList().GetFileTypeID(fileTypeId);
    DataSearchStatus::Set(type ? kSearchOk : kSearchUnknownFileType);
    if (!type) return std::nullopt;
    TypeFolder found;
    std::wstring defaultName;
    if (!search.GetFileInfo(type, found.extension, found.folder, defaultName)) return std::nullopt;
    return found;
}

void ReportTarget::Set(BaseORVMessage* messageLog) {
    const std::lock_guard lock(mutex);
    log = messageLog;
}

void ReportTarget::Report(MSG_LEVEL level, std::wstring_view text, std::wstring_view path) {
    const std::lock_guard lock(mutex);
    if (log) log->AddMessage(level, FormatTexts(text, {path}), true, L"", true, kNoFilter);
}

}  // namespace orv
