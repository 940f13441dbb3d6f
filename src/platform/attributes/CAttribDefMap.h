#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

/// What the value of an attribute is.
enum AttributeType : int {
    kAttribUnknown = 0,
    kAttribInt = 1,
    kAttribDouble = 2,
    kAttribBool = 3,
    kAttribString = 4,
    kAttribVector = 5,
    kAttribDataInfo = 401,    ///< a reference to a data item
    kAttribCompOffset = 402,  ///< a reference to an offset point
};

/// The attributes that the suite knows, by mnemonic. Drivers of a host add their own at its start, on its main thread;
/// after that any thread may ask.
class ORV_EXPORT CAttribDefMap {
public:
    /// Type of a mnemonic as it stands, index and all; 0 if it isn't known.
    static int GetAttribType(std::wstring_view mnemonic);
    static void Define(std::wstring_view mnemonic, int type);
};

/// "SegmentVector(3)" without its index; any other text as it is.
inline std::wstring_view StripAttributeIndex(std::wstring_view mnemonic) {
    return mnemonic.ends_with(L')') ? mnemonic.substr(0, mnemonic.find(L'(')) : mnemonic;
}

}  // namespace orv
