#include "batch.h"

#include "commands.h"
#include "names.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <limits>
#include <vector>

namespace protofix::tool {
namespace {

// The members a request may have: the command line's inputs and options under their names.
const std::vector<std::string> kMembers = {
    "section", "command",  "record",   "table",    "f5",     "base",       "current", "channel",
    "id",      "standard", "sub-mode", "capacity", "strict", "add-member", "raw"};

// Lines of a long batch before progress is shown, and between two showings.
constexpr std::size_t kProgressAfter = 5000;
constexpr std::size_t kProgressEvery = 1000;

std::string Where(std::size_t line, const std::string& member) {
    return "line " + std::to_string(line) + " \"" + member + "\"";
}

// A request's input: a string is the text itself (a record in hex, an F5 text, a reply); any other
// value is the JSON written compactly. A table is always JSON: a string table is a string.
Source SourceOf(const Json::Value& value, std::size_t line, const std::string& member) {
    Source source;
    source.name = Where(line, member);
    source.text =
        value.isString() && member != "table" ? value.asString() : Json::FastWriter().write(value);
    return source;
}

class RequestReader {
public:
    RequestReader(const Json::Value& request, std::size_t line)
        : m_request(request), m_line(line) {}

    const Json::Value* Find(const char* member) const {
        return m_request.find(member, member + std::strlen(member));
    }

    template <class Field>
    bool Number(const char* member, Field& field, std::vector<std::string>* given,
                std::string& error) const {
        const Json::Value* value = Find(member);
        if (value == nullptr) return true;
        const bool fits =
            value->isIntegral() &&
            (std::is_signed_v<Field> ? value->isInt64() : value->isUInt64()) &&
            (std::is_signed_v<Field> ? value->asInt64() >= std::numeric_limits<Field>::min() &&
                                           value->asInt64() <= std::numeric_limits<Field>::max()
                                     : value->asUInt64() <= std::numeric_limits<Field>::max());
        if (!fits) {
            error = Where(m_line, member) + ": expected a whole number from " +
                    std::to_string(std::numeric_limits<Field>::min()) + " to " +
                    std::to_string(std::numeric_limits<Field>::max());
            return false;
        }
        field = static_cast<Field>(std::is_signed_v<Field>
                                       ? value->asInt64()
                                       : static_cast<Json::Int64>(value->asUInt64()));
        if (given != nullptr) given->push_back(std::string("--") + member);
        return true;
    }

