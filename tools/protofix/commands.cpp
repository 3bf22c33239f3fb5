#include "commands.h"

#include "losses.h"
#include "section_table.h"
#include "view_format.h"

#include <describe/describe.h>
#include <protofix/protofix.h>

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstring>
#include <optional>
#include <vector>

namespace protofix::tool {
namespace {

using protofix::describe::Descriptor;
using Bytes = std::vector<unsigned char>;

// ---- refusals ----------------------------------------------------------------------------------

Failure UnknownSection(const std::string& name) {
    return {kRefused, "unknown section \"" + name + "\"; 'protofix sections' lists them"};
}

// The refusal that a section's accepted modes explain, if they explain it.
bool ModeRefusal(const Options& options, const Section& section, Failure& failure) {
    const bool textMode = !options.f5.empty();
    if (textMode && !section.AcceptsText()) {
        failure = {kRefused, DisplayName(options.f5) + ": section " + section.name +
                                 " does not accept F5 text (it converts records only)"};
        return true;
    }
    if (!textMode && (!section.HasRecord() || !section.AcceptsRecord())) {
        failure = {kRefused, std::string("section ") + section.name +
                                 " converts F5 text only; give the device's text with --f5"};
        return true;
    }
    return false;
}

Failure TableRefused(const std::string& path, const Section& section,
                     const std::string& hint = "") {
    return {kRefused, DisplayName(path) + ": section " + section.name +
                          " refused the table (a key it requires is missing or holds a value it "
                          "refuses)" +
                          hint};
}

bool SameIgnoringCase(const std::string& a, const std::string& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) ==
                      std::tolower(static_cast<unsigned char>(y));
           });
}

// The table's keys that the section does not know, set against the keys it writes itself.
std::string KeysHint(const Json::Value& table, const Json::Value& known) {
    if (!table.isObject() || !known.isObject()) return "";
    std::string hint;
    for (const std::string& key : table.getMemberNames()) {
        if (known.isMember(key)) continue;
        std::string like;
        for (const std::string& name : known.getMemberNames()) {
            if (SameIgnoringCase(name, key)) like = name;
        }
        hint += "; \"" + key + "\" is not a key of the section" +
                (like.empty() ? "" : " (\"" + like + "\" is)");
    }
    return hint;
}

// ---- the request --------------------------------------------------------------------------------

int ClampToInt(std::size_t n) {
    return n > static_cast<std::size_t>(INT_MAX) ? INT_MAX : static_cast<int>(n);
}

// The request options of one run; WithDefault gives the same run without one of them.
struct Settings {
    int channel = 0;
    unsigned int id = 0;
    int standard = PROTOFIX_STANDARD_PAL;
    int subMode = 0;
    const std::string* current = nullptr;  // the device's current reply, or none

    Settings WithDefault(const std::string& option) const {
        Settings settings = *this;
        if (option == "--channel") settings.channel = 0;
        if (option == "--id") settings.id = 0;
        if (option == "--standard") settings.standard = PROTOFIX_STANDARD_PAL;
        if (option == "--sub-mode") settings.subMode = 0;
        if (option == "--current") settings.current = nullptr;
        return settings;
    }
};

// One section of the library, run as the settings say, in record or text mode.
class Request {
public:
    Request(const char* name, bool textMode, const Settings& settings)
        : m_name(name), m_textMode(textMode), m_settings(settings) {}

    // Deserialize: the table onto the bytes (a record, or an F5 buffer of their size). The
    // library's answer; its exceptions pass.
    int Parse(const std::string& tableText, Bytes& bytes) const {
        PROTOCOL_FIX_INFO info = Info();
        info.output = bytes.empty() ? nullptr : bytes.data();
        info.outputLength = ClampToInt(bytes.size());
        CReqConfigProtocolFix request;
        request.SetRequestId(m_settings.id);
        request.SetRequestInfo(info);
        return request.Deserialize(tableText.c_str(), ClampToInt(tableText.size()));
    }

