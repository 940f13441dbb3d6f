#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "housekeeping/Message.h"
#include "platform/Export.h"

namespace orv {

class BaseORVMessage;
class DataSearch;

/// Where the files of one type lie and how their names end.
struct TypeFolder {
    std::wstring folder;     ///< ends in a separator
    std::wstring extension;  ///< with its dot
};

/// None if the type is unknown (search status 12) or lacks extension, folder or default name. Main thread: it asks
/// settings and project, which workers must not.
ORV_EXPORT std::optional<TypeFolder> FindTypeFolder(const DataSearch& search, unsigned fileTypeId);

/// The message log that a housekeeper reports to; may be changed while its worker reports.
class ORV_EXPORT ReportTarget {
public:
    /// Not owned. When it returns, the one before is used no more.
    void Set(BaseORVMessage* messageLog);
    /// `text` with its %s replaced by `path`; nothing without a log.
    void Report(MSG_LEVEL level, std::wstring_view text, std::wstring_view path);

private:
    std::mutex mutex;
    BaseORVMessage* log = nullptr;
};

}  // namespace orv
