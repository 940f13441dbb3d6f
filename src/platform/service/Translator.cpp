#include "platform/service/Translator.h"

#include <utility>

namespace orv {

namespace {
template <class Lookup, class... Args>
std::wstring Ask(const Lookup& lookup, Args... args) {
    return lookup ? lookup(args...) : std::wstring();
}
}  // namespace

Translator& Translator::Instance() {
    static Translator translator;
    return translator;
}

std::wstring Translator::GetFileTypesString(unsigned fileTypeId, std::wstring_view subType) const {
    return Ask(lookups.fileTypes, fileTypeId, subType);
}

std::wstring Translator::GetFileTypeListString(unsigned fileTypeId) const {
    return Ask(lookups.fileTypeList, fileTypeId);
}

std::wstring Translator::GetDataDefString(std::wstring_view section, std::wstring_view key) const {
    return Ask(lookups.dataDef, section, key);
}

std::wstring Translator::GetResourceString(std::wstring_view id) const {
    return Ask(lookups.resource, id);
}

void Translator::Activate(Lookups newLookups) {
    lookups = std::move(newLookups);
    active = true;
}

void Translator::Deactivate() {
    lookups = {};
    active = false;
}

}  // namespace orv