    // Serialize: the record (or the NUL-terminated F5 text) to the envelope; empty when the
    // library gave none. Its exceptions pass.
    std::string Packet(const Bytes& input) const {
        PROTOCOL_FIX_INFO info = Info();
        Bytes copy = input;
        if (m_textMode) copy.push_back(0);
        info.input = copy.empty() ? nullptr : copy.data();
        info.inputLength = ClampToInt(input.size());
        // "VideoInOptions" takes its record from the output slot on this side too.
        if (!m_textMode) info.output = info.input;
        CReqConfigProtocolFix request;
        request.SetRequestId(m_settings.id);
        request.SetRequestInfo(info);
        int length = 0;
        const char* envelope = request.Serialize(length);
        return envelope != nullptr ? std::string(envelope, static_cast<std::size_t>(length))
                                   : std::string();
    }

    Request WithDefault(const std::string& option) const {
        return Request(m_name, m_textMode, m_settings.WithDefault(option));
    }

private:
    PROTOCOL_FIX_INFO Info() const {
        PROTOCOL_FIX_INFO info;
        std::memset(&info, 0, sizeof info);
        info.mode = m_textMode ? PROTOFIX_MODE_TEXT : PROTOFIX_MODE_RECORD;
        info.name = m_name;
        info.channel = m_settings.channel;
        info.videoStandard = m_settings.standard;
        info.subMode = m_settings.subMode;
        info.current = m_settings.current != nullptr ? m_settings.current->c_str() : nullptr;
        return info;
    }

    const char* m_name;
    bool m_textMode;
    Settings m_settings;
};

Settings SettingsOf(const Options& options, const std::string* current) {
    Settings settings;
    settings.channel = options.channel;
    settings.id = options.id;
    settings.standard = options.standard;
    settings.subMode = options.subMode;
    settings.current = current;
    return settings;
}

bool Given(const Options& options, const char* option) {
    return std::find(options.given.begin(), options.given.end(), option) != options.given.end();
}

// ---- reading ------------------------------------------------------------------------------------

bool ReadJson(const Options& options, const std::string& path, std::string& text,
              Json::Value& value, Failure& failure) {
    return ReadInput(path, options.maxInput, text, failure) &&
           ParseJsonText(path, text, value, failure);
}

// The envelope that serialize prints, {"params":{"table":...},"result":...,...}.
bool IsEnvelope(const Json::Value& value) {
    if (!value.isObject() || !value["params"].isObject() || !value["params"].isMember("table")) {
        return false;
    }
    for (const std::string& name : value.getMemberNames()) {
        if (name != "params" && name != "result" && name != "channel" && name != "id") return false;
    }
    return value["params"].size() == 1;
}

// The table to convert: the file's JSON, or the table of the envelope it holds.
bool ReadTable(const Options& options, const std::string& path, std::string& text,
               Json::Value& table, Failure& failure, Warnings& warnings) {
    if (!ReadJson(options, path, text, table, failure)) return false;
    if (!IsEnvelope(table)) return true;
    if (table["result"].isBool() && !table["result"].asBool()) {
        warnings.push_back(DisplayName(path) +
                           ": the envelope's \"result\" is false: its table "
                           "is what a refusing section left");
    }
    const Json::Value inner = table["params"]["table"];
    table = inner;
    text = Json::FastWriter().write(table);
    return true;
}

// A record given in hex starts with a hex digit; a named-field view, being a JSON object, never
// does.
bool LooksLikeHex(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    return first != std::string::npos && std::isxdigit(static_cast<unsigned char>(text[first]));
}

// The descriptor that gives the section's record its named-field view, or a failure saying that
// only --hex can carry this record.
const Descriptor* ViewOf(const Section& section, Failure& failure) {
    const Descriptor* descriptor = protofix::describe::FindDescriptor(section.record);
    if (descriptor == nullptr) {
        failure = {kBadInput, std::string("record ") + section.record + " of section " +
                                  section.name + " has no named-field view; use --hex"};
    }
    return descriptor;
}

