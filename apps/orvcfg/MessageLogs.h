#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orv::cfg {

class Session;

/// One message of a log file.
struct LoggedMessage {
    std::string time;  ///< "YYYY-MM-DD HH:MM:SS", local; empty where the host leaves it out
    std::string text;
    std::size_t line = 0;  ///< from 1
};

/// The messages of a log's bytes; the lines about sessions and blank lines are none. A line without a time behind one
/// with a time belongs to that message: texts may hold line breaks.
std::vector<LoggedMessage> ReadMessages(std::string_view bytes);

/// A log file, by its name: application, prefix if it has one, and date.
struct MessageLogFile {
    std::wstring path;
    std::string application;  ///< with the prefix, as the name has it
    std::string date;         ///< YYYYMMDD
};
/// The file that a name means; `date` is empty for one that no application gives to a log.
MessageLogFile LogOfName(const std::wstring& path);
/// Logs of the project's event log folder, oldest first; of an application if one is named. False after a problem has
/// been told.
bool FindMessageLogs(Session& session, const std::string& application, std::vector<MessageLogFile>& logs);
/// False after a problem has been told.
bool ReadMessageLog(Session& session, const MessageLogFile& log, std::vector<LoggedMessage>& messages);

}  // namespace orv::cfg
