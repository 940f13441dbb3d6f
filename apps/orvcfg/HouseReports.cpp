#include "HouseReports.h"

#include "Session.h"
#include "platform/os/Clock.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

HouseReports::HouseReports(Session& forSession) : session(forSession) {
    session.progress.Expect("files");
    log.SetNoHeader(true);
    SetMessageDelivery([this](AbstractORVMessage& source, bool) {
        if (&source == &log) Take();
    });
}

HouseReports::~HouseReports() {
    SetMessageDelivery({});
}

/// A report reads "[Housekeeper] What it did: path".
void HouseReports::Take() {
    for (Message<wchar_t> message; log.GetUnusedMessage(message);) {
        session.progress.Step();
        const std::wstring& text = message.GetText();
        const std::size_t begin = text.find(L"] ") + 2, end = text.find(L": ", begin);
        const std::wstring what = text.substr(begin, end - begin), path = text.substr(end + 2);
        if (message.GetLevel() == kLevelInformation) {
            done.Add({Cell::Of(what), Cell::Path(path)});
            paths.insert(path);
        } else {
            good = false;
            session.Problem(PathToBytes(path), ToUtf8(what),
                            "A program may hold it open, or rights or space on the disk are missing.");
        }
    }
}

std::int64_t CurrentTime() {
    return TheClock().UtcMilliseconds() / 1000;
}

}  // namespace orv::cfg
