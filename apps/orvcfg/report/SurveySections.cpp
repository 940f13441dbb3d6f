#include "../Document.h"
#include "../ProfilePicture.h"
#include "../TidePicture.h"
#include "../TimeText.h"
#include "Html.h"
#include "Sections.h"
#include "core/ConfigKeys.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

/// A season has hundreds of casts: a page is to be leafed through.
constexpr std::size_t kMostPictures = 12;

void TellRest(std::string& html, std::size_t all, const char* what) {
    if (all <= kMostPictures) return;
    html += "<p class=\"remark\">" + std::to_string(all - kMostPictures) + " more " + what + " aren't drawn.</p>\n";
}

std::string StationHtml(TideStation& station) {
    const TidePicture picture = DrawTide(station, {}, {}, 400);
    bool limited = false, holds = false;
    double longest = 0, span = 0, first = 0, last = 0;
    station.GetInterpolAttribs(limited, longest);
    station.GetExtrapolationAttribs(holds, span);
    const bool some = station.GetTimeSpan(first, last);
    const Cell none = Cell::Missing("there are no values");
    Document document;
    Facts& left = document.AddFacts("", "station");
    left.Add("File", "", Cell::Path(station.GetFileName()));
    left.Add("Station id", "", Cell::Of(station.GetStationID()));
    left.Add("Offset (m)", "", Cell::Number(station.GetStationOffset(), 3));
    left.Add("Values", "", Cell::Count(station.GetNumValues()));
    Facts& right = document.AddFacts("", "limits");
    right.Add("First (UTC)", "", some ? UtcCell(first) : none);
    right.Add("Last (UTC)", "", some ? UtcCell(last) : none);
    right.Add("Bridges gaps up to", "", Cell::Of(limited ? DurationText(longest) : std::string("any length")));
    right.Add("Gaps not bridged", "", Cell::Count(static_cast<std::int64_t>(picture.gaps)));
    return (picture.svg.empty() ? picture.svg : InlineSvg(picture.svg)) + HtmlOf(document);
}

}  // namespace

PageSections TideSections(PageContent& content) {
    std::string html;
    std::size_t count = 0;
    for (const std::wstring& path : content.diagnosis.stations) {
        TideStation station;
        if (++count <= kMostPictures && station.FileOpen(path)) html += StationHtml(station);
    }
    TellRest(html, count, "stations");
    return html.empty() ? PageSections() : PageSections{{"Tide", html}};
}

PageSections ProfileSections(PageContent& content) {
    std::string html;
    std::size_t count = 0;
    for (const std::wstring& path : content.diagnosis.profiles) {
        FileObject file;
        SvpFile profile;
        if (++count > kMostPictures || !file.FileOpen(path, kOpenRead)) continue;
        profile.FileOpen(file);
        if (profile.GetNumPoints() > 0) html += InlineSvg(DrawProfile(profile, {}, 560));
    }
    TellRest(html, count, "profiles");
    return html.empty() ? PageSections() : PageSections{{"Sound velocity", html}};
}

}  // namespace orv::cfg
