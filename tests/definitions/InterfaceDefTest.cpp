#include "definitions/InterfaceDef.h"

#include <algorithm>

#include "core/OrvConfigureInitializer.h"
#include "definitions/CIoHandlerSettingsList.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "support/TestSupport.h"

namespace orv {
namespace {

class Ports : public InterfaceDef {
public:
    explicit Ports(const std::string& text) {
        EXPECT_TRUE(FileObject::FileOpen(memfile(text.data(), text.size(), textencoding::utf8), L"p.ini"));
    }
    std::wstring Get(std::wstring_view port, std::wstring_view key) const {
        std::wstring text = L"-";
        GetItem(port, key, text);
        return text;
    }
    FileSection Section(std::wstring_view port) const {
        FileSection section;
        section.GetFromFileObject(port, *this);
        return section;
    }
};

std::string TestData(const std::string& name) {
    return test::ReadBytes(PathFromBytes(ORV_SOURCE_DIR "/tests/definitions/" + name));
}

template <class Visit>
void ForEachSection(const FileObject& file, Visit visit) {
    FobjSection cursor;
    std::wstring name;
    for (bool more = file.GetFirstSectionEntry(cursor, name); more; more = file.GetNextSectionEntry(cursor, name)) {
        SCOPED_TRACE(ToUtf8(name));
        visit(name);
    }
}

TEST(InterfaceDef, OldNamesAreBroughtUpToDate) {
    const Ports ports(
        "[COM(3)]\nBaudrate=9600\n[COM(16)]\nHandler=Old\n[COM(17)]\n[NET(1)]\n[COM(2)]\nBaudrate=1\n"
        "[COM2]\nBaudrate=2\nHandler=MBRTU\n");
    const struct {
        const wchar_t *port, *handler;
    } rows[] = {{L"COM3", L"Serial"}, {L"COM(3)", L"-"}, {L"COM16", L"Serial"}, {L"COM17", L"-"},
                {L"NET1", L"Socket"}, {L"COM(2)", L"-"}, {L"COM2", L"MBRTU"}};
    for (const auto& row : rows) EXPECT_EQ(ports.Get(row.port, L"Handler"), row.handler);
    EXPECT_TRUE(ports.HasSection(L"COM(17)") && ports.HasSection(L"COM(2)"));
    EXPECT_EQ(ports.Get(L"COM3", L"Baudrate"), L"9600");
}

TEST(InterfaceDef, AReplayEndsWithItsSession) {
    const test::TempFolder folder;
    const std::wstring path = folder / L"ports.ini";
    const std::string live = "[Eye]\r\nHandler=FjordEye\r\nHostAdress=10.0.0.7\r\nLastHostAdress=x\r\n";
    test::WriteBytes(path, live);
    InterfaceDef ports;
    EXPECT_FALSE(ports.FileOpen(folder / L"missing.ini"));
    EXPECT_TRUE(ports.FileOpen(path));
    EXPECT_EQ(test::ReadBytes(path), live);
    test::WriteBytes(path,
                     "[Eye]\r\nHandler=FjordEye\r\nHostAdress=file:a.log\r\nLastHostAdress=10.0.0.7\r\n"
                     "[Other]\r\nHandler=RGL\r\nHostAdress=file:a.log\r\nLastHostAdress=1\r\n");
    EXPECT_TRUE(ports.FileOpen(path));
    const std::string saved = test::ReadBytes(path);
    EXPECT_NE(saved.find("HostAdress=10.0.0.7\r\nLast"), std::string::npos) << saved;
    EXPECT_NE(saved.find("HostAdress=file:a.log\r\nLastHostAdress=1\r\n"), std::string::npos) << saved;
}

TEST(InterfaceDef, SerialPortsFromTextsAndBack) {
    const struct {
        const wchar_t *parity, *stopBits, *parityBack, *storedParity, *storedStopBits;
    } rows[] = {{L"none", L"1.5", L"NONE", L"3", L"2"}, {L"No", L"1", L"NO", L"0", L"1"},
                {L"SPACE", L"2", L"SPACE", L"5", L"3"}, {L"Neither", L"2", nullptr, L"-", L"3"},
                {L"Odd", L"1,5", nullptr, L"4", L"-"},  {L"", L"1.50", nullptr, L"-", L"-"}};
    for (const auto& row : rows) {
        Ports ports("");
        const bool good = row.parityBack != nullptr;
        EXPECT_EQ(ports.DefineCOMport(L"COM7", 19200, 7, row.parity, row.stopBits), good);
        EXPECT_EQ(ports.Get(L"COM7", L"Handler") + ports.Get(L"COM7", L"Baudrate"), L"Serial19200");
        EXPECT_EQ(ports.Get(L"COM7", L"Parity") + ports.Get(L"COM7", L"StopBits"),
                  std::wstring(row.storedParity) + row.storedStopBits);
        int baudRate = 1, dataBits = 1;
        std::wstring parity = L"?", stopBits = L"?";
        EXPECT_EQ(ports.GetCOMportSettings(L"COM7", baudRate, dataBits, parity, stopBits), good);
        EXPECT_EQ(parity + stopBits, good ? std::wstring(row.parityBack) + row.stopBits : L"??");
        EXPECT_EQ(baudRate + dataBits, good ? 19207 : 2);
    }
}

/// Which typed settings a port gets: one letter each.
std::string KindsOf(const PortSettings& settings) {
    return std::string(settings.serial ? "s" : "") + (settings.network ? "n" : "") + (settings.file ? "f" : "") +
           (settings.opc ? "o" : "") + (settings.opcUa ? "u" : "") + (settings.ixxat ? "i" : "");
}

TEST(InterfaceDef, SettingsByHandler) {
    OrvConfigureInitializer().RegisterComps();
    const Ports ports(TestData("ports.ini"));
    ForEachSection(ports, [&](const std::wstring& port) {
        PortSettings settings;
        const std::string kind = ToUtf8(ports.Get(port, L"Kind"));
        EXPECT_EQ(ports.GetPortSettings(port, settings) ? KindsOf(settings) : "refused", kind);
        EXPECT_EQ(settings.section.Items().empty(), kind == "refused");
        EXPECT_EQ(PortSettingsText(ports.Section(port)), ports.Get(port, L"Line"));
    });
}

TEST(InterfaceDef, SettingsAreReadAsTheyWereWritten) {
    Ports ports("[MBRTU_COM12]\nHandler=MBRTU\nBaudrate=9600\nUnknown=kept\n");
    PortSettings settings;
    ASSERT_TRUE(ports.GetPortSettings(L"MBRTU_COM12", settings));
    EXPECT_EQ(*settings.serial, (CSerialSettings{.portNumber = 12, .baudRate = 9600}));
    *settings.serial = {
        .portNumber = 3, .baudRate = 1, .eventChar = 2, .parity = 3, .stopBits = 2, .dataBits = 5, .outCtsFlow = 6};
    settings.network = std::make_unique<CNetSettings>(
        CNetSettings{L"n", 1, 2, 3, L"host", true, 1, 4, L"group", true, L"", L"", false, L""});
    EXPECT_TRUE(ports.SetPortSettings(L"COM3", settings));
    CSerialSettings serial;
    CNetSettings network;
    EXPECT_TRUE(ports.GetCommPort(L"COM3", serial) && ports.GetNetPort(L"COM3", network));
    EXPECT_EQ(serial, *settings.serial);
    EXPECT_EQ(network, *settings.network);
    EXPECT_EQ(ports.Get(L"COM3", L"Unknown") + ports.Get(L"COM3", L"AutoHostPort"), L"kept1");
    EXPECT_FALSE(ports.GetCommPort(L"MBRTU_COM12", serial));  // most keys are missing, and were left alone
    EXPECT_EQ(serial.baudRate * 10 + serial.stopBits, 96002);
}

TEST(PortDialogs, NewPorts) {
    OrvConfigureInitializer().RegisterComps();
    Ports ports("[COM1]\nBaudrate=1\n");
    const Ports rows(TestData("new-ports.ini"));
    ForEachSection(rows, [&](const std::wstring& row) {
        const std::wstring handler = rows.Get(row, L"Handler"), expected = rows.Get(row, L"Name");
        const std::unique_ptr<IoPortNewDlg> form = GetIoHandlerSettingsList().CreateNew(handler, nullptr);
        ASSERT_TRUE(form);
        std::wstring name = L"-";
        PortRefusal refusal;
        EXPECT_EQ(form->Add(ports, handler, rows.Get(row, L"Entered"), name, refusal), expected != L"-");
        EXPECT_EQ(name, expected);
        std::replace(refusal.text.begin(), refusal.text.end(), L'\n', L' ');
        EXPECT_EQ(refusal.title + L"/" + refusal.text, rows.Get(row, L"Refusal"));
        EXPECT_EQ(PortSettingsText(ports.Section(name)), rows.Get(row, L"Line"));
    });
    EXPECT_EQ(ports.Get(L"COM1", L"Baudrate") + ports.Get(L"COM1", L"Handler"), L"1-");
    EXPECT_EQ(ports.Get(L"Dsp", L"HostPort") + ports.Get(L"Bus", L"LocalPort"), L"23848502");
}

TEST(CIoHandlerSettingsList, FirstRegistrationStays) {
    struct Counting : IoPortEditDlgCreator<CFileportSetup> {
        explicit Counting(int& counter) : alive(counter) { ++alive; }
        ~Counting() override { --alive; }
        int& alive;
    };
    int alive = 0;
    {
        CIoHandlerSettingsList list;
        list.RegisterIoPortEditor(L"b", new Counting(alive), new IoPortNewDlgCreator<CNewPortDlg>);
        list.RegisterIoPortEditor(L"a", new IoPortEditDlgCreator<CComportSetup>, nullptr);
        for (const wchar_t* again : {L"a", L"b"}) list.RegisterIoPortEditor(again, new Counting(alive), nullptr);
        EXPECT_EQ(alive, 1);
        EXPECT_TRUE(dynamic_cast<CComportSetup*>(list.Create(L"a", nullptr).get()));
        EXPECT_TRUE(list.CreateNew(L"b", nullptr) && !list.CreateNew(L"a", nullptr) && !list.Create(L"c", nullptr));
        std::wstring handler, walked;
        while (list.GetNextHandler(handler)) walked += handler;
        EXPECT_EQ(walked, L"ab");
    }
    EXPECT_EQ(alive, 0);
}

}  // namespace
}  // namespace orv
