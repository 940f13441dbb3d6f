// Any bytes as paths, names, patterns, numbers and format texts.

#include <string>

#include "Fuzz.h"
#include "core/COrvString.h"
#include "platform/text/CaseFold.h"
#include "platform/text/Format.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::wstring path = orv::PathFromBytes(bytes);
    REQUIRE(bytes.find('\\') != std::string::npos || orv::PathToBytes(path) == bytes);
    std::wstring folder, name, extension;
    orv::SplitPath(path, folder, name, extension);
    REQUIRE(folder.empty() || orv::EndsInSeparator(folder));
    REQUIRE(orv::EndsInSeparator(path) ||
            orv::GetFolderFromPath(path).size() + orv::GetNameFromPath(path).size() == path.size());
    orv::GetTitleFromPath(path);
    const std::size_t half = path.size() / 2;
    orv::MatchesPattern(path.substr(half), path.substr(0, half));
    REQUIRE(orv::MatchesPattern(path, L"*"));
    REQUIRE(orv::EqualNoCase(path, orv::ToLower(orv::ToLower(path))) == orv::EqualNoCase(path, orv::ToLower(path)));

    const std::wstring text = orv::FromUtf8(bytes);
    REQUIRE(orv::FromUtf8(orv::ToUtf8(text)) == text);
    if (const auto number = orv::ParseDouble(text); number && *number == *number) {
        REQUIRE(orv::ParseDouble(orv::ShortestText(*number)) == number);
    }
    orv::ParseInt(text);
    orv::ParseBool(text);
    orv::FormatNumber(text, 12.5);
    orv::FormatTexts(text, {L"a", L"b"});
    const orv::COrvString items(text, L',', false);
    REQUIRE(items.GetString() == text);
    return 0;
}
