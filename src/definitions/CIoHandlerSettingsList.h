#pragma once

#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>

#include "core/NamedCreators.h"
#include "definitions/PortDialogs.h"
#include "platform/Export.h"

namespace orv {

/// Makes one kind of edit form. `parent` is the host's window, handed on as it is.
class ORV_EXPORT IoPortEditDlgICreator {
public:
    virtual IoPortEditDlg* Create(void* parent) = 0;  ///< by new, or null when memory fails; the caller owns it
    virtual ~IoPortEditDlgICreator() = default;
};

/// Makes one kind of form for new ports.
class ORV_EXPORT IoPortNewDlgICreator {
public:
    virtual IoPortNewDlg* Create(void* parent) = 0;  ///< by new, or null when memory fails; the caller owns it
    virtual ~IoPortNewDlgICreator() = default;
};

/// Forms that are windows take their parent, those that are rules only take none.
template <class T>
T* MakePortForm(void* parent) {
    if constexpr (std::is_constructible_v<T, void*>) {
        return new (std::nothrow) T(parent);
    } else {
        return new (std::nothrow) T;
    }
}

template <class T>
class IoPortEditDlgCreator : public IoPortEditDlgICreator {
public:
    IoPortEditDlg* Create(void* parent) override { return MakePortForm<T>(parent); }
};

template <class T>
class IoPortNewDlgCreator : public IoPortNewDlgICreator {
public:
    IoPortNewDlg* Create(void* parent) override { return MakePortForm<T>(parent); }
};

/// Which forms serve a port, by its handler. Filled at start; main thread.
class ORV_EXPORT CIoHandlerSettingsList {
public:
    /// Takes both creators over. The first registration of a handler stays in force.
    void RegisterIoPortEditor(std::wstring_view handler, IoPortEditDlgICreator* editorCreator,
                              IoPortNewDlgICreator* newPortCreator);
    /// Null for a handler without one.
    std::unique_ptr<IoPortEditDlg> Create(std::wstring_view handler, void* parent) const;
    std::unique_ptr<IoPortNewDlg> CreateNew(std::wstring_view handler, void* parent) const;
    /// The handler behind the given one in the order of their texts, the first for an empty text; false at the end.
    bool GetNextHandler(std::wstring& handlerInOut) const;

private:
    NamedCreators<IoPortEditDlgICreator> editors;
    NamedCreators<IoPortNewDlgICreator> newPorts;
};

ORV_EXPORT CIoHandlerSettingsList& GetIoHandlerSettingsList();

/// Registers the forms of this library; harmless again.
ORV_EXPORT void RegisterPortEditors();

}  // namespace orv
