#include "app/ControlSession.h"

#include "form/FormLoader.h"
#include "session/QtSettingsStore.h"
#include "simulator/DeviceCatalogue.h"
#include "xml/Document.h"

#include <QStandardPaths>

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace kt500::app {

namespace {

// The built-in BL's services, with the connection seen through the recorder.
class RecordingProvider final : public services::IDtmServiceProvider {
public:
    RecordingProvider(simulator::BuiltInBL& bl, std::shared_ptr<RecordingControl> recorder,
                      std::shared_ptr<services::IDtmDialogs> dialogs)
        : m_bl(bl), m_recorder(std::move(recorder)), m_dialogs(std::move(dialogs)) {}

    std::shared_ptr<services::IDtmControl> control() override { return m_recorder; }
    std::shared_ptr<services::IDtmDialogs> dialogs() override {
        return m_dialogs ? m_dialogs : m_bl.dialogs();
    }
    std::shared_ptr<services::IDtmUnits> units() override { return m_bl.units(); }
    std::shared_ptr<services::IDtmAddressing> addressing() override { return m_bl.addressing(); }

private:
    simulator::BuiltInBL& m_bl;
    std::shared_ptr<RecordingControl> m_recorder;
    std::shared_ptr<services::IDtmDialogs> m_dialogs;
};

// A script's standard output is what the script asks for, nothing else.
class SilentDebugOutput final : public session::IDebugOutput {
public:
    void write(const std::string& /*strMessage*/) override {}
};

}  // namespace

ControlSession::ControlSession(std::filesystem::path shareDir, SessionEnvironment environment)
    : m_shareDir(std::move(shareDir)), m_environment(std::move(environment)) {
    if (!m_settingsDir.isValid()) {
        throw std::runtime_error("no temporary folder for the session's settings: " +
                                 m_settingsDir.errorString().toStdString());
    }
}

ControlSession::~ControlSession() {
    if (running()) {
        m_control->IDtmActiveXControl_PrepareToRelease();
    }
}

void ControlSession::requireStarted() const {
    if (!started()) {
        throw std::logic_error("no session: start one first");
    }
}

host::RavikKT500& ControlSession::control() const {
    requireStarted();
    return *m_control;
}

simulator::BuiltInBL& ControlSession::bl() const {
    requireStarted();
    return *m_bl;
}

simulator::HeadlessDialogs& ControlSession::dialogs() const {
    requireStarted();
    return *m_bl->headlessDialogs();
}

RecordingControl& ControlSession::recorder() const {
    requireStarted();
    return *m_recorder;
}

bool ControlSession::start(const simulator::SessionOptions& options) {
    prepare(options);
    return initialise();
}

bool ControlSession::initialise() {
    requireStarted();
    return m_control->IDtmActiveXControl_Init("", "", *m_provider);
}

void ControlSession::prepare(const simulator::SessionOptions& options) {
    if (simulator::DeviceCatalogue::find(options.deviceKey) == nullptr) {
        throw std::invalid_argument("unknown device key '" + options.deviceKey +
                                    "'; the built-in BL simulates " +
                                    simulator::DeviceCatalogue::keyList());
    }
    if (running()) {
        release();
    }
    m_control.reset();
    m_provider.reset();
    m_recorder.reset();
    m_bl.reset();

    m_options = options;
    const form::FormLoader loader(m_shareDir / "schemas" /
                                  std::string(form::FormLoader::kSchemaFileName));
    auto formModel = std::make_unique<form::Form>();
    loader.load(*formModel, form::FormLoader::standardFiles(m_shareDir / "forms"));

    const QString folder = m_settingsDir.path();
    QString documents = folder + QStringLiteral("/documents/");
    if (m_environment.installationPrefix.isEmpty()) {
        m_settings = std::make_unique<session::QtSettingsStore>(
            folder + QStringLiteral("/machine.conf"), folder + QStringLiteral("/user.conf"));
    } else {
        m_settings = std::make_unique<session::QtSettingsStore>(
            session::QtSettingsStore::ForInstallation(m_environment.installationPrefix));
        documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) +
                    QStringLiteral("/KT500 DTM/");
    }
    m_debugOutput = m_environment.debugOutput ? m_environment.debugOutput
                                              : std::make_shared<SilentDebugOutput>();
    m_startTime = m_environment.startTime.value_or(QDateTime(QDate(2026, 1, 5), QTime(8, 0)));
    host::ControlPlatform platform{
        *m_settings, *m_debugOutput,
        session::PathDefaults::UnderShare(m_shareDir.string(), documents.toStdString()),
        // From the start's instant: a local start time need not be taken
        // back to the instant for every reading of the clock.
        [this, start = m_startTime.toMSecsSinceEpoch(), zone = m_startTime.timeSpec()] {
            return zone == Qt::LocalTime ? QDateTime::fromMSecsSinceEpoch(start + now())
                                         : m_startTime.addMSecs(now());
        }};

    m_bl = std::make_unique<simulator::BuiltInBL>(m_options, m_shareDir);
    m_recorder = std::make_shared<RecordingControl>(m_bl->control());
    m_provider = std::make_unique<RecordingProvider>(*m_bl, m_recorder, m_environment.dialogs);
    const simulator::DeviceModel& model = m_bl->simulatedControl().model();
    m_sessionData = simulator::BuildSessionData(m_options, model.deviceType, model.revision);

    m_control = std::make_unique<host::RavikKT500>(std::move(formModel), platform);
}

