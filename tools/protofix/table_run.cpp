#include "table_run.h"

#include "command_support.h"
#include "diagnosis.h"
#include "names.h"
#include "records.h"
#include "view_format.h"

#include <algorithm>

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

}  // namespace

bool TableRun::SameAs(const std::string& tableText, const Converter& converter) {
    try {
        if (!m_job.TextMode()) {
            Bytes bytes = m_start;
            return converter.Parse(tableText, bytes) == m_result && bytes == m_bytes;
        }
        m_buffer->Load(m_oldText);
        return converter.Merge(tableText, *m_buffer) == m_result && m_buffer->Text() == m_merged;
    } catch (const Json::Exception&) {
        return false;
    }
}

std::vector<Loss> TableRun::Losses(std::vector<bool>& notRead) {
    const Schema& example = m_knowledge.ExampleSchema(m_section, "table");
    m_back = Back();
    std::vector<Loss> losses = CompareTables(
        m_table, m_back, example, m_job.TextMode() ? LinkReading::kF5 : LinkReading::kRecord);
    // A shape is the section's when its example or what it gave back has it.
    for (Loss& loss : losses) {
        if (loss.kind == Loss::kAbsent && !loss.known) loss.known = ShapeOccurs(m_back, loss.shape);
    }
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
    return losses;
}

bool TableRun::NothingRead(const std::vector<Loss>& losses,
                           const std::vector<bool>& notRead) const {
    std::size_t unread = 0;
    for (std::size_t i = 0; i < losses.size(); ++i) {
        if (notRead[i]) unread += std::max<std::size_t>(Scalars(losses[i].before), 1);
    }
    const std::size_t scalars = Scalars(m_table);
    if (scalars == 0 || unread < scalars) return false;
    return m_job.TextMode() ? ParsedOrText(m_merged) == m_oldDocument : m_bytes == m_start;
}

std::string TableRun::Suggestion(const Loss& loss) const {
    const std::string* key =
        loss.path.empty() ? nullptr : std::get_if<std::string>(&loss.path.back());
    if (key == nullptr) return "";
    const Shape& shape = loss.shape;
    const std::size_t cut = shape.rfind('\0');
    const Shape parent = cut == Shape::npos ? Shape() : shape.substr(0, cut);
    std::vector<std::string> members =
        m_knowledge.ExampleSchema(m_section, "table").MembersOf(parent);
    for (const std::string& name : MembersAt(m_back, parent)) {
        if (std::find(members.begin(), members.end(), name) == members.end())
            members.push_back(name);
    }
    return DidYouMean(*key, members);
}

void TableRun::Output(Result& result) const {
    if (m_job.TextMode()) {
        result.outputName = "f5";
        result.output = ParsedOrText(m_merged);
        if (m_job.print) result.printed = FormatJsonText(m_merged, m_job.pretty);
    } else {
        result.outputName = "record";
        result.output = RecordView(m_section, m_bytes, m_job.raw);
        if (m_job.print) result.printed = PrintedRecord(m_section, m_bytes, m_job);
    }
}

bool TableRun::Read(Result& failure) {
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

bool TableRun::ReadTable(Result& failure) {
    Failure read;
    if (!ParseSource(m_job.input, m_table, read)) {
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

bool TableRun::ReadF5Text(Result& failure) {
    Failure read;
    m_oldText = m_job.f5.text;
    if (!ParseSource(m_job.f5, m_oldDocument, read)) {
        failure = Failed(read);
        return false;
    }
    std::size_t capacity = 0;
    if (!BufferCapacity(m_job, capacity, failure)) return false;
    m_buffer.emplace(capacity);
    m_buffer->Load(m_oldText);
    return true;
}

bool TableRun::Convert(Result& failure) {
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

std::string TableRun::Blame() {
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
            return WrongKind(
                m_job.f5.name, m_section,
                FindCulprit(m_oldDocument, textThrows, &m_knowledge.ExampleSchema(m_section, "f5")),
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
    return WrongKind(
        m_job.input.name, m_section,
        FindCulprit(m_table, tableThrows, &m_knowledge.ExampleSchema(m_section, "table")),
        m_knowledge.ExampleSchema(m_section, "table"));
}

std::string TableRun::KeysHint() {
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

Result TableRun::Refusal() {
    const std::string what =
        m_job.input.name + ": section " + m_section.name + " refused the table";
    if (!m_job.TextMode()) {
        Result refused = Refused(m_job, m_section, what, &m_table);
        refused.error += KeysHint();
        return refused;
    }
    // A merge refuses for a reason the tool can see, or else because the merged text outgrew the
    // buffer: the same merge with room to spare (four times the capacity, or twice the F5 text,
    // within the input limit) tells how long the text is, or that it is longer still. The room is
    // kept in proportion to the buffer, not to the table, which may be far larger.
    if (!RefusalReason(m_section, m_job, &m_table).empty()) {
        return Refused(m_job, m_section, what, &m_table);
    }
    const std::size_t capacity = m_buffer->Capacity();
    const std::size_t roomy = std::min(std::max(4 * capacity, 2 * m_oldText.size() + 4096),
                                       std::max(m_job.largestCapacity, capacity));
    std::string needed;
    if (roomy > capacity) {
        F5Buffer buffer(roomy);
        buffer.Load(m_oldText);
        try {
            if (m_converter.Merge(m_tableText, buffer) == 1) {
                needed = std::to_string(buffer.Text().size());
            }
        } catch (const Json::Exception&) {}
    }
    const std::string holds = " bytes, more than --capacity " + std::to_string(capacity) + " holds";
    return Result::Failed(
        kRefused,
        m_job.f5.name + ": the merged F5 text is " +
            (needed.empty()
                 ? "longer than " + std::to_string(roomy) + holds + " (give a larger --capacity)"
                 : needed + holds + " (give --capacity " + needed + " or more)"));
}

Json::Value TableRun::Back() const {
    try {
        return EnvelopeTable(m_job.TextMode() ? m_converter.PacketText(m_merged)
                                              : m_converter.Packet(m_bytes));
    } catch (const Json::Exception&) {
        return Json::Value();
    }
}

}  // namespace protofix::tool
