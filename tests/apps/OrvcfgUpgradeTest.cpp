#include "apps/RunProgram.h"
#include "platform/text/PathText.h"

namespace orv::test {
namespace {

TEST_F(OrvcfgTest, UpgradePlansThenConvertsAndKeepsWhatWas) {
    Install("Harbour");
    const std::wstring home = L"i/Projects/Harbour/";
    const std::string vessel =
        "[DEVICE(1)]\r\nNumComps=1\r\n@tr.Comp(1).XCor=0,1.5\r\n@tr.Comp(1).YCor=0,0\r\n@tr.Comp(1).ZCor=0,0\r\n";
    WriteBytes(At(home + L"Survey[navigate].acf"), "[Vessel(1)]\r\nVesselConfig=Ark[navigate]\r\n");
    WriteBytes(At(home + L"Ark[navigate].vcf"), vessel +
                                                    "@tr.Comp(1).ReduceHgtGeoid=0,1\r\n"
                                                    "@tr.Comp(1).GeoidSep=0,1\r\n@tr.Comp(1).GeoidSepRelTo=0,2\r\n");
    for (const char* item :
         {"Application Definition navigate", "Application Configuration Survey", "CoordSystem OldGeoidMode 1"}) {
        const std::string text = item;
        const std::size_t first = text.find(' '), second = text.find(' ', first + 1);
        ASSERT_EQ(Run({"config", "set", "--add", Text(home + L"Project.prj"), text.substr(0, first),
                       text.substr(first + 1, second - first - 1), text.substr(second + 1)})
                      .code,
                  0);
    }
    const std::string project = ReadBytes(At(home + L"Project.prj"));
    for (const auto& command : {std::vector<std::string>{"project", "upgrade", "--plan"}, {"project", "upgrade"}}) {
        const RunResult refused = OnInstallation(command);
        EXPECT_EQ(refused.code, 1);
        EXPECT_NE(refused.err.find("Use manual input with separation related to none WGS84"), std::string::npos)
            << refused.err;
        EXPECT_EQ(ReadBytes(At(home + L"Project.prj")), project);
    }
    WriteBytes(At(home + L"Ark[navigate].vcf"), vessel);
    const RunResult plan = OnInstallation({"project", "upgrade", "--plan", "--json"});
    ASSERT_EQ(plan.code, 0) << plan.err;
    EXPECT_EQ(plan.Json()["vessels"][0]["outcome"], "converts");
    EXPECT_EQ(plan.Json()["vessels"][0]["x"], 1.5);
    EXPECT_EQ(ReadBytes(At(home + L"Ark[navigate].vcf")), vessel);

    const RunResult done = OnInstallation({"project", "upgrade", "--json"});
    ASSERT_EQ(done.code, 0) << done.err;
    const std::string copies = done.Json()["upgrade"]["copies"];
    EXPECT_EQ(ReadBytes(PathFromBytes(copies) + L"Ark[navigate].vcf"), vessel);
    EXPECT_EQ(ReadBytes(PathFromBytes(copies) + L"Project.prj"), project);
    EXPECT_NE(ReadBytes(At(home + L"Ark[navigate].vcf")).find("GeodesyVersion=1.0.1"), std::string::npos);
    const RunResult again = OnInstallation({"project", "upgrade", "--json"});
    EXPECT_EQ(again.code, 0) << again.err;
    EXPECT_EQ(again.Json()["upgrade"]["marked"], false) << "a converted project isn't converted again";
    EXPECT_EQ(OnInstallation({"project", "show"}).code, 0);
}

}  // namespace
}  // namespace orv::test
