#include "core/CFileType.h"

#include <utility>

#include "platform/service/Translator.h"

namespace orv {

CFileType::CFileType(std::wstring key, unsigned id, std::wstring extension, int location, std::wstring defaultName,
                     std::wstring description)
    : key(std::move(key)),
      extension(std::move(extension)),
      description(std::move(description)),
      defaultName(std::move(defaultName)),
      location(location),
      id(id) {}

std::wstring CFileType::GetDescription() const {
    const Translator& translator = Translator::Instance();
    const std::wstring translated = translator.IsActive() ? translator.GetFileTypeListString(id) : std::wstring();
    return translated.empty() ? description : translated;
}

void CFileType::SetPermissions(bool create, bool select, bool isSupported) {
    canCreate = create;
    canSelect = select;
    supported = isSupported;
}

void CFileType::Edit(const std::wstring&) {}

}  // namespace orv
