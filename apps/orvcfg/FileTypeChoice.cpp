#include "FileTypeChoice.h"

#include <algorithm>

#include "Installation.h"
#include "Session.h"
#include "Suggest.h"
#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

/// All rows, by id; those without one come last.
std::vector<const CFileType*> AllTypes() {
    std::vector<const CFileType*> types;
    CFileTypeList::Iterator iterator;
    std::wstring key;
    CFileType* type = nullptr;
    const CFileTypeList& list = GetFileTypeList();
    for (bool more = list.GetFirst(iterator, key, type); more; more = list.GetNext(iterator, key, type)) {
        types.push_back(type);
    }
    std::stable_sort(types.begin(), types.end(),
                     [](const CFileType* a, const CFileType* b) { return a->GetID() < b->GetID(); });
    return types;
}

}  // namespace

std::vector<const CFileType*> TypesOf(Session& session, const std::string& which) {
    const std::vector<const CFileType*> all = AllTypes();
    if (which.empty()) return all;
    const std::wstring wanted = TextArgument(which);
    const std::wstring extension = wanted.starts_with(L'.') ? wanted.substr(1) : wanted;
    const std::optional<unsigned> id = ParseUnsigned(wanted);
    std::vector<const CFileType*> byKey, byId, byExtension;
    std::vector<std::wstring> known;
    for (const CFileType* type : all) {
        if (EqualNoCase(type->GetFileID(), wanted)) byKey.push_back(type);
        if (id && type->GetID() == *id) byId.push_back(type);
        if (!extension.empty() && EqualNoCase(type->GetExtension(), extension)) byExtension.push_back(type);
        known.push_back(type->GetFileID());
    }
    for (const auto& found : {byKey, byId, byExtension}) {
        if (!found.empty()) return found;
    }
    std::string remedy = DidYouMean(wanted, known);
    if (remedy.empty()) remedy = "\"orvcfg types\" shows them all.";
    session.Problem({}, "No file type has the key, id or extension \"" + which + "\"", remedy);
    return {};
}

}  // namespace orv::cfg
