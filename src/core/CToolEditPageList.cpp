#include "core/CToolEditPageList.h"

namespace orv {

CToolEditPageList& CToolEditPageList::GetToolEditPageList() {
    static CToolEditPageList list;
    return list;
}

std::unique_ptr<ToolEditPage> CToolEditPageList::Create(std::wstring_view name) const {
    ToolEditPageICreator* const creator = creators.Find(name);
    return std::unique_ptr<ToolEditPage>(creator ? creator->Create() : nullptr);
}

void CToolEditPageList::GetToolEditPageNames(std::vector<std::wstring>& outList) const {
    outList.clear();
    for (auto at = creators.First(); at != creators.End(); ++at) outList.push_back(at->first);
}

}  // namespace orv
