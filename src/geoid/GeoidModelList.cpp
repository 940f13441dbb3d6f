#include "geoid/GeoidModelList.h"

#include <algorithm>
#include <array>

#include "core/ConfigKeys.h"
#include "geoid/GeoidModel_DVR90.h"
#include "geoid/GeoidModel_DeMin.h"
#include "geoid/GeoidModel_EGM2008.h"
#include "geoid/GeoidModel_GeoNZ97_LAT2006.h"
#include "geoid/GeoidModel_HARN.h"
#include "geoid/GeoidModel_Null.h"
#include "geoid/GeoidModel_OSGM.h"
#include "geoid/GeoidModel_OSTN.h"
#include "geoid/GeoidModel_Quasigeoid.h"
#include "geoid/GeoidModel_RDNAP.h"
#include "geoid/GeoidModel_RDNAP2018.h"
#include "geoid/GeoidModel_RDNAP2018_hor.h"
#include "geoid/GeoidModel_Sweden.h"
#include "geoid/GeoidModel_TrimbleGridFile.h"
#include "geoid/GeoidModel_USStatePlane.h"
#include "geoid/GeoidModel_VORF.h"
#include "geoid/GeoidModel_byn_format.h"
#include "geoid/GeoidModel_hBG03.h"

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
    {L"GeoidModelDeMin", 2, NewCreator<GeoidModel_DeMin>},
    {L"GeoidModelDeMin", 21, NewCreator<GeoidModel_GeoNZ97>},
    {L"GeoidModelDeMin", 22, NewCreator<GeoidModel_GeoNZ97_LAT2006>},
    {L"GeoidModelRDNAP", 4, NewCreator<GeoidModel_RDNAP>},
    {L"GeoidModelhBG03", 5, NewCreator<GeoidModel_hBG03>},
    {L"GeoidModelSwen01", 6, NewCreator<GeoidModel_Sweden>},
    {L"GeoidModelNorway", 19, NewCreator<GeoidModel_Norway>},
    {L"GeoidModelStatePlane", 7, NewCreator<GeoidModel_USStatePlane>},
    {L"GeoidModelHARN", 8, NewCreator<GeoidModel_HARN>},
    {L"GeoidModelOSTN", 25, NewCreator<GeoidModel_OSTN>},
    {L"GeoidModelOSGM", 24, NewCreator<GeoidModel_OSGM>},
    {L"GeoidModelRDNAP2008", 13, NewCreator<GeoidModel_RDNAP2008>},
    {L"GeoidModelDVR90", 14, NewCreator<GeoidModel_DVR90>},
    {L"GeoidModel_QuasigeoidEGG97", 16, NewCreator<GeoidModel_QuasigeoidEGG97>},
    {L"GeoidModelNull", 17, NewCreator<GeoidModel_Null>},
    {L"GeoidModel_EGM2008", 18, NewCreator<GeoidModel_EGM2008>},
    {L"GeoidModel_Quasigeoid_GCG", 20, NewCreator<GeoidModel_Quasigeoid_GCG>},
    {L"GeoidModel_byn_format", 23, NewCreator<GeoidModel_byn_format>},
    {L"GeoidModel_TrimbleGridFile", 26, NewCreator<GeoidModel_TrimbleGridFile>},
    {L"GeoidModel_VORF", 27, NewCreator<GeoidModel_VORF>},
    {L"GeoidModelRDNAP2018", 28, NewCreator<GeoidModel_RDNAP2018>},
    {L"GeoidModelRDNAP2018Hor", 29, NewCreator<GeoidModel_RDNAP2018_hor>},
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
