#include "housekeeping/BaseORVMessage.h"

#include <charconv>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/notify/Exceptions.h"
#include "platform/os/Clock.h"
#include "platform/os/FileTools.h"
#include "platform/service/Translator.h"
#include "platform/text/Format.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv {

namespace {

constexpr int kRingSize = 100;
constexpr std::uint32_t kNullPointer = 0x80004003;  // the code that the suite's programs know for it
constexpr std::chrono::milliseconds kWriterPatience{3000};
constexpr std::int64_t kFlushInterval = 60;   // seconds
constexpr std::size_t kPendingLimit = 16384;  // bytes

constexpr std::string_view kStartOfFile = "*** Start of ORV Session ***\n";
constexpr std::string_view kStartOfLogging = "\n*** Start of Logging Session ***\n";
constexpr std::string_view kEndOfLogging = "\n*** End of Logging Session ***\n";

struct DeliveryBoard {
    std::mutex mutex;
    std::shared_ptr<const MessageDelivery> delivery;
    std::atomic<bool> any = false;
};

/// Never destroyed: a worker may report while the process ends.
DeliveryBoard& TheDelivery() {
    static DeliveryBoard& board = *new DeliveryBoard;
    return board;
}

void Deliver(AbstractORVMessage& source, bool post) {
    DeliveryBoard& board = TheDelivery();
    if (!board.any) return;
    std::shared_ptr<const MessageDelivery> delivery;
    {
        const std::lock_guard lock(board.mutex);
        delivery = board.delivery;
    }
    if (delivery) (*delivery)(source, post);
}

/// Narrow texts come from systems and drivers: UTF-8, or the old Windows page where it isn't that.
std::wstring Widen(std::string_view text) {
    return FromUtf8(IsUtf8(text) ? std::string(text) : Windows1252ToUtf8(text));
}

std::wstring AddressText(const void* address) {
    std::array<char, 20> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), reinterpret_cast<std::uintptr_t>(address), 16).ptr;
    return L"0x" + std::wstring(digits.begin(), end);
}

}  // namespace

void SetMessageDelivery(MessageDelivery delivery) {
    auto next = delivery ? std::make_shared<const MessageDelivery>(std::move(delivery)) : nullptr;
    DeliveryBoard& board = TheDelivery();
    const std::lock_guard lock(board.mutex);
    board.any = next != nullptr;
    board.delivery.swap(next);
}

BaseORVMessage::BaseORVMessage()
    : key(AddressText(this)), buffer(new (std::nothrow) SearchBuffer<Message<wchar_t>>), port(L"NONE") {
    if (!buffer || !buffer->Init(1)) throw CException(L"There is no memory for messages", kNullPointer);
}

BaseORVMessage::~BaseORVMessage() {
    SetLogging(false, L"", L"");
    // Whoever is still writing gets as long as any writer waits.
    const TimedLock lock(writers, kWriterPatience);
}

bool BaseORVMessage::InitBuffer() {
    bufferReady = buffer->Init(kRingSize);
    if (!bufferReady) SetStatus(kMessageNoRing);
    return bufferReady;
}

// ---- writers

bool BaseORVMessage::AddMessage(CException* exception) {
    if (!exception) return false;
    const TimedLock lock(writers, kWriterPatience);
    if (!lock) {
        SetStatus(kMessageTimeout);
        return false;
    }
    exception->GetErrorMessage(scratch.data(), scratch.size());
    return AddMessage(kLevelException, std::wstring(scratch.data()), true, L"", true, kNoFilter);
}

bool BaseORVMessage::AddMessage(MSG_LEVEL level, unsigned long id, const char* first, const char* second) {
    return first && second && AddMessage(level, id, Widen(first), Widen(second));
}

bool BaseORVMessage::AddMessage(MSG_LEVEL level, unsigned long id, const std::wstring& first,
                                const std::wstring& second) {
    std::wstring format = L"Unknown error";
    if (id != 0) {
        const std::wstring number = IntText(static_cast<std::int64_t>(id));
        format = Translator::Instance().GetResourceString(number);
        // Without a text of its own the message still says all that it knows.
        if (format.empty()) format = L"Message " + number + L": %s %s";
    }
    return AddMessage(level, FormatTexts(format, {first, second}), true, L"", true, kNoFilter);
}

