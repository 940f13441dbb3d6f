#include "definitions/CIoHandlerSettingsList.h"

#include "definitions/PortHandlers.h"

namespace orv {

namespace {

template <class T>
IoPortNewDlgICreator* Adds() {
    return new (std::nothrow) IoPortNewDlgCreator<T>;
}

template <class T>
IoPortEditDlgICreator* Edits() {
    return new (std::nothrow) IoPortEditDlgCreator<T>;
}

IoPortNewDlgICreator* CreatorOf(NewPortForm form) {
    switch (form) {
        case NewPortForm::Com:
            return Adds<CNewComportDlg>();
        case NewPortForm::RtuCom:
            return Adds<CNewRTUComportDlg>();
        case NewPortForm::NccCom:
            return Adds<CNewNCCportDlg>();
        case NewPortForm::Net:
            return Adds<CNewNetportDlg>();
        case NewPortForm::Plain:
            return Adds<CNewPortDlg>();
        case NewPortForm::File:
            return Adds<CNewFileportDlg>();
        case NewPortForm::None:
            break;
    }
    return nullptr;
}

IoPortEditDlgICreator* CreatorOf(EditPortForm form) {
    switch (form) {
        case EditPortForm::Com:
            return Edits<CComportSetup>();
        case EditPortForm::Net:
            return Edits<CNetportSetup>();
        case EditPortForm::NetRgl:
            return Edits<CNetportSetupRGL>();
        case EditPortForm::NetRta:
            return Edits<CNetportSetupRTA>();
        case EditPortForm::NetKrio:
            return Edits<CNetportSetupKRIO>();
        case EditPortForm::NetCamera:
            return Edits<CNetportSetupCamera>();
        case EditPortForm::Camera:
            return Edits<CPortSetupCamera>();
        case EditPortForm::File:
            return Edits<CFileportSetup>();
        case EditPortForm::None:
            break;
    }
    return nullptr;
}

}  // namespace

CIoHandlerSettingsList& GetIoHandlerSettingsList() {
    static CIoHandlerSettingsList list;
    return list;
}

void CIoHandlerSettingsList::RegisterIoPortEditor(std::wstring_view handler, IoPortEditDlgICreator* editorCreator,
                                                  IoPortNewDlgICreator* newPortCreator) {
    editors.Register(handler, editorCreator);
    newPorts.Register(handler, newPortCreator);
}

std::unique_ptr<IoPortEditDlg> CIoHandlerSettingsList::Create(std::wstring_view handler, void* parent) const {
    IoPortEditDlgICreator* const creator = editors.Find(handler);
    return std::unique_ptr<IoPortEditDlg>(creator ? creator->Create(parent) : nullptr);
}

std::unique_ptr<IoPortNewDlg> CIoHandlerSettingsList::CreateNew(std::wstring_view handler, void* parent) const {
    IoPortNewDlgICreator* const creator = newPorts.Find(handler);
    return std::unique_ptr<IoPortNewDlg>(creator ? creator->Create(parent) : nullptr);
}

bool CIoHandlerSettingsList::GetNextHandler(std::wstring& handlerInOut) const {
    const auto next = handlerInOut.empty() ? editors.First() : editors.After(handlerInOut);
    if (next == editors.End()) return false;
    handlerInOut = next->first;
    return true;
}

void RegisterPortEditors() {
    for (const PortHandler& handler : PortHandlers()) {
        if (handler.edits == EditPortForm::None) continue;
        GetIoHandlerSettingsList().RegisterIoPortEditor(handler.name, CreatorOf(handler.edits),
                                                        CreatorOf(handler.adds));
    }
}

}  // namespace orv
