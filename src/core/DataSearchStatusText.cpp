#include "core/DataSearchStatusText.h"

#include <algorithm>
#include <iterator>

#include "core/DataSearch.h"

namespace orv {

namespace {

struct Sentence {
    int status;
    std::wstring_view text;
};
constexpr Sentence kSentences[] = {
    {kSearchNoAppDefName, L"No application definition is named"},
    {kSearchNoSettings, L"The settings in ORV.ini can't be read"},
    {kSearchAppDefChecksum, L"The application definition has been changed outside the suite"},
    {kSearchNoUserDef, L"The user definition that the settings name can't be opened"},
    {kSearchNoAppDefLocation, L"The folder of the application definitions can't be worked out"},
    {kSearchNoUserProfile, L"The settings name no user definition"},
    {kSearchUnknownName, L"The application definition has no such name"},
    {kSearchAppDefFailed, L"The application definition holds an item that can't be read"},
    {kSearchUserDefFailed, L"The user definition holds an item that can't be read"},
    {kSearchUnknownFileType, L"There is no such file type"},
    {kSearchLocationOutOfRange, L"There is no such location"},
    {kSearchNoProgramPath, L"The system doesn't tell where this program lies, or its path is too long"},
    {kSearchNoDescription, L"The file type has no description"},
};

}  // namespace

std::wstring_view DataSearchStatusText(int status) {
    const auto* const found = std::find_if(std::begin(kSentences), std::end(kSentences),
                                           [status](const Sentence& sentence) { return sentence.status == status; });
    return found == std::end(kSentences) ? std::wstring_view() : found->text;
}

}  // namespace orv
