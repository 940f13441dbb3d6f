#include <map>

#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "core/ConfigText.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::vector<std::string> files;
    bool strict = false;
};

/// Something about a file that whoever looks after it should see to.
struct Finding {
    std::size_t line;  ///< from 1; 0 for the file as a whole
    std::string what, remedy;
};

/// What the text of a file shows line by line; the library keeps no line numbers.
class TextSurvey {
public:
    TextSurvey(std::string_view text, std::vector<std::string_view> oddLines) : odd(std::move(oddLines)) {
        while (!text.empty()) {
            const std::size_t end = text.find('\n');
            std::string_view line = text.substr(0, end);
            text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
            ++number;
            const bool carriageReturn = line.ends_with('\r');
            if (carriageReturn) line.remove_suffix(1);
            if (end != std::string_view::npos) ++(carriageReturn ? crlf : lf);
            Line(line);
        }
    }

    std::string LineEnds() const {
        if (crlf > 0 && lf > 0) return "mixed";
        return crlf > 0 ? "CR LF" : lf > 0 ? "LF" : "none";
    }
    std::size_t Sections() const { return sections.size(); }
    std::size_t Items() const { return items; }
    const std::vector<Finding>& Findings() const { return findings; }

private:
    static std::string_view Trim(std::string_view text) {
        const std::string_view blanks(" \t\0", 3);
        const std::size_t begin = text.find_first_not_of(blanks);
        if (begin == std::string_view::npos) return {};
        return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
    }

    void Line(std::string_view line) {
        if (nextOdd < odd.size() && odd[nextOdd] == line) {
            ++nextOdd;
            findings.push_back({number, "The line is neither section, item nor comment", "Correct or remove it."});
            return;
        }
        const std::string_view text = Trim(line);
        if (text.empty() || text.front() == ';') return;
        if (text.front() == '[') {
            const std::size_t end = text.back() == ']' ? text.size() - 1 : text.find(']');
            section = std::string(text.substr(1, end - 1));
            const auto [place, isNew] = sections.emplace(section, number);
            if (!isNew) {
                findings.push_back(
                    {number, "Section [" + section + "] stands here again, after line " + std::to_string(place->second),
                     "Put its items together."});
            }
            return;
        }
        if (sections.empty()) return;  // what stands before the first section is no item
        const std::string key(Trim(text.substr(0, text.find('='))));
        const auto [place, isNew] = keys.emplace(std::pair(section, key), number);
        if (isNew) {
            ++items;
            return;
        }
        findings.push_back({number,
                            "Key " + key + " of [" + section + "] stands here again, after line " +
                                std::to_string(place->second) + "; the last one counts",
                            "Remove all but one."});
        place->second = number;
    }

    std::vector<std::string_view> odd;
    std::size_t nextOdd = 0, number = 0, crlf = 0, lf = 0, items = 0;
    std::string section;
    std::map<std::string, std::size_t> sections;
    std::map<std::pair<std::string, std::string>, std::size_t> keys;
    std::vector<Finding> findings;
};

std::string EncodingText(textencoding::type encoding) {
    switch (encoding) {
        case textencoding::utf8:
            return "UTF-8";
        case textencoding::utf16le:
            return "UTF-16 LE";
        case textencoding::utf8bom:
            return "UTF-8 with mark";
        case textencoding::windows1252:
            break;
    }
    return "Windows-1252";
}

std::vector<Finding> SignatureFindings(FileState state, bool strict) {
    switch (state) {
        case FileState::ContentChanged:
            return {{0, "The content has been changed outside the suite",
                     "Look through it, then sign it with \"orvcfg config sign\"."}};
        case FileState::TitleChanged:
            return {{0, "The file has been renamed or copied outside the suite",
                     "If that was meant, sign it with \"orvcfg config sign\"."}};
        case FileState::Unsigned:
            if (strict) return {{0, "The file carries no signature", "\"orvcfg config sign\" makes one."}};
            break;
        case FileState::Valid:
        case FileState::Enciphered:
            break;
    }
    return {};
}

