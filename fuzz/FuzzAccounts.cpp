// Any bytes as an accounts file: read, written, read again; the second reading gives the first.

#include "Fuzz.h"
#include "users/UserAccountsFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto records = orv::ReadUserRecords({reinterpret_cast<const char*>(data), size});
    REQUIRE(records.size() == size / orv::UserDataRecord::kSize);
    const std::string written = orv::WriteUserRecords(records);
    REQUIRE(written.size() == records.size() * orv::UserDataRecord::kSize);
    const auto again = orv::ReadUserRecords(written);
    REQUIRE(again.size() == records.size());
    for (std::size_t i = 0; i < again.size(); ++i) {
        REQUIRE(again[i].Bytes() == records[i].Bytes());
        REQUIRE(again[i].Holds(orv::UserDataRecord::kName, records[i].Get(orv::UserDataRecord::kName)));
    }
    return 0;
}
