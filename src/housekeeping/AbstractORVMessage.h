#pragma once

#include <functional>
#include <string>

#include "housekeeping/Message.h"
#include "platform/Export.h"

namespace orv {

class CException;

/// Where parts of an application report what happens. The virtual operations stand in a fixed order. All return false
/// if the message could not be taken.
class ORV_EXPORT AbstractORVMessage {
public:
    virtual ~AbstractORVMessage() = default;
    virtual bool AddMessage(CException* exception) = 0;
    virtual bool AddMessage(MSG_LEVEL level, unsigned long id, const char* first, const char* second) = 0;
    /// The text of resource `id` with its two %s replaced.
    virtual bool AddMessage(MSG_LEVEL level, unsigned long id, const std::wstring& first,
                            const std::wstring& second) = 0;
    /// `post`: tell the main window without waiting until it has looked. `port`: whom the message is about. `addTime`:
    /// put date and time in front.
    virtual bool AddMessage(MSG_LEVEL level, const std::wstring& text, bool post, const std::wstring& port,
                            bool addTime, MSG_FILTER filter) = 0;
    virtual bool AddMessage(MSG_LEVEL level, const char* text, bool post, const std::wstring& port, bool addTime,
                            MSG_FILTER filter) = 0;
};

/// Number under which a main window that has a message queue gets the news.
inline constexpr unsigned kMessageArrived = 32801;

/// Tells the application's main window that `source` has a new message. Called on the writer's thread, who holds the
/// source's writers' lock meanwhile. `post` true: put it in the window's queue and return. False: return when the
/// window has handled it; a window that itself waits for this source's lock at that moment never will. It may add
/// messages and must not throw.
using MessageDelivery = std::function<void(AbstractORVMessage& source, bool post)>;
ORV_EXPORT void SetMessageDelivery(MessageDelivery delivery);  ///< empty: no main window

}  // namespace orv
