#include "../Session.h"
#include "Check.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"

namespace orv::cfg {

namespace {

constexpr const char* kWordsOf[] = {"its content was changed outside the suite",
                                    "it was signed under another name: a copy, or a renamed file",
                                    "it carries no signature", "it is enciphered, which nothing expects here"};

const char* WordsOf(FileState state) {
    switch (state) {
        case FileState::ContentChanged:
            return kWordsOf[0];
        case FileState::TitleChanged:
            return kWordsOf[1];
        case FileState::Unsigned:
            return kWordsOf[2];
        case FileState::Enciphered:
            return kWordsOf[3];
        case FileState::Valid:
            break;
    }
    return nullptr;
}

/// A file that can't be read is told by who needs it.
void LookAt(Examination& examination, const std::wstring& path) {
    ProtectedFileObject file;
    const char* const words = ReadAsItIs(path, file) ? WordsOf(StateOf(file)) : nullptr;
    if (!words) return;
    const std::string name = PathToBytes(path);
    examination.Tell(name, words,
                     "Put a copy back that is known to be good; if the change was meant, \"orvcfg config sign\" "
                     "accepts it.");
}

}  // namespace

// The access levels are signed, too: what becomes of rights is a check of its own.
void LookAtSignatures(Examination& examination) {
    LookAt(examination, SystemFolder(examination.session) + std::wstring(ORV_DEF_FILENAME));
    const std::wstring definitions = GetFolderFromPath(AppDefFile(TextArgument(examination.session.options.appDef)));
    for (const FolderEntry& entry : FindFiles(definitions, L"*.adf")) LookAt(examination, definitions + entry.name);
    if (!examination.projectFile.empty()) LookAt(examination, examination.projectFile);
}

}  // namespace orv::cfg