// Applies the record given at path to the record, which holds the section's record size: its
// raw bytes in hex when hexOnly is set or the text looks like hex, else its named-field view.
bool ApplyRecord(const Options& options, const Section& section, const std::string& path,
                 bool hexOnly, Bytes& record, Failure& failure) {
    std::string text;
    if (!ReadInput(path, options.maxInput, text, failure)) return false;
    if (hexOnly || LooksLikeHex(text)) {
        return ParseHexRecord(path, text, record.size(), section.record, record, failure);
    }
    const Descriptor* descriptor = ViewOf(section, failure);
    Json::Value view;
    if (descriptor == nullptr || !ParseJsonText(path, text, view, failure)) return false;
    std::string error;
    if (!protofix::describe::FromJson(*descriptor, view, record.data(), error)) {
        failure = {kBadInput,
                   DisplayName(path) + ": not a view of " + section.record + ": " + OneLine(error)};
        return false;
    }
    return true;
}

// ---- writing ------------------------------------------------------------------------------------

std::string FormatJson(const Json::Value& value, bool pretty) {
    return pretty ? FormatPretty(value) : Json::FastWriter().write(value);
}

// A JSON text of the library, as it is or indented.
void PrintJsonText(const std::string& text, bool pretty, std::ostream& out) {
    Json::Value value;
    Json::Reader reader;
    if (pretty && reader.parse(text, value, false)) {
        out << FormatPretty(value);
        return;
    }
    out << text;
    if (text.empty() || text.back() != '\n') out << '\n';
}

void PrintRecord(const Options& options, const Section& section, const Bytes& record,
                 std::ostream& out) {
    if (options.hex) {
        out << FormatHex(record);
        return;
    }
    // The descriptor was found before the conversion ran.
    const Descriptor* descriptor = protofix::describe::FindDescriptor(section.record);
    const auto style = options.raw ? protofix::describe::TimeSections::Raw
                                   : protofix::describe::TimeSections::Text;
    Json::Value view = protofix::describe::ToJson(*descriptor, record.data(), style);
    for (const std::string& field : options.without) view.removeMember(field);
    out << FormatView(*descriptor, view);
}

// The text in an F5 buffer: up to its NUL, never past its end (the capacity rule may leave none).
std::string BufferText(const Bytes& buffer) {
    const auto* text = reinterpret_cast<const char*>(buffer.data());
    return std::string(text, strnlen(text, buffer.size()));
}

Json::Value EnvelopeTable(const std::string& envelope, bool* result = nullptr) {
    Json::Value root;
    Json::Reader reader;
    if (!reader.parse(envelope, root, false) || !root.isObject()) return Json::Value();
    if (result != nullptr) *result = root["result"].isBool() && root["result"].asBool();
    return root["params"]["table"];
}

bool HoldsOnlyNulls(const Json::Value& value) {
    if (value.isObject() || value.isArray()) {
        for (const Json::Value& element : value) {
            if (!HoldsOnlyNulls(element)) return false;
        }
        return true;
    }
    return value.isNull();
}

// ---- values of the wrong kind -------------------------------------------------------------------

// What the JSON library's complaint means, in the tool's words.
std::string ExpectedKind(const Json::Exception& e) {
    const std::string what = e.what();
    if (what.find("UInt") != std::string::npos || what.find("out of") != std::string::npos) {
        return "a number of the wrong sign or size";
    }
    if (what.find("Int") != std::string::npos || what.find("Real") != std::string::npos ||
        what.find("double") != std::string::npos) {
        return "a number was expected";
    }
    if (what.find("bool") != std::string::npos) return "true or false was expected";
    if (what.find("string") != std::string::npos) return "a text was expected";
    if (what.find("objectValue") != std::string::npos) return "an object was expected";
    if (what.find("arrayValue") != std::string::npos) return "an array was expected";
    return "another kind of value was expected";
}

