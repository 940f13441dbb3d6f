#include "core/UserDBSectionRemover.h"

namespace orv {

bool UserDBSectionRemover::operator()(const std::wstring& path) {
    if (!file.FileOpen(path, false, kOpenRead)) return false;
    file.DeleteSection(section);
    return file.FileSave(path, 0, kSave);
}

}  // namespace orv
