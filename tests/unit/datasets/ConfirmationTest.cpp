// The confirmation list on a KT520_7: rows from edits, the send by page
// online and offline, and undo of pages.
#include "data/PageFields.h"
#include "datasets/Confirmation.h"
#include "datasets/Undo.h"
#include "devices/DeviceClass.h"
#include "devices/SeparatedList.h"
#include "services/IDtmDialogs.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kt500::datasets {
namespace {

using testing::TestUserControl;

class ConfirmationTest : public ::testing::Test {
protected:
    explicit ConfirmationTest(bool online = true) : uc(testing::SessionOf("KT520_7", online)) {
        uc.sendRequestHook = [this](const std::string& group, const std::string& access) {
            sent.emplace_back(group, access);
        };
        uc.tools().CurrentFrame = "HAalertSettings";
        // The operation unit page holds a date the device can take: a page
        // with an invalid date sends nothing.
        uc.values.FillDateFields();
        uc.deviceClass().SetDeviceDate(15, 3, 2024);
    }
    form::ListViewModel& rows() { return uc.form().control("lsvConfirmation").listView(); }
    // The snapshot of a page as the first edit takes it.
    void TakeSnapshot(const std::string& strFrame) {
        const std::string current = uc.tools().CurrentFrame;
        uc.tools().CurrentFrame = strFrame;
        const form::Control* page = data::FindPage(uc.form(), "fraKT520", strFrame);
        ASSERT_NE(page, nullptr);
        std::string values;
        for (const form::Control* field : data::SnapshotFields(uc.form(), *page)) {
            devices::AppendSeparated(values,
                                     field->kind() == form::ControlKind::TextBox ? field->text()
                                     : field->listIndex() < 0                    ? std::string()
                                                              : field->list(field->listIndex()));
        }
        uc.tools().set_old_values(values);
        uc.tools().CurrentFrame = current;
    }
    void answer(int button) { uc.bl().headlessDialogs()->queueAnswer(button); }
    std::size_t boxes() { return uc.bl().headlessDialogs()->boxes().size(); }

