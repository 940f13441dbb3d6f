#include "users/UserAccountsFile.h"

#include <algorithm>

#include "core/ChecksumSum.h"
#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/crypto/Blowfish.h"
#include "platform/crypto/Wipe.h"
#include "platform/os/FileTools.h"
#include "platform/text/Utf.h"
#include "users/UserAccessLevelsFile.h"

namespace orv {

namespace {

constexpr std::wstring_view kDefault = L"1", kNotDefault = L"0";
constexpr std::wstring_view kLayoutPrefix = L"[AcqComp]";
constexpr std::uint64_t kLongestFile = 4 << 20;  // bytes: more than twenty thousand persons

using Field = UserDataRecord::Field;

/// A password that is none any more once it is stored would open the account to everybody.
bool LosesPassword(const UserDataRecord& user, const std::wstring& password) {
    return !password.empty() && user.IsEmpty(Field::kPassword);
}

}  // namespace

// ---- one account

UserDataRecord::UserDataRecord(std::string_view plain) {
    if (plain.size() != kSize) return;
    for (std::size_t start = 0; start < kSize; start += kFieldSize) {
        const std::string_view text = plain.substr(start, kFieldSize - 1);
        std::copy_n(text.begin(), std::min(text.find('\0'), text.size()),
                    bytes.begin() + static_cast<std::ptrdiff_t>(start));
    }
}

UserDataRecord::~UserDataRecord() {
    WipeMemory(bytes.data(), bytes.size());
}

void UserDataRecord::Set(Field field, std::wstring_view text) {
    char* const start = bytes.data() + field * kFieldSize;
    WipeMemory(start, kFieldSize);
    std::size_t used = 0;
    bool ended = false;
    ForEachUtf16Unit(text, [&](unsigned short unit) {
        const char low = static_cast<char>(unit & 0xFF);
        ended = ended || low == 0 || used == kFieldSize - 1;
        if (!ended) start[used++] = low;
    });
}

std::wstring UserDataRecord::Get(Field field) const {
    std::wstring text;
    for (const char* c = bytes.data() + field * kFieldSize; *c; ++c) text += static_cast<unsigned char>(*c);
    return text;
}

bool UserDataRecord::Holds(Field field, std::wstring_view text) const {
    const char* c = bytes.data() + field * kFieldSize;
    for (const wchar_t wanted : text) {
        const std::uint32_t held = static_cast<unsigned char>(*c++);
        if (held == 0 || held != static_cast<std::uint32_t>(wanted)) return false;
    }
    return *c == 0;
}

std::vector<UserDataRecord> ReadUserRecords(std::string_view cipherText) {
    std::vector<UserDataRecord> records;
    records.reserve(cipherText.size() / UserDataRecord::kSize);
    std::string block;
    for (; cipherText.size() >= UserDataRecord::kSize; cipherText.remove_prefix(UserDataRecord::kSize)) {
        block = cipherText.substr(0, UserDataRecord::kSize);
        if (BlowfishDecipher(block, kCipherKey)) records.emplace_back(block);
        WipeMemory(block.data(), block.size());
    }
    return records;
}

std::string WriteUserRecords(const std::vector<UserDataRecord>& records) {
    std::string cipherText, block;
    for (const UserDataRecord& record : records) {
        block = record.Bytes();
        if (BlowfishEncipher(block, kCipherKey)) cipherText += block;
    }
    return cipherText;
}

// ---- the file

UserAccountsFile::UserAccountsFile() {
    Read();
}

void UserAccountsFile::Read() {
    UserAccessLevelsFile levels;
    levels.ReadUserAccessLevelsFile();
    levelNames = levels.Levels();
    for (const std::wstring& level : levelNames) layouts.emplace_back(level, std::wstring(kLayoutPrefix) + level);

    std::wstring folder;
    if (!DataSearch::GetDataSearch().GetFilePath(kFileTypeSystem, folder)) return;
    path = folder + std::wstring(USER_ACCOUNTS_FILENAME);
    std::string cipherText;
    const FsResult result = ReadWholeFile(path, cipherText, Share::DenyNone, kLongestFile);
    unread = result != FsResult::Ok && result != FsResult::NotFound;
    users = ReadUserRecords(cipherText);
}

bool UserAccountsFile::FileSave() const {
    if (path.empty() || unread) return false;
    return SaveWholeFile(path, WriteUserRecords(users), SaveAccess::OwnerOnly) == FsResult::Ok;
}

std::wstring UserAccountsFile::Text(int index, Field field) const {
    return HasUser(index) ? users[static_cast<std::size_t>(index)].Get(field) : std::wstring();
}

bool UserAccountsFile::UserIsDefaultLevel(int index) const {
    return Text(index, Field::kDefaultFlag) == kDefault;
}

bool UserAccountsFile::SetUserAsDefault(int index, bool isDefault) {
    if (!HasUser(index)) return false;
    users[static_cast<std::size_t>(index)].Set(Field::kDefaultFlag, isDefault ? kDefault : kNotDefault);
    return true;
}

std::wstring UserAccountsFile::LevelName(int index) const {
    return index >= 0 && index < LevelCount() ? levelNames[static_cast<std::size_t>(index)] : std::wstring();
}

bool UserAccountsFile::GetLayoutForLevel(const std::wstring& level, std::wstring& out) const {
    const auto pair = std::find_if(layouts.begin(), layouts.end(), [&](const auto& p) { return p.first == level; });
    if (pair == layouts.end()) return false;
    out = pair->second;
    return true;
}

std::wstring UserAccountsFile::GetDefaultUserName() const {
    const auto user = std::find_if(users.begin(), users.end(),
                                   [](const UserDataRecord& u) { return u.Get(Field::kDefaultFlag) == kDefault; });
    return user != users.end() ? user->Get(Field::kName) : std::wstring();
}

// The account's own name and level are cut as they are stored, so the layout is looked up by the level as it was given.
void UserAccountsFile::SetLevel(UserDataRecord& user, const std::wstring& level) const {
    std::wstring layout;
    GetLayoutForLevel(level, layout);
    user.Set(Field::kLevel, level);
    user.Set(Field::kLayout, layout);
}

bool UserAccountsFile::AddUser(const std::wstring& name, const std::wstring& password, const std::wstring& level) {
    UserDataRecord user;
    user.Set(Field::kName, name);
    user.Set(Field::kPassword, password);
    user.Set(Field::kDefaultFlag, kNotDefault);
    SetLevel(user, level);
    if (name.empty() || level.empty() || LosesPassword(user, password)) return false;
    users.push_back(user);
    return true;
}

bool UserAccountsFile::IsBuiltIn(int index) const {
    return !levelNames.empty() && users[static_cast<std::size_t>(index)].Holds(Field::kName, levelNames.front());
}

bool UserAccountsFile::ModifyUser(int index, const std::wstring& name, const std::wstring& password,
                                  const std::wstring& level) {
    if (!HasUser(index) || levelNames.empty()) return false;
    UserDataRecord user = users[static_cast<std::size_t>(index)];
    if (IsBuiltIn(index) && !user.Holds(Field::kName, name)) return false;
    user.Set(Field::kName, name);
    if (!user.Holds(Field::kLevel, level)) SetLevel(user, level);
    user.Set(Field::kPassword, password);
    if (LosesPassword(user, password)) return false;
    users[static_cast<std::size_t>(index)] = user;
    return true;
}

bool UserAccountsFile::RemoveUser(int index) {
    if (!HasUser(index) || levelNames.empty() || IsBuiltIn(index)) return false;
    users.erase(users.begin() + index);
    return true;
}

int UserAccountsFile::GetUserIndex(const std::wstring& name) const {
    const auto user =
        std::find_if(users.begin(), users.end(), [&](const UserDataRecord& u) { return u.Holds(Field::kName, name); });
    return user != users.end() ? static_cast<int>(user - users.begin()) : -1;
}

bool UserAccountsFile::ValidateUser(const std::wstring& name, const std::wstring& password,
                                    std::wstring& outLevel) const {
    const int index = GetUserIndex(name);
    if (index < 0) return false;
    const UserDataRecord& user = users[static_cast<std::size_t>(index)];
    if (!UserIsDefaultLevel(index) && !user.Holds(Field::kPassword, password)) return false;
    outLevel = user.Get(Field::kLevel);
    return true;
}

bool UserAccountsFile::GetUserLevel(const std::wstring& name, std::wstring& out) const {
    const int index = GetUserIndex(name);
    if (index < 0) return false;
    out = UserLevel(index);
    return true;
}

}  // namespace orv
