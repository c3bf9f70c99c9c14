// Reads of a HART positioner fill its pages with the device's values.
#include "app/ControlSession.h"
#include "data/PageFields.h"
#include "data/ParameterDocument.h"
#include "devices/Encodings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <set>

namespace kt500::app {
namespace {

simulator::SessionOptions Options(const std::string& key) {
    simulator::SessionOptions options;
    options.deviceKey = key;
    return options;
}

class KT520EndToEnd : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(session.start(Options("KT520_7")));
        session.settle();
        session.dialogs().takeBoxes();
    }

    host::RavikKT500& control() { return session.control(); }
    session::clsTools& tools() { return *control().m_objTools; }

    // The request groups of every upload group of the GUIInit document.
    std::vector<std::string> uploadedGroups() {
        std::vector<std::string> groups;
        const xml::Document* guiInit = tools().RavikDTMParameters();
        for (const xml::Node& uploads : guiInit->root().childElements("uploadGroups")) {
            for (const xml::Node& upload : uploads.childElements("uploadGroup")) {
                for (const xml::Node& group : upload.childElements()) {
                    groups.push_back(group.attribute("name"));
                }
            }
        }
        return groups;
    }

    // Reads one group on a fresh progress bar and lets the BL answer every piece.
    void read(const std::string& group) {
        form::Control& bar = control().form().control("ProgressBar1");
        bar.setValue(0);
        bar.setMax(0);
        tools().CurrentFrame = "HA" + group;
        control().SendRequest(group, "read");
        session.settle();
    }

    std::vector<std::string> boxes() {
        std::vector<std::string> texts;
        for (const auto& box : session.dialogs().takeBoxes()) {
            texts.push_back(box.header + " | " + box.text);
        }
        return texts;
    }

    ControlSession session{KT500_SHARE_DIR};
};

// The page shows a value in its own form: numbers rounded to the
// parameter's decimals with the locale's sign, list entries by item data.
bool SameValue(const std::string& page, const std::string& device, const std::string& type,
               int decimals) {
    if (type == "stringVal") {
        return page == device;
    }
    const double shown = devices::Str2Dbl(devices::fDecimalSep(page, "."));
    const double sent = devices::Str2Dbl(device);
    return std::abs(shown - sent) <= 0.5 * std::pow(10.0, -decimals) + 1e-9;
}

// The field that shows a parameter: the first control of the KT520's pages
// that holds a value under its tag.
const form::Control* FieldOf(form::Form& form, const std::string& name) {
    for (const form::Control* candidate : form.controls()) {
        if (candidate->tag() == name && data::HoldsValue(*candidate) &&
            data::LiesOn(*candidate, "fraKT520")) {
            return candidate;
        }
    }
    return nullptr;
}

// What the page shows and expects of a parameter held in another form than
// the device's (date, serial number, device id); none for the others.
std::optional<std::pair<std::string, std::string>> ShownAndExpected(host::RavikKT500& control,
                                                                    const std::string& name,
                                                                    const std::string& device) {
    form::Form& form = control.form();
    if (name == "deviceDate") {
        return std::pair{control.deviceClass().DeviceDate(), device};
    }
    if (name == "kt500SerialNumber") {
        return std::pair{FieldOf(form, name)->text(),
                         devices::DecodeSerNro(devices::ToInt32(device))};
    }
    if (name == "deviceId") {
        return std::pair{form.control("lblHAPositionerInformation", 14).caption(),
                         devices::DecodeDeviceID(devices::ToInt32(device))};
    }
    return std::nullopt;
}

TEST_F(KT520EndToEnd, EveryUploadGroupFillsItsPagesWithTheDeviceValues) {
    // Groups of charts and lists, and pages with charts: their replies report
    // what is missing, the pages' values are in place all the same.
    const std::set<std::string> chartGroups = {"travelDeviation", "loadFactor", "travelVsTime",
                                               "eventLog"};
    const std::set<std::string> pagesWithCharts = {"flowModification", "alertSettings"};
    const data::ParameterDocument document(control().parameterNode(), *control().xmlDataFile());
    form::Form& form = control().form();
    int compared = 0;
    for (const std::string& group : uploadedGroups()) {
        SCOPED_TRACE(group);
        // The test settings are read as the step test's request.
        tools().CurrentTest = group == "testSettings" ? 1 : 0;
        read(group);
        const std::vector<std::string> shown = boxes();
        if (chartGroups.contains(group)) {
            continue;
        }
        if (!pagesWithCharts.contains(group)) {
            EXPECT_EQ(shown, std::vector<std::string>{});
            const auto& pages = session::clsTools::SnapshotPages();
            if (std::find(pages.begin(), pages.begin() + session::clsTools::ValidityPageCount,
                          group) != pages.begin() + session::clsTools::ValidityPageCount) {
                EXPECT_TRUE(tools().ValuesOk(group, ""));
            }
            if (const form::TreeNode* node = form.control("treeNavigation").tree().find(group)) {
                EXPECT_EQ(node->image, "read");
            }
        }
        for (const std::string& name :
             document.IncludedParams(document.RequestGroupByName(group))) {
            const xml::Node parameter = document.ParameterNodeByName(name);
            const std::optional<std::string> device =
                session.bl().simulatedControl().deviceValue(name);
            if (!device || parameter.attribute("access") == "write") {
                continue;
            }
            if (const auto converted = ShownAndExpected(control(), name, *device)) {
                EXPECT_EQ(converted->first, converted->second) << name;
                ++compared;
                continue;
            }
            const form::Control* field = FieldOf(form, name);
            ASSERT_NE(field, nullptr) << "no field for " << name;
            const std::string decimals = parameter.attribute("decimals");
            EXPECT_TRUE(SameValue(data::FieldValue(*field, false), *device,
                                  parameter.attribute("type"),
                                  decimals.empty() ? 0 : std::stoi(decimals)))
                << name << ": page " << data::FieldValue(*field, false) << ", device " << *device;
            ++compared;
        }
    }
    EXPECT_GT(compared, 40);
}

TEST_F(KT520EndToEnd, MissingItemsAreListedInTheReport) {
    session.bl().simulatedControl().inject({"fail", "operationUnit", "missingItems"});
    read("operationUnit");
    const std::vector<std::string> shown = boxes();
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_NE(shown[0].find(control().Translate("hartTag")), std::string::npos) << shown[0];
}

}  // namespace
}  // namespace kt500::app
