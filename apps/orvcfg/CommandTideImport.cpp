#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>

#include "Commands.h"
#include "Document.h"
#include "FilterInput.h"
#include "Installation.h"
#include "TideStationAccess.h"
#include "TimeText.h"
#include "platform/text/NumberText.h"
#include "platform/watch/SubscriptionManager.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::string station, file, zone;
    bool create = false, replace = false, skipBad = false;
};

struct Row {
    double time, value;
    std::size_t line;
};

constexpr std::size_t kMostTold = 20;  // of one file: whoever sees these knows what is wrong with it

/// The lines of a CSV file as values, or what is wrong with them.
class CsvReader {
public:
    CsvReader(Session& forSession, std::string fileName, TimeReader& timeReader)
        : session(forSession), name(std::move(fileName)), reader(timeReader) {}

    void Line(std::string_view line) {
        ++number;
        if (line.starts_with("\xEF\xBB\xBF")) line.remove_prefix(3);
        const std::size_t begin = line.find_first_not_of(" \t\r");
        if (begin == line.npos || line[begin] == '#') return;
        const bool heading = !anyLine && line.find_first_of("0123456789") == line.npos;
        anyLine = true;
        if (heading) return;
        const std::size_t separator = line.find_first_of(",;\t");
        if (separator == line.npos) return Bad(number, "a comma, a semicolon or a tab stands between time and value");
        std::string_view value = line.substr(separator + 1);
        while (value.ends_with('\r')) value.remove_suffix(1);
        Row row{0, 0, number};
        if (const char* const wrong = reader.Read(line.substr(0, separator), row.time)) return Bad(number, wrong);
        // A decimal comma would make a whole metre of a value.
        if (value.find_first_of(",;\t") != value.npos) {
            return Bad(number, "more than a time and a value; decimals stand behind a point");
        }
        const std::optional<double> read = ParseDouble(value);
        if (!read || !std::isfinite(*read)) return Bad(number, "the value is no number");
        row.value = *read;
        rows.push_back(row);
    }

    void Bad(std::size_t line, std::string_view what) {
        if (++bad <= kMostTold) session.Problem(name + ":" + std::to_string(line), what);
    }

    Session& session;
    std::string name;
    TimeReader& reader;
    std::vector<Row> rows;
    std::size_t bad = 0;

private:
    std::size_t number = 0;  // of the line, from 1
    bool anyLine = false;
};

bool ReadCsv(Session& session, CsvReader& csv, const std::string& file) {
    const auto each = [&](std::string_view line) { csv.Line(line); };
    return file == "-" ? FilterInput(session, STDIN_FILENO, "standard input", each)
                       : FilterFile(session, PathArgument(file), each);
}

/// Rows in order of time, each time once: of equal ones a repeated value is dropped, another value is a problem.
void SortOut(CsvReader& csv) {
    std::vector<Row>& rows = csv.rows;
    std::stable_sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) { return a.time < b.time; });
    std::vector<Row> unique;
    for (const Row& row : rows) {
        if (unique.empty() || unique.back().time != row.time) {
            unique.push_back(row);
        } else if (unique.back().value != row.value) {
            csv.Bad(row.line, UtcText(row.time) + " has another value in line " + std::to_string(unique.back().line));
        }
    }
    rows = std::move(unique);
}

struct Counts {
    std::size_t added = 0, replaced = 0, present = 0;
};

/// What happens to a row: it is new, it is there, or there is another value, which stays unless it may be replaced.
void Place(TideStation& station, CsvReader& csv, const Row& row, bool replace, bool dryRun, Counts& counts) {
    csv.session.progress.Step(dryRun ? 0 : 1, 1);
    double time = row.time, value = 0;
    if (!station.GetTideValue(TideStation::kExact, time, value)) {
        if (dryRun || station.AddTideValue(row.time, row.value)) {
            ++counts.added;
        } else {
            csv.Bad(row.line, "the value can't be put into the file of its month");
        }
    } else if (value == row.value) {
        ++counts.present;
    } else if (!replace) {
        csv.Bad(row.line, "the station has another value at " + UtcText(row.time) + "; --replace overwrites it");
    } else {
        if (!dryRun) station.UpdateTideValue(row.time, row.value);
        ++counts.replaced;
    }
}

void TellMore(CsvReader& csv) {
    if (csv.bad <= kMostTold) return;
    csv.session.Problem(csv.name, std::to_string(csv.bad - kMostTold) + " more lines are wrong");
}

ExitCode TellNothingImported(CsvReader& csv) {
    TellMore(csv);
    csv.session.Problem(csv.name, "Nothing was imported", "Correct the lines, or leave them out with --skip-bad.");
    return kSomeFailed;
}

