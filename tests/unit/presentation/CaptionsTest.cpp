#include "presentation/Captions.h"

#include "support/RecordingServices.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

namespace kt500::presentation {
namespace {

using form::ControlKind;
using testing::TestUserControl;

struct CaptionsTest : ::testing::Test {
    CaptionsTest() : uc(testing::SessionOf("KT520_7")) {
        uc.tools().CurrentFrame = "HAoperationUnit";
        form::Control& languages = control("comSelectLanguage");
        for (const auto& [name, id] : {std::pair{"English", 1033}, std::pair{"Deutsch", 1031}}) {
            languages.addItem(name);
            languages.setItemData(languages.newIndex(), id);
        }
    }
    form::Control& control(const char* name, int index = -1) {
        return uc.form().control(name, index);
    }
    // Chooses a language in the list (-1: none) and presses cmdTranslate.
    void choose(int entry) {
        control("comSelectLanguage").setListIndex(entry);
        captions.comSelectLanguage_Click();
        captions.cmdTranslate_Click();
    }

    TestUserControl uc;
    Captions captions{uc, uc.values, uc.unitPages};
};

TEST_F(CaptionsTest, AChangeToGermanRewritesEveryKindOfCaptionAndBackAgain) {
    uc.AddConfirmationRow("hartTag", "HAoperationUnit", "", "a", "b");
    form::Control& unitLabel = control("lblHAPositionControlUnit", 3);
    ASSERT_EQ(unitLabel.caption(), "%");
    ASSERT_TRUE(unitLabel.captionKey().empty());
    form::Control& bordered = control("lblHAPositionerInformation", 0);
    bordered.setCaption("Ravik");  // a value: its tag is no key
    form::Control& pageLabel =
        uc.addField(ControlKind::Label, "lblOperationUnitLink", -1, "fraKT520", 7, "operationUnit");
    control("lblTimeStamp", 7).setCaption("1.3.2024 12:00:00");
    control("lblHALoadFactor", 5).setCaption("psiG");  // tagged HAsupplyPressureUnit

    choose(1);

    const form::ListViewModel& confirmation = control("lsvConfirmation").listView();
    const struct {
        std::string shown;
        const char* german;
    } cases[] = {
        {control("fraKT520", 7).caption(), "Betriebseinheit"},
        {control("lblHAOperationUnit", 0).caption(), "HART-Kennzeichnung"},
        {pageLabel.caption(), "Betriebseinheit"},
        {control("smuiDTM", 1).toolbar().item("send").text, "Senden"},
        {control("smuiDTM", 1).toolbar().item("send").toolTip, "Senden"},
        {confirmation.row(1).text, "HART-Kennzeichnung"},
        {confirmation.columns()[2].text, "Neuer Wert"},
        {unitLabel.caption(), "%"},
        {control("lblHALoadFactor", 5).caption(), "psiG"},
        {bordered.caption(), "Ravik"},
        {control("lblTimeStamp", 7).caption(), "1.3.2024 12:00:00"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.shown, c.german);
    }

    // The keys stay apart from the texts: the way back is exact.
    choose(0);
    EXPECT_EQ(control("lblHAOperationUnit", 0).caption(), "HART tag");
    EXPECT_EQ(confirmation.row(1).text, "HART tag");
    EXPECT_EQ(pageLabel.caption(), "Operating unit");
}

TEST_F(CaptionsTest, ApplyIsOfferedOnlyForAnotherLanguage) {
    form::Control& apply = control("cmdTranslate");
    control("comSelectLanguage").setListIndex(1);
    captions.comSelectLanguage_Click();
    EXPECT_TRUE(apply.enabled());
    control("comSelectLanguage").setListIndex(0);  // 1033, the language in force
    captions.comSelectLanguage_Click();
    EXPECT_FALSE(apply.enabled());
    choose(1);
    EXPECT_FALSE(apply.enabled());
}

TEST_F(CaptionsTest, TheSameLanguageOrNoChoiceChangesNothing) {
    choose(1);
    uc.calls.clear();
    int writes = 0;
    uc.form().addObserver([&writes](const form::PropertyChange&) { ++writes; });
    struct Case {
        int entry;
        std::vector<std::string> messages;
    };
    for (const Case& c : {Case{1, {}}, Case{-1, {"Sprache: Bitte wählen Sie eine Sprache aus."}}}) {
        control("comSelectLanguage").setListIndex(c.entry);
        uc.messages.clear();
        writes = 0;
        captions.cmdTranslate_Click();
        EXPECT_EQ(uc.messages, c.messages);
        EXPECT_EQ(writes, 0) << c.entry;
        EXPECT_TRUE(uc.calls.empty());
        EXPECT_EQ(uc.tools().Language, "1031");
    }
}

TEST_F(CaptionsTest, AMappedListKeepsItsChoiceAndAddsNoConfirmationRow) {
    captions.FillMappedCombos();
    form::Control& direction = control("comHAValveRelatedConfiguration", 2);
    direction.setListIndex(1);
    const std::int32_t chosen = direction.itemData(1);
    uc.tools().ConfirmFlag = true;

    choose(1);

    EXPECT_EQ(direction.itemData(direction.listIndex()), chosen);
    EXPECT_EQ(direction.text(), "Steigend schließend");
    EXPECT_TRUE(uc.tools().ConfirmFlag);
    EXPECT_EQ(control("lsvConfirmation").listView().count(), 0);
}

TEST_F(CaptionsTest, UnitParameterListFollowsTheLanguageOrTheFailureIsShown) {
    choose(1);
    std::vector<std::string> names;
    bool listed = false;
    uc.units().GetUnitParameters(names, listed);
    const form::Control& parameters = control("comSelectParameter");
    ASSERT_EQ(parameters.listCount(), static_cast<int>(names.size()));
    EXPECT_EQ(parameters.list(0), uc.Translate(names[0]));
    EXPECT_NE(parameters.list(0), names[0]);
    EXPECT_TRUE(uc.messages.empty());

    auto units = std::make_shared<testing::RecordingUnits>(std::make_shared<testing::CallLog>());
    units->succeeds = false;
    uc.unitsDouble = units;
    captions.TranslateForm();
    EXPECT_EQ(uc.messages, std::vector<std::string>{"Error: Unable to get the unit parameters!"});
    EXPECT_EQ(parameters.listCount(), 0);
}

TEST_F(CaptionsTest, SettingsOkReturnsToThePageShownBefore) {
    const std::pair<const char*, std::pair<const char*, int>> cases[] = {
        {"HAoperationUnit", {"fraKT520", 7}},
        {"status", {"fraCommon", 4}},
        {"hartAddress", {"fraCommon", 1}},
    };
    for (const auto& [frame, page] : cases) {
        control("fraCommon", 0).setVisible(true);
        uc.tools().CurrentFrame = frame;
        captions.cmdSettingsOK_Click();
        EXPECT_FALSE(control("fraCommon", 0).visible()) << frame;
        EXPECT_TRUE(control(page.first, page.second).visible()) << frame;
        control(page.first, page.second).setVisible(false);
    }
}

}  // namespace
}  // namespace kt500::presentation
