// A coordinate module that knows no systems: enough to see it load.
#include "platform/coord/OrvGeoCoordSysFactories.h"

extern "C" ORV_EXPORT bool OrvRegisterCoordSysModule(unsigned interfaceVersion);

bool OrvRegisterCoordSysModule(unsigned interfaceVersion) {
    if (interfaceVersion != orv::kCoordSysInterfaceVersion) return false;
    orv::OrvGeoCoordSysList::GetCoordSysList().Register(L"TestModule", [] { return nullptr; });
    return true;
}
