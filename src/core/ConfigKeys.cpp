#include "core/ConfigKeys.h"

#include <algorithm>

namespace orv {

std::wstring GetFileKeyForType(unsigned id) {
    return id < fileTypeKeys.size() ? std::wstring(fileTypeKeys[id]) : std::wstring();
}

unsigned GetFileTypeForKey(std::wstring_view key) {
    const auto row = std::find(fileTypeKeys.begin(), fileTypeKeys.end(), key);
    return row != fileTypeKeys.end() ? static_cast<unsigned>(row - fileTypeKeys.begin()) : static_cast<unsigned>(-1);
}

}  // namespace orv
