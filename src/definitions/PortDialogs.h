#pragma once

#include <string>
#include <string_view>

#include "definitions/PortSettingsText.h"
#include "platform/Export.h"

namespace orv {

class InterfaceDef;

/// Why a port wasn't added. Without a text the form just stays open.
struct PortRefusal {
    std::wstring title, text;
};

/// The rules behind a form that edits a port. A host derives its window from it.
class ORV_EXPORT IoPortEditDlg {
public:
    virtual ~IoPortEditDlg() = default;
    /// One line on a port of this kind, for lists.
    virtual std::wstring GetSettingsText(const FileSection& port) const = 0;
};

/// The rules behind a form that adds a port. A host derives its window from it.
class ORV_EXPORT IoPortNewDlg {
public:
    virtual ~IoPortNewDlg() = default;
    /// Adds a port with the defaults of its handler, in memory; `entered` is what the user typed: the number of a
    /// serial port, the name of any other. False: `refusal` tells why and nothing has changed.
    bool Add(InterfaceDef& ports, std::wstring_view handler, std::wstring_view entered, std::wstring& portName,
             PortRefusal& refusal) const;

protected:
    /// The section name for what was entered, or empty and a refusal.
    virtual std::wstring NameOf(std::wstring_view entered, PortRefusal& refusal) const;
    virtual void SetDefaults(InterfaceDef& ports, std::wstring_view portName, std::wstring_view handler) const;

private:
    static bool CheckAndCreateSection(InterfaceDef& ports, std::wstring_view portName, std::wstring_view handler,
                                      PortRefusal& refusal);
};

// Forms that add.

/// A serial port: "COM" and the number.
class ORV_EXPORT CNewComportDlg : public IoPortNewDlg {
public:
    CNewComportDlg() : CNewComportDlg(L"COM") {}

protected:
    explicit CNewComportDlg(std::wstring_view namePrefix) : prefix(namePrefix) {}
    std::wstring NameOf(std::wstring_view entered, PortRefusal& refusal) const override;
    void SetDefaults(InterfaceDef& ports, std::wstring_view portName, std::wstring_view handler) const override;

private:
    std::wstring_view prefix;
};

/// A serial port that carries a bus, beside the plain port of the same number.
class ORV_EXPORT CNewRTUComportDlg : public CNewComportDlg {
public:
    CNewRTUComportDlg() : CNewComportDlg(L"MBRTU_COM") {}
};

class ORV_EXPORT CNewNCCportDlg : public CNewComportDlg {};

class ORV_EXPORT CNewNetportDlg : public IoPortNewDlg {
protected:
    std::wstring NameOf(std::wstring_view entered, PortRefusal& refusal) const override;
    void SetDefaults(InterfaceDef& ports, std::wstring_view portName, std::wstring_view handler) const override;
};

/// A port that needs nothing but a name.
class ORV_EXPORT CNewPortDlg : public IoPortNewDlg {};

class ORV_EXPORT CNewFileportDlg : public IoPortNewDlg {
protected:
    void SetDefaults(InterfaceDef& ports, std::wstring_view portName, std::wstring_view handler) const override;
};

// Forms that edit.

class ORV_EXPORT CComportSetup : public IoPortEditDlg {
public:
    std::wstring GetSettingsText(const FileSection& port) const override { return SerialSettingsText(port); }
};

class ORV_EXPORT CNetportSetup : public IoPortEditDlg {
public:
    std::wstring GetSettingsText(const FileSection& port) const override { return NetworkSettingsText(port); }
};

class ORV_EXPORT CNetportSetupRGL : public IoPortEditDlg {
public:
    std::wstring GetSettingsText(const FileSection& port) const override { return AdressSettingsText(port); }
};

class ORV_EXPORT CNetportSetupCamera : public CNetportSetupRGL {};
class ORV_EXPORT CPortSetupCamera : public CNetportSetupRGL {};

class ORV_EXPORT CNetportSetupRTA : public IoPortEditDlg {
public:
    std::wstring GetSettingsText(const FileSection& port) const override { return RtaSettingsText(port); }
};

class ORV_EXPORT CNetportSetupKRIO : public IoPortEditDlg {
public:
    std::wstring GetSettingsText(const FileSection& port) const override { return KrioSettingsText(port); }
};

class ORV_EXPORT CFileportSetup : public IoPortEditDlg {
public:
    std::wstring GetSettingsText(const FileSection& port) const override { return FileSettingsText(port); }
};

}  // namespace orv
