#include "core/CFileType.h"

#include <utility>

#include "platform/service/Translator.h"

namespace orv {

CFileType::CFileType(std::wstring fileId, unsigned number, std::wstring withoutDot, int pathLocation, std::wstring name,
                     std::wstring text)
    : key(std::move(fileId)),
      extension(std::move(withoutDot)),
      description(std::move(text)),
      defaultName(std::move(name)),
      location(pathLocation),
      id(number) {}

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
