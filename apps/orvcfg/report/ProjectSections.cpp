#include <map>

#include "../ConfigFiles.h"
#include "../Document.h"
#include "../GridReport.h"
#include "../Installation.h"
#include "../ProjectReport.h"
#include "../Session.h"
#include "../Svg.h"
#include "../VesselFile.h"
#include "Html.h"
#include "Sections.h"
#include "VesselPlan.h"
#include "core/ConfigKeys.h"
#include "definitions/InterfaceDef.h"
#include "definitions/PortSettingsText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

std::string Paragraph(const char* kind, const std::string& text) {
    return std::string("<p") + kind + ">" + XmlEscaped(text) + "</p>\n";
}

std::string FindingHtml(const Finding& finding) {
    const bool error = finding.check->severity == Severity::Error;
    return std::string("<div class=\"finding ") + (error ? "error" : "warning") + "\"><p><b>" +
           (error ? "Error" : "Warning") + "</b> " + XmlEscaped(finding.what) + "</p>\n" +
           (finding.where.empty() ? std::string() : Paragraph(" class=\"where\"", finding.where)) +
           Paragraph("", std::string(finding.check->why)) + Paragraph("", "What to do: " + finding.remedy) + "</div>\n";
}

}  // namespace

PageSections FindingSections(PageContent& content) {
    const Diagnosis& diagnosis = content.diagnosis;
    std::string html;
    for (const Finding& finding : diagnosis.findings) html += FindingHtml(finding);
    if (html.empty()) {
        html = "<div class=\"finding good\"><p><b>Nothing wrong</b> " + std::to_string(diagnosis.looked) +
               " checks of files, grids, devices, rights, housekeeping and survey data.</p></div>\n";
    }
    if (diagnosis.skipped > 0) {
        html += "<p class=\"remark\">" + std::to_string(diagnosis.skipped) + " checks must wait until it opens.</p>\n";
    }
    return {{"Findings", html}};
}

PageSections ProjectSections(PageContent&) {
    const ProjectDefinition& project = DataSearch::GetDataSearch().GetProjectDefinition();
    Document document;
    ReportProject(document, project);
    ReportFormats(document, project);
    return {{"Project", HtmlOf(document)}};
}

PageSections HeightSections(PageContent&) {
    Document document;
    const GeoidChoice geoid = ReportCoordinateSystem(document, DataSearch::GetDataSearch().GetProjectDefinition());
    const OpenedGeoid opened = geoid.key.empty() ? OpenedGeoid() : OpenGeoid(geoid);
    MappedFile file;
    std::string why;
    if (!opened.path.empty() && file.Open(opened.path, why)) {
        if (const auto grid = RecogniseGrid(file.Bytes(), why)) ReportGrid(document, opened.path, file, *grid, "grid");
    }
    return {{"Coordinate system and heights", HtmlOf(document)}};
}

PageSections VesselSections(PageContent& content) {
    PageSections sections;
    for (const std::wstring& path : content.diagnosis.vessels) {
        VesselConfig vessel;
        if (!vessel.FileOpen(path, kOpenRead)) continue;  // among the findings
        Document document;
        ReportVessel(content.session, document, vessel);
        const std::string plan = DrawVesselPlan(vessel);
        sections.push_back(
            {"Vessel " + ToUtf8(vessel.GetVesselName()), (plan.empty() ? plan : InlineSvg(plan)) + HtmlOf(document)});
    }
    return sections;
}

PageSections PortSections(PageContent& content) {
    InterfaceDef ports;
    const std::wstring path = SystemFolder(content.session) + std::wstring(INTERFACE_DEF_FILENAME);
    if (!ports.FileObject::FileOpen(path, kOpenRead)) return {};
    std::map<std::wstring, std::string> users;
    for (const std::wstring& file : content.diagnosis.vessels) {
        VesselConfig vessel;
        if (!vessel.FileOpen(file, kOpenRead)) continue;
        for (const VesselDevice& device : DevicesOf(vessel)) {
            std::string& text = users[device.port];
            text += (text.empty() ? "" : ", ") + ToUtf8(device.name) + (device.enabled ? "" : " (off)");
        }
    }
    Document document;
    Table& table = document.AddTable(
        "", "ports", {{"Port", ""}, {"Handler", ""}, {"Settings", ""}, {"Devices of this project", ""}});
    for (const std::wstring& name : SectionsOf(ports)) {
        std::wstring handler;
        ports.GetItem(name, COM_HANDLER, handler);
        FileSection section;
        section.GetFromFileObject(name, ports);
        PortSettings settings;
        const bool complete = ports.GetPortSettings(name, settings);
        const auto user = users.find(name);
        table.Add({Cell::Of(name), Cell::OrMissing(handler, "none"),
                   complete ? Cell::Of(PortSettingsText(section)) : Cell::Missing("keys of its handler are missing"),
                   user == users.end() ? Cell::Missing("none") : Cell::Of(user->second)});
    }
    return {{"Ports of this computer", HtmlOf(document)}};
}

}  // namespace orv::cfg
