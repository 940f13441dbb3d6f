#pragma once

#include <string>

#include "platform/Export.h"

namespace orv {

/// Called with one text after the other; false ends the walk.
class ORV_EXPORT GetStringFunctionObject {
public:
    virtual ~GetStringFunctionObject() = default;
    virtual bool operator()(const std::wstring& text) = 0;
};

}  // namespace orv
