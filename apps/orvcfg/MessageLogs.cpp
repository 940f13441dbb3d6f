#include "MessageLogs.h"

#include <algorithm>

#include "Installation.h"
#include "Session.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

constexpr std::string_view kTimeForm = "0000-00-00 00:00:00 : ";
constexpr std::size_t kTimeSize = 19;
constexpr std::uint64_t kLongestLog = 1ull << 30;  // bytes

bool StartsWithTime(std::string_view line) {
    if (line.size() < kTimeForm.size()) return false;
    for (std::size_t i = 0; i < kTimeForm.size(); ++i) {
        const bool digit = line[i] >= '0' && line[i] <= '9';
        if (kTimeForm[i] == '0' ? !digit : line[i] != kTimeForm[i]) return false;
    }
    return true;
}

bool IsAboutSession(std::string_view line) {
    return line == "*** Start of ORV Session ***" || line == "*** Start of Logging Session ***" ||
           line == "*** End of Logging Session ***";
}

}  // namespace

std::vector<LoggedMessage> ReadMessages(std::string_view bytes) {
    std::vector<LoggedMessage> messages;
    std::size_t number = 0;
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size());
        std::string_view line = bytes.substr(0, end);
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
        ++number;
        while (line.ends_with('\r')) line.remove_suffix(1);
        if (line.empty() || IsAboutSession(line)) continue;
        if (StartsWithTime(line)) {
            messages.push_back(
                {std::string(line.substr(0, kTimeSize)), std::string(line.substr(kTimeForm.size())), number});
        } else if (!messages.empty() && !messages.back().time.empty()) {
            messages.back().text.append(" ").append(line);
        } else {
            messages.push_back({{}, std::string(line), number});
        }
    }
    return messages;
}

MessageLogFile LogOfName(const std::wstring& path) {
    constexpr std::size_t dateSize = 8;
    const std::string title = ToUtf8(GetTitleFromPath(path));
    MessageLogFile log = {path, title, {}};
    if (title.size() <= dateSize + 1) return log;
    const std::size_t at = title.size() - dateSize;
    if (title[at - 1] != '_' || title.find_first_not_of("0123456789", at) != std::string::npos) return log;
    log.application = title.substr(0, at - 1);
    log.date = title.substr(at);
    return log;
}

bool FindMessageLogs(Session& session, const std::string& application, std::vector<MessageLogFile>& logs) {
    if (!OpenInstallation(session) || !OpenProject(session)) return false;
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring folder, extension;
    if (!search.GetFilePath(kFileTypeEventLogData, folder) ||
        !search.GetFileExtension(kFileTypeEventLogData, extension)) {
        session.Problem({}, "The folder of the message logs isn't known", "See \"orvcfg paths\", or name log files.");
        return false;
    }
    const std::wstring wanted = TextArgument(application);
    for (const FolderEntry& entry : FindFiles(folder, L"*" + extension)) {
        if (entry.isFolder) continue;
        MessageLogFile log = LogOfName(folder + entry.name);
        const std::wstring of = FromUtf8(log.application);
        const bool matches =
            wanted.empty() || EqualNoCase(of, wanted) || ToLower(of).starts_with(ToLower(wanted) + L"_");
        if (!log.date.empty() && matches) logs.push_back(std::move(log));
    }
    std::stable_sort(logs.begin(), logs.end(),
                     [](const MessageLogFile& a, const MessageLogFile& b) { return a.date < b.date; });
    if (logs.empty()) session.Note("no message logs in " + PathToBytes(folder));
    return true;
}

bool ReadMessageLog(Session& session, const MessageLogFile& log, std::vector<LoggedMessage>& messages) {
    std::string bytes;
    // Its program may be writing it.
    const FsResult result = ReadWholeFile(log.path, bytes, Share::DenyNone, kLongestLog);
    if (result != FsResult::Ok) {
        session.Problem(PathToBytes(log.path), "Can't be read: " + ToUtf8(FsResultText(result)),
                        "Check name and rights.");
        return false;
    }
    messages = ReadMessages(bytes);
    return true;
}

}  // namespace orv::cfg