    TestUserControl uc;
    std::vector<std::pair<std::string, std::string>> sent;
};

TEST_F(ConfirmationTest, EditsMakeUpdateAndDropRows) {
    // The scenarios show a row's columns and its tick.
    uc.confirmation.AddConfirmationRow("hartTag", "HAoperationUnit", "", "OLD", "NEW");
    // A second edit of the same field updates its row.
    uc.confirmation.AddConfirmationRow("hartTag", "HAoperationUnit", "", "OLD", "NEWER");
    ASSERT_EQ(rows().count(), 1);
    EXPECT_EQ(rows().subItem(1, kNewValueColumn), "NEWER");

    // Edited back by hand: nothing pending any more.
    uc.confirmation.AddConfirmationRow("hartTag", "HAoperationUnit", "", "OLD", "OLD");
    EXPECT_EQ(rows().count(), 0);

    // The flow page keeps an unchanged point.
    uc.confirmation.AddConfirmationRow("flowVal03", "HAflowModification", "", "30", "30");
    EXPECT_EQ(rows().count(), 1);
}

TEST_F(ConfirmationTest, ReadOnlyParameterGetsNoRow) {
    ASSERT_EQ(uc.ParameterNodeByName("valveTravel").attribute("access"), "read");
    uc.confirmation.AddConfirmationRow("valveTravel", "HAmonitoringVariables", "", "1", "2");
    EXPECT_EQ(rows().count(), 0);
}

TEST_F(ConfirmationTest, OnlineSendWritesCheckedRowsOnePerPage) {
    uc.confirmation.AddConfirmationRow("hartTag", "HAoperationUnit", "", "A", "B");
    uc.confirmation.AddConfirmationRow("splitRangeLow", "HAvalveRelatedConfigurations", "", "0",
                                       "5");
    uc.confirmation.AddConfirmationRow("description", "HAoperationUnit", "", "C", "D");
    uc.confirmation.AddConfirmationRow("splitRangeHigh", "HAvalveRelatedConfigurations", "", "100",
                                       "90");
    rows().setChecked(4, false);

    uc.confirmation.cmdSend_Click(kConfirmationSend);

    EXPECT_EQ(sent, (std::vector<std::pair<std::string, std::string>>{
                        {"operationUnit", "write"}, {"valveRelatedConfigurations", "write"}}));
    EXPECT_EQ(boxes(), 0U);        // no question online
    ASSERT_EQ(rows().count(), 1);  // the unticked row waits
    EXPECT_EQ(rows().subItem(1, kNameColumn), "splitRangeHigh");
    EXPECT_EQ(uc.tools().CurrentFrame, "HAalertSettings");
    EXPECT_TRUE(uc.form().control("ProgressBar1").visible());
}

TEST_F(ConfirmationTest, EmptyNumericValueBlocksTheSendUnlessUnticked) {
    uc.confirmation.AddConfirmationRow("hartTag", "HAoperationUnit", "", "A", "");
    uc.confirmation.AddConfirmationRow("splitRangeLow", "HAvalveRelatedConfigurations", "", "0",
                                       "");
    uc.confirmation.cmdSend_Click(kConfirmationSend);
    EXPECT_TRUE(sent.empty());
    EXPECT_EQ(rows().count(), 2);
    ASSERT_EQ(uc.messages.size(), 1U);
    EXPECT_NE(uc.messages[0].find(uc.Translate("nullValue")), std::string::npos);

    rows().setChecked(2, false);
    uc.confirmation.cmdSend_Click(kConfirmationSend);
    EXPECT_EQ(sent.size(), 1U);  // the empty string goes out
}

TEST_F(ConfirmationTest, SendButtonFollowsTheTicksAndTheFlowPageOneSendsNothing) {
    uc.confirmation.AddConfirmationRow("hartTag", "HAoperationUnit", "", "A", "B");
    form::Control& send = uc.form().control("cmdSend", kConfirmationSend);
    uc.confirmation.lsvConfirmation_ItemCheck();
    EXPECT_TRUE(send.enabled());
    uc.confirmation.cmdSend_Click(kFlowPageSend);
    EXPECT_TRUE(sent.empty());
    uc.confirmation.cmdUnSelectAll_Click();
    EXPECT_FALSE(rows().row(1).checked);
    EXPECT_FALSE(send.enabled());
}

TEST_F(ConfirmationTest, UndoAllPagesRestoresEveryUndoPageAndKeepsTheCurrentOne) {
    xml::LoadResult guiInit = xml::Document::load(KT500_SHARE_DIR "/guiinit/GUIInit_KT520_7.xml");
    ASSERT_TRUE(guiInit.ok());
    uc.tools().setRavikDTMParameters(std::make_unique<xml::Document>(std::move(*guiInit.document)));

    // The undo scenario follows the fields of several pages.
    form::Control& hartTag = uc.form().control("txtHAOperationUnit", 0);
    hartTag.setText("TAG1");
    TakeSnapshot("HAoperationUnit");
    hartTag.setText("TAG2");
    uc.confirmation.AddConfirmationRow("hartTag", "HAoperationUnit", "", "TAG1", "TAG2");
    // A page that is not taken back by undo ("offline" 3).
    uc.confirmation.AddConfirmationRow("hartTag", "HAhartAddress", "x", "1", "2");

    uc.undo.UndoAllPages();

    EXPECT_EQ(hartTag.text(), "TAG1");
    ASSERT_EQ(rows().count(), 1);
    EXPECT_EQ(rows().subItem(1, kPageColumn), "HAhartAddress");
    EXPECT_EQ(uc.tools().CurrentFrame, "HAalertSettings");
}

TEST_F(ConfirmationTest, AddAllValuesListsTheWritableDataSetUnchanged) {
    answer(services::ButtonNo);
    uc.confirmation.cmdAddAllValues_Click();
    EXPECT_EQ(rows().count(), 0);

    answer(services::ButtonYes);
    uc.confirmation.cmdAddAllValues_Click();
    ASSERT_GT(rows().count(), 0);
    for (const form::ListRow& row : rows().rows()) {
        EXPECT_TRUE(row.checked);
        EXPECT_EQ(row.subItems[0], row.subItems[1]) << row.subItems[2];
        EXPECT_NE(row.subItems[2], "characterizationControl");
        EXPECT_EQ(uc.ParameterNodeByName(row.subItems[2]).attribute("access"), "readWrite");
    }
}

class OfflineConfirmationTest : public ConfirmationTest {
protected:
    OfflineConfirmationTest() : ConfirmationTest(false) {}
};

// The offline send scenario follows the question's answers and the request.
TEST_F(OfflineConfirmationTest, AsksFirstEvenWithAnEmptyListAndWritesTheDataSetQuietly) {
    answer(services::ButtonNo);
    uc.confirmation.cmdSend_Click(kConfirmationSend);
    EXPECT_EQ(boxes(), 1U);

    uc.confirmation.AddConfirmationRow("hartTag", "HAoperationUnit", "", "A", "B");
    answer(services::ButtonYes);
    const bool barShown = uc.form().control("ProgressBar1").visible();
    uc.confirmation.cmdSend_Click(kConfirmationSend);
    EXPECT_EQ(
        sent,
        (std::vector<std::pair<std::string, std::string>>{{"operationUnit", "writeOffline"}}));
    EXPECT_EQ(rows().count(), 0);
    // No progress and no communication sign for the data set.
    EXPECT_EQ(uc.form().control("ProgressBar1").visible(), barShown);
    EXPECT_FALSE(uc.tools().CommunicationSign("write", ""));
    EXPECT_TRUE(uc.tools().ValuesOk("operationUnit", ""));
}

}  // namespace
}  // namespace kt500::datasets