bool BaseORVMessage::AddMessage(MSG_LEVEL level, const char* text, bool post, const std::wstring& newPort, bool addTime,
                                MSG_FILTER filter) {
    return text && AddMessage(level, Widen(text), post, newPort, addTime, filter);
}

bool BaseORVMessage::AddMessage(MSG_LEVEL level, const std::wstring& text, bool post, const std::wstring& newPort,
                                bool addTime, MSG_FILTER filter) {
    {
        const std::lock_guard portLock(portMutex);
        port = newPort;
    }
    const TimedLock lock(writers, kWriterPatience);
    if (!lock) {
        SetStatus(kMessageTimeout);
        return false;
    }
    SetStatus(kMessageOk);
    if (!bufferReady && !InitBuffer()) return false;
    if (addTime && !noHeader) {
        UpdateTime();
        timeIsNow = true;
        LogErrorMessage(level, timePrefix + text, post, filter);
        timeIsNow = false;
    } else {
        LogErrorMessage(level, text, post, filter);
    }
    return true;
}

void BaseORVMessage::UpdateTime() {
    const std::int64_t now = static_cast<std::int64_t>(CExTime::GetCoarseTime()) / 1000;
    if (now == timeOfTexts) return;
    timeOfTexts = now;
    const std::wstring text = CExTime::TimeToString(static_cast<double>(now) * 1000.0, 1, 0, 1);
    timePrefix = text + L" : ";
    const CalendarTime local = LocalCalendar(now);
    today = std::int64_t{local.year} * 10000 + local.month * 100 + local.day;
}

bool BaseORVMessage::LogErrorMessage(MSG_LEVEL level, std::wstring text, bool post, MSG_FILTER filter) {
    SetStatus(kMessageOk);
    if (logging && log) WriteLog(text);
    if (bufferReady) {
        sequence = static_cast<std::int32_t>(static_cast<std::uint32_t>(sequence) + 1);
        buffer->Add({std::move(text), level, sequence, filter});
    }
    Deliver(*this, post);
    return true;
}

bool BaseORVMessage::SetLogging(bool on, const std::wstring& folder, const std::wstring& prefix) {
    const TimedLock lock(writers, kWriterPatience);
    if (!lock) {
        SetStatus(kMessageTimeout);
        return false;
    }
    SetStatus(kMessageOk);
    if (!folder.empty()) logFolder = WithSeparator(ToNativePath(folder));
    if (!prefix.empty()) logPrefix = prefix;
    if (on && !logging) {
        const bool started = InitFileLogging();
        logging = started;
        if (!started) SetStatus(kMessageNoLog);
        return started;
    }
    if (!on && logging) {
        StopFileLogging();
        logging = false;
    }
    return true;
}

// ---- log file

void BaseORVMessage::WriteLog(std::wstring_view text) {
    if (!timeIsNow) UpdateTime();
    timeIsNow = false;
    if (today != logDate && !InitFileLogging() && !log) {
        logging = false;
        return;
    }
    AppendUtf8(pending, text);
    if (!raw) pending += '\n';
    const std::int64_t sinceFlush = timeOfTexts - lastFlush;
    const bool due = sinceFlush >= kFlushInterval || sinceFlush < 0;  // the clock may have been set back
    if (!due && pending.size() < kPendingLimit) return;
    const FsResult result = Flush();
    if (result != FsResult::Ok) return FailLogging(result);
    if (due) lastFlush = timeOfTexts;
}

FsResult BaseORVMessage::Flush() {
    const FsResult result = log->Write(pending.data(), pending.size());
    pending.clear();
    return result;
}

/// Flag and handle go before anything that could fail and come back here: a bad disk is reported once.
void BaseORVMessage::FailLogging(FsResult result) {
    logging = false;
    log.reset();
    pending.clear();
    CFileException exception(logPath, result);
    AddMessage(&exception);
}

