#include "commands.h"

#include "section_table.h"
#include "view_format.h"

#include <describe/describe.h>
#include <protofix/protofix.h>

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstring>
#include <vector>

namespace protofix::tool {
namespace {

using protofix::describe::Descriptor;

Failure UnknownSection(const std::string& name) {
    return {kRefused, "unknown section \"" + name + "\"; 'protofix sections' lists them"};
}

// A text-only section asked to convert a record.
Failure NoRecordMode(const Section& section) {
    return {kRefused, std::string("section ") + section.name +
                          " converts F5 text only; give the device's text with --f5"};
}

// A record-only section asked to convert F5 text.
Failure NoTextMode(const std::string& f5Path, const Section& section) {
    return {kRefused, DisplayName(f5Path) + ": section " + section.name +
                          " does not accept F5 text (it converts records only)"};
}

// The refusal that a section's accepted modes explain, if they explain it.
bool ModeRefusal(const Options& options, const Section& section, Failure& failure) {
    const bool textMode = !options.f5.empty();
    if (textMode && !section.AcceptsText()) {
        failure = NoTextMode(options.f5, section);
        return true;
    }
    if (!textMode && (!section.HasRecord() || !section.AcceptsRecord())) {
        failure = NoRecordMode(section);
        return true;
    }
    return false;
}

Failure WrongKind(const std::string& path, const char* section, const Json::Exception& e) {
    return {kBadInput, DisplayName(path) + ": a value of the wrong JSON kind for section " +
                           section + ": " + OneLine(e.what())};
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

bool ReadJson(const std::string& path, std::string& text, Failure& failure) {
    Json::Value ignored;
    return ReadInput(path, text, failure) && ParseJsonText(path, text, ignored, failure);
}

// A record given in hex starts with a hex digit; a named-field view, being a JSON object, never
// does.
bool LooksLikeHex(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    return first != std::string::npos && std::isxdigit(static_cast<unsigned char>(text[first]));
}

// Applies the record given at path to the record, which holds the section's record size: its
// raw bytes in hex when hexOnly is set or the text looks like hex, else its named-field view.
bool ApplyRecord(const Section& section, const std::string& path, bool hexOnly,
                 std::vector<unsigned char>& record, Failure& failure) {
    std::string text;
    if (!ReadInput(path, text, failure)) return false;
    if (hexOnly || LooksLikeHex(text)) {
        return ParseHexRecord(path, text, record.size(), section.record, record, failure);
    }
    const Descriptor* descriptor = ViewOf(section, failure);
    Json::Value view;
    if (descriptor == nullptr || !ParseJsonText(path, text, view, failure)) return false;
    std::string error;
    if (!protofix::describe::FromJson(*descriptor, view, record.data(), error)) {
        failure = {kBadInput, DisplayName(path) + ": not a view of " + section.record + ": " +
                                  OneLine(error)};
        return false;
    }
    return true;
}

// The request information shared by both directions; buffers and mode are the caller's to set.
PROTOCOL_FIX_INFO CommonInfo(const Options& options, const char* name, const std::string* current) {
    PROTOCOL_FIX_INFO info;
    std::memset(&info, 0, sizeof info);
    info.mode = PROTOFIX_MODE_RECORD;
    info.name = name;
    info.channel = options.channel;
    info.videoStandard = options.standard;
    info.subMode = options.subMode;
    info.current = current != nullptr ? current->c_str() : nullptr;
    return info;
}

bool EnvelopeResult(const char* envelope, int length) {
    Json::Value root;
    Json::Reader reader;
    if (!reader.parse(envelope, envelope + length, root, false) || !root.isObject()) return false;
    const Json::Value& result = root["result"];
    return result.isBool() && result.asBool();
}

int ClampToInt(std::size_t n) {
    return n > static_cast<std::size_t>(INT_MAX) ? INT_MAX : static_cast<int>(n);
}

void PrintRecord(const Options& options, const Section& section,
                 const std::vector<unsigned char>& record, std::ostream& out) {
    if (options.hex) {
        out << FormatHex(record);
        return;
    }
    // The descriptor was found before the conversion ran.
    const Descriptor* descriptor = protofix::describe::FindDescriptor(section.record);
    out << FormatView(*descriptor, protofix::describe::ToJson(*descriptor, record.data()));
}

// Why a text-mode Parse refused, when the section takes F5 text: runs the same conversion once
// more into a buffer with room to spare; when that one converts, the merged text outgrew the
// capacity, and the message says how much it needs.
Failure DiagnoseTextRefusal(const Options& options, const Section& section,
                            const PROTOCOL_FIX_INFO& info, const std::string& oldText,
                            const std::string& tableText) {
    const std::size_t roomy = std::min<std::size_t>(
        8 * (oldText.size() + tableText.size()) + 4096, static_cast<std::size_t>(INT_MAX));
    Failure refused{kRefused, DisplayName(options.input) + ": section " + section.name +
                                  " refused the table (a key it requires is missing or holds a "
                                  "value it refuses)"};
    if (roomy <= static_cast<std::size_t>(info.outputLength)) return refused;
    std::vector<char> buffer(roomy, '\0');
    std::memcpy(buffer.data(), oldText.c_str(), oldText.size() + 1);
    PROTOCOL_FIX_INFO retry = info;
    retry.output = buffer.data();
    retry.outputLength = static_cast<int>(roomy);
    CReqConfigProtocolFix request;
    request.SetRequestId(options.id);
    request.SetRequestInfo(retry);
    try {
        if (request.Deserialize(tableText.c_str(), ClampToInt(tableText.size())) != 1) {
            return refused;
        }
    } catch (const Json::Exception&) {
        return refused;
    }
    const std::size_t needed = std::strlen(buffer.data());
    return {kRefused, DisplayName(options.f5) + ": the merged F5 text is " +
                          std::to_string(needed) + " bytes, more than --capacity " +
                          std::to_string(info.outputLength) + " holds (give --capacity " +
                          std::to_string(needed) + " or more)"};
}

}  // namespace

Status Serialize(const Options& options, std::ostream& out, Failure& failure) {
    const Section* section = FindSection(options.section);
    const bool textMode = !options.f5.empty();

    std::string current;
    if (section != nullptr && !options.current.empty() &&
        !ReadJson(options.current, current, failure)) {
        return failure.status;
    }
    PROTOCOL_FIX_INFO info =
        CommonInfo(options, section != nullptr ? section->name : options.section.c_str(),
                   options.current.empty() ? nullptr : &current);

    // An unknown section is still handed to the library, which answers with an envelope whose
    // "result" is false; nothing is read for it.
    std::string f5Text;
    std::vector<unsigned char> record;
    if (section != nullptr && textMode) {
        if (!ReadJson(options.f5, f5Text, failure)) return failure.status;
        info.mode = PROTOFIX_MODE_TEXT;
        info.input = f5Text.data();
        info.inputLength = ClampToInt(f5Text.size() + 1);
    } else if (section != nullptr && section->HasRecord()) {
        record.assign(section->recordSize, 0);
        if (!ApplyRecord(*section, options.input, options.hex, record, failure)) {
            return failure.status;
        }
        info.input = record.data();
        info.inputLength = ClampToInt(record.size());
    }

    CReqConfigProtocolFix request;
    request.SetRequestId(options.id);
    request.SetRequestInfo(info);
    int length = 0;
    const char* envelope = nullptr;
    try {
        envelope = request.Serialize(length);
    } catch (const Json::Exception& e) {
        // Only the F5 text holds values of a kind the section may read wrongly.
        failure = WrongKind(textMode ? options.f5 : options.input, info.name, e);
        return failure.status;
    }
    if (envelope == nullptr) {
        failure = {kRefused, "the request envelope could not be written"};
        return failure.status;
    }
    out.write(envelope, length);
    if (EnvelopeResult(envelope, length)) return kConverted;

    if (section == nullptr) {
        failure = UnknownSection(options.section);
    } else if (ModeRefusal(options, *section, failure)) {
        // failure says which mode the section does not accept
    } else if (textMode) {
        failure = {kRefused, DisplayName(options.f5) + ": section " + section->name +
                                 " refused the F5 text"};
    } else {
        failure = {kRefused, DisplayName(options.input) + ": section " + section->name +
                                 " refused the record"};
    }
    return failure.status;
}

Status Deserialize(const Options& options, std::ostream& out, Failure& failure) {
    const Section* section = FindSection(options.section);
    if (section == nullptr) {
        failure = UnknownSection(options.section);
        return failure.status;
    }
    const bool textMode = !options.f5.empty();
    if (!textMode && section->HasRecord() && !options.hex && ViewOf(*section, failure) == nullptr) {
        return failure.status;
    }

    std::string current;
    if (!options.current.empty() && !ReadJson(options.current, current, failure)) {
        return failure.status;
    }
    std::string tableText;
    if (!ReadJson(options.input, tableText, failure)) return failure.status;

    PROTOCOL_FIX_INFO info =
        CommonInfo(options, section->name, options.current.empty() ? nullptr : &current);
    std::string oldText;
    std::vector<char> buffer;            // text mode: the F5 text, rewritten in place
    std::vector<unsigned char> record;   // record mode
    if (textMode) {
        if (!ReadJson(options.f5, oldText, failure)) return failure.status;
        const std::size_t needed = oldText.size() + 1;
        std::size_t capacity = options.capacity > 0
                                   ? static_cast<std::size_t>(options.capacity)
                                   : std::max(static_cast<std::size_t>(kDefaultCapacity), needed);
        if (capacity < needed) {
            failure = {kBadInput, DisplayName(options.f5) + ": the F5 text needs " +
                                      std::to_string(needed) +
                                      " bytes with its NUL, more than --capacity " +
                                      std::to_string(capacity)};
            return failure.status;
        }
        if (capacity > static_cast<std::size_t>(INT_MAX)) {
            failure = {kBadInput, DisplayName(options.f5) + ": the F5 text is too long"};
            return failure.status;
        }
        buffer.assign(capacity, '\0');
        std::memcpy(buffer.data(), oldText.c_str(), needed);
        info.mode = PROTOFIX_MODE_TEXT;
        info.output = buffer.data();
        info.outputLength = static_cast<int>(capacity);
    } else if (section->HasRecord()) {
        record.assign(section->recordSize, 0);
        if (!options.base.empty() &&
            !ApplyRecord(*section, options.base, false, record, failure)) {
            return failure.status;
        }
        info.output = record.data();
        info.outputLength = ClampToInt(record.size());
    }

    CReqConfigProtocolFix request;
    request.SetRequestId(options.id);
    request.SetRequestInfo(info);
    int result = 0;
    try {
        result = request.Deserialize(tableText.c_str(), ClampToInt(tableText.size()));
    } catch (const Json::Exception& e) {
        failure = WrongKind(options.input, section->name, e);
        return failure.status;
    }

    if (result == 1) {
        if (textMode) {
            // The capacity rule may leave no NUL in the buffer: read it bounded by its size.
            const std::string merged(buffer.data(), strnlen(buffer.data(), buffer.size()));
            out << merged;
            if (merged.empty() || merged.back() != '\n') out << '\n';
        } else {
            PrintRecord(options, *section, record, out);
        }
        return kConverted;
    }
    if (result == 0) {
        failure = {kRefused, DisplayName(options.input) + ": no section of the library took the "
                                                          "table for " +
                                 section->name};
    } else if (ModeRefusal(options, *section, failure)) {
        // failure says which mode the section does not accept
    } else if (textMode) {
        failure = DiagnoseTextRefusal(options, *section, info, oldText, tableText);
    } else {
        failure = {kRefused, DisplayName(options.input) + ": section " + section->name +
                                 " refused the table (a key it requires is missing or holds a "
                                 "value it refuses)"};
    }
    return failure.status;
}

}  // namespace protofix::tool
