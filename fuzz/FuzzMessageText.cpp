// Any bytes as a message, as the text of a string resource, and as the first line of a language's showas.txt.

#include "Fuzz.h"
#include "frontend/ChooseLanguage.h"
#include "housekeeping/BaseORVMessage.h"
#include "platform/service/Translator.h"
#include "platform/text/Utf.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    orv::BaseORVMessage sink;
    orv::Message<wchar_t> message;
    REQUIRE(sink.AddMessage(orv::kLevelInformation, bytes.c_str(), true, L"", false, orv::kNoFilter));
    REQUIRE(sink.GetLastMessage(message));
    if (orv::IsUtf8(bytes)) REQUIRE(orv::ToUtf8(message.GetText()) == bytes.c_str());

    orv::Translator::Lookups lookups;
    lookups.resource = [&](std::wstring_view) { return orv::FromUtf8(bytes); };
    orv::Translator::Instance().Activate(lookups);
    REQUIRE(sink.AddMessage(orv::kLevelFailure, 1, L"first", L"second"));
    orv::Translator::Instance().Deactivate();

    for (const bool onlyUtf8 : {false, true}) {
        REQUIRE(orv::ReadShowAs(bytes, onlyUtf8).find_first_of(L"\r\n") == std::wstring::npos);
    }
    return 0;
}