FsResult BaseORVMessage::CloseLog() {
    if (!noHeader) pending += kEndOfLogging;
    FsResult result = Flush();
    const FsResult closed = log->Close();
    log.reset();
    return result != FsResult::Ok ? result : closed;
}

bool BaseORVMessage::StopFileLogging() {
    SetStatus(kMessageOk);
    if (!log) return false;
    const FsResult result = CloseLog();
    if (result != FsResult::Ok) FailLogging(result);
    return result == FsResult::Ok;
}

bool BaseORVMessage::LogPath(std::wstring& path) const {
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring folder = logFolder, extension;
    if (folder.empty() && !search.GetFilePath(kFileTypeEventLogData, folder)) return false;
    static_cast<void>(MakeFolders(folder));
    if (!search.GetFileExtension(kFileTypeEventLogData, extension)) return false;
    path = folder + search.GetAppName() + L"_" + (logPrefix.empty() ? L"" : logPrefix + L"_") + IntText(logDate) +
           extension;
    return true;
}

bool BaseORVMessage::InitFileLogging() {
    UpdateTime();
    logDate = today;
    std::wstring path;
    if (!LogPath(path)) return false;  // with the old file still open: a message in yesterday's is better than none
    if (log) {
        const FsResult result = CloseLog();
        if (result != FsResult::Ok) {
            FailLogging(result);
            return false;
        }
    }
    return OpenLog(path);
}

bool BaseORVMessage::OpenLog(const std::wstring& path) {
    logPath = path;
    pending.clear();
    // Exclusive, as two sinks that write at their own positions would overwrite each other; readers take no lock.
    const bool denyNobody = raw && !FileExists(path);
    const OpenMode mode = {
        .read = false, .write = true, .create = true, .share = denyNobody ? Share::DenyNone : Share::Exclusive};
    std::uint64_t length = 0;
    FsResult result = Files().Open(path, mode, log);
    if (result == FsResult::Ok) result = log->Length(length);
    if (result == FsResult::Ok) result = log->Seek(length);
    if (result == FsResult::Ok && !noHeader) {
        if (length == 0) pending += kStartOfFile;
        pending += kStartOfLogging;
        result = Flush();
    }
    if (result != FsResult::Ok) FailLogging(result);
    return result == FsResult::Ok;
}

// ---- readers

bool BaseORVMessage::Found(bool found) {
    SetStatus(found ? kMessageOk : kMessageNone);
    return found;
}

std::wstring BaseORVMessage::GetPort() const {
    const std::lock_guard lock(portMutex);
    return port;
}

bool BaseORVMessage::GetMessage(Message<wchar_t>& out, long& index) {
    return Found(buffer->GetAt(index, out));
}

bool BaseORVMessage::GetMessageAndIncrement(Message<wchar_t>& out, long& index) {
    const bool found = GetMessage(out, index);
    if (found) ++index;
    if (index >= GetNumTotalMessages()) index = 0;  // also from beyond the ring: a view that stands there goes on
    return found;
}

bool BaseORVMessage::IncrementIndex(long& index) {
    SetStatus(kMessageOk);
    const long capacity = buffer->Capacity();
    if (capacity <= 0) return false;
    index = (index % capacity + 1 + capacity) % capacity;
    return true;
}

bool BaseORVMessage::GetLastMessageIdx(long& index) {
    SetStatus(kMessageOk);
    return buffer->LastSlot(index);
}

bool BaseORVMessage::GetLastMessage(Message<wchar_t>& out) {
    return Found(buffer->GetLast(out));
}

bool BaseORVMessage::GetPreviousMessage(Message<wchar_t>& out, long n) {
    return Found(buffer->GetPrevious(n, out));
}

bool BaseORVMessage::GetUnusedMessage(Message<wchar_t>& out) {
    return Found(buffer->GetUnused(out));
}

bool BaseORVMessage::SearchMessage(Message<wchar_t>& message, long& index) {
    return Found(buffer->Search(message, index));
}

bool BaseORVMessage::SearchMessageAbsolute(Message<wchar_t>& message, long& index) {
    return Found(buffer->SearchAbsolute(message, index));
}

}  // namespace orv
