// The dispatch reaches every section by its name in any case, and objects on several threads give
// what one thread gives.
#include "request_support.h"

#include <describe/describe.h>

#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace {

struct Row {
    const char* name;
    std::size_t recordSize;  // 0 for a section of F5 text only
    unsigned modes;
};

const std::vector<Row>& Rows() {
    static const std::vector<Row> rows = {
#define PROTOFIX_SECTION(name, suffix, record, modes) \
    {name, protofix::describe::kRecordSize<record>, (modes)},
#include <protofix/sections.def>
    };
    return rows;
}

std::string Spelled(const char* name, int how) {
    std::string text = name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        const bool upper = how == 0 || (how == 2 && i % 2 == 0);
        text[i] = static_cast<char>(upper ? std::toupper(c) : std::tolower(c));
    }
    return text;
}

// One conversion each way of a section, on a record (or F5 text) of its own; the envelope and
// the converted bytes, for comparison between runs.
struct Outcome {
    std::string envelope;
    int result = 0;
    std::vector<unsigned char> bytes;
};

Outcome Convert(const Row& row) {
    const bool textOnly = row.recordSize == 0;
    std::vector<unsigned char> record(textOnly ? 64 : row.recordSize);
    for (std::size_t i = 0; i < record.size(); ++i)
        record[i] = static_cast<unsigned char>(i * 7 + 1);
    if (textOnly) std::strcpy(reinterpret_cast<char*>(record.data()), "{}");
    PROTOCOL_FIX_INFO info =
        support::Info(row.name, textOnly ? PROTOFIX_MODE_TEXT : PROTOFIX_MODE_RECORD);
    info.input = record.data();
    info.inputLength = static_cast<int>(record.size());
    info.output = record.data();
    info.outputLength = static_cast<int>(record.size());
    CReqConfigProtocolFix request;
    request.SetRequestInfo(info);
    Outcome run;
    int len = 0;
    const char* text = request.Serialize(len);
    run.envelope.assign(text, static_cast<std::size_t>(len));
    const std::string table =
        Json::FastWriter().write(support::ParseJson(run.envelope)["params"]["table"]);
    try {
        run.result = request.Deserialize(table.c_str(), 0);
    } catch (const Json::Exception&) {
        run.result = 2;  // a value of a kind the section reads otherwise: the same on every run
    }
    run.bytes = record;
    return run;
}

TEST(Dispatch, EveryNameInAnyCaseReachesItsSection) {
    EXPECT_EQ(Rows().size(), 52u);
    for (const Row& row : Rows()) {
        for (int how = 0; how < 3; ++how) {
            const std::string name = Spelled(row.name, how);
            // A mode that no section accepts is refused (-1) by a section, never 0 (no match).
            auto record = std::vector<unsigned char>(row.recordSize + 1);
            EXPECT_EQ(support::Parse(name.c_str(), "{}", record.data(),
                                     static_cast<int>(record.size()), 2),
                      -1)
                << name;
            // Serialize reaches the section: a record (or an empty F5 text) converts.
            Row spelled = row;
            spelled.name = name.c_str();
            const Json::Value envelope = support::ParseJson(Convert(spelled).envelope);
            EXPECT_TRUE(envelope["result"].asBool()) << name;
        }
    }
}

// Each thread has its own request objects; every section converts as it does on one thread.
TEST(Threads, ObjectsOnSeveralThreadsConvertAsOneThreadDoes) {
    std::vector<Outcome> expected;
    for (const Row& row : Rows()) expected.push_back(Convert(row));

    constexpr int kThreads = 4;
    constexpr int kRounds = 5;
    std::vector<int> mismatches(kThreads, 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < kRounds; ++round) {
                for (std::size_t i = 0; i < Rows().size(); ++i) {
                    const Outcome run = Convert(Rows()[i]);
                    if (run.envelope != expected[i].envelope || run.result != expected[i].result ||
                        run.bytes != expected[i].bytes) {
                        ++mismatches[static_cast<std::size_t>(t)];
                    }
                }
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (int t = 0; t < kThreads; ++t)
        EXPECT_EQ(mismatches[static_cast<std::size_t>(t)], 0) << "thread " << t;
}

}  // namespace
