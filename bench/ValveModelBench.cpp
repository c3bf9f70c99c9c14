// The valve model's test procedures as the simulated devices run them on a
// request: each must stay well below the request time-out.
#include "simulator/ValveModel.h"
#include "simulator/ValveTests.h"

#include <benchmark/benchmark.h>

namespace {

using namespace kt500::simulator;

void stepTest(benchmark::State& state) {
    for (auto _ : state) {
        ValveModel model;
        benchmark::DoNotOptimize(runStepTest(model, StepTestSettings{}));
    }
}
BENCHMARK(stepTest);

// The longest hysteresis test the settings allow: the finest set point steps.
void hysteresisTest(benchmark::State& state) {
    for (auto _ : state) {
        ValveModel model;
        benchmark::DoNotOptimize(
            runHysteresisTest(model, HysteresisTestSettings{50.0, 10.0, 2000.0, 50}));
    }
}
BENCHMARK(hysteresisTest);

void valveTest(benchmark::State& state) {
    for (auto _ : state) {
        ValveModel model;
        benchmark::DoNotOptimize(runValveTest(model, ValveTestSettings{}));
    }
}
BENCHMARK(valveTest);

void pneumaticsTest(benchmark::State& state) {
    for (auto _ : state) {
        ValveModel model;
        benchmark::DoNotOptimize(runPneumaticsTest(model, PneumaticsTestSettings{}));
    }
}
BENCHMARK(pneumaticsTest);

}  // namespace
