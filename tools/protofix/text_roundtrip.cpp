// roundtrip of an F5 text alone: what the device's old text loses on its way to a table and back
// into itself.
#include "command_support.h"
#include "diagnosis.h"
#include "losses.h"
#include "view_format.h"

#include <algorithm>

namespace protofix::tool {
namespace {

// The F5 text to its table and merged back into a buffer holding it; false when either step
// raised or refused, with why.
class TextRoundTrip {
public:
    TextRoundTrip(const Job& job, const Section& section, Knowledge& knowledge)
        : m_job(job),
          m_section(section),
          m_knowledge(knowledge),
          m_converter(section.name, true, Settings::Of(job)) {}

    bool Run(Result& failure) {
        Failure read;
        if (!ParseSource(m_job.f5, m_old, read)) {
            failure = Failed(read);
            return false;
        }
        if (F5Member(m_old, m_section) == nullptr) {
            failure = NoMember(m_job.f5, m_section, m_old,
                               std::string("section ") + m_section.name + " reads nothing of it",
                               m_knowledge);
            return false;
        }
        std::size_t capacity = 0;
        if (!BufferCapacity(m_job, capacity, failure)) return false;
        F5Buffer buffer(capacity);
        int answer = 0;
        std::string text;
        if (!Through(m_job.f5.text, buffer, answer, text)) {
            const auto throws = [&](const Json::Value& document) {
                int ignored = 0;
                std::string merged;
                return !Through(Json::FastWriter().write(document), buffer, ignored, merged);
            };
            failure = Result::Failed(
                kBadInput,
                WrongKind(m_job.f5.name, m_section,
                          FindCulprit(m_old, throws, &m_knowledge.ExampleSchema(m_section, "f5")),
                          m_knowledge.ExampleSchema(m_section, "f5")));
            return false;
        }
        if (answer != 1) {
            failure = Refused(m_job, m_section,
                              m_job.f5.name + ": section " + m_section.name +
                                  " did not take its own table back into the F5 text (give a "
                                  "larger --capacity if the text grew)",
                              nullptr);
            return false;
        }
        if (!Json::Reader().parse(text, m_back, false)) m_back = Json::Value(text);
        return true;
    }

    const Json::Value& Old() const { return m_old; }
    const Json::Value& Back() const { return m_back; }

private:
    // The text to its table and back; false when the library raised.
    bool Through(const std::string& text, F5Buffer& buffer, int& answer, std::string& merged) {
        try {
            bool converted = false;
            const Json::Value table = EnvelopeTable(m_converter.PacketText(text), &converted);
            if (!converted) {
                answer = -1;
                return true;
            }
            buffer.Load(text);
            answer = m_converter.Merge(Json::FastWriter().write(table), buffer);
            merged = buffer.Text();
            return true;
        } catch (const Json::Exception&) {
            return false;
        }
    }

    const Job& m_job;
    const Section& m_section;
    Knowledge& m_knowledge;
    Converter m_converter;
    Json::Value m_old;
    Json::Value m_back;
};

Result RoundtripTextJob(const Job& job, const Section& section, Knowledge& knowledge) {
    const std::string modes = ModeRefusal(job, section);
    if (!modes.empty()) return Result::Failed(kRefused, modes);
    TextRoundTrip trip(job, section, knowledge);
    Result result;
    if (!trip.Run(result)) return result;
    const std::vector<Loss> losses = CompareTexts(trip.Old(), trip.Back());
    LossReport report;
    report.nothingLost = "nothing lost: every value of the F5 text came back through the table";
    report.label = [](std::size_t) { return std::string("not given back"); };
    report.kind = report.label;
    report.error = [&](std::size_t count) {
        return job.f5.name + ": " + std::to_string(count) +
               (count == 1 ? " value of the F5 text comes" : " values of the F5 text come") +
               " back otherwise through the table";
    };
    ReportLosses(job, losses, report, result);
    return result;
}

}  // namespace

Result RoundtripJob(const Job& job, const Section& section, Knowledge& knowledge) {
    if (job.TextMode() && !job.input.Given()) return RoundtripTextJob(job, section, knowledge);
    return RoundtripTableJob(job, section, knowledge);
}

}  // namespace protofix::tool
