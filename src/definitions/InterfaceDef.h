#pragma once

#include <string>
#include <string_view>

#include "core/FileObject.h"
#include "definitions/PortSettings.h"
#include "platform/Export.h"

namespace orv {

/// The ports of a computer: one section a port, named as devices refer to it. See docs/formats/ports.md. Changes stay
/// in memory until `FileSave`, but for the clean-up in `FileOpen`. Main thread.
class ORV_EXPORT InterfaceDef : public FileObject {
public:
    /// The one of the process. Others may be made beside it.
    static InterfaceDef& Instance();
    InterfaceDef() = default;

    /// Opens and brings old port names up to date. A sonar that was set to replay a file gets its address back, and the
    /// file is saved at once if there was one. False if it can't be opened.
    [[nodiscard]] bool FileOpen(std::wstring_view path);

    /// False, and `out` is left alone, if the port or its handler is missing, or a key that a port of kind file, OPC,
    /// OPC UA or IXXAT can't do without. Serial and network ports take defaults for what is missing.
    bool GetPortSettings(std::wstring_view portName, PortSettings& out) const;
    /// Writes the section back, then the serial and network settings if there are any. Always true.
    bool SetPortSettings(std::wstring_view portName, const PortSettings& settings);

    // Reading fills what is there; true if every key was. Writing makes what is missing; true if every key was written.

    bool GetCommPort(std::wstring_view portName, CSerialSettings& out) const;
    bool GetNetPort(std::wstring_view portName, CNetSettings& out) const;
    bool SetCommPort(std::wstring_view portName, const CSerialSettings& settings);
    bool SetNetPort(std::wstring_view portName, const CNetSettings& settings);

    /// Makes a serial port from texts: parity "No", "Even", "Mark", "None", "Odd" or "Space" in any case, stop bits
    /// "1", "1.5" or "2". An unknown text is not written and makes the result false.
    bool DefineCOMport(std::wstring_view portName, int baudRate, int dataBits, std::wstring_view parityText,
                       std::wstring_view stopBitsText);
    /// The same read back, the parity in capitals. False, and the outputs are left alone, if a key is missing or
    /// parity or stop bits are no known number.
    bool GetCOMportSettings(std::wstring_view portName, int& outBaudRate, int& outDataBits, std::wstring& outParityText,
                            std::wstring& outStopBitsText) const;

protected:
    bool AfterFileOpen() override;
};

}  // namespace orv
