// Every section on its example, each conversion beside the JSON library's own floor for the same
// work: no implementation of the request can parse a text with less than Json::Reader nor write
// one with less than building a Json::Value and Json::FastWriter.
//
//   <Section>/record/Deserialize        the device's table (compact) into the record
//   <Section>/record/Deserialize.floor  the bare parse of that table
//   <Section>/record/Serialize          the record into the envelope
//   <Section>/record/Serialize.floor    a deep copy of the envelope and its write
//   <Section>/record/Deserialize.read   the bare parse and every member looked up by its name
//   <Section>/record/Serialize.build    the envelope built key by key, and its write
//   <Section>/text/Deserialize          the table merged into the F5 text in its buffer
//   <Section>/text/Deserialize.floor    parse of the table, parse of the F5 text, write of the result
//   <Section>/text/Serialize            the F5 text into the envelope
//   <Section>/text/Serialize.floor      parse of the F5 text, copy of the envelope and its write
//   Size/<Section>/<N>/...              the same for tables of N entries (the cost's slope)
//   Threads/Everything                  every conversion above, on 1 and 2 threads
//
// protofix_bench --count runs each conversion and floor of every section a few times under
// functions named per section and conversion, for an instruction profile (scripts/bench-report).
#include <protofix/protofix.h>

#include <benchmark/benchmark.h>

#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#ifndef PROTOFIX_EXAMPLES_DIR
#define PROTOFIX_EXAMPLES_DIR "examples"
#endif

namespace {

// ---- the examples ------------------------------------------------------------------------------

struct Section {
    const char* name;
    std::size_t recordSize;  // 0: F5 text only
    unsigned int modes;
};

template <class Record>
constexpr std::size_t SizeOf() {
    return sizeof(Record);
}
template <>
constexpr std::size_t SizeOf<void>() {
    return 0;
}

constexpr Section kSections[] = {
#define PROTOFIX_SECTION(name, suffix, record, modes) {name, SizeOf<record>(), modes},
#include <protofix/sections.def>
};
constexpr std::size_t kSectionCount = sizeof kSections / sizeof kSections[0];

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return file ? text.str() : std::string();
}

Json::Value ParseJson(const std::string& text) {
    Json::Value value;
    Json::Reader().parse(text, value, false);
    return value;
}

std::string Compact(const Json::Value& value) { return Json::FastWriter().write(value); }

// One section's example: the table as the device sends it, the F5 text when it has one, and the
// record the table gives on a zero record.
struct Example {
    Section section{};
    std::string table;
    std::string f5;
    std::vector<char> record;
    bool tableReads = true;  // false: the record-mode Deserialize refuses the table as a whole
};

PROTOCOL_FIX_INFO Info(const char* name, int mode, void* input, void* output, int outputLength) {
    PROTOCOL_FIX_INFO info;
    std::memset(&info, 0, sizeof info);
    info.mode = mode;
    info.name = name;
    info.input = input;
    info.output = output;
    info.outputLength = outputLength;
    return info;
}

