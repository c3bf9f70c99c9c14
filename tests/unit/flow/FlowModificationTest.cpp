#include "flow/FlowModification.h"
#include "devices/MemberMissing.h"
#include "flow/CurveArithmetic.h"
#include "flow/CurveFile.h"
#include "flow/PresetCurves.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <tuple>

namespace kt500::flow {
namespace {

// The HART or PA page of a session with the curve list filled as at start-up
// and the procedure on the session's table.
class FlowPageTest : public ::testing::Test {
protected:
    void open(const std::string& strDevice, const std::string& strRole = "maintenance") {
        kt = std::make_unique<testing::TestUserControl>(testing::SessionOf(strDevice, true, strRole));
        for (const int element : {0, 1}) {
            form::Control& curves = kt->form().control("comFlowModification", element);
            curves.clear();
            for (const std::string_view name : CurveListNames()) {
                curves.addItem(std::string(name));
            }
        }
        kt->tools().CurrentFrame = kt->deviceClass().DevicePrefix() + "flowModification";
        flow = std::make_unique<FlowModification>(*kt, table, presetText);
    }
    // The user's choice in the session's curve list.
    void selectCurve(const std::string& strName) {
        form::Control& list = kt->form().control("comFlowModification",
                                                 kt->deviceClass().FlowModificationIndex());
        for (int item = 0; item < list.listCount(); ++item) {
            if (list.list(item) == strName) {
                list.setListIndex(item);
            }
        }
        flow->comFlowModification_Click();
    }
    std::string point(int index) {
        return kt->form().control(FlowPageOf(kt->deviceClass()).points, index).text();
    }
    std::filesystem::path file(const std::string& name, const std::string& bytes) {
        const std::filesystem::path path = std::filesystem::temp_directory_path() /
                                           ("kt500_flow_" + std::to_string(::getpid()) + name);
        std::ofstream(path, std::ios::binary) << bytes;
        written.push_back(path);
        return path;
    }
    void TearDown() override {
        for (const auto& path : written) {
            std::filesystem::remove(path);
        }
    }