    bool Flag(const char* member, bool& flag, std::string& error) const {
        const Json::Value* value = Find(member);
        if (value == nullptr) return true;
        if (!value->isBool()) {
            error = Where(m_line, member) + ": expected true or false";
            return false;
        }
        flag = value->asBool();
        return true;
    }

private:
    const Json::Value& m_request;
    std::size_t m_line;
};

bool CommandOf(const Json::Value* word, Command& command) {
    if (word == nullptr || !word->isString()) return false;
    const std::string text = word->asString();
    if (text == "serialize")
        command = Command::kSerialize;
    else if (text == "deserialize")
        command = Command::kDeserialize;
    else if (text == "roundtrip")
        command = Command::kRoundtrip;
    else if (text == "view")
        command = Command::kView;
    else
        return false;
    return true;
}

// The job of a request line; false, with error, for a request that is not one.
bool MakeJob(const Json::Value& request, std::size_t line, Job& job, bool& strict,
             std::string& error) {
    if (!request.isObject()) {
        error = "line " + std::to_string(line) + ": a request is a JSON object";
        return false;
    }
    for (const std::string& member : request.getMemberNames()) {
        if (std::find(kMembers.begin(), kMembers.end(), member) == kMembers.end()) {
            error = "line " + std::to_string(line) + ": \"" + member +
                    "\" is not a member of a request" + DidYouMean(member, kMembers);
            return false;
        }
    }
    const RequestReader reader(request, line);
    const Json::Value* section = reader.Find("section");
    if (section == nullptr || !section->isString()) {
        error = Where(line, "section") + ": a section name is required";
        return false;
    }
    job.section = section->asString();
    if (!CommandOf(reader.Find("command"), job.command)) {
        error = Where(line, "command") + ": expected serialize, deserialize, roundtrip or view";
        return false;
    }
    const bool serializes = job.command == Command::kSerialize || job.command == Command::kView;
    const char* inputName = serializes ? "record" : "table";
    const char* otherInput = serializes ? "table" : "record";
    if (reader.Find(otherInput) != nullptr) {
        error = Where(line, otherInput) + ": a " +
                (serializes ? "serialize or view" : "deserialize or roundtrip") +
                " request takes a \"" + inputName + "\"";
        return false;
    }
    if (const Json::Value* f5 = reader.Find("f5")) job.f5 = SourceOf(*f5, line, "f5");
    if (const Json::Value* input = reader.Find(inputName)) {
        job.input = SourceOf(*input, line, inputName);
    } else if (!(job.TextMode() && job.command != Command::kDeserialize)) {
        error = Where(line, inputName) + ": this request needs one";
        return false;
    }
    if (job.TextMode() && (reader.Find("base") != nullptr ||
                           (job.command == Command::kSerialize && job.input.Given()))) {
        error = Where(line, "f5") + ": goes with neither \"base\" nor a \"record\"";
        return false;
    }
    if (const Json::Value* base = reader.Find("base")) job.base = SourceOf(*base, line, "base");
    if (const Json::Value* current = reader.Find("current")) {
        job.current = SourceOf(*current, line, "current");
        job.given.emplace_back("--current");
    }
    if (const Json::Value* standard = reader.Find("standard")) {
        const std::string word = standard->isString() ? standard->asString() : "";
        if (!SameIgnoringCase(word, "pal") && !SameIgnoringCase(word, "ntsc")) {
            error = Where(line, "standard") + ": expected \"pal\" or \"ntsc\"";
            return false;
        }
        job.standard =
            SameIgnoringCase(word, "ntsc") ? PROTOFIX_STANDARD_NTSC : PROTOFIX_STANDARD_PAL;
        job.given.emplace_back("--standard");
    }
    if (!reader.Number("channel", job.channel, &job.given, error) ||
        !reader.Number("id", job.id, &job.given, error) ||
        !reader.Number("sub-mode", job.subMode, &job.given, error) ||
        !reader.Number("capacity", job.capacity, nullptr, error) ||
        !reader.Flag("strict", strict, error) || !reader.Flag("add-member", job.addMember, error) ||
        !reader.Flag("raw", job.raw, error)) {
        return false;
    }
    if (reader.Find("capacity") != nullptr &&
        (!job.TextMode() || job.capacity < 1 ||
         static_cast<std::size_t>(job.capacity) > job.largestCapacity)) {
        error = Where(line, "capacity") + ": from 1 to the input limit, with \"f5\"";
        return false;
    }
    return true;
}

// Reads the requests a line at a time, each at most a limit long, without holding more.
class LineReader {
public:
    LineReader(std::FILE* file, std::size_t limit) : m_file(file), m_limit(limit), m_chunk(65536) {}

    // The next line, without its newline; false at the end. tooLong when the line was cut.
    bool Next(std::string& line, bool& tooLong) {
        line.clear();
        tooLong = false;
        bool any = false;
        for (;;) {
            if (m_at == m_end && !Fill()) return any;
            any = true;
            const char* begin = m_chunk.data() + m_at;
            const void* newline = std::memchr(begin, '\n', m_end - m_at);
            const std::size_t length =
                newline != nullptr ? static_cast<const char*>(newline) - begin : m_end - m_at;
            const std::size_t room = m_limit - std::min(m_limit, line.size());
            line.append(begin, std::min(length, room));
            tooLong = tooLong || length > room;
            m_at += length;
            if (newline != nullptr) {
                ++m_at;
                return true;
            }
        }
    }

    bool Failed() const { return std::ferror(m_file) != 0; }

private:
    bool Fill() {
        m_at = 0;
        m_end = std::fread(m_chunk.data(), 1, m_chunk.size(), m_file);
        return m_end > 0;
    }

