// deserialize and roundtrip: a table converted once into the record (or merged into the F5
// text), the table the section gives back from it, and one walk of the two.
#include "command_support.h"
#include "diagnosis.h"
#include "losses.h"
#include "names.h"
#include "records.h"
#include "view_format.h"

#include <algorithm>
#include <optional>

namespace protofix::tool {
namespace {

std::string Write(const Json::Value& value) { return Json::FastWriter().write(value); }

// Values of a table that something could be lost from: its scalars other than null.
std::size_t Scalars(const Json::Value& value) {
    if (value.isObject() || value.isArray()) {
        std::size_t count = 0;
        for (const Json::Value& element : value) count += Scalars(element);
        return count;
    }
    return value.isNull() ? 0 : 1;
}

Json::Value ParsedOrText(const std::string& text) {
    Json::Value value;
    return Json::Reader().parse(text, value, false) ? value : Json::Value(text);
}

// One table converted: read, converted once, and given back.
class TableRun {
public:
    TableRun(const Job& job, const Section& section, Knowledge& knowledge)
        : m_job(job),
          m_section(section),
          m_knowledge(knowledge),
          m_converter(section.name, job.TextMode(), Settings::Of(job)) {}

    // Reads the inputs and converts the table; false, with the result to give, when something
    // failed or the section refused.
    bool Run(Result& failure) { return Read(failure) && Convert(failure); }

    // The conversion again, of another table or with another converter: true when it gives the
    // same answer and the same output.
    bool SameAs(const std::string& tableText, const Converter& converter) {
        try {
            if (!m_job.TextMode()) {
                Bytes bytes = m_start;
                return converter.Parse(tableText, bytes) == m_result && bytes == m_bytes;
            }
            m_buffer->Load(m_oldText);
            return converter.Merge(tableText, *m_buffer) == m_result &&
                   m_buffer->Text() == m_merged;
        } catch (const Json::Exception&) {
            return false;
        }
    }

    // What was lost: one walk of the table given against the table given back. The values not
    // given back are not read when the table without them converts the same: all of them, or else
    // those of shapes the section's examples do not know (one run each at most).
    std::vector<Loss> Losses(std::vector<bool>& notRead) {
        Schema known = m_knowledge.ExampleSchema(m_section, "table");
        const Json::Value back = Back();
        known.Add(back);
        std::vector<Loss> losses = CompareTables(
            m_table, back, known, m_job.TextMode() ? LinkReading::kF5 : LinkReading::kRecord);
        notRead.assign(losses.size(), false);
        for (const bool unknownOnly : {false, true}) {
            std::vector<Path> absent;
            for (const Loss& loss : losses) {
                if (loss.kind == Loss::kAbsent && !(unknownOnly && loss.known)) {
                    absent.push_back(loss.path);
                }
            }
            if (absent.empty() || !SameAs(Write(Without(m_table, absent)), m_converter)) continue;
            for (std::size_t i = 0; i < losses.size(); ++i) {
                notRead[i] = losses[i].kind == Loss::kAbsent && !(unknownOnly && losses[i].known);
            }
            break;
        }
        m_known = std::move(known);
        return losses;
    }

    // True when the section read none of the table: every value of it unknown and not read, and
    // the output as it started.
    bool NothingRead(const std::vector<Loss>& losses, const std::vector<bool>& notRead) const {
        std::size_t unread = 0;
        for (std::size_t i = 0; i < losses.size(); ++i) {
            if (notRead[i]) unread += std::max<std::size_t>(Scalars(losses[i].before), 1);
        }
        const std::size_t scalars = Scalars(m_table);
        if (scalars == 0 || unread < scalars) return false;
        return m_job.TextMode() ? ParsedOrText(m_merged) == m_oldDocument : m_bytes == m_start;
    }

    // The suggestion for a key the section does not read.
    std::string Suggestion(const Loss& loss) const {
        const std::string* key =
            loss.path.empty() ? nullptr : std::get_if<std::string>(&loss.path.back());
        if (key == nullptr) return "";
        const Shape& shape = loss.shape;
        const std::size_t cut = shape.rfind('\0');
        return DidYouMean(*key,
                          m_known.MembersOf(cut == Shape::npos ? Shape() : shape.substr(0, cut)));
    }

