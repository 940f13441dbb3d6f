#include "Commands.h"
#include "Document.h"
#include "FileTypeChoice.h"
#include "Installation.h"
#include "TimeText.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct TypesArguments {
    std::string which;
};

struct FilesArguments {
    std::string which;
    std::vector<std::string> filter;
};

Cell IdCell(const CFileType& type) {
    if (type.GetID() != kNoFileType) return Cell::Count(type.GetID());
    Cell none = Cell::Of(std::string("-"));
    none.value = nullptr;
    return none;
}

ExitCode Types(Session& session, const TypesArguments& arguments) {
    if (!OpenInstallation(session)) return kCannotRun;
    const std::vector<const CFileType*> types = TypesOf(session, arguments.which);
    Table table({{"Id", "id", true},
                 {"Key", "key"},
                 {"Extension", "extension"},
                 {"Loc", "location", true},
                 {"Default name", "defaultName"},
                 {"Supported", "supported"},
                 {"Create", "create"},
                 {"Select", "select"},
                 {"Description", "description"}});
    for (const CFileType* type : types) {
        table.Add({IdCell(*type), Cell::Of(type->GetFileID()), Cell::Of(type->GetExtension()),
                   Cell::Count(type->GetLocation()), Cell::Of(type->GetDefaultName()), Cell::Flag(type->IsSupported()),
                   Cell::Flag(type->CanCreate()), Cell::Flag(type->CanSelect()),
                   Cell::OrMissing(type->GetDescription(), "FileTypes.ini has none")});
    }
    Document::Print(session, table);
    return types.empty() ? kSomeFailed : kAllGood;
}

bool ListFiles(Session& session, const CFileType& type, const std::vector<std::string>& filter, Table& table) {
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring folder, extension;
    const bool noProject = LiesInProject(type.GetLocation()) && search.GetCurrentProjectName().empty();
    if (noProject || !search.GetFilePath(&type, folder) || folder.empty() ||
        !search.GetFileExtension(&type, extension)) {
        session.Problem({}, "The folder of file type " + ToUtf8(type.GetFileID()) + " isn't known",
                        noProject ? "Name a project with --project." : "See \"orvcfg paths\".");
        return false;
    }
    COrvString words(L',');
    for (const std::string& word : filter) words.AddItem(TextArgument(word));
    std::vector<std::wstring> names;
    const bool listed =
        filter.empty() ? search.GetFileNames(type.GetID(), names) : search.GetFileNames(type.GetID(), words, names);
    if (!listed) {
        session.Problem(PathToBytes(folder), "The files can't be listed");
        return false;
    }
    for (const std::wstring& name : names) {
        const std::wstring path = folder + name + extension;
        FileStatus status;
        const bool there = Files().Status(path, status) == FsResult::Ok && status.exists;
        table.Add({Cell::Of(type.GetFileID()), Cell::Of(name),
                   there ? Cell::Count(static_cast<std::int64_t>(status.size)) : Cell::Missing("it has just gone"),
                   there ? TimeCell(status.modified) : Cell::Missing("it has just gone"), Cell::Path(path)});
    }
    return true;
}

ExitCode ListNames(Session& session, const FilesArguments& arguments) {
    if (!OpenInstallation(session)) return kCannotRun;
    if (const std::wstring project = ChosenProject(session); !project.empty()) {
        const std::wstring path = ProjectFile(project);
        if (FileExists(path)) DataSearch::GetDataSearch().GetProjectDefinition().FileObject::FileOpen(path, kOpenRead);
    }
    const std::vector<const CFileType*> types = TypesOf(session, arguments.which);
    Table table(
        {{"Type", "type"}, {"Name", "name"}, {"Size", "size", true}, {"Last change", "modified"}, {"Path", "path"}});
    bool good = !types.empty();
    session.progress.Expect("types", types.size());
    for (const CFileType* type : types) {
        const Progress::Item counted(session.progress);
        good = ListFiles(session, *type, arguments.filter, table) && good;
    }
    Document::Print(session, table);
    return good ? kAllGood : kSomeFailed;
}

}  // namespace

void AddTypes(CLI::App& app, Session& session) {
    auto arguments = std::make_shared<TypesArguments>();
    CLI::App* command = AddCommand(app, "types", "List the file types and what the definitions allow",
                                   "  orvcfg types .dxf\n  orvcfg types TideStation --json");
    command->add_option("TYPE", arguments->which, "Key, id or extension. Default: all");
    OnRun(command, session, arguments, Types);
}

void AddFiles(CLI::App& app, Session& session) {
    auto arguments = std::make_shared<FilesArguments>();
    CLI::App* command = AddCommand(app, "files", "List the files of a type that are there",
                                   "  orvcfg --project Harbour files VesselConfig --filter navigate");
    command->add_option("TYPE", arguments->which, "Key, id or extension")->required();
    command->add_option("--filter", arguments->filter, "Only names that hold [WORD]; may be given again")
        ->type_name("WORD")
        ->expected(1)
        ->take_all();
    OnRun(command, session, arguments, ListNames);
}

}  // namespace orv::cfg