    std::FILE* m_file;
    std::size_t m_limit;
    std::vector<char> m_chunk;
    std::size_t m_at = 0;
    std::size_t m_end = 0;
};

}  // namespace

int BatchLine(const std::string& line, std::size_t number, std::size_t largestCapacity,
              Knowledge& knowledge, std::string& text) {
    Json::Value result(Json::objectValue);
    result["line"] = Json::Value(static_cast<Json::UInt64>(number));
    Json::Value request;
    Job job;
    job.largestCapacity = largestCapacity;
    bool strict = false;
    std::string error;
    Failure failure;
    Result outcome;
    if (!ParseJsonText("line " + std::to_string(number), line, request, failure)) {
        outcome = Result::Failed(failure.status, failure.message);
    } else if (!MakeJob(request, number, job, strict, error)) {
        outcome = Result::Failed(kBadInput, error);
    } else {
        outcome = RunJob(job, knowledge);
        if (outcome.status == kConverted && strict && !outcome.warnings.empty()) {
            outcome.status = kRefused;
            outcome.error = "strict: " + std::to_string(outcome.warnings.size()) +
                            (outcome.warnings.size() == 1 ? " warning" : " warnings");
        }
    }
    result["exit"] = static_cast<int>(outcome.status);
    if (!outcome.outputName.empty() &&
        (outcome.status == kConverted || outcome.outputName == "losses")) {
        result[outcome.outputName] = outcome.output;
    }
    result["warnings"] = Json::Value(Json::arrayValue);
    for (const std::string& warning : outcome.warnings) result["warnings"].append(OneLine(warning));
    if (outcome.status != kConverted) result["error"] = OneLine(outcome.error);
    text = Json::FastWriter().write(result);
    if (!text.empty() && text.back() == '\n') text.pop_back();
    return outcome.status;
}

int RunBatch(const std::string& requests, std::size_t maxLine, std::ostream& out,
             std::ostream& progress) {
    const bool standardInput = requests == kStandardInput;
    std::FILE* file = standardInput ? stdin : std::fopen(requests.c_str(), "rb");
    if (file == nullptr) {
        std::fprintf(stderr, "protofix: %s: cannot open: %s\n", requests.c_str(),
                     std::strerror(errno));
        return kBadInput;
    }
    const bool showProgress = isatty(STDERR_FILENO) != 0;
    const auto start = std::chrono::steady_clock::now();
    Knowledge knowledge;
    LineReader reader(file, maxLine);
    std::string line;
    std::string result;
    bool tooLong = false;
    int worst = kConverted;
    std::size_t number = 0;
    std::size_t done = 0;
    while (reader.Next(line, tooLong)) {
        ++number;
        if (!tooLong && line.find_first_not_of(" \t\r") == std::string::npos) continue;
        int status = kConverted;
        if (tooLong) {
            Json::Value tooLarge;
            tooLarge["line"] = Json::Value(static_cast<Json::UInt64>(number));
            tooLarge["exit"] = static_cast<int>(kBadInput);
            tooLarge["warnings"] = Json::Value(Json::arrayValue);
            tooLarge["error"] = "line " + std::to_string(number) +
                                ": longer than the input limit of " + SizeText(maxLine) +
                                " (--max-input raises it)";
            result = Json::FastWriter().write(tooLarge);
            result.pop_back();
            status = kBadInput;
        } else {
            status = BatchLine(line, number, maxLine, knowledge, result);
        }
        out << result << '\n';
        out.flush();
        worst = std::max(worst, status);
        ++done;
        if (showProgress && done >= kProgressAfter && done % kProgressEvery == 0) {
            const double seconds =
                std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
            progress << "\rprotofix: batch: " << done << " lines, "
                     << static_cast<long long>(seconds > 0 ? done / seconds : 0) << " a second"
                     << std::flush;
        }
    }
    if (showProgress && done >= kProgressAfter) progress << '\n';
    const bool failed = reader.Failed();
    if (!standardInput) (void)std::fclose(file);
    if (failed) {
        std::fprintf(stderr, "protofix: %s: cannot read\n", DisplayName(requests).c_str());
        return kBadInput;
    }
    return worst;
}

}  // namespace protofix::tool
