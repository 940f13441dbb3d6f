#include "platform/notify/Errors.h"

#include "platform/notify/Notices.h"

namespace orv {

void Error::Report(std::wstring_view text) const {
    std::wstring line = Subject();
    if (!line.empty() && !text.empty()) line += L": ";
    line += text;
    Notify(Notice::ErrorReport, line);
}

}  // namespace orv