void CollectLeaves(const Json::Value& value, Path& path, std::vector<Path>& leaves) {
    if ((value.isObject() || value.isArray()) && !value.empty()) {
        if (value.isObject()) {
            for (const std::string& name : value.getMemberNames()) {
                path.emplace_back(name);
                CollectLeaves(value[name], path, leaves);
                path.pop_back();
            }
        } else {
            for (Json::ArrayIndex i = 0; i < value.size(); ++i) {
                path.emplace_back(i);
                CollectLeaves(value[i], path, leaves);
                path.pop_back();
            }
        }
        return;
    }
    leaves.push_back(path);
}

// The first value of the table whose absence lets the conversion through: the one of the wrong
// kind. Empty when no single value is to blame.
std::optional<Path> Culprit(const Json::Value& table,
                            const std::function<void(const std::string&)>& run) {
    std::vector<Path> leaves;
    Path path;
    CollectLeaves(table, path, leaves);
    for (const Path& leaf : leaves) {
        try {
            run(Json::FastWriter().write(Without(table, leaf)));
            return leaf;
        } catch (const Json::Exception&) {}
    }
    return std::nullopt;
}

Failure WrongKind(const std::string& path, const Section& section, const std::optional<Path>& at,
                  const Json::Exception& e) {
    const std::string where = at ? " at " + FormatPath(*at) : "";
    return {kBadInput, DisplayName(path) + ": a value of the wrong JSON kind for section " +
                           section.name + where + " (" + ExpectedKind(e) + ")"};
}

// ---- one table converted -----------------------------------------------------------------------

struct Conversion {
    std::string tableText;
    Json::Value table;
    Bytes start;  // the record (or the F5 buffer) before the conversion
    Bytes bytes;  // and after it
    std::string oldText;
    int result = 0;
};

// Reads the inputs of deserialize and roundtrip and converts the table once.
bool Convert(const Options& options, const Section& section, const Request& request, Conversion& c,
             Failure& failure, Warnings& warnings) {
    const bool textMode = !options.f5.empty();
    if (!textMode && section.HasRecord() && !options.hex && ViewOf(section, failure) == nullptr) {
        return false;
    }
    if (!ReadTable(options, options.input, c.tableText, c.table, failure, warnings)) return false;
    if (textMode) {
        Json::Value ignored;
        if (!ReadJson(options, options.f5, c.oldText, ignored, failure)) return false;
        const std::size_t needed = c.oldText.size() + 1;
        const std::size_t capacity =
            options.capacity > 0 ? static_cast<std::size_t>(options.capacity)
                                 : std::max(static_cast<std::size_t>(kDefaultCapacity), needed);
        if (capacity < needed) {
            failure = {kBadInput,
                       DisplayName(options.f5) + ": the F5 text needs " + std::to_string(needed) +
                           " bytes with its NUL, more than --capacity " + std::to_string(capacity)};
            return false;
        }
        if (capacity > static_cast<std::size_t>(INT_MAX)) {
            failure = {kBadInput, DisplayName(options.f5) + ": the F5 text is too long"};
            return false;
        }
        c.start.assign(capacity, 0);
        std::memcpy(c.start.data(), c.oldText.c_str(), needed);
    } else if (section.HasRecord()) {
        c.start.assign(section.recordSize, 0);
        if (!options.base.empty() && !ApplyRecord(options, section, options.base, false, c.start, failure)) {
            return false;
        }
    }
    c.bytes = c.start;
    try {
        c.result = request.Parse(c.tableText, c.bytes);
    } catch (const Json::Exception& e) {
        // The device's F5 text is to blame when an empty table fails the same way.
        Bytes probe = c.start;
        bool f5Fails = false;
        try {
            if (textMode) request.Parse("{}", probe);
        } catch (const Json::Exception&) {
            f5Fails = true;
        }
        if (f5Fails) {
            failure = WrongKind(options.f5, section, std::nullopt, e);
        } else {
            const auto run = [&](const std::string& text) {
                Bytes scratch = c.start;
                request.Parse(text, scratch);
            };
            failure = WrongKind(options.input, section, Culprit(c.table, run), e);
        }
        return false;
    }
    return true;
}

