// Any text as a log's title: what can be taken apart and is valid comes back from its own name.

#include <string_view>

#include "Fuzz.h"
#include "platform/text/Utf.h"
#include "surveydata/LogNaming.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::wstring title = orv::FromUtf8({reinterpret_cast<const char*>(data), size});
    orv::ReplayText({title}, 0);
    orv::FilenameItemsText(orv::ParseFilenameItems(title));
    orv::LogFields fields, again;
    if (!orv::ParseLogName(title, fields) || !orv::AreLogFieldsValid(fields)) return 0;
    REQUIRE(orv::ParseLogName(orv::AutomaticLogName(fields), again));
    REQUIRE(again.vessel == fields.vessel && again.surveyType == fields.surveyType);
    REQUIRE(again.runline == fields.runline && again.logTime == fields.logTime);
    return 0;
}
