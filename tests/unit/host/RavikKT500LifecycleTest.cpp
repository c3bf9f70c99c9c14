#include "form/FormLoader.h"
#include "host/RavikKT500.h"
#include "support/MemorySettings.h"
#include "support/RecordingServices.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <algorithm>
#include <fstream>

namespace kt500::host {
namespace {

using testing::CallLog;
using testing::MemoryStore;
using testing::RecordingOutput;
using testing::RecordingServices;

constexpr const char* kParameters =
    "<data:dtm xmlns:data='x-schema:QDLDatafileSchema.xml' "
    "xmlns:typeInfo='x-schema:QDLDeviceTypeInfoSchema.xml'>"
    "<typeInfo:device><typeInfo:publishedInfo deviceTypeId='232' name='KT520' version='7'/>"
    "</typeInfo:device><data:persistentData><data:parameters/></data:persistentData>"
    "<data:requestGroups/></data:dtm>";

std::unique_ptr<form::Form> StandardForm() {
    const std::filesystem::path share = KT500_SHARE_DIR;
    const form::FormLoader loader(share / "schemas" /
                                  std::string(form::FormLoader::kSchemaFileName));
    auto form = std::make_unique<form::Form>();
    loader.load(*form, form::FormLoader::standardFiles(share / "forms"));
    return form;
}

class RavikKT500Lifecycle : public ::testing::Test {
protected:
    RavikKT500Lifecycle() { services.controlDouble->parameterXml = kParameters; }

    RavikKT500& construct() {
        control = std::make_unique<RavikKT500>(
            StandardForm(),
            ControlPlatform{store, output, session::PathDefaults::UnderShare(KT500_SHARE_DIR, "/tmp/")});
        return *control;
    }
    RavikKT500& started() {
        construct();
        EXPECT_TRUE(control->IDtmActiveXControl_Init("connect", "unused", services));
        return *control;
    }
    [[nodiscard]] std::vector<std::string> boxes() const {
        std::vector<std::string> shown;
        for (const auto& box : services.dialogsDouble->boxes) {
            shown.push_back(box.header + " | " + box.text);
        }
        return shown;
    }