// Why a table was not converted.
Failure Refusal(const Options& options, const Section& section, const Request& request,
                const Conversion& c) {
    Failure failure;
    if (c.result == 0) {
        return {kRefused, DisplayName(options.input) +
                              ": no section of the library took the table for " + section.name};
    }
    if (ModeRefusal(options, section, failure)) return failure;
    if (options.f5.empty()) {
        // The keys the section knows are those it writes from a record.
        Json::Value known;
        try {
            known = EnvelopeTable(request.Packet(c.start));
        } catch (const Json::Exception&) {}
        return TableRefused(options.input, section, KeysHint(c.table, known));
    }
    // In text mode: when the same merge converts with room to spare, the text outgrew the buffer.
    const std::size_t roomy = std::min<std::size_t>(
        8 * (c.oldText.size() + c.tableText.size()) + 4096, static_cast<std::size_t>(INT_MAX));
    if (roomy <= c.start.size()) return TableRefused(options.input, section);
    Bytes buffer(roomy, 0);
    std::memcpy(buffer.data(), c.oldText.c_str(), c.oldText.size() + 1);
    try {
        if (request.Parse(c.tableText, buffer) != 1) return TableRefused(options.input, section);
    } catch (const Json::Exception&) {
        return TableRefused(options.input, section);
    }
    const std::size_t needed = BufferText(buffer).size();
    return {kRefused, DisplayName(options.f5) + ": the merged F5 text is " +
                          std::to_string(needed) + " bytes, more than --capacity " +
                          std::to_string(c.start.size()) + " holds (give --capacity " +
                          std::to_string(needed) + " or more)"};
}

// The table given against the table that the converted record (or F5 text) gives back.
std::vector<Loss> LossesOf(const Options& options, const Request& request, const Conversion& c) {
    const bool textMode = !options.f5.empty();
    Bytes converted = c.bytes;
    if (textMode) {
        const std::string text = BufferText(c.bytes);
        converted.assign(text.begin(), text.end());
    }
    Json::Value back;
    try {
        back = EnvelopeTable(request.Packet(converted));
    } catch (const Json::Exception&) {
        back = Json::Value();
    }
    const auto unread = [&](const Path& path) {
        Bytes bytes = c.start;
        try {
            const std::string text = Json::FastWriter().write(Without(c.table, path));
            return request.Parse(text, bytes) == c.result && bytes == c.bytes;
        } catch (const Json::Exception&) {
            return false;
        }
    };
    return FindLosses(c.table, back, unread);
}

// The request options that change nothing in this conversion.
void WarnUnusedOptions(const Options& options, const Section& section, const Request& request,
                       std::initializer_list<const char*> candidates,
                       const std::function<bool(const Request&)>& sameAs, Warnings& warnings) {
    for (const char* option : candidates) {
        if (!Given(options, option)) continue;
        if (sameAs(request.WithDefault(option))) {
            warnings.push_back(std::string(option) + " made no difference to section " +
                               section.name);
        }
    }
}

