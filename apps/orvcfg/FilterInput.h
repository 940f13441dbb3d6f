#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "Session.h"

namespace orv::cfg {

/// Calls `each` with every line of a descriptor, as long as results can be written; what is finished goes out before
/// the program waits for more. False after a problem with `name` has been told.
bool FilterInput(Session& session, int descriptor, std::string_view name,
                 const std::function<void(std::string_view line)>& each);
/// The same for a file.
bool FilterFile(Session& session, const std::wstring& path, const std::function<void(std::string_view line)>& each);

}  // namespace orv::cfg