/// Notices when the station is read from disk again because another program has saved it: values that were placed but
/// not saved are gone then.
class ReloadWatch {
public:
    ReloadWatch() : number(SubscriptionManager::Instance().Subscribe(Callback(reloaded))) {}
    ~ReloadWatch() { SubscriptionManager::Instance().Unsubscribe(number); }
    ReloadWatch(const ReloadWatch&) = delete;
    ReloadWatch& operator=(const ReloadWatch&) = delete;
    bool HasReloaded() const { return *reloaded; }

private:
    using Flag = std::shared_ptr<std::atomic<bool>>;  // a call that is under way may outlive this
    /// A save of our own notifies, too, but on this thread.
    static SubscriptionManager::Callback Callback(Flag flag) {
        return [flag = std::move(flag), own = std::this_thread::get_id()](int, const std::wstring&) {
            if (std::this_thread::get_id() != own) *flag = true;
        };
    }
    const Flag reloaded = std::make_shared<std::atomic<bool>>(false);
    const int number;
};

ExitCode Import(Session& session, const Arguments& arguments) {
    TimeReader reader;
    if (const char* const wrong = reader.SetZone(arguments.zone)) {
        session.Problem({}, "--zone \"" + arguments.zone + "\": " + wrong,
                        "Say where the clock of the gauge stood, for instance --zone UTC or --zone Europe/Amsterdam.");
        return kCannotRun;
    }
    CsvReader csv(session, arguments.file, reader);
    if (!ReadCsv(session, csv, arguments.file)) return kCannotRun;
    SortOut(csv);
    if (csv.bad > 0 && !arguments.skipBad) return TellNothingImported(csv);
    TideStation station;
    if (!OpenStation(session, arguments.station, station, arguments.create)) return kCannotRun;
    const ReloadWatch watch;
    // Values are compared and kept as they were measured; the offset is put back before the station is saved.
    const double offset = station.GetStationOffset();
    station.SetStationOffset(0);
    session.progress.Expect("values", 2 * csv.rows.size());  // looked at, then placed
    Counts counts;
    for (const Row& row : csv.rows) Place(station, csv, row, arguments.replace, true, counts);
    if (csv.bad > 0 && !arguments.skipBad) return TellNothingImported(csv);
    TellMore(csv);
    counts = {};
    csv.bad = kMostTold;  // what is refused now has been told
    for (const Row& row : csv.rows) Place(station, csv, row, arguments.replace, false, counts);
    // Other programs watch the file of the station, which is written in front of the values: once more, and they read
    // those, too.
    bool saved = true;
    for (int write = 0; write < 2 && !watch.HasReloaded(); ++write) {
        station.SetStationOffset(offset);
        saved = station.FileSave() && saved;
    }
    if (watch.HasReloaded()) {
        session.Problem(arguments.station, "Another program has saved the station meanwhile",
                        "Import again: what is there is kept.");
        return kSomeFailed;
    }
    if (!saved) {
        session.Problem(arguments.station, "The values can't be saved",
                        "Check space and access of the project's folder, and import again: what is there is kept.");
        return kSomeFailed;
    }
    Document document;
    Facts& facts = document.AddFacts("Import", "import");
    facts.Add("Added", "added", Cell::Count(static_cast<std::int64_t>(counts.added)));
    facts.Add("Replaced", "replaced", Cell::Count(static_cast<std::int64_t>(counts.replaced)));
    facts.Add("There already", "present", Cell::Count(static_cast<std::int64_t>(counts.present)));
    facts.Add("Values now", "values", Cell::Count(station.GetNumValues()));
    document.Print(session);
    if (reader.Ambiguous() > 0) {
        session.Note(std::to_string(reader.Ambiguous()) +
                     " times lie in an hour that summer time repeats; they were taken in the order of the file");
    }
    return kAllGood;
}

}  // namespace

void AddTideImport(CLI::App& tide, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = AddCommand(
        tide, "import", "Put values from CSV into a station",
        "  orvcfg --project Harbour tide import Pier pier.csv --zone UTC+1 --create\n\n"
        "A line holds a time and a value, as in \"2021-03-02 10:15:30,1.25\"; a semicolon or a tab will do, too. A\n"
        "heading, blank lines and those that start with # are passed over. A gauge's clock that is taken for another\n"
        "zone spoils every depth, so --zone has no default: UTC, UTC+1, UTC-3:30, local, or a place such as\n"
        "Europe/Amsterdam, whose changes of summer time then count. Values are those that the gauge measured, the\n"
        "station's offset isn't taken off. If a line is wrong, nothing is imported.");
    command->add_option("STATION", arguments->station, "Name of the station in the project, or its path")->required();
    command->add_option("FILE", arguments->file, "CSV file; - is the standard input")->required();
    command->add_option("--zone", arguments->zone, "Where the clock of the times stood")->type_name("ZONE")->required();
    command->add_flag("--create", arguments->create, "Make the station if it isn't there");
    command->add_flag("--replace", arguments->replace, "Overwrite other values at the same times");
    command->add_flag("--skip-bad", arguments->skipBad, "Import the other lines where some are wrong");
    OnRun(command, session, arguments, Import);
}

}  // namespace orv::cfg
