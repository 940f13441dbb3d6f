#include "ConfigFiles.h"

#include "Installation.h"
#include "Session.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

bool OpenConfigFile(Session& session, const std::wstring& path, ProtectedFileObject& file) {
    if (!ReadAsItIs(path, file)) {
        session.Problem(PathToBytes(path), "Can't be read: " + ToUtf8(FsResultText(file.LastResult())),
                        "Check name and rights.");
        return false;
    }
    if (StateOf(file) != FileState::Enciphered) return true;
    session.Problem(PathToBytes(path), "The file is enciphered", "Only the programs that made it show its items.");
    return false;
}

std::vector<std::wstring> SectionsOf(const FileObject& file) {
    std::vector<std::wstring> sections;
    FobjSection cursor;
    std::wstring name;
    for (bool more = file.GetFirstSectionEntry(cursor, name); more; more = file.GetNextSectionEntry(cursor, name)) {
        sections.push_back(name);
    }
    return sections;
}

std::vector<std::wstring> KeysOf(const FileObject& file, const std::wstring& section) {
    std::vector<std::wstring> keys;
    FobjSection cursor;
    std::wstring key, value;
    for (bool more = file.GetFirstMapEntry(cursor, section, key, value); more;
         more = file.GetNextMapEntry(cursor, key, value)) {
        keys.push_back(key);
    }
    return keys;
}

}  // namespace orv::cfg
