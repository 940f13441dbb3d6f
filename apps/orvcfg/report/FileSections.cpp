#include <filesystem>

#include "../Document.h"
#include "../HouseReports.h"
#include "../Installation.h"
#include "../TimeText.h"
#include "Html.h"
#include "Sections.h"
#include "core/CFileTypeList.h"
#include "core/ConfigKeys.h"
#include "housekeeping/DiskSpaceManager.h"
#include "housekeeping/FileHistory.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

constexpr int kShown[] = {kLocationProject,     kLocationLogData,   kLocationReports, kLocationMultimedia,
                          kLocationFileHistory, kLocationCommon,    kLocationGeneral, kLocationAppDefs,
                          kLocationGeoidModels, kLocationSystemData};

struct Sum {
    std::int64_t files = 0;
    double bytes = 0;
    CTime newest = 0;
    void Add(const FileStatus& status) {
        ++files;
        bytes += static_cast<double>(status.size);
        newest = std::max<CTime>(newest, status.modified);
    }
};

Cell SizeCell(double bytes) {
    constexpr const char* units[] = {"B", "kB", "MB", "GB", "TB"};
    std::size_t unit = 0;
    for (; bytes >= 1000 && unit < 4; ++unit) bytes /= 1000;
    return Cell::Of(Fixed(bytes, unit == 0 ? 0 : bytes < 10 ? 2 : 1) + " " + units[unit]);
}

void Walk(const std::wstring& folder, Sum& sum) {
    std::vector<FolderEntry> entries;
    if (Files().List(folder, entries) != FsResult::Ok) return;
    for (const FolderEntry& entry : entries) {
        FileStatus status;
        if (entry.isLink) continue;
        if (entry.isFolder) {
            Walk(folder + entry.name + L"/", sum);
        } else if (Files().Status(folder + entry.name, status) == FsResult::Ok && status.exists) {
            sum.Add(status);
        }
    }
}

void AddTypes(Document& document) {
    Table& table = document.AddTable(
        "File types in use", "types",
        {{"Type", ""}, {"Extension", ""}, {"Files", "", true}, {"Size", "", true}, {"Newest", ""}, {"Folder", ""}});
    CFileTypeList::Iterator iterator;
    std::wstring key;
    CFileType* type = nullptr;
    const CFileTypeList& types = GetFileTypeList();
    const DataSearch& search = DataSearch::GetDataSearch();
    for (bool more = types.GetFirst(iterator, key, type); more; more = types.GetNext(iterator, key, type)) {
        std::wstring folder, extension;
        std::vector<std::wstring> names;
        if (type->GetLocation() == kLocationSystem) continue;  // the program's own
        if (!search.GetFilePath(type, folder) || folder.empty() || !search.GetFileExtension(type, extension) ||
            !search.GetFileNames(type->GetID(), names)) {
            continue;
        }
        Sum sum;
        for (const std::wstring& name : names) {
            FileStatus status;
            if (Files().Status(folder + name + extension, status) == FsResult::Ok && status.exists) sum.Add(status);
        }
        if (sum.files == 0) continue;
        table.Add({Cell::Of(key), Cell::Of(extension), Cell::Count(sum.files), SizeCell(sum.bytes),
                   TimeCell(sum.newest), Cell::Path(folder)});
    }
}

void AddFolders(Document& document) {
    Table& table = document.AddTable(
        "Folders", "folders",
        {{"Folder", ""}, {"Files", "", true}, {"Size", "", true}, {"May be written", ""}, {"Path", ""}});
    for (const int location : kShown) {
        std::wstring folder;
        if (!DataSearch::GetDataSearch().GetDataPathInfo(location, folder) || folder.empty()) continue;
        const Cell name = Cell::Of(pathKeys[static_cast<std::size_t>(location)]);
        FileStatus status;
        if (!FolderExists(folder) || Files().Status(folder, status) != FsResult::Ok) {
            table.Add(
                {name, Cell::Missing("-"), Cell::Missing("-"), Cell::Missing("not made yet"), Cell::Path(folder)});
            continue;
        }
        Sum sum;
        Walk(folder, sum);
        table.Add(
            {name, Cell::Count(sum.files), SizeCell(sum.bytes), Cell::Flag(!status.readOnly), Cell::Path(folder)});
    }
}

void AddHistory(Document& document) {
    Facts& facts = document.AddFacts("File history", "history");
    FileHistory history;
    DataSearch& search = DataSearch::GetDataSearch();
    const FileHistorySetup setup = LoadFileHistorySetup(search.GetProjectDefinition());
    const bool known = history.LoadSettings(search);
    facts.Add("Makes copies", "", Cell::Flag(setup.enabled));
    facts.Add("Keeps them for", "", Cell::Of(std::to_string(setup.maxDays) + " days"));
    std::string types;
    std::int64_t copies = 0;
    for (const auto& [id, extension] : history.Types()) {
        types += (types.empty() ? "" : ", ") + ToUtf8(fileTypeKeys[id]);
        copies += static_cast<std::int64_t>(history.ListCopies(id, L"").size());
    }
    facts.Add("File types", "", types.empty() ? Cell::Missing("none") : Cell::Of(types));
    facts.Add("Copies", "", known ? Cell::Count(copies) : Cell::Missing("the history folder isn't known"));
}

void AddDisk(Document& document) {
    Facts& facts = document.AddFacts("Disk space", "disk");
    DataSearch& search = DataSearch::GetDataSearch();
    const DiskSpaceSetup rules = LoadDiskSpaceSetup(search.GetProjectDefinition());
    const Cell off = Cell::Missing("no rule");
    facts.Add("Logs go when older than", "",
              rules.maxDaysEnabled ? Cell::Of(std::to_string(rules.maxDays) + " days") : off);
    facts.Add("Kept free", "", rules.minFreeEnabled ? SizeCell(rules.minFree) : off);
    DiskSpaceManager manager;
    const bool any = rules.maxDaysEnabled || rules.minFreeEnabled;
    if (manager.LoadSettings(search) && any) {
        const DiskSpacePlan plan = manager.Plan(CurrentTime());
        facts.Add("Would go now", "",
                  Cell::Of(std::to_string(plan.steps.size()) + " of " + std::to_string(plan.files) + " logs"));
    }
    std::wstring folder;
    search.GetDataPathInfo(kLocationProject, folder);
    std::error_code failed;
    const std::filesystem::space_info space = std::filesystem::space(PathToBytes(folder), failed);
    const Cell unknown = Cell::Missing("the system doesn't tell");
    facts.Add("Free on the disk", "", failed ? unknown : SizeCell(static_cast<double>(space.available)));
    facts.Add("Size of the disk", "", failed ? unknown : SizeCell(static_cast<double>(space.capacity)));
}

}  // namespace

PageSections FileSections(PageContent&) {
    Document document;
    AddTypes(document);
    AddFolders(document);
    return {{"Files and folders", HtmlOf(document)}};
}

PageSections HouseSections(PageContent&) {
    Document document;
    AddHistory(document);
    AddDisk(document);
    return {{"History and disk", HtmlOf(document)}};
}

}  // namespace orv::cfg
