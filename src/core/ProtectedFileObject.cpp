#include "core/ProtectedFileObject.h"

#include "core/ChecksumSum.h"
#include "core/ConfigKeys.h"
#include "core/ConfigText.h"
#include "platform/crypto/Blowfish.h"
#include "platform/crypto/Sha256.h"
#include "platform/notify/Errors.h"
#include "platform/os/FileTools.h"
#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"
#include "platform/text/Utf.h"

namespace orv {

namespace {

constexpr std::size_t kDigestSize = 64;
constexpr std::size_t kCipherBlock = 8;
constexpr std::string_view kEncryptedLine = "[Encrypted]\r\n";
constexpr std::wstring_view kEncryptedSection = L"Encrypted";
constexpr std::size_t kOldStyleKey = 0, kNewStyleKey = 1;

void PadToBlock(std::string& bytes) {
    bytes.resize((bytes.size() + kCipherBlock - 1) / kCipherBlock * kCipherBlock, ' ');
}

}  // namespace

// ---- checksum

// Old and new style differ in how characters meet the seeds: the new one sums with XOR and never looks at the title.
bool ProtectedFileObject::ComputeChecksum(bool withTitle, std::uint32_t& first, std::uint32_t& second) const {
    const SumMode mode = withTitle ? SumMode::And : SumMode::Xor;
    std::uint32_t sum = 0;
    for (const std::wstring& line : GetExtraInfo()) sum += CalcCheckSum(line, mode);
    first = sum + SumOfContent(Content(), mode);
    second = withTitle ? first + CalcCheckSum(GetFileTitle(), mode) : 0;
    return true;
}

std::wstring ProtectedFileObject::GenerateChecksumHash(std::uint32_t sum) {
    return FromUtf8(Sha256Hex(std::to_string(sum) + std::string(kContentSalt)));
}

std::wstring ProtectedFileObject::GenerateFileNameHash(std::wstring& title) {
    title = ToLower(title);
    return FromUtf8(Sha256Hex(std::string(kTitleSalt) + ToUtf8(title)));
}

bool ProtectedFileObject::CreateCheckSum() {
    std::uint32_t first = 0, second = 0;
    if (!ComputeChecksum(false, first, second)) return false;
    std::wstring title = GetFileTitle();
    SetItem(CHECKSUM_SECTION, checksumKeys[kNewStyleKey], GenerateChecksumHash(first) + GenerateFileNameHash(title),
            true);
    if (!HasKey(CHECKSUM_SECTION, checksumKeys[kOldStyleKey])) return true;
    if (!ComputeChecksum(true, first, second)) return false;
    SetItem(CHECKSUM_SECTION, checksumKeys[kOldStyleKey], IntText(first) + L"," + IntText(second), true);
    return true;
}

bool ProtectedFileObject::HasNewStyleChecksum(bool verifyFileName, bool& valid) const {
    valid = false;
    std::wstring value;
    if (!GetItem(CHECKSUM_SECTION, checksumKeys[kNewStyleKey], value)) return false;
    std::uint32_t first = 0, second = 0;
    ComputeChecksum(false, first, second);
    valid = value.substr(0, kDigestSize) == GenerateChecksumHash(first);
    if (valid && verifyFileName) {
        std::wstring title = GetFileTitle();
        valid = value.size() >= kDigestSize && value.substr(kDigestSize) == GenerateFileNameHash(title);
    }
    return true;
}

bool ProtectedFileObject::HasOldStyleChecksum(bool verifyFileName, bool& valid) const {
    valid = false;
    std::wstring value;
    if (!GetItem(CHECKSUM_SECTION, checksumKeys[kOldStyleKey], value)) return false;
    std::uint32_t first = 0, second = 0;
    ComputeChecksum(true, first, second);
    const std::size_t comma = value.find(L',');
    if (verifyFileName) {
        const std::wstring_view item = comma == std::wstring::npos ? std::wstring_view()
                                                                   : std::wstring_view(value).substr(comma + 1).substr(
                                                                         0, value.find(L',', comma + 1) - comma - 1);
        valid = ParseUnsigned(item) == second;
    } else {
        valid = ParseUnsigned(std::wstring_view(value).substr(0, comma)) == first;
    }
    return true;
}

bool ProtectedFileObject::CompareCheckSum(bool verifyFileName) {
    bool valid = false;
    if (HasNewStyleChecksum(verifyFileName, valid)) return valid;
    return !verifyFileName && HasOldStyleChecksum(verifyFileName, valid) && valid;
}

ProtectedFileObject::Verification ProtectedFileObject::Verify() const {
    bool valid = false;
    const int status = GetErrorStatus();
    Verification result = Verification::Unsigned;
    if (HasNewStyleChecksum(true, valid)) {
        result = Verification::Valid;
        if (!valid) {
            HasNewStyleChecksum(false, valid);
            result = valid ? Verification::TitleChanged : Verification::ContentChanged;
        }
    } else if (HasOldStyleChecksum(true, valid)) {
        result = Verification::Valid;
        if (!valid) {
            HasOldStyleChecksum(false, valid);
            result = valid ? Verification::TitleChanged : Verification::ContentChanged;
        }
    }
    SetErrorStatus(status);
    return result;
}

// ---- opening

bool ProtectedFileObject::Refuse(std::wstring_view name) {
    SetErrorStatus(kFileBadChecksum);
    FileError(name, FileError::GENERAL).Report(errorText);
    return false;
}

// Whoever asked for no verification gets the file as it is; that the new signature reaches the disk is wanted, not
// needed: the file may lie on a share that others use.
bool ProtectedFileObject::SignAgain() {
    if (KeepDamagedFile()) {
        ReadOnlyLift lift(GetFileName());
        if (CreateCheckSum()) FileSave(L"", 0, kSave);
    }
    SetErrorStatus(kFileOk);
    return true;
}

bool ProtectedFileObject::FileOpen(std::wstring_view name, bool verifyFileName, int flags) {
    SetErrorStatus(kFileOk);
    const std::wstring path(name);
    if (!FileObject::FileOpen(path, flags)) return false;
    if ((flags & kOpenCreateBit) != 0) return true;

    bool newOk = false, oldOk = false;
    const bool hasNew = HasNewStyleChecksum(verifyFileName, newOk);
    const bool hasOld = HasOldStyleChecksum(verifyFileName, oldOk);
    SetErrorStatus(kFileOk);
    if (hasNew && newOk) return true;
    if (verifyFileName) return !hasNew && hasOld && oldOk ? true : Refuse(path);
    // An enciphered file carries its signature inside: signing it here would destroy the cipher text.
    if (HasSection(kEncryptedSection)) return true;
    return SignAgain();
}

bool ProtectedFileObject::FileOpen_NoFileClose(std::wstring_view name, bool verifyFileName, int flags) {
    SetKeepOpen(false);
    try {
        const bool opened = FileOpen(name, verifyFileName, flags);
        SetKeepOpen(true);
        return opened;
    } catch (...) {
        SetKeepOpen(true);
        throw;
    }
}

bool ProtectedFileObject::FileOpen(const memfile& file, bool verifyFileName) {
    memfile copy = file;
    archive stream(copy, true);
    if (Read(stream)) {
        SetReadStatus(true);
        if (CompareCheckSum(verifyFileName)) return true;
    }
    SetErrorStatus(kFileBadChecksum);
    return false;
}

// ---- saving

bool ProtectedFileObject::FileSave(std::wstring_view name, int /*reserved*/, int flags) {
    SetErrorStatus(kFileOk);
    const std::wstring path(name.empty() ? std::wstring_view(GetFileName()) : name);
    if (path.empty()) {
        SetErrorStatus(kFileNoName);
        return false;
    }
    // A checksum in clear behind the cipher text would spoil it: `Encrypt` is the way to change such a file.
    if (Content().HasCipher()) {
        SetErrorStatus(kFileCannotAccess);
        return false;
    }
    ReadOnlyLift lift(path);
    if (lift.Result() != FsResult::Ok) {
        SetErrorStatus(kFileCannotAccess);
        return false;
    }
    CreateCheckSum();
    if (!FileObject::FileSave(path, flags)) return false;  // status 9
    if (lift.Restore() != FsResult::Ok) {
        SetErrorStatus(kFileCannotAccess);
        return false;
    }
    return CreateCheckSum();
}

bool ProtectedFileObject::FileSave(memfile& file) {
    SetErrorStatus(kFileOk);
    if (!Content().HasCipher()) CreateCheckSum();
    archive stream(file, false);
    return Write(stream);
}

// ---- enciphered form

bool ProtectedFileObject::Encrypt() {
    return HasSection(kEncryptedSection) ? Decipher() : Encipher();
}

bool ProtectedFileObject::Decipher() {
    const std::wstring path = GetFileName();
    std::string bytes;
    if (ReadWholeFile(path, bytes, Share::DenyWrite, ConfigText::kMaxBytes) != FsResult::Ok) {
        SetErrorStatus(kFileCannotAccess);
        FileError(path, FileError::GENERAL).Report(errorText);
        return false;
    }
    const std::size_t line = bytes.find(kEncryptedLine);
    if (line != std::string::npos) bytes.erase(0, line + kEncryptedLine.size());
    PadToBlock(bytes);
    if (!BlowfishDecipher(bytes, kCipherKey)) return false;
    // Into another object first: what doesn't decipher has no sections, and must leave this one able to try again.
    FobjSection cursor;
    std::wstring first;
    ProtectedFileObject plain;
    if (!plain.FileObject::FileOpen(memfile(bytes.data(), bytes.size(), textencoding::utf8bom), path) ||
        !plain.GetFirstSectionEntry(cursor, first) ||
        !FileObject::FileOpen(memfile(bytes.data(), bytes.size(), textencoding::utf8bom), path)) {
        return false;
    }
    bool valid = false;
    return HasNewStyleChecksum(true, valid);  // without a signature the content is there all the same
}

bool ProtectedFileObject::Encipher() {
    CharBuffer buffer;
    if (!FileObject::FileSave(buffer, textencoding::utf8bom)) return false;
    std::string& bytes = buffer.Bytes();
    PadToBlock(bytes);
    if (!BlowfishEncipher(bytes, kCipherKey)) return false;
    if (SaveWholeFile(GetFileName(), std::string(kEncryptedLine) + bytes) != FsResult::Ok) {
        SetErrorStatus(kFileCannotAccess);
        FileError(GetFileName(), FileError::GENERAL).Report(errorText);
        return false;
    }
    return true;
}

}  // namespace orv
