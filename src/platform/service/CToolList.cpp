#include "platform/service/CToolList.h"

#include <algorithm>

namespace orv {

CToolList& CToolList::GetToolList() {
    static CToolList list;
    return list;
}

void CToolList::RegisterTool(std::wstring_view name) {
    if (std::find(names.begin(), names.end(), name) == names.end()) names.emplace_back(name);
}

}  // namespace orv