    const Json::Value& Table() const { return m_table; }
    const std::vector<std::string>& Warnings() const { return m_warnings; }
    const std::string& TableText() const { return m_tableText; }
    const Converter& Library() const { return m_converter; }

    // The output, for the command line and for a batch.
    void Output(Result& result) const {
        if (m_job.TextMode()) {
            result.outputName = "f5";
            result.output = ParsedOrText(m_merged);
            result.printed = FormatJsonText(m_merged, m_job.pretty);
        } else {
            result.outputName = "record";
            result.output = RecordView(m_section, m_bytes, m_job.raw);
            result.printed = PrintedRecord(m_section, m_bytes, m_job);
        }
    }

private:
    bool Read(Result& failure) {
        const std::string modes = ModeRefusal(m_job, m_section);
        if (!modes.empty()) {
            failure = Result::Failed(kRefused, modes);
            return false;
        }
        Failure read;
        if (!m_job.TextMode() && !m_job.hex && ViewOf(m_section, read) == nullptr) {
            failure = Failed(read);
            return false;
        }
        if (!ReadTable(failure)) return false;
        if (m_job.TextMode()) return ReadF5Text(failure);
        m_start.assign(m_section.recordSize, 0);
        if (m_job.base.Given() && !ApplyRecord(m_section, m_job.base, false, m_start, read)) {
            failure = Failed(read);
            return false;
        }
        m_bytes = m_start;
        return true;
    }

    // The file's JSON, or the table of the envelope it holds.
    bool ReadTable(Result& failure) {
        Failure read;
        if (!ParseJsonText(m_job.input.name, m_job.input.text, m_table, read)) {
            failure = Failed(read);
            return false;
        }
        m_tableText = m_job.input.text;
        if (!IsEnvelope(m_table)) return true;
        const Json::Value& result = m_table["result"];
        const Json::Value inner = m_table["params"]["table"];
        if (inner.isNull()) {
            failure = Result::Failed(kRefused, m_job.input.name +
                                                   ": the request envelope holds no table (its "
                                                   "section refused, or no section has its name)");
            return false;
        }
        if (result.isBool() && !result.asBool()) {
            m_warnings.push_back(m_job.input.name +
                                 ": the envelope's \"result\" is false: its table is what a "
                                 "refusing section left");
        }
        m_table = inner;
        m_tableText = Write(m_table);
        return true;
    }

    bool ReadF5Text(Result& failure) {
        Failure read;
        m_oldText = m_job.f5.text;
        if (!ParseJsonText(m_job.f5.name, m_oldText, m_oldDocument, read)) {
            failure = Failed(read);
            return false;
        }
        const std::size_t needed = m_oldText.size() + 1;
        const std::size_t capacity =
            m_job.capacity > 0 ? static_cast<std::size_t>(m_job.capacity)
                               : std::max(static_cast<std::size_t>(kDefaultCapacity), needed);
        if (capacity < needed) {
            failure = Result::Failed(kBadInput, m_job.f5.name + ": the F5 text needs " +
                                                    std::to_string(needed) +
                                                    " bytes with its NUL, more than --capacity " +
                                                    std::to_string(capacity));
            return false;
        }
        m_buffer.emplace(capacity);
        m_buffer->Load(m_oldText);
        return true;
    }

    bool Convert(Result& failure) {
        try {
            m_result = m_job.TextMode() ? m_converter.Merge(m_tableText, *m_buffer)
                                        : m_converter.Parse(m_tableText, m_bytes);
        } catch (const Json::Exception&) {
            failure = Result::Failed(kBadInput, Blame());
            return false;
        }
        if (m_result != 1) {
            failure = Refusal();
            return false;
        }
        if (m_job.TextMode()) {
            m_merged = m_buffer->Text();
            if (F5Member(m_oldDocument, m_section) == nullptr && !m_job.addMember &&
                F5Member(ParsedOrText(m_merged), m_section) != nullptr) {
                failure = NoMember(m_job.f5, m_section, m_oldDocument,
                                   "the merge would add one (--add-member lets it)", m_knowledge);
                return false;
            }
        }
        return true;
    }