void ControlSession::release() {
    requireStarted();
    m_control->IDtmActiveXControl_PrepareToRelease();
}

void ControlSession::updateSessionData(
    const std::vector<std::pair<std::string, std::string>>& changes) {
    requireStarted();
    xml::LoadResult loaded = xml::Document::parse(m_sessionData);
    if (!loaded.ok()) {
        throw std::logic_error("the session data of the BL do not parse");
    }
    xml::Node session = loaded.document->root().firstChildElement("session");
    for (const auto& [name, value] : changes) {
        if (!session.hasAttribute(name)) {
            throw std::invalid_argument("the session data have no attribute '" + name + "'");
        }
        session.setAttribute(name, value);
    }
    m_sessionData = loaded.document->toXml();
    // The BL sends it as one of its events, delivered at once.
    host::RavikKT500* control = m_control.get();
    const std::string sessionData = m_sessionData;
    m_bl->clock().schedule(
        0, [control, sessionData] { control->IQDLGuiEvent_UpdateSessionData(sessionData); });
    deliverDue();
}

std::int64_t ControlSession::now() const {
    return m_bl ? m_bl->clock().now() : 0;
}

void ControlSession::advanceTo(std::int64_t target) {
    simulator::VirtualClock& clock = m_bl->clock();
    form::Form& form = m_control->form();
    while (true) {
        std::int64_t next = target;
        if (const auto event = clock.nextEventTime()) {
            next = std::min(next, std::max(*event, clock.now()));
        }
        if (const auto tick = form.nextTimerTick()) {
            next = std::min(next, clock.now() + *tick);
        }
        const std::int64_t step = next - clock.now();
        clock.advance(step);
        // Form timers count in int milliseconds; a step is at most one tick
        // apart, but a long wait with no timer running is split.
        std::int64_t left = step;
        while (left > 0) {
            const auto part =
                static_cast<int>(std::min<std::int64_t>(left, std::numeric_limits<int>::max()));
            form.advanceTimers(part);
            left -= part;
        }
        if (clock.now() >= target) {
            clock.advance(0);
            return;
        }
    }
}

void ControlSession::wait(std::int64_t ms) {
    requireStarted();
    if (ms < 0) {
        throw std::invalid_argument("time does not run backwards");
    }
    advanceTo(m_bl->clock().now() + ms);
}

void ControlSession::settle() {
    requireStarted();
    simulator::VirtualClock& clock = m_bl->clock();
    const std::int64_t limit = clock.now() + simulator::VirtualClock::kSettleLimit;
    while (const auto event = clock.nextEventTime()) {
        if (*event > limit) {
            break;
        }
        advanceTo(std::max(*event, clock.now()));
    }
}

void ControlSession::deliverDue() {
    requireStarted();
    m_bl->clock().advance(0);
}

}  // namespace kt500::app
