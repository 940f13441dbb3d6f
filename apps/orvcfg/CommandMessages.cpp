#include <algorithm>

#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "MessageLogs.h"
#include "TimeText.h"
#include "platform/os/Clock.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::vector<std::string> files, words;
    std::string application, from, to;
    int count = 20;
};

struct Row {
    LoggedMessage message;
    const MessageLogFile* log = nullptr;
};

/// Chosen by name, or all of the project. False after a problem has been told.
bool ChooseLogs(Session& session, const Arguments& arguments, std::vector<MessageLogFile>& logs) {
    if (arguments.files.empty()) return FindMessageLogs(session, arguments.application, logs);
    for (const std::string& file : arguments.files) logs.push_back(LogOfName(PathArgument(file)));
    return true;
}

/// Several applications write at the same time. What stands before a file's first time comes first.
void SortByTime(std::vector<Row>& rows) {
    std::stable_sort(rows.begin(), rows.end(),
                     [](const Row& a, const Row& b) { return a.message.time < b.message.time; });
}

void PrintRows(Session& session, const std::vector<Row>& rows) {
    Table table({{"Time", "time"},
                 {"Application", "application"},
                 {"Message", "text"},
                 {"File", "file", false, true},
                 {"Line", "line", true, true}});
    for (const Row& row : rows) {
        table.Add({row.message.time.empty() ? Cell::Missing("without a time") : Cell::Of(row.message.time),
                   Cell::Of(row.log->application), Cell::Of(row.message.text), Cell::Path(row.log->path),
                   Cell::Count(static_cast<std::int64_t>(row.message.line))});
    }
    if (table.Empty()) session.Note("no messages");
    Document::Print(session, table);
}

ExitCode Tail(Session& session, const Arguments& arguments) {
    std::vector<MessageLogFile> logs;
    if (!ChooseLogs(session, arguments, logs)) return kCannotRun;
    std::vector<Row> rows;
    const auto count = static_cast<std::size_t>(arguments.count);
    bool good = true;
    // Day by day from the newest, all files of a day, until there are enough.
    for (std::size_t end = logs.size(); end > 0 && rows.size() < count;) {
        std::size_t begin = end - 1;
        while (begin > 0 && logs[begin - 1].date == logs[end - 1].date) --begin;
        std::vector<Row> day;
        for (std::size_t i = begin; i < end; ++i) {
            std::vector<LoggedMessage> messages;
            good = ReadMessageLog(session, logs[i], messages) && good;
            for (LoggedMessage& message : messages) day.push_back({std::move(message), &logs[i]});
        }
        SortByTime(day);
        rows.insert(rows.begin(), std::make_move_iterator(day.begin()), std::make_move_iterator(day.end()));
        end = begin;
    }
    if (rows.size() > count) rows.erase(rows.begin(), rows.end() - static_cast<std::ptrdiff_t>(count));
    PrintRows(session, rows);
    return good ? kAllGood : kSomeFailed;
}

// ---- search

/// A limit as the logs write times; empty for none. None after a problem has been told.
std::optional<std::string> Limit(Session& session, const std::string& argument) {
    if (argument.empty()) return std::string();
    if (const std::optional<CTime> time = ReadTime(argument)) {
        return ToUtf8(CExTime::TimeToString(static_cast<double>(*time) * 1000.0, 1, 0, 1));
    }
    session.Problem({}, "\"" + argument + "\" is no time", kTimeForms);
    return std::nullopt;
}

bool HoldsAll(const std::string& text, const std::vector<std::wstring>& words) {
    const std::wstring lower = ToLower(FromUtf8(text));
    return std::all_of(words.begin(), words.end(),
                       [&](const std::wstring& word) { return lower.find(word) != std::wstring::npos; });
}

ExitCode Search(Session& session, const Arguments& arguments) {
    const auto from = Limit(session, arguments.from), to = Limit(session, arguments.to);
    std::vector<MessageLogFile> logs;
    if (!from || !to || !ChooseLogs(session, arguments, logs)) return kCannotRun;
    std::vector<std::wstring> words;
    for (const std::string& word : arguments.words) words.push_back(ToLower(TextArgument(word)));
    std::vector<Row> rows;
    bool good = true;
    session.progress.Expect("logs", logs.size());
    for (const MessageLogFile& log : logs) {
        const Progress::Item counted(session.progress);
        std::vector<LoggedMessage> messages;
        good = ReadMessageLog(session, log, messages) && good;
        for (LoggedMessage& message : messages) {
            const std::string& time = message.time;
            // Without a time a message can't be said to lie outside.
            const bool within = time.empty() || ((from->empty() || time >= *from) && (to->empty() || time < *to));
            if (within && HoldsAll(message.text, words)) rows.push_back({std::move(message), &log});
        }
    }
    SortByTime(rows);
    PrintRows(session, rows);
    return good ? kAllGood : kSomeFailed;
}

}  // namespace

void AddMessages(CLI::App& app, Session& session) {
    CLI::App* group = AddGroup(app, "messages", "Show what the applications logged");
    auto last = std::make_shared<Arguments>();
    CLI::App* tail = AddCommand(*group, "tail", "The last messages of all applications, in the order of time",
                                "  orvcfg --project Harbour messages tail -n 50\n"
                                "  orvcfg messages tail survey_20260302.log");
    tail->add_option("FILE", last->files, "Log files. Default: those of the project");
    tail->add_option("-n,--count", last->count, "So many")
        ->check(CLI::Range(1, 1000000).description(""))
        ->type_name("N")
        ->capture_default_str();
    tail->add_option("--application", last->application, "Only of this application")->type_name("NAME");
    OnRun(tail, session, last, Tail);

    auto wanted = std::make_shared<Arguments>();
    CLI::App* search = AddCommand(*group, "search", "Messages that hold all of the words, ignoring case",
                                  "  orvcfg messages search gps lost --from 2026-03-02 --to 2026-03-05");
    search->add_option("WORD", wanted->words, "Parts of the text")->required();
    search->add_option("--file", wanted->files, "Log file; may be given again. Default: those of the project")
        ->type_name("FILE")
        ->expected(1)
        ->take_all();
    search->add_option("--from", wanted->from, "Not before this local time")->type_name("TIME");
    search->add_option("--to", wanted->to, "Before this local time")->type_name("TIME");
    search->add_option("--application", wanted->application, "Only of this application")->type_name("NAME");
    OnRun(search, session, wanted, Search);
}

}  // namespace orv::cfg
