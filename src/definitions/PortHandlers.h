#pragma once

#include <span>
#include <string_view>

#include "platform/Export.h"

namespace orv {

/// What the keys of a port mean.
enum class PortKind { Untyped, Serial, Network, File, Opc, OpcUa, Ixxat };

/// Which form adds a port, and which one edits it.
enum class NewPortForm { None, Com, RtuCom, NccCom, Net, Plain, File };
enum class EditPortForm { None, Com, Net, NetRgl, NetRta, NetKrio, NetCamera, Camera, File };

/// A handler: the text that a port has under "Handler".
struct PortHandler {
    std::wstring_view name;
    PortKind kind;
    NewPortForm adds;
    EditPortForm edits;
};

/// All handlers, in the order of their registration. Those that no form serves come last.
ORV_EXPORT std::span<const PortHandler> PortHandlers();
/// Untyped for a handler that isn't known.
ORV_EXPORT PortKind KindOfHandler(std::wstring_view handler);

/// "NO", "EVEN", "MARK", "NONE", "ODD", "SPACE" by index 0 to 5; empty beyond. "NO" and "NONE" both mean none: old
/// files hold either number.
ORV_EXPORT std::wstring_view NameOfParity(long index);
/// The index of a name in any case, or -1.
ORV_EXPORT int ParityOfName(std::wstring_view name);
/// "No", "Even" and so on, as forms list them.
ORV_EXPORT std::span<const std::wstring_view> ParityNames();

}  // namespace orv
