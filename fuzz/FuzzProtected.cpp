// Any bytes as a protected file in memory: verified, signed, verified again; and as cipher text.

#include <string>

#include "Fuzz.h"
#include "core/ProtectedFileObject.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const orv::memfile input(data, size, orv::textencoding::utf8);
    orv::ProtectedFileObject file;
    file.FileOpen(input, true);
    file.FileOpen(input, false);
    file.Verify();
    if (file.HasSection(L"Encrypted")) return 0;  // its signature is inside
    REQUIRE(file.CreateCheckSum());
    orv::memfile saved;
    REQUIRE(file.FileSave(saved));
    orv::ProtectedFileObject again;
    REQUIRE(again.FileOpen(saved, true));
    return 0;
}
