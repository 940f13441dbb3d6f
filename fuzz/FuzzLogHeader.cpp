// Any bytes as the start of a log: found, read, given another run line of the same record, and read again.

#include <span>
#include <string>

#include "Fuzz.h"
#include "surveydata/LogHeader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto log = std::as_bytes(std::span(data, size));
    const orv::LogHeaderPlace place = orv::FindLogHeader(log);
    if (place.search == orv::LogHeaderPlace::NeedMore) REQUIRE(place.offset > size);
    if (place.search != orv::LogHeaderPlace::Found) return 0;
    REQUIRE(place.offset + place.length <= size);
    const auto text = log.subspan(place.offset, place.length);
    orv::LogHeader header;
    orv::ParseLogHeader(text, header);
    const std::string changed = orv::WithRunline(text, L"L\u00E91");
    REQUIRE(changed.empty() || changed.size() == text.size());
    orv::ParseLogHeader(std::as_bytes(std::span(changed)), header);
    return 0;
}
