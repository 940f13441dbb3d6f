#include "definitions/InterfaceDef.h"

#include <algorithm>

#include "core/OrvConfigureInitializer.h"
#include "definitions/CIoHandlerSettingsList.h"
#include "definitions/PortHandlers.h"
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
    Ports bad(
        "[COM1]\nBaudrate=1\nDataBits=8\nParity=6\nStopBits=1\n[COM2]\nBaudrate=1\nDataBits=8\nParity=0\nStopBits=4\n");
    int number = 0;
    std::wstring text;
    EXPECT_FALSE(bad.GetCOMportSettings(L"COM1", number, number, text, text) ||
                 bad.GetCOMportSettings(L"COM2", number, number, text, text));
}

/// Which typed settings a port gets: one letter each.
std::string KindsOf(const PortSettings& settings) {
    return std::string(settings.serial ? "s" : "") + (settings.network ? "n" : "") + (settings.file ? "f" : "") +
           (settings.opc ? "o" : "") + (settings.opcUa ? "u" : "") + (settings.ixxat ? "i" : "");
}

TEST(InterfaceDef, SettingsByHandler) {
    const struct {
        const char *items, *kinds;  // null: refused
    } rows[] = {{"Handler=Serial Dvl", "s"},
                {"Handler=MBRTU", "s"},
                {"Handler=NCC", ""},
                {"Handler=FjordEye", ""},
                {"Handler=Q9K", "n"},
                {"Handler=AXIO", "n"},
                {"Handler=USB Video Camera", "n"},
                {"Handler=socket", ""},
                {"Name=x", nullptr},
                {"Handler=File", nullptr},
                {"Handler=File\nFilename=", "f"},
                {"Handler=OPC\nOPCServer=a\nOPCHost=b\nOPCForce1=1\nOPCFSGateway=0", "o"},
                {"Handler=OPC\nOPCServer=a\nOPCHost=b\nOPCForce1=1", nullptr},
                {"Handler=OpcUA\nOpcUAHost=a\nOpcUAPort=4840\nOpcUASecurityPolicy=\nOpcUAMessageSecurityMode=1\n"
                 "OpcUACertificate=c",
                 "u"},
                {"Handler=IXXAT\nIXXATname=a\nIXXATbus=1\nIXXATline=2", "i"},
                {"Handler=IXXAT\nIXXATbus=1", nullptr}};
    for (const auto& row : rows) {
        const Ports ports("[P]\n" + std::string(row.items) + "\n");
        PortSettings settings;
        settings.serial = std::make_unique<CSerialSettings>();
        EXPECT_EQ(ports.GetPortSettings(L"P", settings), row.kinds != nullptr) << row.items;
        EXPECT_EQ(KindsOf(settings), row.kinds ? row.kinds : "s") << row.items;
    }
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
    const struct {
        const wchar_t *handler, *entered, *name;  // name null: refused
        const wchar_t* rest;                      // text of the port, or of the refusal
    } rows[] = {
        {L"Serial", L"2", L"COM2", L"4800 8-NO-1"},
        {L"Serial", L"", nullptr, L"/"},
        {L"Serial Usbl", L"1", nullptr, L"/Port already exists"},
        {L"MBRTU", L"2", L"MBRTU_COM2", L"MBRTU 4800 8-NO-1"},
        {L"Socket", L"Gps", L"Gps", L"UDP "},
        {L"Socket", L"Gps", nullptr, L"/Port already exists"},
        {L"Socket", L"", nullptr, L"New network port error/You must enter a name or cancel the dialog."},
        {L"Socket", L"COMx", nullptr, L"/Netport name cannot start with 'COM'"},
        {L"EIVA", L"a b", nullptr,
         L"New NetPort error/A NetPort name cannot contain a space (' ').\nPlease correct the error or cancel the "
         L"addition."},
        {L"MBI", L"Bus", L"Bus", L"MBI TCP 127.0.0.1:502"},
        {L"PingDSP", L"Dsp", L"Dsp", L"PingDSP 127.0.0.1"},
        {L"IMAGENEX", L"Son", L"Son", L"IMAGENEX UDP 4040 127.0.0.1"},
        {L"LUMEXA", L"Lum", L"Lum", L"LUMEXA TCP 127.0.0.1:5000"},
        {L"EDGETECH", L"Edge", L"Edge", L"EDGETECH TCP 127.0.0.1:1701"},
        {L"File", L"Log", L"Log", L""},
        {L"USB Video Camera", L"Cam", L"Cam", L"USB Video Camera "},
    };
    for (const auto& row : rows) {
        const std::unique_ptr<IoPortNewDlg> form = GetIoHandlerSettingsList().CreateNew(row.handler, nullptr);
        ASSERT_TRUE(form);
        std::wstring name = L"?";
        PortRefusal refusal;
        const std::wstring before = ports.Get(L"COM1", L"Baudrate");
        EXPECT_EQ(form->Add(ports, row.handler, row.entered, name, refusal), row.name != nullptr);
        EXPECT_EQ(name, row.name ? row.name : L"?");
        const std::wstring rest =
            row.name ? PortSettingsText(ports.Section(name)) : refusal.title + L"/" + refusal.text;
        EXPECT_EQ(rest, row.rest);
    }
    EXPECT_EQ(ports.Get(L"COM1", L"Baudrate") + ports.Get(L"COM1", L"Handler"), L"1-");
    EXPECT_EQ(ports.Get(L"Dsp", L"HostPort") + ports.Get(L"Bus", L"LocalPort"), L"23848502");
}

