#include "definitions/PortSettingsText.h"

#include <array>

#include "definitions/CIoHandlerSettingsList.h"
#include "definitions/PortHandlers.h"
#include "definitions/PortSettings.h"
#include "platform/text/NumberText.h"

namespace orv {

namespace {

constexpr long kUdp = 0, kTcp = 1;
constexpr std::wstring_view kNoProtocol = L"No valid setting";

std::wstring TextOf(const FileSection& port, std::wstring_view key) {
    std::wstring text;
    port.GetItem(key, text);
    return text;
}

long NumberOf(const FileSection& port, std::wstring_view key, long missing) {
    port.GetItem(key, missing);
    return missing;
}

/// The handler and a blank, but for the plain one of its kind.
std::wstring Prefix(const FileSection& port, std::wstring_view plain) {
    const std::wstring handler = TextOf(port, COM_HANDLER);
    return handler == plain ? std::wstring() : handler + L" ";
}

using Channels = std::array<std::wstring_view, 6>;
constexpr Channels kRtaChannels = {L"ES3", L"MRU", L"GPS", L"Heading", L"ADCP", L"SV"};
constexpr Channels kKrioChannels = {L"VRU", L"GPS", L"HDG", L"SV", L"CLK", L"PT"};

// Each channel takes two ports from the base port up.
std::wstring ChannelText(const FileSection& port, std::wstring_view name, const Channels& channels) {
    constexpr std::wstring_view kKey = L"ZephRtaBaseport";
    constexpr long kDefaultBase = 2020;
    std::wstring base = IntText(kDefaultBase);
    port.GetItem(kKey, base);
    const long localPort = NumberOf(port, L"LocalPort", 0), basePort = NumberOf(port, kKey, kDefaultBase);
    long distance = 0;
    if (__builtin_sub_overflow(localPort, basePort, &distance) || distance < 0) distance = 0;
    const auto channel = static_cast<std::size_t>(distance / 2);
    return std::wstring(name) + L" " + base + L" " + std::wstring(channels[channel < channels.size() ? channel : 0]);
}

}  // namespace

// A port that never was edited holds 7 data bits: what drivers took before the key was written.
std::wstring SerialSettingsText(const FileSection& port) {
    return Prefix(port, L"Serial") + IntText(NumberOf(port, L"Baudrate", 0)) + L" " +
           IntText(NumberOf(port, L"DataBits", 7)) + L"-" + std::wstring(NameOfParity(NumberOf(port, L"Parity", 0))) +
           L"-" + IntText(NumberOf(port, L"StopBits", 1));
}

std::wstring NetworkSettingsText(const FileSection& port) {
    long protocol = -1;
    if (!port.GetItem(L"Protocol", protocol) || (protocol != kUdp && protocol != kTcp)) {
        return std::wstring(kNoProtocol);
    }
    const long localPort = NumberOf(port, L"LocalPort", 0), hostPort = NumberOf(port, L"HostPort", 0);
    const std::wstring adress = TextOf(port, L"HostAdress");
    const std::wstring prefix = Prefix(port, L"Socket");
    if (protocol == kTcp) return prefix + L"TCP " + adress + L":" + IntText(hostPort);
    std::wstring text = prefix + L"UDP";
    if (localPort != 0) text += L" " + IntText(localPort);
    text += L" " + adress;
    if (hostPort != 0) text += L":" + IntText(hostPort);
    return text;
}

std::wstring AdressSettingsText(const FileSection& port) {
    return TextOf(port, COM_HANDLER) + L" " + TextOf(port, L"HostAdress");
}

std::wstring RtaSettingsText(const FileSection& port) {
    return ChannelText(port, L"RTA UDP", kRtaChannels);
}

std::wstring KrioSettingsText(const FileSection& port) {
    return ChannelText(port, L"KRIO UDP", kKrioChannels);
}

std::wstring FileSettingsText(const FileSection& port) {
    return TextOf(port, L"Filename");
}

std::wstring PortSettingsText(const FileSection& port) {
    const auto form = GetIoHandlerSettingsList().Create(TextOf(port, COM_HANDLER), nullptr);
    return form ? form->GetSettingsText(port) : std::wstring();
}

}  // namespace orv
