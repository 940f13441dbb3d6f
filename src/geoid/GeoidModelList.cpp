#include "geoid/GeoidModelList.h"

#include <algorithm>
#include <array>

#include "core/ConfigKeys.h"
#include "geoid/GeoidModel_Null.h"
#include "geoid/GeoidModel_RDNAP2018.h"

namespace orv {

namespace {

struct Row {
    std::wstring_view name;
    unsigned short typeId;
    GeoidModelICreator* (*makeCreator)();
};

template <class T>
GeoidModelICreator* NewCreator() {
    return new (std::nothrow) GeoidModelCreator<T>;
}

// In the order of registration. Names are no keys: three models have gone by one name since the first of them.
constexpr Row kModels[] = {
    {L"GeoidModelNull", 17, NewCreator<GeoidModel_Null>},
    {L"GeoidModelRDNAP2018", 28, NewCreator<GeoidModel_RDNAP2018>},
};

}  // namespace

GeoidModelList& GeoidModelList::GetGeoidModelList() {
    static GeoidModelList list;
    return list;
}

void GeoidModelList::RegisterGeoidModel(std::wstring name, unsigned short typeId, GeoidModelICreator* creator) {
    std::unique_ptr<GeoidModelICreator> owned(creator);
    for (Registration& known : registrations) {
        if (known.typeId == typeId) {
            known.name = std::move(name);
            known.creator = std::move(owned);
            return;
        }
    }
    registrations.push_back({std::move(name), typeId, std::move(owned)});
}

std::unique_ptr<GeoidModel> GeoidModelList::Create(unsigned short typeId) const {
    for (const Registration& known : registrations) {
        if (known.typeId == typeId)
            return std::unique_ptr<GeoidModel>(known.creator ? known.creator->Create() : nullptr);
    }
    return nullptr;
}

void RegisterGeoidModels() {
    GeoidModelList& list = GeoidModelList::GetGeoidModelList();
    for (const Row& row : kModels) list.RegisterGeoidModel(std::wstring(row.name), row.typeId, row.makeCreator());
}

int GeoidTypeForKey(std::wstring_view key) {
    const auto found = std::find(GeoidmodelTypeKeys.begin(), GeoidmodelTypeKeys.end(), key);
    return found == GeoidmodelTypeKeys.end() ? -1 : static_cast<int>(found - GeoidmodelTypeKeys.begin());
}

}  // namespace orv
