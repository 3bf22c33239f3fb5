#include "batch.h"

#include "commands.h"
#include "names.h"
#include "section_table.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstddef>
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

// The members each command takes, as its command line takes the options of those names.
struct CommandMembers {
    const char* name;
    Command command;
    std::vector<std::string> members;
};

const std::vector<CommandMembers> kCommands = {
    {"serialize",
     Command::kSerialize,
     {"section", "command", "record", "f5", "current", "channel", "id", "standard", "sub-mode",
      "strict"}},
    {"deserialize",
     Command::kDeserialize,
     {"section", "command", "table", "f5", "base", "current", "channel", "id", "standard",
      "sub-mode", "capacity", "strict", "add-member", "raw"}},
    {"roundtrip",
     Command::kRoundtrip,
     {"section", "command", "table", "f5", "base", "current", "channel", "id", "standard",
      "sub-mode", "capacity", "strict", "add-member"}},
    {"view", Command::kView, {"section", "command", "record", "raw"}},
};

bool Takes(const CommandMembers& command, const std::string& member) {
    return std::find(command.members.begin(), command.members.end(), member) !=
           command.members.end();
}

// The commands that take a member: "deserialize, roundtrip".
std::string TakenBy(const std::string& member) {
    std::string names;
    for (const CommandMembers& command : kCommands) {
        if (Takes(command, member))
            names += (names.empty() ? "" : ", ") + std::string(command.name);
    }
    return names;
}

// Lines of a long batch before progress is shown, and between two showings.
constexpr std::size_t kProgressAfter = 5000;
constexpr std::size_t kProgressEvery = 1000;

std::string Where(std::size_t line, const std::string& member) {
    return "line " + std::to_string(line) + " \"" + member + "\"";
}

