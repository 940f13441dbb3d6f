#include "core/ProtectedFileObject.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <functional>

#include "core/ChecksumSum.h"
#include "core/ConfigText.h"
#include "platform/notify/Notices.h"
#include "platform/os/FileSystem.h"
#include "platform/text/Utf.h"
#include "support/TestSupport.h"

namespace orv {
namespace {

using test::ReadBytes;
using test::TempFolder;
using test::WriteBytes;

constexpr std::string_view kContent = "; note\r\n[A]\r\nk=v\r\n[B]\r\nx=\xC3\x84 1\r\ny=2\r\n";

void Sign(const std::wstring& path) {
    ProtectedFileObject file;
    ASSERT_TRUE(file.FileOpen(path, false, kOpenRead));
}

void Replace(const std::wstring& path, std::string_view from, std::string_view to) {
    std::string bytes = ReadBytes(path);
    bytes.replace(bytes.find(from), from.size(), to);
    WriteBytes(path, bytes);
}

// Opens strictly; the status, or 0 when the file was accepted.
int StrictStatus(const std::wstring& path) {
    const NoticeRecorder quiet;
    ProtectedFileObject file;
    return file.FileOpen(path, true, kOpenRead) ? 0 : std::max(1, file.GetErrorStatus());
}

class ProtectedFile : public ::testing::Test {
protected:
    ProtectedFile() { WriteBytes(path, kContent); }
    TempFolder folder;
    std::wstring path = folder / L"Sample.ini";
};

// Files in the field are signed with these: a change of the seeds, the salts or the arithmetic refuses them all.
TEST_F(ProtectedFile, SignatureIsThatOfAllInstallations) {
    test::ScopedZone zone("Pacific/Auckland");
    test::CommaLocale comma;
    Sign(path);
    EXPECT_EQ(ReadBytes(path).substr(kContent.size()),
              "\r\n[Checksum]\r\n"
              "ContentHash="
              "69d578c97309cbab99d42f2fac379e772d19355ff381650ee572c533ea8419b10c04d637e857ef7455b33096cc54bf8e703457f7"
              "b3752d722a552a05e9e8bf9a\r\n");
    EXPECT_EQ(CalcCheckSum(L"\x1F6A2 Job", SumMode::Xor), CalcCheckSum("\xF0\x9F\x9A\xA2 Job", SumMode::Xor));
    EXPECT_EQ(
        CalcCheckSum(std::wstring(65, L'a') + L"b", SumMode::Xor) - CalcCheckSum(std::wstring(65, L'a'), SumMode::Xor),
        CalcCheckSum(L"ab", SumMode::Xor) - CalcCheckSum(L"a", SumMode::Xor))
        << "behind the last seed comes the second";
}

TEST_F(ProtectedFile, EditedOrRenamedFilesAreNoticed) {
    EXPECT_EQ(StrictStatus(path), kFileBadChecksum) << "unsigned";
    Sign(path);
    EXPECT_EQ(StrictStatus(path), 0);

    const std::string signedBytes = ReadBytes(path);
    WriteBytes(folder / L"sAMPLE.ini", signedBytes);
    EXPECT_EQ(StrictStatus(folder / L"sAMPLE.ini"), 0) << "the title counts without case";
    WriteBytes(folder / L"Other.ini", signedBytes);
    EXPECT_EQ(StrictStatus(folder / L"Other.ini"), kFileBadChecksum);
    ProtectedFileObject other;
    EXPECT_TRUE(other.FileOpen(folder / L"Other.ini", false, kOpenRead));
    EXPECT_EQ(ReadBytes(folder / L"Other.ini"), signedBytes) << "the content is right: nothing to write";
    EXPECT_EQ(other.Verify(), ProtectedFileObject::Verification::TitleChanged);

    Replace(path, "x=\xC3\x84 1\r\ny=2", "y=2\r\nx=\xC3\x84 1");
    EXPECT_EQ(StrictStatus(path), 0) << "order doesn't count";
    Replace(path, "; note", "; changed");
    EXPECT_EQ(StrictStatus(path), kFileBadChecksum) << "lines before the sections do";
    const std::string edited = ReadBytes(path);
    NoticeRecorder notices;
    ProtectedFileObject file;
    EXPECT_FALSE(file.FileOpen(path, true, kOpenRead));
    EXPECT_TRUE(file.HasKey(L"A", L"k")) << "refused, but there to look at";
    EXPECT_NE(notices.Text(Notice::ErrorReport).find(path), std::wstring::npos);
    EXPECT_EQ(ReadBytes(path), edited);
    Sign(path);
    EXPECT_EQ(StrictStatus(path), 0);
}

TEST_F(ProtectedFile, OldStyleIsAcceptedUpgradedAndKept) {
    ConfigText content;
    content.Parse(std::make_shared<std::string>(kContent));
    const std::uint32_t first = SumOfContent(content, SumMode::And) + CalcCheckSum("; note", SumMode::And);
    const std::uint32_t second = first + CalcCheckSum(L"Sample", SumMode::And);
    const auto old = [&](std::uint32_t a, std::uint32_t b) {
        WriteBytes(path, std::string(kContent) + "[Checksum]\r\nChecksum=" + std::to_string(a) + "," +
                             std::to_string(b) + "\r\n");
    };
    old(first, second);
    const std::string before = ReadBytes(path);
    EXPECT_EQ(StrictStatus(path), 0);
    EXPECT_EQ(ReadBytes(path), before);
    old(first, second + 1);
    EXPECT_EQ(StrictStatus(path), kFileBadChecksum);
    Sign(path);
    EXPECT_NE(ReadBytes(path).find("ContentHash="), std::string::npos);
    EXPECT_NE(ReadBytes(path).find("Checksum=" + std::to_string(first) + "," + std::to_string(second)),
              std::string::npos);
    Replace(path, "ContentHash=", "ContentHash=0");
    EXPECT_EQ(StrictStatus(path), kFileBadChecksum) << "a bad new one isn't made good by a good old one";
}

TEST_F(ProtectedFile, ReadOnlyFilesAreSavedAndStayReadOnly) {
    Sign(path);
    ASSERT_EQ(Files().SetReadOnly(path, true), FsResult::Ok);
    ProtectedFileObject file;
    ASSERT_TRUE(file.FileOpen(path, true, kOpenRead) && file.SetItem(L"A", L"k", L"w", true));
    EXPECT_TRUE(file.FileSave(L"", 0, kSave));
    FileStatus status;
    ASSERT_EQ(Files().Status(path, status), FsResult::Ok);
    EXPECT_TRUE(status.readOnly);
    EXPECT_EQ(StrictStatus(path), 0);
    ASSERT_EQ(Files().SetReadOnly(path, false), FsResult::Ok);
    Replace(path, "k=w", "k=z");
    ASSERT_EQ(Files().SetReadOnly(path, true), FsResult::Ok);
    Sign(path);
    ASSERT_EQ(Files().Status(path, status), FsResult::Ok);
    EXPECT_TRUE(status.readOnly);
    EXPECT_EQ(StrictStatus(path), 0);
    ProtectedFileObject created;
    EXPECT_TRUE(created.FileOpen(folder / L"New.ini", true, kOpenCreateRead)) << "a new file isn't verified";
    EXPECT_EQ(ReadBytes(folder / L"New.ini"), "");
}

TEST_F(ProtectedFile, EnciphersAndBack) {
    ProtectedFileObject file;
    ASSERT_TRUE(file.FileOpen(path, false, kOpenRead));
    ASSERT_TRUE(file.Encrypt());
    const std::string cipher = ReadBytes(path);
    EXPECT_EQ(cipher.substr(0, 13), "[Encrypted]\r\n");
    EXPECT_EQ(cipher.find("k=v"), std::string::npos);

    ProtectedFileObject again;
    ASSERT_TRUE(again.FileOpen(path, false, kOpenRead));
    EXPECT_EQ(ReadBytes(path), cipher) << "an open must not destroy the cipher text";
    EXPECT_FALSE(again.FileSave(L"", 0, kSave)) << "a checksum in clear behind the cipher text would spoil it";
    EXPECT_EQ(ReadBytes(path), cipher);
    ASSERT_TRUE(again.Encrypt());
    std::wstring value;
    EXPECT_TRUE(again.GetItem(L"B", L"x", value) && value == L"\u00C4 1");
    EXPECT_EQ(again.Verify(), ProtectedFileObject::Verification::Valid);

    WriteBytes(path, "[A]\r\nx=1\r\n");
    ProtectedFileObject unsignedFile;
    ASSERT_TRUE(unsignedFile.FileObject::FileOpen(path, kOpenRead) && unsignedFile.Encrypt());
    ASSERT_TRUE(again.FileOpen(path, false, kOpenRead));
    EXPECT_FALSE(again.Encrypt()) << "it has no signature";
    EXPECT_TRUE(again.GetItem(L"A", L"x", value) && value == L"1") << "what it holds is there all the same";

    WriteBytes(path, "[Encrypted]\r\n" + std::string(64, '\x5A'));
    ASSERT_TRUE(again.FileOpen(path, false, kOpenRead));
    EXPECT_FALSE(again.Encrypt());
    EXPECT_TRUE(again.HasSection(L"Encrypted")) << "may be tried again, and saves nothing of what it isn't";
}

TEST_F(ProtectedFile, LenientOpenKeepsDamagedFile) {
    const std::string damaged = std::string(kContent) + "torn li\x01ne\r\n";
    WriteBytes(path, damaged);
    NoticeRecorder notices;
    Sign(path);
    std::vector<FolderEntry> entries;
    ASSERT_EQ(Files().List(folder.Path(), entries), FsResult::Ok);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(ReadBytes(folder / entries[1].name), damaged);
    EXPECT_NE(notices.Text(Notice::Information).find(entries[1].name), std::wstring::npos);
}

// ---- a save that is interrupted

struct Saver {
    const char* name;
    std::function<void(const std::wstring& path)> save;
};

const Saver kSavers[] = {
    {"configuration",
     [](const std::wstring& path) {
         FileObject file;
         if (file.FileOpen(path, kOpenRead) && file.SetItem(L"A", L"k", std::wstring(5000, L'w'), true))
             file.FileSave(L"", kSave);
     }},
    {"protected",
     [](const std::wstring& path) {
         ProtectedFileObject file;
         if (file.FileOpen(path, true, kOpenRead) && file.SetItem(L"A", L"k", L"new", true))
             file.FileSave(L"", 0, kSave);
     }},
    {"enciphered",
     [](const std::wstring& path) {
         ProtectedFileObject file;
         if (file.FileOpen(path, true, kOpenRead)) file.Encrypt();
     }},
};

TEST_F(ProtectedFile, InterruptedSaveLeavesOldOrNewContentWhole) {
    Sign(path);
    const std::string before = ReadBytes(path);
    for (const Saver& saver : kSavers) {
        WriteBytes(path, before);
        saver.save(path);
        const std::string after = ReadBytes(path);
        ASSERT_NE(after, before) << saver.name;
        for (const bool killed : {false, true}) {
            bool hit = true;
            for (int call = 1; hit; ++call) {
                WriteBytes(path, before);
                if (killed) {
                    const pid_t child = fork();
                    if (child == 0) {
                        FailingFileSystem failing(call, [] { _exit(9); });
                        SetFileSystem(&failing);
                        saver.save(path);
                        _exit(0);
                    }
                    int status = 0;
                    waitpid(child, &status, 0);
                    hit = WEXITSTATUS(status) == 9;
                } else {
                    FailingFileSystem failing(call);
                    SetFileSystem(&failing);
                    const NoticeRecorder quiet;
                    saver.save(path);
                    SetFileSystem(nullptr);
                    hit = failing.HasFailed();
                }
                const std::string now = ReadBytes(path);
                EXPECT_TRUE(now == before || now == after)
                    << saver.name << ", call " << call << (killed ? ", killed" : "");
                if (!hit) {
                    EXPECT_EQ(now, after) << saver.name;
                    EXPECT_GT(call, 8) << "the save must have gone through the file system";
                }
            }
        }
    }
}

}  // namespace
}  // namespace orv
