#include <unistd.h>

#include <cmath>

#include "Commands.h"
#include "Document.h"
#include "FilterInput.h"
#include "Installation.h"
#include "PositionText.h"
#include "Suggest.h"
#include "frontend/OrvFormatter.h"
#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::string kind;
    std::vector<std::string> values;
    int decimals = -1;
    bool unit = false, noSpace = false;
};

using Form = std::function<std::wstring(double)>;

/// How values of a kind are shown; `unit` and `decimals` where the kind has a choice of them.
struct KindForm {
    std::wstring_view name;
    bool hasUnit, hasDecimals;
    std::wstring (*text)(const OrvFormatter& formatter, double value, const Arguments& arguments);
};

constexpr KindForm kForms[] = {
    {L"x", false, false, [](const OrvFormatter& f, double v, const Arguments&) { return f.FormatXCoordinate(v); }},
    {L"y", false, false, [](const OrvFormatter& f, double v, const Arguments&) { return f.FormatYCoordinate(v); }},
    {L"latitude", false, false, [](const OrvFormatter& f, double v, const Arguments&) { return f.FormatLatitude(v); }},
    {L"longitude", false, false,
     [](const OrvFormatter& f, double v, const Arguments&) { return f.FormatLongitude(v); }},
    {L"bearing", false, false, [](const OrvFormatter& f, double v, const Arguments&) { return f.FormatBearing(v); }},
    {L"distance", true, false,
     [](const OrvFormatter& f, double v, const Arguments& a) { return f.FormatDistance(v, a.unit, !a.noSpace); }},
    {L"depth", true, false,
     [](const OrvFormatter& f, double v, const Arguments& a) { return f.FormatDepth(v, a.unit, !a.noSpace); }},
    {L"speed", true, false,
     [](const OrvFormatter& f, double v, const Arguments& a) { return f.FormatSpeed(v, a.unit, !a.noSpace); }},
    {L"kp", true, true,
     [](const OrvFormatter& f, double v, const Arguments& a) {
         return a.decimals < 0 ? f.FormatKP(v, a.unit, !a.noSpace) : f.FormatKP(v, a.decimals, a.unit, !a.noSpace);
     }},
};

/// None after a problem has been told.
Form FindForm(Session& session, const OrvFormatter& formatter, const Arguments& arguments) {
    const std::wstring wanted = TextArgument(arguments.kind);
    std::vector<std::wstring> known;
    for (const KindForm& form : kForms) {
        if (EqualNoCase(wanted, form.name)) {
            if ((arguments.unit && !form.hasUnit) || (arguments.decimals >= 0 && !form.hasDecimals)) {
                session.Problem({},
                                "\"" + arguments.kind + "\" has no choice of " +
                                    (arguments.unit && !form.hasUnit ? "a unit" : "decimals"),
                                "The project's settings say it all.");
                return {};
            }
            return [&formatter, &form, &arguments](double value) { return form.text(formatter, value, arguments); };
        }
        known.emplace_back(form.name);
    }
    const std::optional<unsigned> number = ParseUnsigned(wanted);
    for (int kind = 0; kind < kUnitKinds; ++kind) {
        const std::wstring name(UnitKindNames()[static_cast<std::size_t>(kind)]);
        known.push_back(name);
        if (!(number && *number == static_cast<unsigned>(kind)) && !EqualNoCase(wanted, name)) continue;
        return [&formatter, kind, &arguments](double value) {
            return formatter.FormatValue(kind, value, arguments.unit, !arguments.noSpace, arguments.decimals);
        };
    }
    std::string remedy = DidYouMean(wanted, known);
    if (remedy.empty()) remedy = "See \"orvcfg format --help\"; \"orvcfg project show\" lists the unit kinds.";
    session.Problem({}, "\"" + arguments.kind + "\" is nothing that can be formatted", remedy);
    return {};
}

class Formatting {
public:
    Formatting(Session& forSession, Form with) : session(forSession), form(std::move(with)) {}

    /// One line of input without its line feed: a value, and what stands behind it.
    void Line(std::string_view line) {
        std::string_view rest = line;
        const std::string_view word = NextWord(rest);
        while (rest.ends_with('\r')) rest.remove_suffix(1);
        if (!word.empty() && word.front() != '#') return Value(word, rest);
        if (!session.options.json) session.out.Put(std::string(line) + "\n");
    }

    void Value(std::string_view word, std::string_view rest) {
        const std::optional<double> value = ParseDouble(word);
        const bool good = value && std::isfinite(*value);
        const std::string text = good ? ToUtf8(form(*value)) : "";
        ++values;
        if (!good) ++refused;
        if (session.options.json) {
            Json object = Json::object();
            object["value"] = good ? Json(*value) : Json(word);
            object["text"] = good ? Json(text) : Json(nullptr);
            if (!good) object["reason"] = "no number";
            session.out.Put(object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
        } else if (good) {
            session.out.Put(text + std::string(rest) + "\n");
        } else {
            session.out.Put("*" + std::string(rest) + "  # \"" + std::string(word) + "\" is no number\n");
        }
    }

    ExitCode Finish() {
        if (refused == 0) return kAllGood;
        session.Problem({}, std::to_string(refused) + " of " + std::to_string(values) + " values are no numbers",
                        "Each line says which.");
        return kSomeFailed;
    }

private:
    Session& session;
    const Form form;
    std::size_t values = 0, refused = 0;
};

ExitCode Format(Session& session, const Arguments& arguments) {
    if (!OpenInstallation(session) || !OpenProject(session)) return kCannotRun;
    const OrvFormatter formatter;
    const Form form = FindForm(session, formatter, arguments);
    if (!form) return kCannotRun;
    Formatting formatting(session, form);
    for (const std::string& value : arguments.values) formatting.Value(value, {});
    if (!arguments.values.empty()) return formatting.Finish();
    if (!FilterInput(session, STDIN_FILENO, "standard input", [&](std::string_view line) { formatting.Line(line); })) {
        return kCannotRun;
    }
    return formatting.Finish();
}

}  // namespace

void AddFormat(CLI::App& app, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command =
        AddCommand(app, "format", "Numbers in internal units as the project's views show them",
                   "  printf '12.3456 quay\\n' | orvcfg --project Harbour format depth --unit\n\n"
                   "KIND is x, y, latitude, longitude, bearing, distance, depth, speed, kp, or a unit kind by number\n"
                   "or name. A line holds a value and whatever else, which is kept; lines that start with # and\n"
                   "blank lines pass unchanged. What is no number gets a * and the reason behind a #, and the exit\n"
                   "code is 1. --json gives one object a line. A kp with --unit is the unit alone, as in the views.");
    command->add_option("KIND", arguments->kind, "What the values are")->required();
    command->add_option("VALUE", arguments->values, "Values. Default: lines of standard input");
    command->add_option("--decimals", arguments->decimals, "Decimals of a kp or a unit kind. Default: the project's")
        ->check(CLI::Range(0, 15).description(""))
        ->type_name("N");
    command->add_flag("--unit", arguments->unit, "With the unit behind it");
    command->add_flag("--no-space", arguments->noSpace, "No blank before the unit");
    OnRun(command, session, arguments, Format);
}

}  // namespace orv::cfg