    std::unique_ptr<testing::TestUserControl> kt;
    CurveTable table;
    std::string presetText;
    std::unique_ptr<FlowModification> flow;
    std::vector<std::filesystem::path> written;
};

TEST_F(FlowPageTest, TheHartPageWritesEvenRowsAndThePaClassEveryRow) {
    open("KT520_7");
    CurveRowList odd{};
    for (int row = 0; row < kUsedRows; ++row) {
        odd[row] = static_cast<float>(row);
    }
    flow->SetFlowModificationTable(odd);
    EXPECT_EQ(point(1), "2");
    EXPECT_EQ(point(10), "20");
    EXPECT_FALSE(kt->tools().UpdateCurveFlag);
    EXPECT_FALSE(kt->tools().value_saved);
}

TEST_F(FlowPageTest, ThePaPageReadsEveryRowOfAPreset) {
    open("KT540_1.0");
    const CurveRowList& preset = *PresetCurve("Quick 1/50");
    flow->SetFlowModificationTable(preset);
    for (int index = 0; index < 21; ++index) {
        EXPECT_NEAR(std::stof(point(index)), preset[index], 1e-4) << index;
    }
    // The HART page of the same form is not the session's page.
    EXPECT_EQ(kt->form().control("txtHAFlowModification", 1).text(), "");
}

TEST_F(FlowPageTest, ThePaClassFollowsTheStepsAndTheIdentity) {
    open("KT540_1.0");
    devices::DeviceClass& device = kt->deviceClass();
    const auto walk = [&](const char* installed) {
        flow->cmdFlowModification_Click(kStart);
        EXPECT_EQ(device.FlowModProgress(), 1);
        selectCurve(installed);
        flow->cmdFlowModification_Click(kNext);
        EXPECT_EQ(device.FlowModProgress(), 2);
        flow->cmdFlowModification_Click(kNext);
        EXPECT_EQ(device.FlowModProgress(), 3);
        flow->cmdFlowModification_Click(kApply);
        EXPECT_EQ(device.FlowModProgress(), 0);
    };
    walk("Linear");
    EXPECT_TRUE(device.FlowModCurveLinear());
    EXPECT_EQ(point(1), "5");
    walk("1/25");
    EXPECT_FALSE(device.FlowModCurveLinear());
    walk("Linear");
    EXPECT_TRUE(device.FlowModCurveLinear());
    // The HART class has neither member.
    open("KT520_7");
    EXPECT_THROW(kt->deviceClass().FlowModProgress(), devices::MemberMissing);
}

TEST_F(FlowPageTest, ASecondApplyWithTheFlagSetListsNothingAndShowsTheConfirmation) {
    open("KT540_1.0");
    const auto toResult = [&] {
        flow->cmdFlowModification_Click(kStart);
        selectCurve("1/33");
        flow->cmdFlowModification_Click(kNext);
        flow->cmdFlowModification_Click(kNext);
    };
    toResult();
    flow->cmdFlowModification_Click(kApply);
    form::ListViewModel& rows = kt->form().control("lsvConfirmation").listView();
    EXPECT_EQ(rows.count(), 21);
    EXPECT_TRUE(kt->tools().ConfirmFlag);
    toResult();
    // Something else on the page was confirmed meanwhile.
    kt->tools().ConfirmFlag = true;
    flow->cmdFlowModification_Click(kApply);
    EXPECT_EQ(rows.count(), 21);
    EXPECT_EQ(kt->tools().FlowModificationStep, 0);
    EXPECT_TRUE(kt->form().control("fraConfirmation", 0).visible());
    EXPECT_TRUE(kt->form().control("cmdSend", 8).enabled());
}

TEST_F(FlowPageTest, StartUpMovesTheSharedControlsOntoTheFamilysPage) {
    for (const auto& [device, frames, element, curves] :
         {std::tuple{"KT520_7", "fraKT520", 11, 0}, std::tuple{"KT540_1.0", "fraKT540", 13, 1}}) {
        open(device);
        flow->PlaceFlowControls();
        const form::Control* page = &kt->form().control(frames, element);
        EXPECT_EQ(kt->form().control("comFlowModification", curves).container(), page) << device;
        EXPECT_EQ(kt->form().control("chkFlowModification").container(), page) << device;
        EXPECT_EQ(kt->form().control("cmdReload", 23).container(), page) << device;
        // The other family's curve list stays in the holder.
        EXPECT_EQ(kt->form().control("comFlowModification", 1 - curves).container(),
                  &kt->form().control("fraSharedControls"))
            << device;
    }
    open("PL500_2");
    flow->PlaceFlowControls();
    EXPECT_EQ(kt->form().control("chkFlowModification").container(),
              &kt->form().control("fraSharedControls"));
}

TEST_F(FlowPageTest, DrawingTakesTheBoxesIntoTheSubsetAndTheChart) {
    open("KT520_7");
    flow->SetFlowModificationTable(*PresetCurve("1/25"));
    ASSERT_TRUE(flow->UpdateFlowModificationGraph(kInstalledSubset));
    EXPECT_FLOAT_EQ(table.at(2, kInstalledSubset), 1.52F);
    EXPECT_EQ(table.at(3, kInstalledSubset), 0.0F);  // the odd row after a point
    const form::ChartModel& chart = kt->form().control(kFlowChart).chart();
    EXPECT_NEAR(chart.y(kInstalledSubset, 0), 0.1, 1e-6);  // a zero drawn above the axis
    EXPECT_NEAR(chart.y(kInstalledSubset, 10), 100.0, 1e-6);
    // In step 3 subset 0 goes to the working copy; subset 0 stays.
    table.at(2, kSignalModificationSubset) = 7.0F;
    kt->tools().FlowModificationStep = 3;
    flow->UpdateFlowModificationGraph(kSignalModificationSubset);
    EXPECT_EQ(table.at(2, kSignalModificationSubset), 7.0F);
    EXPECT_FLOAT_EQ(table.at(2, kWorkingSubset), 1.52F);
}

TEST_F(FlowPageTest, ACurveFileJumpsToTheResultWithItsInverseAsInstalledCurve) {
    open("KT520_7");
    std::string text;
    const CurveRowList& quick = *PresetCurve("Quick 1/25");
    for (int j = 0; j <= 10; ++j) {
        text += std::to_string(quick[2 * j] / 100.0F) + " p.u\n";
    }
    flow->LoadCurveFile(file("good.chr", text).string());
    EXPECT_EQ(kt->tools().FlowModificationStep, 3);
    EXPECT_EQ(kt->tools().InstalledFlowCurve, "Kurvant");
    EXPECT_EQ(kt->tools().DesiredFlowCurve, "Linear");
    // The page shows the file's curve; subset 0 holds it with the means.
    EXPECT_NEAR(std::stof(point(1)), quick[2], 1e-3);
    EXPECT_NEAR(table.at(1, kSignalModificationSubset), quick[2] / 2.0F, 1e-3);
    // The installed curve is the file curve inverted at the linear curve.
    CurveTable direct;
    CurveFilePoints chr{};
    for (int j = 0; j <= 10; ++j) {
        chr[j] = quick[2 * j];
    }
    FillFromCurveFile(direct, chr);
    const ModifiedCurve inverse = CalculateModifiedCurve(direct, 11);
    for (int j = 0; j <= 10; ++j) {
        EXPECT_NEAR(table.at(2 * j, kInstalledSubset), inverse.rows[2 * j], 1e-3) << j;
        EXPECT_FLOAT_EQ(table.at(2 * j, kDesiredSubset), 10.0F * j) << j;
    }
    const form::Control& label = kt->form().control("lblHAFlowModification", 15);
    EXPECT_EQ(label.tag(), "newSignalModificationCurve");
    EXPECT_TRUE(kt->form().control("cmdHAFlowModification", kApply).enabled());
    EXPECT_FALSE(kt->form().control("cmdHAFlowModification", kStart).enabled());
    EXPECT_EQ(kt->form().control("comFlowModification", 0).text(), "Custom");
    EXPECT_TRUE(kt->form().control("txtHAFlowModification", 4).enabled());
}

TEST_F(FlowPageTest, ThePaClassReadsAFileIntoAllTwentyOneRows) {
    open("KT540_1.0");
    flow->LoadCurveFile(file("pa.chr", "0 p.u\n0.3 p.u\n0.45 p.u\n0.55 p.u\n0.63 p.u\n0.7 p.u\n"
                                       "0.77 p.u\n0.83 p.u\n0.89 p.u\n0.95 p.u\n1 p.u\n")
                            .string());
    EXPECT_EQ(kt->tools().FlowModificationStep, 3);
    CurveTable direct;
    CurveFilePoints chr{0, 30, 45, 55, 63, 70, 77, 83, 89, 95, 100, 0};
    FillFromCurveFile(direct, chr);
    const ModifiedCurve inverse = CalculateModifiedCurve(direct, 21);
    for (int row = 0; row < kUsedRows; ++row) {
        EXPECT_NEAR(table.at(row, kInstalledSubset), inverse.rows[row], 1e-3) << row;
    }
    EXPECT_GT(table.at(1, kInstalledSubset), 0.0F);  // odd rows are points here
}

TEST_F(FlowPageTest, AnObserverSeesTheLoadedResultButCannotApply) {
    open("KT520_7", "observer");
    flow->LoadCurveFile(file("observer.chr", "0 p.u\n0.1 p.u\n0.2 p.u\n0.3 p.u\n0.4 p.u\n0.5 p.u\n"
                                             "0.6 p.u\n0.7 p.u\n0.8 p.u\n0.9 p.u\n1 p.u\n")
                            .string());
    EXPECT_EQ(kt->tools().FlowModificationStep, 3);
    EXPECT_FALSE(kt->form().control("cmdHAFlowModification", kApply).enabled());
}

TEST_F(FlowPageTest, ABadFileLeavesThePageAndTheTableAsTheyWere) {
    open("KT520_7");
    flow->SetFlowModificationTable(*PresetCurve("1/33"));
    flow->UpdateFlowModificationGraph(kSignalModificationSubset);
    const CurveRowList before = table.column(kSignalModificationSubset);
    const std::string pointBefore = point(3);
    const std::string flat = "0 p.u\n0 p.u\n0 p.u\n0 p.u\n0 p.u\n0 p.u\n0 p.u\n0 p.u\n0 p.u\n0 p.u\n0 p.u\n";
    const std::string paths[] = {
        file("empty.chr", ""),
        file("short.chr", "0.1\n"),
        file("binary.chr", std::string("\0\1\2\3", 4)),
        file("words.chr", "zero p.u\n"),
        file("flat.chr", flat),
        (std::filesystem::temp_directory_path() / "kt500_flow_missing" / "none.chr").string(),
        std::filesystem::temp_directory_path().string(),
    };
    for (const std::string& path : paths) {
        try {
            flow->LoadCurveFile(path);
            ADD_FAILURE() << path << " was read";
        } catch (const std::runtime_error& failure) {
            EXPECT_NE(std::string(failure.what()).find(kt->Translate("fileOpenFailed")),
                      std::string::npos)
                << failure.what();
        }
        EXPECT_EQ(kt->tools().FlowModificationStep, 0) << path;
        EXPECT_EQ(point(3), pointBefore) << path;
        for (int row = 0; row < kUsedRows; ++row) {
            EXPECT_EQ(table.at(row, kSignalModificationSubset), before[row]) << path;
        }
    }
}

TEST_F(FlowPageTest, TheSavedCurveLoadsBackOnAnotherValve) {
    open("KT520_7");
    flow->SetFlowModificationTable(*PresetCurve("Dovra R"));
    flow->UpdateFlowModificationGraph(kSignalModificationSubset);
    const std::filesystem::path path = file("saved.chr", "");
    flow->SaveCurveFile(path.string());
    const CurveRowList saved = table.column(kSignalModificationSubset);

    open("KT520_6");
    flow->LoadCurveFile(path.string());
    for (int j = 0; j <= 10; ++j) {
        EXPECT_NEAR(table.at(2 * j, kSignalModificationSubset), saved[2 * j], 1e-3) << j;
    }
}

}  // namespace
}  // namespace kt500::flow