    // Which value raised the library's exception: one of the F5 text when an empty table raises
    // too, else one of the table.
    std::string Blame() {
        if (m_job.TextMode()) {
            const auto textThrows = [&](const Json::Value& document) {
                try {
                    m_buffer->Load(Write(document));
                    m_converter.Merge("{}", *m_buffer);
                    return false;
                } catch (const Json::Exception&) {
                    return true;
                }
            };
            if (textThrows(m_oldDocument)) {
                return WrongKind(m_job.f5.name, m_section, FindCulprit(m_oldDocument, textThrows),
                                 m_knowledge.ExampleSchema(m_section, "f5"));
            }
        }
        const auto tableThrows = [&](const Json::Value& table) {
            try {
                if (m_job.TextMode()) {
                    m_buffer->Load(m_oldText);
                    m_converter.Merge(Write(table), *m_buffer);
                } else {
                    Bytes bytes = m_start;
                    m_converter.Parse(Write(table), bytes);
                }
                return false;
            } catch (const Json::Exception&) {
                return true;
            }
        };
        return WrongKind(m_job.input.name, m_section, FindCulprit(m_table, tableThrows),
                         m_knowledge.ExampleSchema(m_section, "table"));
    }

    // The table's keys that the section does not have, with the key each most likely means.
    std::string KeysHint() {
        const Schema& known = m_knowledge.ExampleSchema(m_section, "table");
        const Json::Value& keys = m_table.isArray() && m_table.size() == 1 ? m_table[0] : m_table;
        const Shape shape = &keys == &m_table ? Shape() : ShapeElement(Shape());
        if (!keys.isObject()) return "";
        std::string hint;
        for (const std::string& key : keys.getMemberNames()) {
            if (known.Knows(ShapeChild(shape, key))) continue;
            hint += "; \"" + key + "\" is not a key of the section" +
                    DidYouMean(key, known.MembersOf(shape));
        }
        return hint;
    }

    Result Refusal() {
        const std::string what =
            m_job.input.name + ": section " + m_section.name + " refused the table";
        if (!m_job.TextMode()) {
            Result refused = Refused(m_job, m_section, what, &m_table);
            refused.error += KeysHint();
            return refused;
        }
        // When the same merge converts with room to spare, the text outgrew the buffer.
        const std::size_t roomy = std::min(
            std::max(8 * (m_oldText.size() + m_tableText.size()) + 4096, 2 * m_buffer->Capacity()),
            std::max(m_job.largestCapacity, m_buffer->Capacity()));
        if (roomy > m_buffer->Capacity()) {
            F5Buffer buffer(roomy);
            buffer.Load(m_oldText);
            try {
                if (m_converter.Merge(m_tableText, buffer) == 1) {
                    const std::size_t needed = buffer.Text().size();
                    return Result::Failed(
                        kRefused,
                        m_job.f5.name + ": the merged F5 text is " + std::to_string(needed) +
                            " bytes, more than --capacity " + std::to_string(m_buffer->Capacity()) +
                            " holds (give --capacity " + std::to_string(needed) + " or more)");
                }
            } catch (const Json::Exception&) {}
        }
        return Refused(m_job, m_section, what, &m_table);
    }

    // The table the section gives back from its output; null when it gives none.
    Json::Value Back() const {
        try {
            return EnvelopeTable(m_job.TextMode() ? m_converter.PacketText(m_merged)
                                                  : m_converter.Packet(m_bytes));
        } catch (const Json::Exception&) {
            return Json::Value();
        }
    }