// The common part of deserialize and roundtrip: the section, the current reply it may read, the
// request and the table converted. False, with failure, when any of them fails or the section
// refuses the table.
bool ConvertTable(const Options& options, std::string& current, const Section*& section,
                  std::optional<Request>& request, Conversion& c, Failure& failure,
                  Warnings& warnings) {
    section = FindSection(options.section);
    if (section == nullptr) {
        failure = UnknownSection(options.section);
        return false;
    }
    Json::Value ignored;
    if (!options.current.empty() && !ReadJson(options, options.current, current, ignored, failure)) {
        return false;
    }
    request.emplace(section->name, !options.f5.empty(),
                    SettingsOf(options, options.current.empty() ? nullptr : &current));
    if (!Convert(options, *section, *request, c, failure, warnings)) return false;
    if (c.result != 1) {
        failure = Refusal(options, *section, *request, c);
        return false;
    }
    return true;
}

std::string Into(const Options& options) {
    return options.f5.empty() ? "the record" : "the F5 text";
}

}  // namespace

Status View(const Options& options, std::ostream& out, Failure& failure) {
    const Section* section = FindSection(options.section);
    if (section == nullptr) {
        failure = UnknownSection(options.section);
        return failure.status;
    }
    if (!section->HasRecord()) {
        failure = {kRefused,
                   std::string("section ") + section->name + " has no record (F5 text only)"};
        return failure.status;
    }
    if (ViewOf(*section, failure) == nullptr) return failure.status;
    Bytes record(section->recordSize, 0);
    if (!ApplyRecord(options, *section, options.input, false, record, failure)) return failure.status;
    const Descriptor* descriptor = protofix::describe::FindDescriptor(section->record);
    for (const std::string& field : options.without) {
        const bool named = std::any_of(descriptor->fields.begin(), descriptor->fields.end(),
                                       [&](const auto& f) { return f.name == field; });
        if (!named) {
            failure = {kBadInput,
                       "--without " + field + ": " + section->record + " has no such field"};
            return failure.status;
        }
    }
    PrintRecord(options, *section, record, out);
    return kConverted;
}

Status Serialize(const Options& options, std::ostream& out, Failure& failure, Warnings& warnings) {
    const Section* section = FindSection(options.section);
    const bool textMode = !options.f5.empty();

    std::string current;
    Json::Value ignored;
    if (section != nullptr && !options.current.empty() &&
        !ReadJson(options, options.current, current, ignored, failure)) {
        return failure.status;
    }
    const Settings settings = SettingsOf(options, options.current.empty() ? nullptr : &current);

    // An unknown section is still handed to the library, which answers with an envelope whose
    // "result" is false; nothing is read for it.
    Bytes input;
    if (section != nullptr && textMode) {
        std::string f5Text;
        if (!ReadJson(options, options.f5, f5Text, ignored, failure)) return failure.status;
        input.assign(f5Text.begin(), f5Text.end());
    } else if (section != nullptr && section->HasRecord()) {
        input.assign(section->recordSize, 0);
        if (!ApplyRecord(options, *section, options.input, options.hex, input, failure)) {
            return failure.status;
        }
    }

    const char* name = section != nullptr ? section->name : options.section.c_str();
    const Request request(name, textMode, settings);
    std::string envelope;
    try {
        envelope = request.Packet(input);
    } catch (const Json::Exception& e) {
        // Only the F5 text holds values of a kind the section may read wrongly.
        failure = WrongKind(options.f5, *section, std::nullopt, e);
        return failure.status;
    }
    if (envelope.empty()) {
        failure = {kRefused, "the request envelope could not be written"};
        return failure.status;
    }
    bool converted = false;
    const Json::Value table = EnvelopeTable(envelope, &converted);
    if (options.tableOnly) {
        out << FormatJson(table, options.pretty);
    } else {
        PrintJsonText(envelope, options.pretty, out);
    }
    if (converted) {
        if (textMode && HoldsOnlyNulls(table)) {
            warnings.push_back(DisplayName(options.f5) +
                               ": the F5 text holds nothing for section " + section->name +
                               " (every value of the table is null)");
        }
        WarnUnusedOptions(
            options, *section, request, {"--standard", "--sub-mode", "--current"},
            [&](const Request& other) {
                try {
                    return EnvelopeTable(other.Packet(input)) == table;
                } catch (const Json::Exception&) {
                    return false;
                }
            },
            warnings);
        return kConverted;
    }

    if (section == nullptr) {
        failure = UnknownSection(options.section);
    } else if (ModeRefusal(options, *section, failure)) {
        // failure says which mode the section does not accept
    } else if (textMode) {
        failure = {kRefused,
                   DisplayName(options.f5) + ": section " + section->name + " refused the F5 text"};
    } else {
        failure = {kRefused, DisplayName(options.input) + ": section " + section->name +
                                 " refused the record"};
    }
    return failure.status;
}