// A request's input: a string is the text itself (a record in hex, an F5 text, a reply); any other
// value is its JSON text as the line writes it. A table is always JSON: a string table is a string.
Source SourceOf(const Json::Value& value, const std::string& text, std::size_t line,
                const std::string& member) {
    Source source;
    source.name = Where(line, member);
    const auto start =
        static_cast<std::size_t>(std::max<std::ptrdiff_t>(value.getOffsetStart(), 0));
    const auto limit =
        static_cast<std::size_t>(std::max<std::ptrdiff_t>(value.getOffsetLimit(), 0));
    if (value.isString() && member != "table") {
        source.text = value.asString();
    } else if (start < limit && limit <= text.size()) {
        source.text.assign(text, start, limit - start);
        source.json = &value;
    } else {
        source.text = Json::FastWriter().write(value);
        source.json = &value;
    }
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

const CommandMembers* CommandOf(const Json::Value* word) {
    if (word == nullptr || !word->isString()) return nullptr;
    for (const CommandMembers& command : kCommands) {
        if (word->asString() == command.name) return &command;
    }
    return nullptr;
}

// The job of a request line (its text, for the inputs' own text); false, with error, for a request
// that is not one.
bool MakeJob(const Json::Value& request, const std::string& text, std::size_t line, Job& job,
             bool& strict, std::string& error) {
    if (!request.isObject()) {
        error = "line " + std::to_string(line) + ": a request is a JSON object";
        return false;
    }
    const std::vector<std::string> members = request.getMemberNames();
    for (const std::string& member : members) {
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
    if (FindSection(job.section) == nullptr) {
        error = Where(line, "section") + ": " + UnknownSection(job.section);
        return false;
    }
    const CommandMembers* command = CommandOf(reader.Find("command"));
    if (command == nullptr) {
        error = Where(line, "command") + ": expected serialize, deserialize, roundtrip or view";
        return false;
    }
    job.command = command->command;
    const bool serializes = job.command == Command::kSerialize || job.command == Command::kView;
    const char* inputName = serializes ? "record" : "table";
    const char* otherInput = serializes ? "table" : "record";
    if (reader.Find(otherInput) != nullptr) {
        error = Where(line, otherInput) + ": a " +
                (serializes ? "serialize or view" : "deserialize or roundtrip") +
                " request takes a \"" + inputName + "\"";
        return false;
    }
    // What the command line refuses as an option of another command.
    for (const std::string& member : members) {
        if (!Takes(*command, member)) {
            error = Where(line, member) + ": not a member of a " + command->name + " request (" +
                    TakenBy(member) + " take it)";
            return false;
        }
    }
    if (const Json::Value* f5 = reader.Find("f5")) job.f5 = SourceOf(*f5, text, line, "f5");
    if (const Json::Value* input = reader.Find(inputName)) {
        job.input = SourceOf(*input, text, line, inputName);
    } else if (!(job.TextMode() && job.command != Command::kDeserialize)) {
        error = Where(line, inputName) + ": this request needs one";
        return false;
    }
    if (job.TextMode() && (reader.Find("base") != nullptr ||
                           (job.command == Command::kSerialize && job.input.Given()))) {
        error = Where(line, "f5") + ": goes with neither \"base\" nor a \"record\"";
        return false;
    }
    if (const Json::Value* base = reader.Find("base")) {
        job.base = SourceOf(*base, text, line, "base");
    }
    if (const Json::Value* current = reader.Find("current")) {
        job.current = SourceOf(*current, text, line, "current");
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
    if (job.addMember && !job.TextMode()) {
        error = Where(line, "add-member") + ": goes only with \"f5\"";
        return false;
    }
    return true;
}

// Reads the requests a line at a time, each at most a limit long, without holding more. It reads
// what has come (read(2), not a buffered stream that waits to fill its buffer), so that a request
// written into a pipe that stays open is answered at once.
class LineReader {
public:
    LineReader(int descriptor, std::size_t limit)
        : m_descriptor(descriptor), m_limit(limit), m_chunk(65536) {}

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

    // The error that ended the reading, or 0.
    int Error() const { return m_error; }

private:
    bool Fill() {
        m_at = 0;
        m_end = 0;
        for (;;) {
            const ssize_t got = ::read(m_descriptor, m_chunk.data(), m_chunk.size());
            if (got >= 0) {
                m_end = static_cast<std::size_t>(got);
                return got > 0;
            }
            if (errno != EINTR) {
                m_error = errno;
                return false;
            }
        }
    }

    int m_descriptor;
    std::size_t m_limit;
    std::vector<char> m_chunk;
    std::size_t m_at = 0;
    std::size_t m_end = 0;
    int m_error = 0;
};

// A JSON text on one line, without its newline.
std::string Compact(const Json::Value& value) {
    std::string text = Json::FastWriter().write(value);
    if (!text.empty() && text.back() == '\n') text.pop_back();
    return text;
}

// The result line: {"line":N,"exit":S,OUTPUT,"warnings":[...],"error":"..."}.
std::string ResultLine(std::size_t number, const Result& outcome) {
    std::string text =
        "{\"line\":" + std::to_string(number) + ",\"exit\":" + std::to_string(outcome.status);
    if (!outcome.outputName.empty() &&
        (outcome.status == kConverted || outcome.outputName == "losses")) {
        text += ",\"" + outcome.outputName + "\":" + Compact(outcome.output);
    }
    text += ",\"warnings\":[";
    for (std::size_t i = 0; i < outcome.warnings.size(); ++i) {
        text += (i == 0 ? "" : ",") + Compact(Json::Value(OneLine(outcome.warnings[i])));
    }
    text += "]";
    if (outcome.status != kConverted)
        text += ",\"error\":" + Compact(Json::Value(OneLine(outcome.error)));
    return text + "}";
}

// The request of a line: the JSON text parsed as the library parses its inputs, and nothing after
// it but blanks (a second request run into the first is not passed over).
bool ParseRequest(const std::string& line, std::size_t number, Json::Value& request,
                  Failure& failure) {
    const std::string name = "line " + std::to_string(number);
    if (!ParseJsonText(name, line, request, failure)) {
        // A request is one line: its own line number is no news.
        const std::string atLine = ": invalid JSON at line 1, column ";
        const std::size_t at = failure.message.find(atLine);
        if (at != std::string::npos) {
            failure.message.replace(at, atLine.size(), ": invalid JSON at column ");
        }
        return false;
    }
    const auto limit =
        static_cast<std::size_t>(std::max<std::ptrdiff_t>(request.getOffsetLimit(), 0));
    const std::size_t more = line.find_first_not_of(" \t\r", std::min(limit, line.size()));
    if (more != std::string::npos) {
        failure = {kBadInput, name + ": more after the request at column " +
                                  std::to_string(more + 1) + ": one request a line"};
        return false;
    }
    return true;
}

}  // namespace

int BatchLine(const std::string& line, std::size_t number, std::size_t maxInput,
              Knowledge& knowledge, std::string& result) {
    Json::Value request;
    Job job;
    job.largestCapacity = maxInput;
    job.print = false;  // a result line holds the output as JSON
    bool strict = false;
    std::string error;
    Failure failure;
    Result outcome;
    if (!ParseRequest(line, number, request, failure)) {
        outcome = Result::Failed(failure.status, failure.message);
    } else if (!MakeJob(request, line, number, job, strict, error)) {
        outcome = Result::Failed(kBadInput, error);
    } else {
        outcome = RunJob(job, knowledge);
        if (outcome.status == kConverted && strict && !outcome.warnings.empty()) {
            outcome.status = kRefused;
            outcome.error = "strict: " + std::to_string(outcome.warnings.size()) +
                            (outcome.warnings.size() == 1 ? " warning" : " warnings");
        }
    }
    result = ResultLine(number, outcome);
    return outcome.status;
}

int RunBatch(const std::string& requests, std::size_t maxLine, std::ostream& out,
             std::ostream& progress) {
    const bool standardInput = requests == kStandardInput;
    const int descriptor =
        standardInput ? STDIN_FILENO : ::open(requests.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        (void)std::fprintf(stderr, "protofix: %s: cannot open: %s\n", requests.c_str(),
                           std::strerror(errno));
        return kBadInput;
    }
    const bool showProgress = isatty(STDERR_FILENO) != 0;
    const auto start = std::chrono::steady_clock::now();
    Knowledge knowledge;
    LineReader reader(descriptor, maxLine);
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
            result = ResultLine(
                number,
                Result::Failed(kBadInput, "line " + std::to_string(number) +
                                              ": longer than the input limit of " +
                                              SizeText(maxLine) + " (--max-input raises it)"));
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
    const int error = reader.Error();
    if (!standardInput) (void)::close(descriptor);
    if (error != 0) {
        (void)std::fprintf(stderr, "protofix: %s: cannot read: %s\n", DisplayName(requests).c_str(),
                           std::strerror(error));
        return kBadInput;
    }
    return worst;
}

}  // namespace protofix::tool