    const Job& m_job;
    const Section& m_section;
    Knowledge& m_knowledge;
    Converter m_converter;
    Json::Value m_table;
    std::string m_tableText;
    Bytes m_start;
    Bytes m_bytes;
    std::string m_oldText;
    Json::Value m_oldDocument;
    std::optional<F5Buffer> m_buffer;
    std::string m_merged;
    int m_result = 0;
    Schema m_known;
    std::vector<std::string> m_warnings;
};

std::string Into(const Job& job) { return job.TextMode() ? "the F5 text" : "the record"; }

// The answer when the section read nothing of the table.
Result NothingReadResult(const Job& job, const Section& section, const TableRun& run,
                         Knowledge& knowledge) {
    const std::string looks = DescribeInput(run.Table(), section, Role::kTable, knowledge);
    return Result::Failed(kRefused, job.input.name + ": section " + section.name +
                                        " read nothing of the table" +
                                        (looks.empty() ? "" : "; it looks like " + looks));
}

// The --base hint, where a base changes what the section reads.
std::string BaseHint(const Job& job, const Section& section, Knowledge& knowledge) {
    if (job.TextMode() || job.base.Given() || knowledge.Example(section, "base").isNull())
        return "";
    return " (the record started as zeros: give --base to name what the section reads)";
}

}  // namespace

Result DeserializeJob(const Job& job, const Section& section, Knowledge& knowledge) {
    TableRun run(job, section, knowledge);
    Result result;
    if (!run.Run(result)) return result;
    std::vector<bool> notRead;
    const std::vector<Loss> losses = run.Losses(notRead);
    if (run.NothingRead(losses, notRead)) return NothingReadResult(job, section, run, knowledge);
    run.Output(result);
    result.warnings = run.Warnings();
    for (std::size_t i = 0; i < losses.size(); ++i) {
        const Loss& loss = losses[i];
        const std::string at = job.input.name + ": " + FormatPath(loss.path) + ": ";
        if (loss.kind == Loss::kChanged) {
            result.warnings.push_back(at + Brief(loss.before) + " became " + Brief(loss.after) +
                                      " in " + Into(job));
        } else if (notRead[i]) {
            result.warnings.push_back(at + "not read by section " + section.name +
                                      run.Suggestion(loss) + BaseHint(job, section, knowledge));
        } else {
            result.warnings.push_back(at + Brief(loss.before) + " does not come back from " +
                                      Into(job));
        }
    }
    WarnUnusedOptions(
        job, section, run.Library(), {"--channel", "--id", "--standard", "--sub-mode", "--current"},
        [&](const Converter& other) { return run.SameAs(run.TableText(), other); },
        result.warnings);
    return result;
}

Result RoundtripTableJob(const Job& job, const Section& section, Knowledge& knowledge) {
    TableRun run(job, section, knowledge);
    Result result;
    if (!run.Run(result)) return result;
    std::vector<bool> notRead;
    const std::vector<Loss> losses = run.Losses(notRead);
    if (run.NothingRead(losses, notRead)) return NothingReadResult(job, section, run, knowledge);
    result.warnings = run.Warnings();
    result.outputName = "losses";
    result.output = Json::Value(Json::arrayValue);
    for (std::size_t i = 0; i < losses.size(); ++i) {
        const Loss& loss = losses[i];
        Json::Value entry;
        entry["path"] = PathJson(loss.path);
        entry["before"] = loss.before;
        std::string after;
        if (loss.kind == Loss::kChanged) {
            entry["after"] = loss.after;
            entry["loss"] = "changed";
            after = Brief(loss.after);
        } else if (notRead[i]) {
            entry["loss"] = "not read";
            after = "(absent): not read by the section" + run.Suggestion(loss);
        } else {
            entry["loss"] = "not given back";
            after = "(absent): not given back";
        }
        result.output.append(entry);
        result.printed += FormatPath(loss.path) + ": " + Brief(loss.before) + " -> " + after + "\n";
    }
    if (job.json) result.printed = FormatJson(result.output, job.pretty);
    if (losses.empty()) {
        if (!job.json)
            result.printed =
                "nothing lost: every value of the table came back from " + Into(job) + "\n";
        return result;
    }
    result.status = kRefused;
    result.error = job.input.name + ": " + std::to_string(losses.size()) +
                   (losses.size() == 1 ? " value does" : " values do") +
                   " not survive the round trip through " + Into(job);
    return result;
}

}  // namespace protofix::tool
