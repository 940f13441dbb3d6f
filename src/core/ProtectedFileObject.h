#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/FileObject.h"

namespace orv {

/// A configuration file that carries a checksum of its own content, so that a file edited outside the system is
/// noticed: signed again silently, or refused, as the caller asks. The checksum is a plain sum over names, keys and
/// values (their order doesn't count) under a salted SHA-256, one for the content and one for the file's title.
///
/// The base class's FileOpen and FileSave are hidden on purpose: they would skip the verification.
class ORV_EXPORT ProtectedFileObject : public FileObject {
public:
    ~ProtectedFileObject() override = default;

    /// Opens and verifies. A file that doesn't verify is refused when `verifyFileName` (status 10; its content stays
    /// in memory), else signed again and saved, whatever the save comes to. Flags with the create bit skip all this.
    /// An enciphered file isn't signed again: call `Encrypt` to read it.
    bool FileOpen(std::wstring_view name, bool verifyFileName, int flags);
    /// The same with the keep-open switch off during the read and on afterwards. The switch is kept for hosts that
    /// set it; files are never held open between calls.
    bool FileOpen_NoFileClose(std::wstring_view name, bool verifyFileName, int flags);
    /// From memory; keeps the object's name. Never signs again.
    bool FileOpen(const memfile& file, bool verifyFileName);
    /// Signs and saves; a read-only file stays read-only. `reserved` is 0. Status 8 or 9 on failure.
    bool FileSave(std::wstring_view name, int reserved, int flags);
    bool FileSave(memfile& file);

    /// Puts the checksum of the present content into it. The setters of `OrvIniFile_IO` call it after each change.
    bool CreateCheckSum();
    /// Toggles the file on disk between plain and enciphered form: an object that holds the section "Encrypted" is
    /// read from it, any other is written to it.
    bool Encrypt();

    /// How the content stands against its checksum, without changing anything; for tools.
    enum class Verification { Valid, ContentChanged, TitleChanged, Unsigned };
    Verification Verify() const;

private:
    bool CompareCheckSum(bool verifyFileName);
    bool HasNewStyleChecksum(bool verifyFileName, bool& valid) const;
    bool HasOldStyleChecksum(bool verifyFileName, bool& valid) const;
    bool ComputeChecksum(bool withTitle, std::uint32_t& first, std::uint32_t& second) const;
    static std::wstring GenerateChecksumHash(std::uint32_t sum);
    static std::wstring GenerateFileNameHash(std::wstring& title);
    bool Decipher();
    bool Encipher();
    bool Refuse(std::wstring_view name);
    bool SignAgain();
};

}  // namespace orv