TEST(PortSettingsText, Lines) {
    OrvConfigureInitializer().RegisterComps();
    const struct {
        const char* items;
        const wchar_t* text;
    } rows[] = {
        {"Handler=Serial\nBaudrate=9600\nParity=6\nStopBits=2", L"9600 7--2"},
        {"Handler=NCC\nBaudrate=9600\nParity=3", L"NCC 9600 7-NONE-1"},
        {"Handler=EIVA\nHostAdress=a", L"No valid setting"},
        {"Handler=Socket\nProtocol=0\nLocalPort=1\nHostPort=2\nHostAdress=a", L"UDP 1 a:2"},
        {"Handler=Socket\nProtocol=1\nLocalPort=1\nHostAdress=a", L"TCP a:0"},
        {"Handler=RGL\nProtocol=1\nHostAdress=a", L"RGL a"},
        {"Handler=RTA\nLocalPort=2024", L"RTA UDP 2020 GPS"},
        {"Handler=RTA\nLocalPort=3011\nZephRtaBaseport=3000", L"RTA UDP 3000 SV"},
        {"Handler=RTA\nLocalPort=3012\nZephRtaBaseport=3000", L"RTA UDP 3000 ES3"},
        {"Handler=KELVA Remote IO\nLocalPort=2018", L"KRIO UDP 2020 VRU"},
        {"Handler=KELVA Remote IO\nLocalPort=2028", L"KRIO UDP 2020 CLK"},
        {"Handler=File\nFilename=a.log", L"a.log"},
        {"Handler=OPC\nOPCHost=a", L""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(PortSettingsText(Ports("[P]\n" + std::string(row.items) + "\n").Section(L"P")), row.text);
    }
}

TEST(CIoHandlerSettingsList, FirstRegistrationStays) {
    struct Counting : IoPortEditDlgICreator {
        explicit Counting(int& counter) : alive(counter) { ++alive; }
        ~Counting() override { --alive; }
        IoPortEditDlg* Create(void*) override { return new CFileportSetup; }
        int& alive;
    };
    int alive = 0;
    {
        CIoHandlerSettingsList list;
        list.RegisterIoPortEditor(L"b", new Counting(alive), new IoPortNewDlgCreator<CNewPortDlg>);
        list.RegisterIoPortEditor(L"a", new IoPortEditDlgCreator<CComportSetup>, nullptr);
        list.RegisterIoPortEditor(L"b", new IoPortEditDlgCreator<CComportSetup>, nullptr);
        list.RegisterIoPortEditor(L"a", new Counting(alive), nullptr);
        EXPECT_EQ(alive, 1);
        EXPECT_TRUE(dynamic_cast<CFileportSetup*>(list.Create(L"b", nullptr).get()));
        EXPECT_TRUE(list.CreateNew(L"b", nullptr) && !list.CreateNew(L"a", nullptr) && !list.Create(L"c", nullptr));
        std::wstring handler, walked;
        while (list.GetNextHandler(handler)) walked += handler;
        EXPECT_EQ(walked, L"ab");
    }
    EXPECT_EQ(alive, 0);
}

}  // namespace
}  // namespace orv