std::string Lower(const char* name) {
    std::string lower(name);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

// The record the table gives on a zero record; false when the section refuses the table.
bool ReadRecord(const Section& section, const std::string& table, std::vector<char>& record) {
    record.assign(section.recordSize, '\0');
    CReqConfigProtocolFix request;
    request.SetRequestInfo(Info(section.name, PROTOFIX_MODE_RECORD, record.data(), record.data(),
                                static_cast<int>(record.size())));
    try {
        return request.Deserialize(table.c_str(), static_cast<int>(table.size())) == 1;
    } catch (const Json::Exception&) {
        return false;
    }
}

Example MakeExample(const Section& section, const std::string& table, const std::string& f5) {
    Example example;
    example.section = section;
    example.table = table;
    example.f5 = f5;
    if (section.recordSize != 0) example.tableReads = ReadRecord(section, table, example.record);
    return example;
}

std::vector<Example> LoadExamples(const std::string& dir) {
    std::vector<Example> examples;
    for (const Section& section : kSections) {
        const std::string stem = dir + "/" + Lower(section.name);
        const std::string table = ReadFile(stem + ".table.json");
        const std::string f5 = ReadFile(stem + ".f5.json");
        if (table.empty()) continue;
        examples.push_back(MakeExample(section, Compact(ParseJson(table)),
                                       f5.empty() ? f5 : Compact(ParseJson(f5))));
    }
    return examples;
}

// ---- one conversion and its floor ---------------------------------------------------------------

enum class Op {
    Deserialize,
    DeserializeFloor,
    Serialize,
    SerializeFloor,
    DeserializeRead,  // record mode: the floor and every member of the table looked up by name
    SerializeBuild,   // record mode: the envelope built key by key, as any Serialize builds it
};

// The text of a string, read in place.
void Parse(const std::string& text, Json::Value& value) {
    Json::Reader().parse(text.data(), text.data() + text.size(), value, false);
}

// Looks every member of every object up by its name, as a reader of the whole table must.
void LookUpEveryMember(const Json::Value& value) {
    if (value.isObject()) {
        for (auto it = value.begin(); it != value.end(); ++it) {
            const char* end = nullptr;
            const char* begin = it.memberName(&end);
            LookUpEveryMember(*value.find(begin, end));
        }
    } else if (value.isArray()) {
        for (Json::ArrayIndex i = 0; i < value.size(); ++i) LookUpEveryMember(value[i]);
    } else {
        benchmark::DoNotOptimize(&value);
    }
}

// Builds a copy of a value key by key and element by element through the creating accessors.
void Build(const Json::Value& from, Json::Value& to) {
    if (from.isObject()) {
        to = Json::Value(Json::objectValue);
        for (auto it = from.begin(); it != from.end(); ++it) {
            const char* end = nullptr;
            const char* begin = it.memberName(&end);
            Build(*it, *to.demand(begin, end));
        }
    } else if (from.isArray()) {
        to = Json::Value(Json::arrayValue);
        for (Json::ArrayIndex i = 0; i < from.size(); ++i) Build(from[i], to[i]);
    } else {
        to = from;
    }
}
enum class Mode { Record, Text };

// The objects of one conversion, made once; Run() does the measured work once.
class Conversion {
public:
    Conversion(const Example& example, Mode mode, Op op)
        : example_(example), mode_(mode), op_(op), record_(example.record) {
        // The F5 buffer: room for the merged text, which may be longer than the device's.
        f5Buffer_.assign(example.f5.size() * 2 + 4096, '\0');
        std::memcpy(f5Buffer_.data(), example.f5.c_str(), example.f5.size() + 1);
        Prepare();
    }

    void Run() {
        switch (op_) {
            case Op::Deserialize: RunDeserialize(); break;
            case Op::DeserializeFloor: RunDeserializeFloor(); break;
            case Op::Serialize: RunSerialize(); break;
            case Op::SerializeFloor: RunSerializeFloor(); break;
            case Op::DeserializeRead: RunDeserializeRead(); break;
            case Op::SerializeBuild: RunSerializeBuild(); break;
        }
    }

private:
    bool Text() const { return mode_ == Mode::Text; }

    PROTOCOL_FIX_INFO RequestInfo() {
        if (Text()) {
            return Info(example_.section.name, PROTOFIX_MODE_TEXT,
                        const_cast<char*>(example_.f5.c_str()), f5Buffer_.data(),
                        static_cast<int>(f5Buffer_.size()));
        }
        return Info(example_.section.name, PROTOFIX_MODE_RECORD, record_.data(), record_.data(),
                    static_cast<int>(record_.size()));
    }

    // What the floors copy and write: the envelope and the merged F5 text the conversion gives.
    void Prepare() {
        request_.SetRequestInfo(RequestInfo());
        int len = 0;
        envelope_ = ParseJson(request_.Serialize(len));
        if (Text()) {
            RunDeserialize();
            merged_ = ParseJson(f5Buffer_.data());
        }
    }

    void RunDeserialize() {
        if (Text()) std::memcpy(f5Buffer_.data(), example_.f5.c_str(), example_.f5.size() + 1);
        benchmark::DoNotOptimize(
            request_.Deserialize(example_.table.c_str(), static_cast<int>(example_.table.size())));
    }

    void RunDeserializeFloor() {
        Json::Value table;
        Parse(example_.table, table);
        benchmark::DoNotOptimize(table);
        if (!Text()) return;
        std::memcpy(f5Buffer_.data(), example_.f5.c_str(), example_.f5.size() + 1);
        Json::Value f5;
        Json::Reader().parse(f5Buffer_.data(), f5Buffer_.data() + example_.f5.size(), f5, false);
        benchmark::DoNotOptimize(f5);
        benchmark::DoNotOptimize(Json::FastWriter().write(merged_));
    }

    void RunSerialize() {
        int len = 0;
        benchmark::DoNotOptimize(request_.Serialize(len));
    }

    void RunSerializeFloor() {
        if (Text()) {
            Json::Value f5;
            Parse(example_.f5, f5);
            benchmark::DoNotOptimize(f5);
        }
        const Json::Value copy(envelope_);
        benchmark::DoNotOptimize(Json::FastWriter().write(copy));
    }

    void RunDeserializeRead() {
        Json::Value table;
        Parse(example_.table, table);
        LookUpEveryMember(table);
    }

    void RunSerializeBuild() {
        Json::Value built;
        Build(envelope_, built);
        benchmark::DoNotOptimize(Json::FastWriter().write(built));
    }

    const Example& example_;
    Mode mode_;
    Op op_;
    std::vector<char> record_;
    std::vector<char> f5Buffer_;
    CReqConfigProtocolFix request_;
    Json::Value envelope_;
    Json::Value merged_;
};

const char* OpName(Op op) {
    switch (op) {
        case Op::Deserialize: return "Deserialize";
        case Op::DeserializeFloor: return "Deserialize.floor";
        case Op::Serialize: return "Serialize";
        case Op::SerializeFloor: return "Serialize.floor";
        case Op::DeserializeRead: return "Deserialize.read";
        case Op::SerializeBuild: return "Serialize.build";
    }
    return "";
}

constexpr Op kOps[] = {Op::Deserialize,    Op::DeserializeFloor, Op::Serialize,
                       Op::SerializeFloor, Op::DeserializeRead,  Op::SerializeBuild};

// Every conversion but the record-mode Deserialize of a table that the section refuses.
bool Measurable(const Example& example, Mode mode, Op op) {
    const bool reads =
        op == Op::Deserialize || op == Op::DeserializeFloor || op == Op::DeserializeRead;
    if (mode == Mode::Text) return op != Op::DeserializeRead && op != Op::SerializeBuild;
    return example.tableReads || !reads;
}

std::vector<Mode> ModesOf(const Example& example) {
    std::vector<Mode> modes;
    if (example.section.modes & PROTOFIX_ACCEPTS_RECORD) modes.push_back(Mode::Record);
    if ((example.section.modes & PROTOFIX_ACCEPTS_TEXT) && !example.f5.empty()) {
        modes.push_back(Mode::Text);
    }
    return modes;
}

void RegisterConversions(const std::string& prefix, const Example& example) {
    for (const Mode mode : ModesOf(example)) {
        for (const Op op : kOps) {
            if (!Measurable(example, mode, op)) continue;
            const std::string name =
                prefix + (mode == Mode::Text ? "/text/" : "/record/") + OpName(op);
            benchmark::RegisterBenchmark(name.c_str(), [&example, mode, op](benchmark::State& s) {
                Conversion conversion(example, mode, op);
                for (auto _ : s) conversion.Run();
            });
        }
    }
}

// ---- tables of N entries ------------------------------------------------------------------------

std::string Address(std::size_t i) {
    return "10." + std::to_string(i / 65536 % 256) + "." + std::to_string(i / 256 % 256) + "." +
           std::to_string(i % 256);
}

// AccessFilter with n addresses in each list.
Json::Value FilterTable(const Json::Value& example, std::size_t n) {
    Json::Value table = example;
    Json::Value banned(Json::arrayValue), trusted(Json::arrayValue);
    for (std::size_t i = 0; i < n; ++i) {
        banned.append(Address(i));
        trusted.append(Address(n + i));
    }
    table["BannedList"] = banned;
    table["TrustList"] = trusted;
    return table;
}

// RemoteDevice with n devices, each a copy of the example's first.
Json::Value DeviceTable(const Json::Value& example, std::size_t n) {
    Json::Value table(Json::objectValue);
    Json::Value device = example["uuid:0"];
    for (std::size_t i = 0; i < n; ++i) {
        device["Address"] = Address(i);
        table["uuid:" + std::to_string(i)] = device;
    }
    return table;
}

// MotionDetect with a grid of n rows.
Json::Value GridTable(const Json::Value& example, std::size_t n) {
    Json::Value table = example;
    Json::Value region(Json::arrayValue);
    for (std::size_t i = 0; i < n; ++i) region.append(static_cast<Json::UInt>(0x7F00u + i));
    table["Row"] = static_cast<Json::UInt>(n);
    table["Region"] = region;
    return table;
}

struct Sized {
    const char* section;
    Json::Value (*make)(const Json::Value&, std::size_t);
    std::vector<std::size_t> sizes;
};

std::vector<std::pair<std::string, Example>> SizedExamples(const std::vector<Example>& examples) {
    const Sized sized[] = {{"AccessFilter", &FilterTable, {16, 128, 512}},
                           {"RemoteDevice", &DeviceTable, {4, 32}},
                           {"MotionDetect", &GridTable, {1, 32}}};
    std::vector<std::pair<std::string, Example>> out;
    for (const Sized& s : sized) {
        for (const Example& example : examples) {
            if (std::strcmp(example.section.name, s.section) != 0) continue;
            for (const std::size_t n : s.sizes) {
                const std::string table = Compact(s.make(ParseJson(example.table), n));
                out.emplace_back("Size/" + std::string(s.section) + "/" + std::to_string(n),
                                 MakeExample(example.section, table, std::string()));
            }
        }
    }
    return out;
}

// ---- threads -----------------------------------------------------------------------------------

// Every conversion of every example, each thread with its own objects.
void Everything(benchmark::State& state, const std::vector<Example>& examples) {
    std::vector<std::unique_ptr<Conversion>> conversions;
    for (const Example& example : examples) {
        for (const Mode mode : ModesOf(example)) {
            for (const Op op : {Op::Deserialize, Op::Serialize}) {
                if (Measurable(example, mode, op)) {
                    conversions.push_back(std::make_unique<Conversion>(example, mode, op));
                }
            }
        }
    }
    for (auto _ : state) {
        for (const auto& conversion : conversions) conversion->Run();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(conversions.size()));
}

// ---- the instruction profile --------------------------------------------------------------------

constexpr int kCountedRuns = 10;

// One function per section and conversion, so that a profile tells them apart by name.
template <std::size_t SectionIndex, int OpIndex>
[[gnu::noinline]] void Counted(Conversion& conversion) {
    // A body of its own, or the compiler folds the identical functions into one.
    volatile std::size_t tag = SectionIndex * 16 + OpIndex;
    static_cast<void>(tag);
    for (int i = 0; i < kCountedRuns; ++i) conversion.Run();
}

template <std::size_t SectionIndex, int OpIndex>
void CountOne(const Example& example, Mode mode, Op op) {
    if (!Measurable(example, mode, op)) return;
    Conversion conversion(example, mode, op);
    Counted<SectionIndex, OpIndex>(conversion);
}

// A conversion and its floor in both directions, numbered from Base in the order of kOps.
template <std::size_t SectionIndex, int Base>
void CountConversions(const Example& example, Mode mode) {
    CountOne<SectionIndex, Base>(example, mode, Op::Deserialize);
    CountOne<SectionIndex, Base + 1>(example, mode, Op::DeserializeFloor);
    CountOne<SectionIndex, Base + 2>(example, mode, Op::Serialize);
    CountOne<SectionIndex, Base + 3>(example, mode, Op::SerializeFloor);
}

// Conversions 0-3 and the references 8-9 of the record mode, 4-7 of the text mode.
template <std::size_t SectionIndex>
void CountSection(const Example& example, Mode mode) {
    if (mode == Mode::Text) {
        CountConversions<SectionIndex, 4>(example, mode);
        return;
    }
    CountConversions<SectionIndex, 0>(example, mode);
    CountOne<SectionIndex, 8>(example, mode, Op::DeserializeRead);
    CountOne<SectionIndex, 9>(example, mode, Op::SerializeBuild);
}

template <std::size_t... I>
void CountAll(const std::vector<Example>& examples, std::index_sequence<I...>) {
    auto count = [&examples](std::size_t index, auto function) {
        for (const Example& example : examples) {
            if (std::strcmp(example.section.name, kSections[index].name) != 0) continue;
            for (const Mode mode : ModesOf(example)) function(example, mode);
        }
    };
    (count(I, &CountSection<I>), ...);
}

// Prints the index of every section, for reading the profile's function names.
int Count(const std::vector<Example>& examples) {
    CountAll(examples, std::make_index_sequence<kSectionCount>());
    std::cout << "runs " << kCountedRuns << "\n";
    for (std::size_t i = 0; i < kSectionCount; ++i)
        std::cout << i << " " << kSections[i].name << "\n";
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    std::string dir = PROTOFIX_EXAMPLES_DIR;
    bool count = false;
    std::vector<char*> args;
    for (int i = 0; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg.rfind("--examples=", 0) == 0) {
            dir = arg.substr(11);
        } else if (arg == "--count") {
            count = true;
        } else {
            args.push_back(argv[i]);
        }
    }
    const std::vector<Example> examples = LoadExamples(dir);
    if (examples.empty()) {
        std::cerr << "protofix_bench: no examples in " << dir << "\n";
        return 2;
    }
    if (count) return Count(examples);

    for (const Example& example : examples) RegisterConversions(example.section.name, example);
    const auto sized = SizedExamples(examples);
    for (const auto& [name, example] : sized) RegisterConversions(name, example);
    benchmark::RegisterBenchmark("Threads/Everything",
                                 [&examples](benchmark::State& s) { Everything(s, examples); })
        ->Threads(1)
        ->Threads(2)
        ->UseRealTime();

    int count_args = static_cast<int>(args.size());
    benchmark::Initialize(&count_args, args.data());
    if (benchmark::ReportUnrecognizedArguments(count_args, args.data())) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
