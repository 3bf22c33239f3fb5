// Both directions of every record-mode section, on a zero-filled record and the table it gives.
#include <protofix/protofix.h>

#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

PROTOCOL_FIX_INFO RecordInfo(const char* name, std::vector<char>& record) {
    PROTOCOL_FIX_INFO info;
    std::memset(&info, 0, sizeof info);
    info.name = name;
    info.input = record.data();
    info.output = record.data();
    info.outputLength = static_cast<int>(record.size());
    return info;
}

template <class Record>
void Serialize(benchmark::State& state, const char* name) {
    std::vector<char> record(sizeof(Record));
    CReqConfigProtocolFix request;
    request.SetRequestInfo(RecordInfo(name, record));
    for (auto _ : state) {
        int len = 0;
        benchmark::DoNotOptimize(request.Serialize(len));
    }
}

template <class Record>
void Deserialize(benchmark::State& state, const char* name) {
    std::vector<char> record(sizeof(Record));
    CReqConfigProtocolFix request;
    request.SetRequestInfo(RecordInfo(name, record));
    int len = 0;
    // The bare table of the envelope, as the device answers it.
    Json::Value envelope;
    Json::Reader().parse(request.Serialize(len), envelope, false);
    const std::string table = Json::FastWriter().write(envelope["params"]["table"]);
    for (auto _ : state) benchmark::DoNotOptimize(request.Deserialize(table.c_str(), 0));
}

template <>
[[maybe_unused]] void Serialize<void>(benchmark::State& state, const char*) {
    state.SkipWithError("F5 text only");
}
template <>
[[maybe_unused]] void Deserialize<void>(benchmark::State& state, const char*) {
    state.SkipWithError("F5 text only");
}

}  // namespace

int main(int argc, char** argv) {
#define PROTOFIX_SECTION(name, suffix, record, modes)                                              \
    benchmark::RegisterBenchmark("Serialize/" name,                                                \
                                 [](benchmark::State& state) { Serialize<record>(state, name); }); \
    benchmark::RegisterBenchmark(                                                                  \
        "Deserialize/" name, [](benchmark::State& state) { Deserialize<record>(state, name); });
#include <protofix/sections.def>
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
