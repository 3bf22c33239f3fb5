// The tool's own work on one request, through RunJob and one Knowledge as a batch runs it:
//
//   Tool/UnknownKeys/<N>   deserialize of an RTSP table of its "Port" and N keys the section does
//                          not have: one warning per key, each with the known key it may mean
//   Tool/BadValue/<N>      the same table with "Port" of the wrong JSON kind: the library throws,
//                          and the tool finds the key to blame by taking keys away
//   Tool/Parse/<N>         the bare parse of the first table by Json::Reader: what the JSON
//                          library's own cost grows by (its objects are trees: n log n)
//   Tool/BatchLine         one line of a batch, taken in turn from the requests of every
//                          section's examples (serialize of its record, or of its F5 text, and
//                          deserialize of its table onto its base): the cost of a result line
//                          without reading or writing it
//
// The cost of a request must grow as its table does: 16000 keys at most about ten times 1600.
#include "batch.h"
#include "commands.h"
#include "section_table.h"

#include <benchmark/benchmark.h>
#include <json/json.h>

#include <cctype>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#ifndef PROTOFIX_EXAMPLES_DIR
#define PROTOFIX_EXAMPLES_DIR "examples"
#endif

namespace {

using protofix::tool::Command;
using protofix::tool::Job;
using protofix::tool::Knowledge;
using protofix::tool::Result;

// An RTSP table: its port, valid or of the wrong kind, and keys the section does not have.
std::string RtspTable(int unknownKeys, bool badPort) {
    std::string text = badPort ? "{\"Port\":{\"value\":554}" : "{\"Port\":554";
    for (int i = 0; i < unknownKeys; ++i)
        text += ",\"Unknown" + std::to_string(i) + "\":" + std::to_string(i);
    return text + "}";
}

Job DeserializeRtsp(const std::string& table) {
    Job job;
    job.command = Command::kDeserialize;
    job.section = "RTSP";
    job.input = {"bench.table.json", table};
    return job;
}

void RunTable(benchmark::State& state, bool badPort) {
    const int keys = static_cast<int>(state.range(0));
    const Job job = DeserializeRtsp(RtspTable(keys, badPort));
    Knowledge knowledge;
    // What the tool answers, checked once: a benchmark of a wrong answer measures nothing.
    const Result first = protofix::tool::RunJob(job, knowledge);
    const bool expected =
        badPort
            ? first.status == protofix::tool::kBadInput &&
                  first.error.find("wrong JSON kind for section RTSP at Port") != std::string::npos
            : first.status == protofix::tool::kConverted &&
                  first.warnings.size() == static_cast<std::size_t>(keys);
    if (!expected) {
        state.SkipWithError(("unexpected answer: " + first.error).c_str());
        return;
    }
    for (auto _ : state) {
        Result result = protofix::tool::RunJob(job, knowledge);
        benchmark::DoNotOptimize(result);
    }
    state.counters["keys/s"] = benchmark::Counter(static_cast<double>(keys) * state.iterations(),
                                                  benchmark::Counter::kIsRate);
}

void UnknownKeys(benchmark::State& state) { RunTable(state, false); }

void Parse(benchmark::State& state) {
    const int keys = static_cast<int>(state.range(0));
    const std::string table = RtspTable(keys, false);
    for (auto _ : state) {
        Json::Value value;
        Json::Reader().parse(table, value, false);
        benchmark::DoNotOptimize(value);
    }
    state.counters["keys/s"] = benchmark::Counter(static_cast<double>(keys) * state.iterations(),
                                                  benchmark::Counter::kIsRate);
}
void BadValue(benchmark::State& state) { RunTable(state, true); }

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// A file's JSON on one line; null when there is no such file.
Json::Value Parsed(const std::string& path) {
    Json::Value value;
    const std::string text = ReadFile(path);
    if (!text.empty()) Json::Reader().parse(text, value, false);
    return value;
}

// The requests of every section's examples, as fleet-rate and the batch test make them.
std::vector<std::string> ExampleRequests() {
    std::vector<std::string> lines;
    Json::FastWriter writer;
    for (const auto* section = protofix::tool::SectionsBegin();
         section != protofix::tool::SectionsEnd(); ++section) {
        std::string lower = section->name;
        for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        const std::string base = std::string(PROTOFIX_EXAMPLES_DIR) + "/" + lower;
        Json::Value serialize;
        serialize["section"] = section->name;
        serialize["command"] = "serialize";
        if (section->AcceptsRecord()) {
            serialize["record"] = Parsed(base + ".record.json");
        } else {
            serialize["f5"] = Parsed(base + ".f5.json");
        }
        Json::Value deserialize;
        deserialize["section"] = section->name;
        deserialize["command"] = "deserialize";
        deserialize["table"] = Parsed(base + ".table.json");
        const Json::Value recordBase = Parsed(base + ".base.json");
        if (!recordBase.isNull()) deserialize["base"] = recordBase;
        for (const Json::Value* request : {&serialize, &deserialize}) {
            std::string line = writer.write(*request);
            line.pop_back();
            lines.push_back(line);
        }
    }
    return lines;
}

void BatchLine(benchmark::State& state) {
    const std::vector<std::string> lines = ExampleRequests();
    Knowledge knowledge;
    std::string result;
    std::size_t next = 0;
    for (auto _ : state) {
        protofix::tool::BatchLine(lines[next], next + 1, protofix::tool::kDefaultMaxInput,
                                  knowledge, result);
        benchmark::DoNotOptimize(result);
        next = (next + 1) % lines.size();
    }
    state.counters["lines/s"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

}  // namespace

BENCHMARK(UnknownKeys)
    ->Name("Tool/UnknownKeys")
    ->Arg(1600)
    ->Arg(16000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BadValue)->Name("Tool/BadValue")->Arg(1600)->Arg(16000)->Unit(benchmark::kMillisecond);
BENCHMARK(Parse)->Name("Tool/Parse")->Arg(1600)->Arg(16000)->Unit(benchmark::kMillisecond);
BENCHMARK(BatchLine)->Name("Tool/BatchLine")->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
