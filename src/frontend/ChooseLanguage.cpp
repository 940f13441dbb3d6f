#include "frontend/ChooseLanguage.h"

#include <array>
#include <charconv>
#include <limits>

#include "core/DataSearch.h"
#include "platform/os/FileTools.h"
#include "platform/os/ProgramPath.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv {

namespace {

constexpr std::wstring_view kLocalizations = L"localizations/";
constexpr std::wstring_view kShowAs = L"showas.txt";
constexpr std::size_t kShowAsRead = 1 << 16;  // bytes; the name stands in the first line
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// The number at the start of a name, clipped; 0 if there is none.
int LeadingHex(std::wstring_view name) {
    std::string ascii;
    for (const wchar_t c : name) ascii += c < 0x80 ? static_cast<char>(c) : '?';
    if (ascii.starts_with("0x") || ascii.starts_with("0X")) ascii.erase(0, 2);
    int id = 0;
    const auto result = std::from_chars(ascii.data(), ascii.data() + ascii.size(), id, 16);
    return result.ec == std::errc::result_out_of_range ? std::numeric_limits<int>::max() : id;
}

bool ReadStart(const std::wstring& path, std::string& bytes) {
    std::unique_ptr<File> file;
    if (Files().Open(path, {.share = Share::DenyNone}, file) != FsResult::Ok) return false;
    bytes.resize(kShowAsRead);
    std::size_t used = 0, got = 1;
    for (; got > 0 && used < kShowAsRead; used += got) {
        if (file->Read(bytes.data() + used, kShowAsRead - used, got) != FsResult::Ok) return false;
    }
    bytes.resize(used);
    return true;
}

std::wstring FromLatin1(std::string_view bytes) {
    std::wstring text;
    for (const char c : bytes) text += static_cast<unsigned char>(c);
    return text;
}

}  // namespace

bool ChooseLanguageCore::SearchForAvailableLanguages() {
    std::vector<Language> found;
    if (!GetAvailableLanguages(found)) return false;
    for (Language& language : found) languages[language.id] = std::move(language.name);
    return true;
}

bool ChooseLanguageCore::GetAvailableLanguages(std::vector<Language>& list) {
    list.clear();
    std::wstring folder = GetAppPath();
    CheckAppPathForDevelopEnvironment(folder);
    folder += kLocalizations;
    if (!FolderExists(folder)) return false;
    for (const FolderEntry& entry : FindFiles(folder, L"*.*")) {
        if (!entry.isFolder) continue;
        list.push_back({LeadingHex(entry.name), GetLanguageNameFromShowAs(folder + entry.name)});
    }
    return !list.empty();
}

std::wstring ChooseLanguageCore::GetLanguageNameFromShowAs(const std::wstring& folder) {
    std::string bytes;
    if (!ReadStart(WithSeparator(folder) + std::wstring(kShowAs), bytes)) return {};
    // These two have always been written as UTF-8.
    return ReadShowAs(bytes, EndsWithNoCase(folder, L"040A") || EndsWithNoCase(folder, L"040C"));
}

bool ChooseLanguageDialog::Ok(int id) const {
    return ChangeLanguageSetting(LanguageSettingText(id));
}

bool ChooseLanguageDialog::ChangeLanguageSetting(const std::wstring& text) {
    OrvIniFile_IO& settings = DataSearch::GetDataSearch().GetOrvIni();
    return settings.SetUserLanguage(text) && settings.FileSave(L"", 0, kSave);
}

std::wstring LanguageSettingText(int id) {
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), static_cast<unsigned>(id), 16).ptr;
    std::wstring text;
    for (const char* c = digits.data(); c != end; ++c) text += static_cast<wchar_t>(*c >= 'a' ? *c - 'a' + 'A' : *c);
    if (text.size() < 4) text.insert(0, 4 - text.size(), L' ');
    return text;
}

std::wstring ReadShowAs(std::string_view bytes, bool onlyUtf8) {
    if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
    const std::string_view line = bytes.substr(0, bytes.find_first_of("\r\n"));
    return onlyUtf8 || IsUtf8(line) ? FromUtf8(line) : FromLatin1(line);
}

}  // namespace orv