/// The state inside the cipher; a file that doesn't decipher is no more use to anybody.
std::vector<Finding> EncipheredFindings(ProtectedFileObject& file) {
    if (!file.Encrypt()) return {{0, "The file can't be deciphered", "Put a backup back."}};
    return SignatureFindings(StateOf(file), true);
}

bool CheckFile(Session& session, const std::wstring& path, bool strict, Table& table) {
    std::string bytes;
    ConfigText text;
    ProtectedFileObject file;
    const FsResult result = ReadWholeFile(path, bytes);
    if (result != FsResult::Ok) {
        session.Problem(PathToBytes(path), "Can't be read: " + ToUtf8(FsResultText(result)), "Check name and rights.");
        return false;
    }
    if (!text.Parse(std::make_shared<const std::string>(bytes)) || !ReadAsItIs(path, file)) {
        session.Problem(PathToBytes(path), "No configuration file can look like this",
                        "It is too large, or its bytes are of no encoding that is in use.");
        return false;
    }
    const FileState state = StateOf(file);
    std::vector<Finding> findings;
    std::string lineEnds = "-";
    Cell sections = Cell::Missing("the items are enciphered"), items = sections;
    if (state == FileState::Enciphered) {
        findings = EncipheredFindings(file);
    } else {
        const std::string content = text.Bytes(textencoding::utf8);
        const TextSurvey survey(content, text.OddLines());
        findings = SignatureFindings(state, strict);
        findings.insert(findings.end(), survey.Findings().begin(), survey.Findings().end());
        if (text.HasUndecodable()) {
            findings.push_back({0, "Some bytes are no text of the file's encoding", "Put a backup back."});
        }
        lineEnds = survey.LineEnds();
        sections = Cell::Count(static_cast<std::int64_t>(survey.Sections()));
        items = Cell::Count(static_cast<std::int64_t>(survey.Items()));
    }
    Cell told{std::to_string(findings.size()), Json::array(), {}};
    for (const Finding& finding : findings) {
        const std::string line = finding.line > 0 ? ":" + std::to_string(finding.line) : "";
        session.Problem(PathToBytes(path) + line, finding.what, finding.remedy);
        told.value.push_back({{"line", finding.line > 0 ? Json(finding.line) : Json(nullptr)}, {"what", finding.what}});
    }
    table.Add({Cell::Flag(findings.empty()), Cell::Of(std::string(FileStateText(state))),
               Cell::Of(EncodingText(text.Encoding())), Cell::Of(lineEnds), sections, items, std::move(told),
               Cell::Path(path)});
    return findings.empty();
}

ExitCode Check(Session& session, const Arguments& arguments) {
    Table table({{"Sound", "sound"},
                 {"Signature", "signature"},
                 {"Encoding", "encoding"},
                 {"Line ends", "lineEnds"},
                 {"Sections", "sections", true},
                 {"Items", "items", true},
                 {"Findings", "findings", true},
                 {"File", "file"}});
    bool good = true;
    session.progress.Expect("files", arguments.files.size());
    for (const std::string& file : arguments.files) {
        const Progress::Item counted(session.progress);
        good = CheckFile(session, PathArgument(file), arguments.strict, table) && good;
    }
    Document::Print(session, table);
    return good ? kAllGood : kSomeFailed;
}

}  // namespace

void AddConfigCheck(CLI::App& config, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = AddCommand(config, "check", "Check files: signature, encoding, odd lines, repeated names",
                                   "  orvcfg config check /srv/survey/system/ORV.ini /srv/survey/Projects/*/*.prj\n\n"
                                   "Exit code 1 if any isn't sound. Many files carry no signature and are sound.");
    command->add_option("FILE", arguments->files, "Configuration files")->required();
    command->add_flag("--strict", arguments->strict, "A file without a signature isn't sound");
    OnRun(command, session, arguments, Check);
}

}  // namespace orv::cfg
