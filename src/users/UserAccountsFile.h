#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Export.h"

namespace orv {

/// One account as the file holds it, deciphered: five narrow texts of at most 31 characters. Longer texts are cut, and
/// of each UTF-16 unit only the low byte is kept. Overwritten in memory when it goes.
class ORV_EXPORT UserDataRecord {
public:
    static constexpr std::size_t kFieldSize = 32;
    static constexpr std::size_t kSize = 5 * kFieldSize;
    enum Field : std::size_t { kName, kPassword, kLevel, kLayout, kDefaultFlag };

    UserDataRecord() = default;
    /// `bytes`: kSize of them, or none are taken. What follows a text's end is dropped.
    explicit UserDataRecord(std::string_view bytes);
    UserDataRecord(const UserDataRecord&) = default;
    UserDataRecord& operator=(const UserDataRecord&) = default;
    ~UserDataRecord();

    void Set(Field field, std::wstring_view text);
    std::wstring Get(Field field) const;
    /// True if the field reads exactly as `text`. A text that was changed by being stored is another one.
    bool Holds(Field field, std::wstring_view text) const;
    bool IsEmpty(Field field) const { return bytes[field * kFieldSize] == 0; }
    std::string_view Bytes() const { return {bytes.data(), bytes.size()}; }

private:
    std::array<char, kSize> bytes{};
};

/// Cipher text of an accounts file to records; an incomplete last record is dropped.
ORV_EXPORT std::vector<UserDataRecord> ReadUserRecords(std::string_view cipherText);
ORV_EXPORT std::string WriteUserRecords(const std::vector<UserDataRecord>& records);

/// The persons who may log in: name, password, access level, layout, and whether the account needs a password. Read
/// when it is made, changed in memory, saved whole. Accounts and levels are numbered from 0; a number beyond the list
/// gives an empty text. Main thread.
///
/// The account that bears the name of the first access level is built in: it is neither renamed nor removed.
class ORV_EXPORT UserAccountsFile {
public:
    /// No file, and no folder to look in, give no accounts.
    UserAccountsFile();
    virtual ~UserAccountsFile() = default;

    int UserCount() const { return static_cast<int>(users.size()); }
    std::wstring UserName(int index) const { return Text(index, UserDataRecord::kName); }
    std::wstring Password(int index) const { return Text(index, UserDataRecord::kPassword); }
    std::wstring UserLevel(int index) const { return Text(index, UserDataRecord::kLevel); }
    std::wstring UserLayout(int index) const { return Text(index, UserDataRecord::kLayout); }
    bool UserIsDefaultLevel(int index) const;
    bool SetUserAsDefault(int index, bool isDefault);  ///< the other accounts keep theirs
    int LevelCount() const { return static_cast<int>(levelNames.size()); }
    std::wstring LevelName(int index) const;
    bool GetLayoutForLevel(const std::wstring& level, std::wstring& out) const;
    std::wstring GetDefaultUserName() const;  ///< the first that needs no password, or empty

    /// Name and level are required. A name that is there already is taken again: the first one is found. A password
    /// that would be stored as none at all, for its foreign first character, is refused here and below: it would leave
    /// the account open to everybody.
    bool AddUser(const std::wstring& name, const std::wstring& password, const std::wstring& level);
    bool ModifyUser(int index, const std::wstring& name, const std::wstring& password, const std::wstring& level);
    bool RemoveUser(int index);
    /// An account that is flagged default takes any password.
    bool ValidateUser(const std::wstring& name, const std::wstring& password, std::wstring& outLevel) const;
    bool GetUserLevel(const std::wstring& name, std::wstring& out) const;
    int GetUserIndex(const std::wstring& name) const;  ///< -1 if there is none
    std::wstring GetPathToFile() const { return path; }
    /// Old content or new, whole, whatever happens; readable for its owner only. Refuses where the file was there but
    /// couldn't be read: accounts that nobody has seen must not vanish.
    [[nodiscard]] bool FileSave() const;

private:
    void Read();
    bool HasUser(int index) const { return index >= 0 && index < UserCount(); }
    std::wstring Text(int index, UserDataRecord::Field field) const;
    bool IsBuiltIn(int index) const;
    void SetLevel(UserDataRecord& user, const std::wstring& level) const;

    std::wstring path;  ///< empty if the folder is unknown
    bool unread = false;
    std::vector<std::wstring> levelNames;
    std::vector<std::pair<std::wstring, std::wstring>> layouts;  ///< of each level
    std::vector<UserDataRecord> users;
};

}  // namespace orv