    MemoryStore store;
    RecordingOutput output;
    RecordingServices services;
    std::unique_ptr<RavikKT500> control;
};

TEST_F(RavikKT500Lifecycle, ConstructionNeedsNoBLAndWritesBackItsSettings) {
    RavikKT500& kt = construct();
    EXPECT_TRUE(services.log->empty());
    EXPECT_EQ(store.get("File Paths", "Xml Schema Path"),
              std::string(KT500_SHARE_DIR) + "/schemas/");
    // Every page counts as valid until a read says otherwise.
    for (std::size_t page = 0; page < session::clsTools::ValidityPageCount; ++page) {
        EXPECT_TRUE(kt.m_objTools->ValuesOk(session::clsTools::SnapshotPages()[page], ""));
    }
}

TEST_F(RavikKT500Lifecycle, StartUpTalksToTheBLInOrder) {
    RavikKT500& kt = started();
    // The calls of the BL's services in order; the texts of the session,
    // the trees and the pages come once the connection is open.
    CallLog calls;
    std::size_t firstText = services.log->size();
    for (std::size_t i = 0; i < services.log->size(); ++i) {
        const std::string& call = (*services.log)[i];
        if (call.rfind("TranslateKey ", 0) == 0) {
            firstText = std::min(firstText, i);
        } else {
            calls.push_back(call);
        }
    }
    // The session data ask for the languages offered (to keep one that has
    // texts), the language list asks again for its entries; the unit
    // parameters are listed by the captions and again by the units.
    const CallLog expected = {"service control",      "service dialogs",
                              "OpenConnection connect", "GetLanguageIds",
                              "GetLanguageIds",       "GetLanguageName 1033",
                              "GetLanguageName 1031", "GetUnitParameters",
                              "GetUnitParameters"};
    EXPECT_EQ(calls, expected);
    EXPECT_EQ(firstText, 4U);
    EXPECT_EQ(kt.form().userControl().mousePointer(), 0);
    EXPECT_EQ(kt.form().control("fraCommon", 0).caption(), "[1033:settings]");
    EXPECT_TRUE(boxes().empty());
}

TEST_F(RavikKT500Lifecycle, StartUpGoesOnAfterFailuresOfTheBL) {
    services.controlDouble->openSucceeds = false;
    services.controlDouble->parameterXml = "<notAParameterDocument/>";
    RavikKT500& kt = started();
    const std::vector<std::string> expected = {
        "Error | Can't open the connection!",
        "IDtmActiveXControl_Init | Can't load parameter xml document!"};
    EXPECT_EQ(boxes(), expected);
    EXPECT_EQ(kt.xmlDataFile(), nullptr);
    EXPECT_EQ(kt.m_objTools->DeviceName, "");
    EXPECT_TRUE(kt.m_objTools->DTMInitialized);
}

// The BL hands over a tree: one nested deeper than any document of the
// product is refused before it is copied, as a parse refuses its text.
TEST_F(RavikKT500Lifecycle, ParameterDocumentNestedTooDeepIsNotTaken) {
    services.controlDouble->onOpen = [](xml::Node& root) {
        xml::Node node = root;
        for (int level = 0; level < 100000; ++level) {
            node = node.appendElement("nested");
        }
    };
    RavikKT500& kt = started();
    EXPECT_EQ(boxes(), std::vector<std::string>{
                           "IDtmActiveXControl_Init | Can't load parameter xml document!"});
    EXPECT_EQ(kt.xmlDataFile(), nullptr);
    EXPECT_TRUE(kt.m_objTools->DTMInitialized);
}

TEST_F(RavikKT500Lifecycle, GuiInitDocumentThatDoesNotMatchItsSchemaIsNotTaken) {
    QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    {
        std::ofstream file(folder.filePath("GUIInit_KT520_7.xml").toStdString());
        file << "<dtm><treeView><leaf/></treeView></dtm>";
    }
    store.put("File Paths", "Xml Datafile Path", folder.path().toStdString());
    construct();
    control->m_objTools->setDeviceParameterXml("KT520_7");
    EXPECT_TRUE(control->IDtmActiveXControl_Init("", "", services));
    EXPECT_EQ(control->m_objTools->RavikDTMParameters(), nullptr);
    EXPECT_TRUE(boxes().empty());
}

TEST_F(RavikKT500Lifecycle, ConnectionIdentifierThatOverflowsFailsTheStartUp) {
    services.controlDouble->connectionId = 40000;
    construct();
    EXPECT_FALSE(control->IDtmActiveXControl_Init("", "", services));
    ASSERT_EQ(boxes().size(), 1U);
    EXPECT_EQ(services.dialogsDouble->boxes[0].header, "IDtmActiveXControl_Init");
    EXPECT_FALSE(control->m_objTools->DTMInitialized);
    EXPECT_EQ(control->form().userControl().mousePointer(), 0);
}

TEST_F(RavikKT500Lifecycle, TraceLevelsAreExclusive) {
    for (const auto& [level, shown] : {std::pair{"3", "Parameter XML file from BL: <data:dtm"},
                                       {"4", "Session data from BL: <sessionData"},
                                       {"2", ""},
                                       {"6", ""}}) {
        services.dialogsDouble->boxes.clear();
        store.put("Debug", "Debug Level", level);
        started();
        if (*shown == '\0') {
            EXPECT_TRUE(boxes().empty()) << level;
            continue;
        }
        ASSERT_EQ(boxes().size(), 1U) << level;
        EXPECT_EQ(services.dialogsDouble->boxes[0].header, std::string("Debug level ") + level);
        EXPECT_EQ(services.dialogsDouble->boxes[0].text.rfind(shown, 0), 0U) << level;
    }
}

// A list without the session's language is in the scenario unoffered_language.
TEST_F(RavikKT500Lifecycle, AnEmptyLanguageListOffersNoTranslation) {
    services.languageDouble->ids.clear();
    started();
    EXPECT_EQ(control->form().control("comSelectLanguage").listCount(), 0);
    EXPECT_FALSE(control->form().control("cmdTranslate").enabled());
}

TEST_F(RavikKT500Lifecycle, ReleaseClosesTheConnectionLast) {
    RavikKT500& kt = started();
    bool othersReleasedBeforeClose = false;
    services.controlDouble->onClose = [this, &othersReleasedBeforeClose] {
        othersReleasedBeforeClose = services.dialogsDouble.use_count() == 1 &&
                                    services.languageDouble.use_count() == 2;  // and the BL's own
    };
    EXPECT_TRUE(kt.IDtmActiveXControl_PrepareToRelease());
    EXPECT_EQ(services.log->back(), "CloseConnection 7");
    EXPECT_TRUE(othersReleasedBeforeClose);
    EXPECT_EQ(services.controlDouble.use_count(), 1);
    EXPECT_TRUE(kt.IDtmActiveXControl_PrepareToRelease());  // a second release does nothing
    EXPECT_EQ(std::count(services.log->begin(), services.log->end(), "CloseConnection 7"), 1);
}

TEST_F(RavikKT500Lifecycle, FailedCloseGoesToTheDebugOutputOnly) {
    services.controlDouble->closeSucceeds = false;
    EXPECT_TRUE(started().IDtmActiveXControl_PrepareToRelease());
    EXPECT_EQ(output.lines.back(), "Can't close the connection!");
    EXPECT_TRUE(boxes().empty());
}

TEST_F(RavikKT500Lifecycle, TranslateFallsBackToTheFrameLanguage) {
    RavikKT500& kt = started();
    EXPECT_EQ(kt.Translate("start"), "[1033:start]");
    kt.m_objTools->Language = "0";
    kt.m_objTools->FrameLanguage = "1031";
    EXPECT_EQ(kt.Translate("start"), "[1031:start]");
    const std::size_t calls = services.log->size();
    EXPECT_EQ(kt.Translate(""), "");
    EXPECT_EQ(services.log->size(), calls);
    kt.m_objTools->FrameLanguage = "";
    EXPECT_THROW(kt.Translate("start"), std::invalid_argument);
}

TEST_F(RavikKT500Lifecycle, ResizeKeepsTheFixedExtents) {
    RavikKT500& kt = construct();
    form::Control& user = kt.form().userControl();
    int writes = 0;
    kt.form().addObserver([&writes, &user](const form::PropertyChange& change) {
        writes += &change.control == &user ? 1 : 0;
    });
    user.setWidth(9000);
    writes = 0;
    kt.form().raiseResize();
    EXPECT_EQ(user.width(), RavikKT500::kWidth);
    EXPECT_EQ(writes, 1);
    kt.form().raiseResize();  // nothing to put right
    EXPECT_EQ(writes, 1);
}

}  // namespace
}  // namespace kt500::host
