#include "support/TestUserControl.h"

#include "form/FormLoader.h"
#include "simulator/DeviceCatalogue.h"

#include <filesystem>
#include <stdexcept>

namespace kt500::testing {

namespace {

const std::filesystem::path kShare = KT500_TEST_SHARE_DIR;

std::unique_ptr<form::Form> LoadForm() {
    auto form = std::make_unique<form::Form>();
    const form::FormLoader loader(kShare / "schemas" /
                                  std::string(form::FormLoader::kSchemaFileName));
    loader.load(*form, form::FormLoader::standardFiles(kShare / "forms"));
    return form;
}

}  // namespace

TestUserControl::TestUserControl(simulator::SessionOptions options) : m_form(LoadForm()) {
    const simulator::DeviceModel* model = simulator::DeviceCatalogue::find(options.deviceKey);
    if (model == nullptr) {
        throw std::invalid_argument("no device model " + options.deviceKey);
    }
    m_tools.GUIxmlPath = (kShare / "guiinit").string() + "/";
    m_tools.GUIxmlSchemaPath = (kShare / "schemas").string() + "/";
    m_tools.DeviceType = model->key;
    m_tools.DeviceRevision = model->revision;
    m_tools.DeviceTypeId = model->deviceTypeId;
    m_tools.DeviceName = model->name;
    m_tools.ActorRole = options.role;
    m_tools.OnlineConf = options.online;
    m_tools.Language = options.language;
    m_tools.FrameLanguage = options.frameLanguage;
    m_tools.ConfirmFlag = true;
    m_tools.ShowProgressbar = true;
    m_tools.setDeviceParameterXml(model->key);

    m_bl = std::make_unique<simulator::BuiltInBL>(options, kShare);
    std::int32_t connectionId = 0;
    bool locked = false;
    bool success = false;
    m_bl->control()->OpenConnection(*this, "", connectionId, sessionData, m_parameterNode,
                                    m_language, locked, success);
    if (!success) {
        throw std::runtime_error("the built-in BL refused the connection");
    }
    m_tools.ConnectionID = static_cast<std::int16_t>(connectionId);

    m_schemas = std::make_unique<xml::SchemaCollection>();
    const std::string error =
        m_schemas->add("x-schema:QDLCommunicationSchema.xml",
                       (kShare / "schemas" / "QDLCommunicationSchema.xml").string());
    if (!error.empty()) {
        throw std::runtime_error(error);
    }
    xml::LoadResult copy = xml::Document::parse(m_parameterNode.toXml());
    if (!copy.ok()) {
        throw std::runtime_error(copy.message());
    }
    m_xmlDataFile.emplace(std::move(*copy.document));
    m_document.emplace(m_parameterNode, *m_xmlDataFile);
    m_deviceClass = devices::CreateDeviceClass(m_tools.DeviceType);
    m_deviceClass->setObjUserControl(this);
}

TestUserControl::~TestUserControl() {
    bool closed = false;
    m_bl->control()->CloseConnection(m_tools.ConnectionID, closed);
}

std::string TestUserControl::Translate(const std::string& strKey) {
    if (strKey.empty()) {
        return {};
    }
    // As the control looks texts up: Language unless it is 0 or no number,
    // then FrameLanguage.
    int language = 0;
    try {
        language = std::stoi(m_tools.Language);
    } catch (const std::logic_error&) {
        language = 0;
    }
    if (language == 0) {
        language = std::stoi(m_tools.FrameLanguage);
    }
    std::string text;
    m_language->TranslateKey(language, strKey, text);
    return text;
}

void TestUserControl::ShowMsg(const std::string& strHeader, const std::string& strMsg) {
    messages.push_back(strHeader + ": " + strMsg);
}

form::Control& TestUserControl::addField(form::ControlKind kind, const std::string& name, int index,
                                         const std::string& frameArray, int frameIndex,
                                         const std::string& tag) {
    form::Control& page = m_form->control(frameArray, frameIndex);
    // A field that the shipped pages already hold is taken over as it is.
    form::Control* field = m_form->find(name, index);
    if (field == nullptr) {
        field = &m_form->add(kind, name, index, &page);
    } else if (field->kind() != kind) {
        throw std::invalid_argument(name + " is on the form as another kind of control");
    } else {
        m_form->setContainer(*field, &page);
    }
    field->setTag(tag);
    return *field;
}

}  // namespace kt500::testing
