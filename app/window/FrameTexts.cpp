#include "app/window/FrameTexts.h"

#include <iterator>

namespace kt500::window {

namespace {

struct Pair {
    const char* english;
    const char* german;
};

// In the order of FrameText.
constexpr Pair kTexts[] = {
    {"&File", "&Datei"},
    {"&Device", "&Gerät"},
    {"&View", "&Ansicht"},
    {"&Help", "&Hilfe"},
    {"&New session...", "&Neue Sitzung..."},
    {"&Quit", "&Beenden"},
    {"&Previous page", "&Vorige Seite"},
    {"&Next page", "&Nächste Seite"},
    {"&About", "Ü&ber"},
    {"KT500 device manager %1\nConfigure, calibrate, test and monitor KT500 valve "
     "controllers.",
     "KT500 Gerätemanager %1\nKonfigurieren, kalibrieren, testen und überwachen von "
     "KT500-Ventilsteuerungen."},
    {"Ready", "Bereit"},
    {"Reading %1 (%2 %)", "Lese %1 (%2 %)"},
    {"Writing %1", "Schreibe %1"},
    {"Monitoring", "Überwachung läuft"},
    {"Calibration running", "Kalibrierung läuft"},
    {"Test running", "Test läuft"},
    {"Reading the data file", "Datendatei wird gelesen"},
    {"Reading the results", "Ergebnisse werden gelesen"},
    {"Online", "Online"},
    {"Offline", "Offline"},
    {"Role: %1", "Rolle: %1"},
    {"Rev.", "Rev."},
    {"Tag: %1", "Tag: %1"},
    {"Reading from the device", "Lesen aus dem Gerät"},
    {"Writing to the device", "Schreiben in das Gerät"},
    {"Monitoring", "Überwachung"},
    {"Calibration", "Kalibrierung"},
    {"Test", "Test"},
    {"Range: %1 to %2", "Bereich: %1 bis %2"},
    {"Unit: %1", "Einheit: %1"},
    {"Decimals: %1", "Nachkommastellen: %1"},
    {"At most %1 characters", "Höchstens %1 Zeichen"},
    {"KT500 device manager: new session", "KT500 Gerätemanager: neue Sitzung"},
    {"Simulated device:", "Simuliertes Gerät:"},
    {"Mode:", "Modus:"},
    {"Role:", "Rolle:"},
    {"Language:", "Sprache:"},
    {"Offline (data set)", "Offline (Datensatz)"},
    {"Last read: %1", "Zuletzt gelesen: %1"},
};

struct RoleName {
    const char* role;
    Pair name;
};

constexpr RoleName kRoleNames[] = {
    {"observer", {"Observer", "Beobachter"}},
    {"operator", {"Operator", "Bediener"}},
    {"maintenance", {"Maintenance", "Wartung"}},
    {"planningEngineer", {"Planning engineer", "Planungsingenieur"}},
    {"administrator", {"Administrator", "Administrator"}},
    {"oemService", {"OEM service", "Herstellerservice"}},
};

static_assert(std::size(kTexts) == static_cast<std::size_t>(FrameText::LastRead) + 1,
              "one pair of texts for every FrameText");

}  // namespace

FrameTexts::FrameTexts(std::string_view language) : m_german(language == "1031") {}

QString FrameTexts::text(FrameText which) const {
    const Pair& pair = kTexts[static_cast<std::size_t>(which)];
    return QString::fromUtf8(m_german ? pair.german : pair.english);
}

QString FrameTexts::roleName(std::string_view role) const {
    for (const RoleName& known : kRoleNames) {
        if (role == known.role) {
            return QString::fromUtf8(m_german ? known.name.german : known.name.english);
        }
    }
    return QString::fromUtf8(role.data(), static_cast<qsizetype>(role.size()));
}

}  // namespace kt500::window
