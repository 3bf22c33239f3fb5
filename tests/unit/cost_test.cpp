// Bounded cost: no table or F5 text a device could send makes a conversion take time or memory out
// of proportion to it. Each hostile input runs in a child process of its own, so that its peak
// memory is measured alone; and a merge that refuses early never refuses a text that fits.
#include "request_support.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <string>

namespace {

using support::F5Buffer;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif
#else
constexpr bool kSanitized = false;
#endif

// What one conversion answered and what it cost.
struct Outcome {
    int result = 0;
    bool bufferUnchanged = false;
    std::size_t outputBytes = 0;  // the envelope's length, for Serialize
    double seconds = 0;
    long peakKb = 0;  // the peak resident memory the conversion added
    bool ran = false;
};

// Runs the conversion in a child process and reports its answer and cost. The inputs are made in
// this process, before the child starts, so they are not counted.
Outcome Measure(const std::function<Outcome()>& convert) {
    int pipeEnds[2];
    if (pipe(pipeEnds) != 0) return {};
    const pid_t child = fork();
    if (child == 0) {
        close(pipeEnds[0]);
        rusage before{};
        getrusage(RUSAGE_SELF, &before);
        const auto start = std::chrono::steady_clock::now();
        Outcome outcome = convert();
        outcome.seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        rusage after{};
        getrusage(RUSAGE_SELF, &after);
        outcome.peakKb = after.ru_maxrss - before.ru_maxrss;
        outcome.ran = true;
        const ssize_t wrote = write(pipeEnds[1], &outcome, sizeof outcome);
        _exit(wrote == static_cast<ssize_t>(sizeof outcome) ? 0 : 1);
    }
    close(pipeEnds[1]);
    Outcome outcome;
    const ssize_t got = read(pipeEnds[0], &outcome, sizeof outcome);
    close(pipeEnds[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (got != static_cast<ssize_t>(sizeof outcome)) outcome.ran = false;
    return outcome;
}

// Deserialize of the table into an F5 buffer of exactly the capacity, holding the text.
Outcome Merge(const char* section, const std::string& table, const std::string& f5,
              std::size_t capacity) {
    F5Buffer buffer(f5, capacity);
    const std::vector<char> before = buffer.bytes;
    Outcome outcome;
    outcome.result = buffer.Merge(section, table);
    outcome.bufferUnchanged = buffer.bytes == before;
    return outcome;
}

// Serialize of the F5 text.
Outcome Packet(const char* section, const std::string& f5) {
    Outcome outcome;
    const support::Envelope envelope = support::Packet(section, f5.c_str(), PROTOFIX_MODE_TEXT);
    outcome.result = envelope.result() ? 1 : 0;
    outcome.outputBytes = envelope.text.size();
    return outcome;
}

std::string Repeated(const std::string& item, std::size_t count) {
    std::string text;
    text.reserve((item.size() + 1) * count);
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0) text += ',';
        text += item;
    }
    return text;
}

std::string MotionTable(long long col, std::size_t rows) {
    return "{\"Col\":" + std::to_string(col) + ",\"Region\":[" + Repeated("0", rows) + "]}";
}

std::string LimitTable(std::size_t channels) {
    return "[{\"Channels\":[" + Repeated("{}", channels) + "]}]";
}

constexpr const char* kMotionText = "{\"MotionDetect\":{\"En\":1,\"Region\":[]}}";
constexpr const char* kLimitText = "{\"NAS\":{\"ChnTime\":[],\"FileLen\":60}}";

struct HostileCase {
    const char* name;
    std::string table;  // empty for a Serialize case
    std::string f5;
    std::size_t capacity;
    int result;
    double seconds;  // bounds without sanitizers
    long megabytes;
};

void PrintTo(const HostileCase& c, std::ostream* out) {
    *out << c.name << " of " << c.table.size() + c.f5.size() << " bytes";
}

class HostileInput : public ::testing::TestWithParam<HostileCase> {};

// A refusal comes back as soon as it is certain, with the buffer as it was; a text-mode Serialize
// writes in proportion to its text. The bounds are generous, and far below what building the
// whole merged text before refusing it costs (tens of seconds and gigabytes).
TEST_P(HostileInput, CostsInProportionToTheInput) {
    const HostileCase& c = GetParam();
    const Outcome outcome = Measure([&] {
        return c.table.empty() ? Packet("RemoteStorageLimit", c.f5)
                               : Merge(c.name, c.table, c.f5, c.capacity);
    });
    ASSERT_TRUE(outcome.ran) << "the conversion ended its process";
    EXPECT_EQ(outcome.result, c.result);
    if (!c.table.empty()) {
        EXPECT_TRUE(outcome.bufferUnchanged);
    }
    // The sanitizers slow every allocation and keep freed memory in quarantine.
    EXPECT_LT(outcome.seconds, c.seconds * (kSanitized ? 10 : 1));
    if (!kSanitized) {
        EXPECT_LT(outcome.peakKb, c.megabytes * 1024);
    }
}

// The F5 text of a 100,000-channel schedule: one channel of the widest time texts the scan lets
// through and the largest enable words, then channels that repeat it from two bytes each.
std::string WidestSchedule(std::size_t channels) {
    const std::string span = "\"-9:-9:-9--9:-9:-9\"";
    const std::string day =
        "{\"Time0\":" + span + ",\"Time1\":" + span + ",\"En0\":-2147483648,\"En1\":-2147483648}";
    return "{\"NAS\":{\"ChnTime\":[[" + Repeated(day, 7) + "]," + Repeated("1", channels) + "]}}";
}

INSTANTIATE_TEST_SUITE_P(
    Merges, HostileInput,
    ::testing::Values(
        // Rows as wide as "Col" says: one fits the buffer, two do not.
        HostileCase{"MotionDetect", MotionTable(100000, 20000), kMotionText, 100002, -1, 1, 100},
        HostileCase{"MotionDetect", MotionTable(1000000, 50000), kMotionText, 100002, -1, 1, 100},
        // Seven day objects for every channel of the table.
        HostileCase{"RemoteStorageLimit", LimitTable(100000), kLimitText, 5633, -1, 1, 100},
        HostileCase{"RemoteStorageLimit", LimitTable(1000000), kLimitText, 5633, -1, 4, 400}),
    [](const ::testing::TestParamInfo<HostileCase>& info) {
        return std::string(info.param.name) + std::to_string(info.index);
    });

INSTANTIATE_TEST_SUITE_P(Packets, HostileInput,
                         ::testing::Values(HostileCase{"RemoteStorageLimit", "",
                                                       WidestSchedule(20000), 0, 1, 2, 250}),
                         [](const ::testing::TestParamInfo<HostileCase>& info) {
                             return std::string(info.param.name) + std::to_string(info.index);
                         });

// The schedule's table is at most 250 bytes of envelope per byte of F5 text, however the text
// is made (docs/reliability.md).
TEST(HostileInput, ScheduleEnvelopeIsBoundedByTheText) {
    const std::string f5 = WidestSchedule(2000);
    const Outcome outcome = Packet("RemoteStorageLimit", f5);
    EXPECT_EQ(outcome.result, 1);
    EXPECT_GT(outcome.outputBytes, 200 * f5.size());  // the shape is the widest there is
    EXPECT_LE(outcome.outputBytes, 250 * f5.size());
}

// The merged text's length with room to spare, then the same merge at that capacity and one
// byte less: an early refusal never refuses a text that fits.
void ExpectRefusedOnlyWhenTooLong(const char* section, const std::string& table,
                                  const std::string& f5) {
    F5Buffer roomy(f5, 1 << 20);
    ASSERT_EQ(roomy.Merge(section, table), 1);
    const std::string merged = roomy.Text();

    F5Buffer exact(f5, merged.size());
    EXPECT_EQ(exact.Merge(section, table), 1) << table.substr(0, 80);
    // The capacity rule: a text as long as the buffer loses its last character, the newline.
    EXPECT_EQ(std::string(exact.bytes.begin(), exact.bytes.end() - 1),
              merged.substr(0, merged.size() - 1));

    F5Buffer tight(f5, merged.size() - 1);
    const std::vector<char> before = tight.bytes;
    EXPECT_EQ(tight.Merge(section, table), -1);
    EXPECT_EQ(tight.bytes, before);
}

TEST(EarlyRefusal, MotionGridFitsExactly) {
    // The rows' texts are nearly all of the merged text: wide rows, many of them, a bare section.
    for (const long long col : {0LL, 1LL, 33LL, 4000LL}) {
        for (const std::size_t rows : {1u, 64u}) {
            SCOPED_TRACE("Col " + std::to_string(col) + ", " + std::to_string(rows) + " rows");
            ExpectRefusedOnlyWhenTooLong("MotionDetect", MotionTable(col, rows),
                                         "{\"MotionDetect\":{}}");
        }
    }
}

TEST(EarlyRefusal, StorageScheduleFitsExactly) {
    for (const std::size_t channels : {1u, 16u, 200u}) {
        SCOPED_TRACE(std::to_string(channels) + " channels");
        ExpectRefusedOnlyWhenTooLong("RemoteStorageLimit", LimitTable(channels), "{}");
    }
}

// A row of the wrong kind after the rows that cannot fit still throws, as it did when every row
// was written before the capacity was checked.
TEST(EarlyRefusal, RowsAfterTheRefusalAreStillRead) {
    F5Buffer buffer(kMotionText, 200);
    EXPECT_THROW(buffer.Merge("MotionDetect", "{\"Col\":150,\"Region\":[1,2,\"x\"]}"),
                 Json::Exception);
    F5Buffer limits(kLimitText, 100);
    EXPECT_THROW(limits.Merge("RemoteStorageLimit", "[{\"Channels\":[{},{}],\"Interval\":\"x\"}]"),
                 Json::Exception);
}

}  // namespace
