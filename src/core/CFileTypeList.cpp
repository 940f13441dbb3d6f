#include "core/CFileTypeList.h"

#include <algorithm>

#include "core/ConfigKeys.h"
#include "core/FileObject.h"
#include "platform/os/ProgramPath.h"
#include "platform/text/PathText.h"

namespace orv {

namespace {

struct FileTypeRow {
    unsigned id;
    std::wstring_view key, extension;
    int location;
    std::wstring_view defaultName;
    unsigned bitmapId;
    int exportFilter;
    bool viewable;
};

constexpr unsigned none = kNoFileType;
constexpr bool yes = true, no = false;
constexpr FileTypeRow kFileTypes[] = {
#include "core/FileTypeTable.inc"
};

// Descriptions come from the definition file beside the program, or from its data root where the two lie apart.
void OpenDefinition(FileObject& ini) {
    std::wstring module, folder, name, extension;
    if (!GetModulePath(module)) return;
    SplitPath(module, folder, name, extension);
    CheckAppPathForDevelopEnvironment(folder);
    ini.FileOpen(folder + std::wstring(FILETYPES_DEF_FILENAME), kOpenRead);
}

std::wstring GetDescriptionFromFileTypesIni(const FileObject& ini, const std::wstring& key) {
    std::wstring description;
    ini.GetItem(FILE_TYPE_LIST_SECTION, key, description);
    return description;
}

}  // namespace

void CFileTypeList::Initialise() {
    FileObject ini;
    OpenDefinition(ini);
    for (const FileTypeRow& row : kFileTypes) {
        AddFileType(ini, std::wstring(row.key), row.id, std::wstring(row.extension), row.location,
                    std::wstring(row.defaultName), nullptr, nullptr, row.bitmapId, row.exportFilter, row.viewable);
    }
    unknown = GetFileType(L"Unknown");
}

void CFileTypeList::AddFileType(const FileObject& ini, const std::wstring& key, unsigned id,
                                const std::wstring& extension, int location, const std::wstring& defaultName,
                                ClassReference editor, ClassReference creator, unsigned bitmapId, int exportFilter,
                                bool viewable) {
    std::unique_ptr<CFileType>& type = types[key];
    if (!type) {
        type = std::make_unique<CFileType>(key, id, extension, location, defaultName,
                                           GetDescriptionFromFileTypesIni(ini, key));
    }
    type->SetEditor(editor);
    type->SetFileCreator(creator);
    type->SetFileBmpId(bitmapId);
    type->SetExpFilter(exportFilter);
    type->SetViewable(viewable);
}

CFileType* CFileTypeList::GetFileType(const std::wstring& key) const {
    const auto found = types.find(key);
    return found != types.end() ? found->second.get() : nullptr;
}

CFileType* CFileTypeList::GetFileTypeSafe(const std::wstring& key) const {
    CFileType* type = GetFileType(key);
    return type ? type : unknown;
}

CFileType* CFileTypeList::GetFileTypeID(unsigned id) const {
    const auto found = std::find_if(types.begin(), types.end(), [&](const auto& t) { return t.second->GetID() == id; });
    return found != types.end() ? found->second.get() : nullptr;
}

CFileType* CFileTypeList::GetFileTypeExt(const std::wstring& extension) const {
    const auto found =
        std::find_if(types.begin(), types.end(), [&](const auto& t) { return t.second->GetExtension() == extension; });
    return found != types.end() ? found->second.get() : nullptr;
}

unsigned CFileTypeList::GetFileID(const std::wstring& key) const {
    const CFileType* type = GetFileType(key);
    return type ? type->GetID() : kNoFileType;
}

std::wstring CFileTypeList::GetFileKey(unsigned id) const {
    const CFileType* type = GetFileTypeID(id);
    return type ? type->GetFileID() : std::wstring();
}

std::wstring CFileTypeList::GetFileExtension(unsigned id) const {
    const CFileType* type = GetFileTypeID(id);
    return type ? type->GetExtension() : std::wstring();
}

void CFileTypeList::GetFilePermissions(const std::wstring& key, bool& supported, bool& create, bool& select) const {
    const CFileType* type = GetFileType(key);
    supported = type && type->IsSupported();
    create = type && type->CanCreate();
    select = type && type->CanSelect();
}

void CFileTypeList::SetFileClientPermissions(const std::wstring& key, bool supported, bool select, bool create) {
    if (CFileType* type = GetFileType(key)) type->SetPermissions(create, select, supported);
}

bool CFileTypeList::GetFirst(Iterator& iterator, std::wstring& key, CFileType*& type) const {
    GetFirst(iterator);
    return GetNext(iterator, key, type);
}

bool CFileTypeList::GetNext(Iterator& iterator, std::wstring& key, CFileType*& type) const {
    if (!iterator.beforeFirst && iterator.at != types.end()) ++iterator.at;
    iterator.beforeFirst = false;
    return Give(iterator.at, key, type);
}

bool CFileTypeList::Give(Map::const_iterator iterator, std::wstring& key, CFileType*& type) const {
    if (iterator == types.end()) return false;
    key = iterator->first;
    type = iterator->second.get();
    return true;
}

bool CFileTypeList::UserGeneralUsed() const {
    return std::any_of(types.begin(), types.end(),
                       [](const auto& t) { return t.second->GetLocation() == kLocationUserGeneral; });
}

CFileTypeList& GetFileTypeList() {
    static CFileTypeList list;
    return list;
}

}  // namespace orv
