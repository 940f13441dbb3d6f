#pragma once

#include <string>
#include <vector>

#include "core/CFileTypeList.h"

namespace orv::cfg {

class Session;

/// Rows that a key, an id, or an extension with or without its dot means; several types share some extensions. Empty
/// after a problem with near names has been told.
std::vector<const CFileType*> TypesOf(Session& session, const std::string& which);

}  // namespace orv::cfg
