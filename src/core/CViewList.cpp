#include "core/CViewList.h"

namespace orv {

CViewList& CViewList::GetViewList() {
    static CViewList list;
    return list;
}

ViewClass* CViewList::GetFirst() {
    return StandOn(views.First());
}

ViewClass* CViewList::GetNext() {
    return StandOn(views.After(last));
}

ViewClass* CViewList::StandOn(NamedCreators<ViewClass>::Map::const_iterator place) {
    if (place == views.End()) return nullptr;
    last = place->first;
    return place->second.get();
}

}  // namespace orv
