// The start-up of the control on each family's largest device against the
// bare libxml2 work on the same documents, in the same run.
//
// BM_StartUp times IDtmActiveXControl_Init alone (the form files are loaded
// and the control constructed before, as the frame does), less the BL's own
// composition of its parameter document inside OpenConnection, which the
// counter bl_composition_ms gives apart. BM_StartUpFloor compiles the
// schemas the start-up compiles (data file and type information, GUIInit,
// session data) and parses and validates the three documents: the parameter
// document as the BL hands it over, the GUIInit file and the session data.
// Both report the processor time of the thread.
#include "BenchSupport.h"

#include "simulator/SessionOptions.h"

namespace {

using namespace kt500;
using bench::LargestDevices;
using bench::Seconds;

simulator::SessionOptions OptionsFor(const std::string& key) {
    simulator::SessionOptions options;
    options.deviceKey = key;
    return options;
}

void BM_StartUp(benchmark::State& state, const std::string& family) {
    const simulator::SessionOptions options = OptionsFor(LargestDevices().at(family));
    std::chrono::nanoseconds composition{0};
    for (auto _ : state) {
        app::ControlSession session(bench::ShareDir());
        session.prepare(options);
        const auto before = app::ThreadCpuTime();
        if (!session.initialise()) {
            state.SkipWithError("the start-up failed");
            break;
        }
        const auto spent = app::ThreadCpuTime() - before;
        const auto bl = session.recorder().openConnectionTime();
        composition += bl;
        state.SetIterationTime(Seconds(spent - bl));
    }
    state.counters["bl_composition_ms"] =
        Seconds(composition) * 1000.0 / static_cast<double>(std::max<benchmark::IterationCount>(state.iterations(), 1));
    state.SetLabel(options.deviceKey);
}

struct StartUpDocuments {
    explicit StartUpDocuments(const std::string& key) {
        app::ControlSession session(bench::ShareDir());
        session.start(OptionsFor(key));
        host::RavikKT500& control = session.control();
        schemaDir = control.tools().GUIxmlSchemaPath;
        guiInit = std::filesystem::path(control.tools().GUIxmlPath) /
                  control.tools().DeviceParameterXml();
        const simulator::DeviceModel& model = *simulator::DeviceCatalogue::find(key);
        const simulator::ParameterDocumentBuilder builder(bench::ShareDir() / "devices");
        parameters = builder.build(model).toXml();
        sessionData = simulator::BuildSessionData(OptionsFor(key), model.deviceType, model.revision);
    }
    std::filesystem::path schemaDir;
    std::filesystem::path guiInit;
    std::string parameters;
    std::string sessionData;
};

void Require(const std::string& error) {
    if (!error.empty()) {
        throw std::runtime_error(error);
    }
}

void BM_StartUpFloor(benchmark::State& state, const std::string& family) {
    const StartUpDocuments documents(LargestDevices().at(family));
    for (auto _ : state) {
        const auto before = app::ThreadCpuTime();
        xml::SchemaCollection dataFile;
        Require(dataFile.add("x-schema:QDLDatafileSchema.xml",
                             (documents.schemaDir / "QDLDatafileSchema.xml").string()));
        Require(dataFile.add("x-schema:QDLDeviceTypeInfoSchema.xml",
                             (documents.schemaDir / "QDLDeviceTypeInfoSchema.xml").string()));
        xml::SchemaCollection guiInit;
        Require(guiInit.add("", (documents.schemaDir / "KT500GUIInitSchema.xsd").string()));
        xml::SchemaCollection sessionSchema;
        Require(sessionSchema.add("x-schema:QDLSessionDataSchema.xml",
                                  (documents.schemaDir / "QDLSessionDataSchema.xml").string()));
        bench::ParseAndValidate({documents.parameters}, &dataFile);
        bench::ParseAndValidate({documents.sessionData}, &sessionSchema);
        xml::LoadResult tree = xml::Document::load(documents.guiInit, {.schemas = &guiInit});
        if (!tree.ok()) {
            state.SkipWithError("the GUIInit file does not validate");
            break;
        }
        state.SetIterationTime(Seconds(app::ThreadCpuTime() - before));
    }
    state.counters["bytes"] = static_cast<double>(documents.parameters.size());
    state.SetLabel(LargestDevices().at(family));
}

const bool kRegistered = [] {
    for (const auto& [family, key] : LargestDevices()) {
        benchmark::RegisterBenchmark(("BM_StartUp/" + family).c_str(), BM_StartUp, family)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("BM_StartUpFloor/" + family).c_str(), BM_StartUpFloor, family)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
    return true;
}();

}  // namespace
