#include "Page.h"

#include "../Document.h"
#include "../HouseReports.h"
#include "../Installation.h"
#include "../Session.h"
#include "../Svg.h"
#include "../TimeText.h"
#include "Html.h"
#include "Sections.h"
#include "core/ConfigKeys.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct SectionRow {
    const char *id, *entry;  ///< of the line of links
    bool needsProject;       ///< opened, not only read
    PageSections (*make)(PageContent& content);
};
constexpr SectionRow kSections[] = {
    {"findings", "Findings", false, FindingSections}, {"project", "Project", true, ProjectSections},
    {"heights", "Heights", true, HeightSections},     {"vessels", "Vessels", false, VesselSections},
    {"ports", "Ports", false, PortSections},          {"tide", "Tide", false, TideSections},
    {"profiles", "Profiles", false, ProfileSections}, {"files", "Files", false, FileSections},
    {"house", "Housekeeping", false, HouseSections},
};

std::string Header(const std::wstring& project, const std::string& links) {
    const ProjectDefinition& definition = DataSearch::GetDataSearch().GetProjectDefinition();
    std::wstring title, number, task, client, contractor;
    definition.GetProjectTitle(title);
    definition.GetProjectNumber(number);
    definition.GetProjectTask(task);
    definition.GetClientName(client);
    definition.ContractorName(contractor);
    const auto line = [](std::initializer_list<std::wstring> parts) {
        std::wstring all;
        for (const std::wstring& part : parts) {
            if (!part.empty()) all += (all.empty() ? L"" : L"  ·  ") + part;
        }
        return all.empty() ? std::string() : "<p>" + XmlEscaped(ToUtf8(all)) + "</p>\n";
    };
    return "<header><div>\n<h1>" + XmlEscaped(ToUtf8(title.empty() ? project : title)) + "</h1>\n" +
           line({L"Project " + project, number, task}) + line({client, contractor}) + "<nav>" + links +
           "</nav>\n</div></header>\n";
}

}  // namespace

std::string ProjectPage(Session& session, const std::wstring& project, const Diagnosis& diagnosis) {
    PageContent content{session, diagnosis};
    std::string links, body;
    session.progress.Expect("sections", std::size(kSections));
    for (const SectionRow& row : kSections) {
        const Progress::Item counted(session.progress);
        if (row.needsProject && !diagnosis.projectOpen) continue;
        const PageSections sections = row.make(content);
        if (sections.empty()) continue;
        links += std::string("<a href=\"#") + row.id + "\">" + row.entry + "</a> ";
        for (std::size_t n = 0; n < sections.size(); ++n) {
            body += n == 0 ? std::string("<section id=\"") + row.id + "\">\n" : "<section>\n";
            body += "<h2>" + XmlEscaped(sections[n].title) + "</h2>\n" + sections[n].html + "</section>\n";
        }
    }
    const std::string made = "Made " + TimeCell(CurrentTime()).text + " by orvcfg " ORVCFG_VERSION " from " +
                             PathToBytes(SystemFolder(session));
    return HtmlPage(ToUtf8(project), Header(project, links) + "<main>\n" + body + "</main>\n<footer>" +
                                         XmlEscaped(made) + "</footer>\n");
}

}  // namespace orv::cfg
