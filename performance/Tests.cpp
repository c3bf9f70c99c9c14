#include "performance/Tests.h"

#include "devices/DeviceClass.h"

namespace kt500::performance {

Tests::Tests(devices::IUserControl& control, calibration::AutoActionEvents& events)
    : m_control(control), m_settings(control), m_run(control, events), m_results(control) {
    events.setTests(m_run);
}

void Tests::addHandlers(form::EventHandlers& handlers) {
    m_settings.addHandlers(handlers);
    m_run.addHandlers(handlers);
}

void Tests::PlaceTestCommands() {
    devices::DeviceClass& device = m_control.deviceClass();
    const std::string prefix = device.DevicePrefix();
    const int element = prefix == "HA" ? 1 : prefix == "PA" ? 0 : -1;
    if (element < 0) {
        return;
    }
    form::Form& form = m_control.form();
    form::Control* button = form.find("cmdStartTest", element);
    const form::ControlArray* frames = form.findArray(device.FrameArrayName());
    if (button == nullptr || frames == nullptr) {
        return;
    }
    const std::string tag = prefix + "testSettings";
    for (const int index : frames->indices()) {
        form::Control* frame = frames->find(index);
        if (frame != nullptr && frame->tag() == tag) {
            form.setContainer(*button, frame);
            button->setCaptionKey("start");
            button->setCaption(m_control.Translate("start"));
            button->setVisible(true);
            return;
        }
    }
}

}  // namespace kt500::performance
