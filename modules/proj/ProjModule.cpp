#include <memory>

#include "ProjCoordSys.h"
#include "ProjGeoDatabase.h"
#include "core/ConfigKeys.h"
#include "platform/coord/OrvGeoCoordSysFactories.h"

/// Called by the loader once the module is in memory. False if the host was built for another form of the interface.
extern "C" ORV_EXPORT bool OrvRegisterCoordSysModule(unsigned interfaceVersion) {
    if (interfaceVersion != orv::kCoordSysInterfaceVersion) return false;
    const std::wstring key(orv::COORDSYS_MODULE_KEY);
    orv::OrvGeoCoordSysList::GetCoordSysList().Register(key, [] { return std::make_unique<orv::ProjCoordSys>(); });
    orv::OrvGeoDatabaseBaseList::GetGeoDatabaseList().Register(key,
                                                               [] { return std::make_unique<orv::ProjGeoDatabase>(); });
    return true;
}
