#pragma once

#include <string>
#include <vector>

#include "core/ProtectedFileObject.h"

namespace orv::cfg {

class Session;

/// Reads a configuration file as it stands. False after a problem has been told; an enciphered file is one, for its
/// items can't be had without its key.
bool OpenConfigFile(Session& session, const std::wstring& path, ProtectedFileObject& file);

std::vector<std::wstring> SectionsOf(const FileObject& file);
std::vector<std::wstring> KeysOf(const FileObject& file, const std::wstring& section);

}  // namespace orv::cfg