Status Deserialize(const Options& options, std::ostream& out, Failure& failure,
                   Warnings& warnings) {
    std::string current;
    std::optional<Request> request;
    const Section* section = nullptr;
    Conversion c;
    if (!ConvertTable(options, current, section, request, c, failure, warnings)) {
        return failure.status;
    }
    const bool textMode = !options.f5.empty();

    if (textMode) {
        PrintJsonText(BufferText(c.bytes), options.pretty, out);
    } else {
        PrintRecord(options, *section, c.bytes, out);
    }

    for (const Loss& loss : LossesOf(options, *request, c)) {
        const std::string at = DisplayName(options.input) + ": " + FormatPath(loss.path);
        if (loss.kind == Loss::kNotRead) {
            const bool zeroStart = !textMode && options.base.empty();
            warnings.push_back(at + ": not read by section " + section->name +
                               (zeroStart ? " (the record started as zeros: give --base to name "
                                            "what the section reads)"
                                          : ""));
        } else if (loss.kind == Loss::kChanged) {
            warnings.push_back(at + ": " + Brief(loss.before) + " became " + Brief(loss.after) +
                               " in " + Into(options));
        }
    }
    if (textMode) {
        Json::Value before;
        Json::Value after;
        Json::Reader reader;
        if (reader.parse(c.oldText, before, false) &&
            reader.parse(BufferText(c.bytes), after, false) && before.isObject() &&
            after.isObject()) {
            for (const std::string& name : after.getMemberNames()) {
                if (!before.isMember(name)) {
                    warnings.push_back(DisplayName(options.f5) + ": the F5 text had no \"" + name +
                                       "\" member; the merge added one");
                }
            }
        }
    }
    WarnUnusedOptions(
        options, *section, *request, {"--channel", "--id", "--standard", "--sub-mode", "--current"},
        [&](const Request& other) {
            Bytes bytes = c.start;
            try {
                return other.Parse(c.tableText, bytes) == c.result && bytes == c.bytes;
            } catch (const Json::Exception&) {
                return false;
            }
        },
        warnings);
    return kConverted;
}

Status Roundtrip(const Options& options, std::ostream& out, Failure& failure, Warnings& warnings) {
    std::string current;
    std::optional<Request> request;
    const Section* section = nullptr;
    Conversion c;
    if (!ConvertTable(options, current, section, request, c, failure, warnings)) {
        return failure.status;
    }
    const std::vector<Loss> losses = LossesOf(options, *request, c);
    if (losses.empty()) {
        out << "nothing lost: every value of the table came back from " << Into(options) << '\n';
        return kConverted;
    }
    for (const Loss& loss : losses) {
        out << FormatPath(loss.path) << ": " << Compact(loss.before) << " -> ";
        switch (loss.kind) {
            case Loss::kNotRead: out << "(absent): not read by the section\n"; break;
            case Loss::kNotWrittenBack: out << "(absent): read, but not given back there\n"; break;
            case Loss::kChanged: out << Compact(loss.after) << '\n'; break;
        }
    }
    failure = {kRefused, DisplayName(options.input) + ": " + std::to_string(losses.size()) +
                             (losses.size() == 1 ? " value does" : " values do") +
                             " not survive the round trip through " + Into(options)};
    return kRefused;
}

}  // namespace protofix::tool
