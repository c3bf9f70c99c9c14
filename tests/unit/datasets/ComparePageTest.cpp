// The compare page on a KT520_7: the device column from online reads only,
// the marks on the pages, and what ResetCompareInfo and ShowPageImages do
// with them.
#include "datasets/ComparePage.h"

#include "devices/DeviceClass.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <string>

namespace kt500::datasets {
namespace {

using testing::TestUserControl;

xml::Document Reply(const std::string& strAccess, const std::string& strValue) {
    xml::LoadResult parsed = xml::Document::parse(
        "<dtm xmlns='x-schema:QDLCommunicationSchema.xml'><communicationResponse "
        "name='valveRelatedConfigurations' access='" + strAccess +
        "' responseStatus='ok' isFinal='1' errorCode=''><item name='splitRangeHigh' "
        "unit='%'><floatVal>" + strValue + "</floatVal></item></communicationResponse></dtm>");
    EXPECT_TRUE(parsed.ok()) << parsed.message();
    return std::move(*parsed.document);
}

class ComparePageTest : public ::testing::Test {
protected:
    ComparePageTest() : uc(testing::SessionOf("KT520_7", true)) {}
    form::ListViewModel& rows() { return uc.form().control("lsvCompare").listView(); }
    // The row of a parameter, 0 when it is not listed.
    int RowOf(const std::string& strName) {
        for (int row = 1; row <= rows().count(); ++row) {
            if (rows().subItem(row, kCompareName) == strName) {
                return row;
            }
        }
        return 0;
    }
    form::Control& Mark() { return uc.form().control("imgHAPositionControl", 4); }

    TestUserControl uc;
    SafeSave writer;
    DataFiles files{uc, uc.replyRouting, writer};
    std::vector<std::string> shown;
    ComparePage page{uc, files, [this](const std::string& key) { shown.push_back(key); }};
};

TEST_F(ComparePageTest, TheDeviceColumnHoldsTheLastOnlineRead) {
    page.RecordDeviceReply(Reply("read", "80"));
    page.RecordDeviceReply(Reply("write", "70"));  // a write is no reading
    uc.tools().OnlineConf = false;
    page.RecordDeviceReply(Reply("read", "60"));  // nor is an offline reply
    uc.tools().OnlineConf = true;
    page.FillComparePage();
    const int row = RowOf("splitRangeHigh");
    ASSERT_NE(row, 0);
    EXPECT_EQ(rows().subItem(row, kCompareDevice), "80");
    EXPECT_EQ(rows().subItem(row, kCompareDataSet),
              uc.ParameterNodeByName("splitRangeHigh").attribute("value"));
    EXPECT_EQ(rows().subItem(row, kCompareFile), "");
    EXPECT_EQ(rows().subItem(row, kCompareDiffers), "*");
    EXPECT_EQ(rows().subItem(row, kComparePage), "HAvalveRelatedConfigurations");
    // Unread parameters have no device value and do not differ.
    EXPECT_EQ(rows().subItem(RowOf("hartTag"), kCompareDiffers), "");
}

TEST_F(ComparePageTest, DifferencesOnlyKeepsTheGroupsThatHaveSome) {
    page.RecordDeviceReply(Reply("read", "80"));
    uc.form().control("chkCompareDifferences").setValue(1);
    page.FillComparePage();
    ASSERT_EQ(rows().count(), 2);
    EXPECT_EQ(rows().row(1).key, "group:valveRelatedConfigurations");
    EXPECT_EQ(rows().subItem(2, kCompareName), "splitRangeHigh");
    uc.form().control("txtCompareTolerance").setText("25");
    page.FillComparePage();
    EXPECT_EQ(rows().count(), 0);
}

TEST_F(ComparePageTest, MarksFollowTheDifferencesAndLeaveAChangedSignAlone) {
    page.RecordDeviceReply(Reply("read", "80"));
    page.FillComparePage();
    EXPECT_TRUE(Mark().visible());
    EXPECT_EQ(Mark().picture(), kComparePicture);
    page.ResetCompareInfo();
    EXPECT_FALSE(Mark().visible());
    EXPECT_NE(Mark().picture(), kComparePicture);

    // A mark that shows a pending change keeps its picture.
    Mark().setPicture("changed");
    Mark().setVisible(true);
    page.FillComparePage();
    EXPECT_EQ(Mark().picture(), "changed");
    page.ResetCompareInfo();
    EXPECT_TRUE(Mark().visible());

    page.ShowPageImages(false);
    EXPECT_FALSE(Mark().visible());
    page.ShowPageImages(true);
    EXPECT_TRUE(uc.form().control("imgHAPositionControl", 3).visible());
}

TEST_F(ComparePageTest, TakingNeedsATickedRowWithAValue) {
    page.FillComparePage();
    uc.messages.clear();
    page.cmdCompare_Click(kCompareTakeDevice);
    ASSERT_EQ(uc.messages.size(), 1U);
    EXPECT_NE(uc.messages[0].find(uc.Translate("compareNoRow")), std::string::npos);
    uc.form().raiseItemCheck(uc.form().control("lsvCompare"), RowOf("hartTag"), true);
    page.cmdCompare_Click(kCompareTakeFile);  // no file chosen
    ASSERT_EQ(uc.messages.size(), 2U);
    EXPECT_NE(uc.messages[1].find(uc.Translate("compareNoValue")), std::string::npos);
    EXPECT_EQ(shown, std::vector<std::string>{"compareConfigurations"});
}

TEST_F(ComparePageTest, ABadToleranceKeepsTheList) {
    page.FillComparePage();
    const int count = rows().count();
    uc.form().control("txtCompareTolerance").setText("-2");
    uc.messages.clear();
    page.FillComparePage();
    EXPECT_EQ(rows().count(), count);
    ASSERT_EQ(uc.messages.size(), 1U);
    EXPECT_NE(uc.messages[0].find(uc.Translate("compareBadTolerance")), std::string::npos);
}

}  // namespace
}  // namespace kt500::datasets
